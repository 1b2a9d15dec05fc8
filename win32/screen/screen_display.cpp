#include "win32/screen/screen_display.h"

#include <SDL.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "win32/gdi/icon.h"
#include "win32/screen/screen_keys.h"

struct ScreenWindow {
    SDL_Window* window = nullptr;
    int scale = 1;
    std::map<HCURSOR, SDL_Cursor*> cursors;

    ScreenWindow() = default;
    ScreenWindow(const ScreenWindow&) = delete;
    ScreenWindow& operator=(const ScreenWindow&) = delete;
    ~ScreenWindow() {
        for (const auto& [handle, cursor] : cursors) SDL_FreeCursor(cursor);
        if (window != nullptr) SDL_DestroyWindow(window);
        SDL_Quit();
    }
};

namespace {

constexpr int kLeastWidth = 400, kLeastHeight = 300;
constexpr float kDenseDotsPerInch = 160;

int ScaleOf(const ScreenOptions& options) {
    if (options.scale > 0) return std::min(options.scale, 8);
    float dotsPerInch = 0;
    const bool known = SDL_GetDisplayDPI(0, nullptr, nullptr, &dotsPerInch) == 0;
    return known && dotsPerInch >= kDenseDotsPerInch ? 2 : 1;
}

std::unique_ptr<ScreenWindow> OpenWindow(const ScreenOptions& options) {
    // The program's own end by a signal stays what it is, and a first click counts as one.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    SDL_SetMainReady();
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return nullptr;
    auto screen = std::make_unique<ScreenWindow>();
    screen->scale = ScaleOf(options);
    int width = options.width * screen->scale, height = options.height * screen->scale;
    SDL_Rect usable = {};
    if (SDL_GetDisplayUsableBounds(0, &usable) == 0 && usable.w > 0 && usable.h > 0) {
        width = std::min(width, usable.w);
        height = std::min(height, usable.h);
    }
    screen->window = SDL_CreateWindow(options.title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                      width, height, SDL_WINDOW_RESIZABLE);
    if (screen->window == nullptr || SDL_GetWindowSurface(screen->window) == nullptr) return nullptr;
    SDL_SetWindowMinimumSize(screen->window, kLeastWidth * screen->scale, kLeastHeight * screen->scale);
    SDL_StartTextInput();
    return screen;
}

POINT DesktopSize(const ScreenWindow& screen) {
    int width = 0, height = 0;
    SDL_GetWindowSize(screen.window, &width, &height);
    return {std::max(width / screen.scale, 1), std::max(height / screen.scale, 1)};
}

// Towards the lesser coordinate, also left of the window, where the pointer is followed while a button is
// down.
int OnDesktop(int coordinate, int scale) {
    return coordinate >= 0 ? coordinate / scale : -((scale - 1 - coordinate) / scale);
}

// The pixels of one row of the desktop, each `scale` times, on as many rows of the window.
void PutRow(const SDL_Surface& target, const uint32_t* pixels, int left, int right, int y, int scale) {
    auto* const bytes = static_cast<uint8_t*>(target.pixels);
    for (int line = y * scale; line < (y + 1) * scale; ++line) {
        auto* to =
            reinterpret_cast<uint32_t*>(bytes + static_cast<ptrdiff_t>(line) * target.pitch) + left * scale;
        for (int x = left; x < right; ++x)
            for (int i = 0; i < scale; ++i) *to++ = pixels[x];
    }
}

bool HasDesktopsColors(const SDL_Surface& surface) {
    return surface.format->Rmask == 0xFF0000 && surface.format->Gmask == 0xFF00 &&
           surface.format->Bmask == 0xFF;
}

// An inverting pixel is shown in black: the machine's pointers can't look at what is below.
SDL_Cursor* NewCursor(const IconPicture& picture, int scale) {
    SDL_Surface* const surface = SDL_CreateRGBSurfaceWithFormat(
        0, picture.width * scale, picture.height * scale, 32, SDL_PIXELFORMAT_ARGB8888);
    if (surface == nullptr) return nullptr;
    std::vector<uint32_t> row(static_cast<size_t>(picture.width));
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const size_t index = static_cast<size_t>(y) * row.size() + static_cast<size_t>(x);
            const uint32_t pixel = picture.pixels[index];
            uint32_t shown = pixel;
            if (!picture.hasAlpha && picture.keepsBelow[index] == 0) shown = 0xFF000000 | pixel;
            if (!picture.hasAlpha && picture.keepsBelow[index] != 0) shown = pixel != 0 ? 0xFF000000 : 0;
            row[static_cast<size_t>(x)] = shown;
        }
        PutRow(*surface, row.data(), 0, picture.width, y, scale);
    }
    SDL_Cursor* const cursor =
        SDL_CreateColorCursor(surface, picture.hotSpot.x * scale, picture.hotSpot.y * scale);
    SDL_FreeSurface(surface);
    return cursor;
}

void HandOnButton(const SDL_MouseButtonEvent& button, int scale) {
    InputPointer(OnDesktop(button.x, scale), OnDesktop(button.y, scale));
    const bool down = button.state == SDL_PRESSED;
    if (button.button == SDL_BUTTON_LEFT) InputButton(VK_LBUTTON, down);
    if (button.button == SDL_BUTTON_RIGHT) InputButton(VK_RBUTTON, down);
}

