#include "win32/headless/headless_display.h"

#include <cairo.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "win32/gdi/icon.h"

HeadlessDisplay::HeadlessDisplay(int width, int height) {
    OpenDesktop(this, width, height);
}

HeadlessDisplay::~HeadlessDisplay() {
    CloseDesktop();
}

int64_t HeadlessDisplay::UnixMilliseconds() {
    return kStartDate + static_cast<int64_t>(now_ - kStart);
}

void HeadlessDisplay::Poll() {
    if (++idlePolls_ > kMostIdlePolls) End("it asks for input in a loop");
    if (IsPausing()) {
        GoOnPausing(1);
    } else if (!steps_.empty() && ++pollsSinceStep_ >= kPollsPerStep) {
        TakeStep();
    }
}

void HeadlessDisplay::Wait(uint32_t milliseconds) {
    pollsSinceStep_ = 0;
    if (IsPausing()) {
        GoOnPausing(std::max(milliseconds, 1u));
    } else if (!steps_.empty()) {
        TakeStep();
    } else {
        if (milliseconds == kWaitForever) End("it waits for messages, and no timer is set");
        PassIdleTime(milliseconds);
    }
}

void HeadlessDisplay::Sleep(uint32_t milliseconds) {
    pollsSinceStep_ = 0;
    if (IsPausing()) {
        const uint64_t end = now_ + milliseconds;
        GoOnPausing(milliseconds);
        now_ = end;
        return;
    }
    PassIdleTime(milliseconds);
    if (!steps_.empty()) TakeStep();
}

void HeadlessDisplay::TakeStep() {
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    lastStep_ = step.name;
    NoteProgress();
    step.action();
    NoteProgress();
}

void HeadlessDisplay::GoOnPausing(uint32_t milliseconds) {
    Step& pause = steps_.front();
    const uint32_t gone = std::min(milliseconds, pause.pause);
    now_ += gone;
    pause.pause -= gone;
    if (pause.pause == 0) steps_.pop_front();
    NoteProgress();
}

void HeadlessDisplay::PassIdleTime(uint32_t milliseconds) {
    now_ += milliseconds;
    if (!steps_.empty()) return;
    idleMilliseconds_ =
        milliseconds > kMostIdleMilliseconds ? milliseconds : idleMilliseconds_ + milliseconds;
    if (idleMilliseconds_ > kMostIdleMilliseconds) End("it lets time go by");
}

void HeadlessDisplay::NoteProgress() {
    pollsSinceStep_ = 0;
    idlePolls_ = 0;
    idleMilliseconds_ = 0;
}

void HeadlessDisplay::End(const char* reason) const {
    std::fprintf(stderr,
                 "headless: the program goes on, %s, but the hands have nothing left to do (last step: %s)\n",
                 reason, lastStep_.c_str());
    std::abort();
}

namespace {

/// Over `below`, as the machine's own pointer would be.
uint32_t PointerPixel(const IconPicture& picture, size_t index, uint32_t below) {
    const uint32_t pixel = picture.pixels[index];
    if (!picture.hasAlpha) return picture.keepsBelow[index] != 0 ? below ^ pixel : pixel;
    const uint32_t alpha = pixel >> 24;
    uint32_t mixed = 0;
    for (const int shift : {16, 8, 0}) {
        const uint32_t over = pixel >> shift & 0xFF, under = below >> shift & 0xFF;
        mixed |= (over * alpha + under * (255 - alpha) + 127) / 255 << shift;
    }
    return mixed;
}

void DrawPointer(std::vector<uint32_t>& screen, int width, int height, HCURSOR cursor) {
    const IconPicture* const picture = PictureOfIcon(cursor);
    POINT place{};
    if (picture == nullptr || !GetCursorPos(&place)) return;
    size_t index = 0;
    for (int row = 0; row < picture->height; ++row) {
        for (int column = 0; column < picture->width; ++column, ++index) {
            const LONG x = place.x - picture->hotSpot.x + column, y = place.y - picture->hotSpot.y + row;
            if (x < 0 || x >= width || y < 0 || y >= height) continue;
            uint32_t& pixel =
                screen[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
            pixel = PointerPixel(*picture, index, pixel);
        }
    }
}

} // namespace

bool HeadlessDisplay::SavePng(const std::string& path) const {
    const FrameBuffer screen = DesktopPixels();
    const auto width = static_cast<size_t>(screen.width), height = static_cast<size_t>(screen.height);
    std::vector<uint32_t> pixels(screen.pixels, screen.pixels + width * height);
    DrawPointer(pixels, screen.width, screen.height, cursor_);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, screen.width, screen.height);
    unsigned char* bytes = cairo_image_surface_get_data(surface);
    if (bytes != nullptr) {
        const int stride = cairo_image_surface_get_stride(surface);
        for (size_t y = 0; y < height; ++y) {
            std::copy_n(pixels.begin() + static_cast<ptrdiff_t>(y * width), width,
                        reinterpret_cast<uint32_t*>(bytes + static_cast<ptrdiff_t>(y) * stride));
        }
        cairo_surface_mark_dirty(surface);
    }
    const bool saved = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return saved;
}

uint32_t HeadlessDisplay::Pixel(int x, int y) const {
    const FrameBuffer screen = DesktopPixels();
    return screen.pixels[static_cast<ptrdiff_t>(y) * screen.width + x];
}
