#include <deque>
#include <memory>

#include "win32/desktop/window.h"
#include "win32/gdi/screen_context.h"
#include "win32/window_frame.h"

namespace {

// A handle is a place in the table, from kFirstPlace up, with the number of the place's windows above it.
// So small numbers, as HWND_BOTTOM, and negative ones, as HWND_TOPMOST, are no handles.
constexpr unsigned kPlaceBits = 16;
constexpr uintptr_t kPlaceMask = (uintptr_t{1} << kPlaceBits) - 1;
constexpr uintptr_t kFirstPlace = 0x20;
constexpr size_t kMostWindows = kPlaceMask - kFirstPlace;
constexpr size_t kRestingPlaces = 1024; // free ones that wait before they are used again
constexpr uint16_t kMostUses = 0x7FFF;

struct WindowPlace {
    std::unique_ptr<Window> window;
    uint16_t uses = 0; // the handle's upper half
};

struct WindowTable {
    std::vector<WindowPlace> places;
    std::deque<size_t> free; // the longest free first, so that handles come back late
    std::unique_ptr<Window> desktop;
    int count = 0;
};

WindowTable& Table() {
    static WindowTable table;
    return table;
}

constexpr uintptr_t kDesktopHandle = 0x10010;

HWND WindowHandleOf(size_t place, uint16_t uses) {
    return reinterpret_cast<HWND>(uintptr_t{uses} << kPlaceBits | (place + kFirstPlace));
}

void FreePlace(size_t place) {
    WindowTable& table = Table();
    table.places[place].window.reset();
    table.free.push_back(place);
    --table.count;
}

} // namespace

Window* WindowIfAny(HWND handle) {
    const auto number = reinterpret_cast<uintptr_t>(handle);
    if (number == kDesktopHandle) return &DesktopWindow();
    const uintptr_t place = number & kPlaceMask;
    WindowTable& table = Table();
    if (place < kFirstPlace || place - kFirstPlace >= table.places.size()) return nullptr;
    const WindowPlace& entry = table.places[place - kFirstPlace];
    return entry.window != nullptr && entry.window->handle == handle ? entry.window.get() : nullptr;
}

Window* WindowOf(HWND handle) {
    Window* window = WindowIfAny(handle);
    if (window == nullptr) SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return window;
}

Window& DesktopWindow() {
    WindowTable& table = Table();
    if (table.desktop == nullptr) {
        table.desktop = std::make_unique<Window>();
        Window& desktop = *table.desktop;
        desktop.handle = reinterpret_cast<HWND>(kDesktopHandle);
        desktop.windowClass = &DesktopClass();
        desktop.procedure = desktop.windowClass->procedure;
        desktop.style = WS_VISIBLE | WS_CLIPCHILDREN;
    }
    const FrameBuffer screen = ScreenPixels();
    table.desktop->place = {0, 0, screen.width, screen.height};
    return *table.desktop;
}

Window* AddWindow(WindowClass& windowClass) {
    WindowTable& table = Table();
    size_t place = table.places.size();
    if (table.free.size() > kRestingPlaces || place >= kMostWindows) {
        if (table.free.empty()) return nullptr;
        place = table.free.front();
        table.free.pop_front();
    } else {
        table.places.emplace_back();
    }
    WindowPlace& entry = table.places[place];
    entry.uses = static_cast<uint16_t>(entry.uses % kMostUses + 1);
    entry.window = std::make_unique<Window>();
    entry.window->handle = WindowHandleOf(place, entry.uses);
    entry.window->windowClass = &windowClass;
    ++windowClass.windows;
    ++table.count;
    return entry.window.get();
}

void RemoveWindow(Window& window) {
    if (window.parent != nullptr) std::erase(window.parent->children, &window);
    --window.windowClass->windows;
    FreePlace((reinterpret_cast<uintptr_t>(window.handle) & kPlaceMask) - kFirstPlace);
}

void RemoveAllWindows() {
    WindowTable& table = Table();
    for (size_t place = 0; place < table.places.size(); ++place) {
        if (table.places[place].window == nullptr) continue;
        --table.places[place].window->windowClass->windows;
        FreePlace(place);
    }
    DesktopWindow().children.clear();
}

int CountWindows() {
    return Table().count;
}

bool IsShown(const Window& window) {
    for (const Window* at = &window; at != nullptr; at = at->parent)
        if ((at->style & WS_VISIBLE) == 0) return false;
    return true;
}

bool IsUsable(const Window& window) {
    for (const Window* at = &window; at != nullptr; at = at->parent)
        if ((at->style & WS_DISABLED) != 0) return false;
    return true;
}

Window& TopLevelOf(Window& window) {
    Window* at = &window;
    while (at->parent != nullptr && !IsTopLevel(*at)) at = at->parent;
    return *at;
}

bool IsInside(const Window& window, const Window& ancestor) {
    for (const Window* at = &window; at != nullptr; at = at->parent)
        if (at == &ancestor) return true;
    return false;
}

RECT FrameOnScreen(const Window& window) {
    if (window.parent == nullptr) return window.place;
    const RECT around = ClientOnScreen(*window.parent);
    return Moved(window.place, around.left, around.top);
}

RECT ClientOnScreen(const Window& window) {
    return ClientOfFrame(FrameOnScreen(window), window.style, window.extendedStyle);
}