void HandOnWheel(const SDL_MouseWheelEvent& wheel) {
    const int steps = wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -wheel.y : wheel.y;
    if (steps != 0) InputWheel(steps);
}

void HandOnKey(const SDL_KeyboardEvent& key) {
    const int virtualKey = VirtualKeyOf(key.keysym.sym);
    if (virtualKey != 0) InputKey(virtualKey, key.state == SDL_PRESSED);
}

void HandOnText(const SDL_TextInputEvent& input) {
    const std::string text = Cp932OfInput(input.text);
    if (!text.empty()) InputText(text.c_str());
}

} // namespace

std::unique_ptr<ScreenDisplay> ScreenDisplay::Open(const ScreenOptions& options, std::string& error) {
    std::unique_ptr<ScreenWindow> window = OpenWindow(options);
    if (window == nullptr) {
        error = SDL_GetError();
        return nullptr;
    }
    return std::unique_ptr<ScreenDisplay>(new ScreenDisplay(std::move(window)));
}

ScreenDisplay::ScreenDisplay(std::unique_ptr<ScreenWindow> window) : window_(std::move(window)) {
    const POINT size = DesktopSize(*window_);
    OpenDesktop(this, size.x, size.y);
}

ScreenDisplay::~ScreenDisplay() {
    CloseDesktop();
}

uint64_t ScreenDisplay::Milliseconds() {
    return SDL_GetTicks64();
}

void ScreenDisplay::Poll() {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        switch (event.type) {
            case SDL_MOUSEMOTION:
                InputPointer(OnDesktop(event.motion.x, window_->scale),
                             OnDesktop(event.motion.y, window_->scale));
                break;
            case SDL_MOUSEBUTTONDOWN:
            case SDL_MOUSEBUTTONUP:
                HandOnButton(event.button, window_->scale);
                break;
            case SDL_MOUSEWHEEL:
                HandOnWheel(event.wheel);
                break;
            case SDL_KEYDOWN:
            case SDL_KEYUP:
                HandOnKey(event.key);
                break;
            case SDL_TEXTINPUT:
                HandOnText(event.text);
                break;
            case SDL_WINDOWEVENT:
                if (event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED) FollowSize();
                if (event.window.event == SDL_WINDOWEVENT_EXPOSED) PresentAll();
                break;
            case SDL_QUIT:
                if (closeWanted) closeWanted();
                break;
            default:
                break;
        }
    }
}

void ScreenDisplay::Wait(uint32_t milliseconds) {
    // The event stays, for Poll.
    if (milliseconds == kWaitForever) {
        SDL_WaitEvent(nullptr);
    } else {
        SDL_WaitEventTimeout(nullptr, static_cast<int>(std::min<uint32_t>(milliseconds, INT32_MAX)));
    }
}

void ScreenDisplay::Sleep(uint32_t milliseconds) {
    SDL_Delay(milliseconds);
}

void ScreenDisplay::FollowSize() {
    const POINT size = DesktopSize(*window_);
    const FrameBuffer pixels = DesktopPixels();
    if (size.x != pixels.width || size.y != pixels.height) ResizeDesktop(size.x, size.y);
}

void ScreenDisplay::PresentAll() {
    const FrameBuffer pixels = DesktopPixels();
    Present({0, 0, pixels.width, pixels.height});
}

void ScreenDisplay::Present(const RECT& changed) {
    // The surface is another one after each change of the window's size.
    SDL_Surface* const surface = SDL_GetWindowSurface(window_->window);
    if (surface == nullptr || surface->format->BytesPerPixel != 4) return;
    const FrameBuffer pixels = DesktopPixels();
    const int scale = window_->scale;
    const int left = std::max(changed.left, 0), top = std::max(changed.top, 0);
    const int right = std::min({changed.right, pixels.width, surface->w / scale});
    const int bottom = std::min({changed.bottom, pixels.height, surface->h / scale});
    if (left >= right || top >= bottom) return;
    if (SDL_LockSurface(surface) != 0) return;
    std::vector<uint32_t> converted(HasDesktopsColors(*surface) ? 0 : static_cast<size_t>(pixels.width));
    for (int y = top; y < bottom; ++y) {
        const uint32_t* row = pixels.pixels + static_cast<ptrdiff_t>(y) * pixels.width;
        if (!converted.empty()) {
            SDL_ConvertPixels(pixels.width, 1, SDL_PIXELFORMAT_RGB888, row, pixels.width * 4,
                              surface->format->format, converted.data(), pixels.width * 4);
            row = converted.data();
        }
        PutRow(*surface, row, left, right, y, scale);
    }
    SDL_UnlockSurface(surface);
    const SDL_Rect area = {left * scale, top * scale, (right - left) * scale, (bottom - top) * scale};
    SDL_UpdateWindowSurfaceRects(window_->window, &area, 1);
}

void ScreenDisplay::ShowCursor(HCURSOR handle) {
    SDL_ShowCursor(handle == nullptr ? SDL_DISABLE : SDL_ENABLE);
    const IconPicture* const picture = PictureOfIcon(handle);
    if (picture == nullptr) return;
    SDL_Cursor*& cursor = window_->cursors[handle];
    if (cursor == nullptr) cursor = NewCursor(*picture, window_->scale);
    if (cursor != nullptr) SDL_SetCursor(cursor);
}

void ScreenDisplay::MovePointer(int x, int y) {
    SDL_WarpMouseInWindow(window_->window, x * window_->scale, y * window_->scale);
}
