#include "workbench/frame/menu_bar.h"

#include <cctype>

#include "workbench/frame/frame_looks.h"

namespace workbench {

namespace {

constexpr int kTitlePadding = 10; ///< pixels on each side of a title

} // namespace

RECT MenuBar::TitleRect(size_t menu) const {
    const HDC measure = GetDC(nullptr);
    int left = kTitlePadding / 2, width = 0;
    for (size_t i = 0; i <= menu && i < titles_.size(); ++i) {
        left += width;
        width = TextWidth(measure, titles_[i]) + 2 * kTitlePadding;
    }
    ReleaseDC(nullptr, measure);
    return {left, 0, left + width, kBarHeight};
}

size_t MenuBar::TitleAt(POINT point) const {
    for (size_t i = 0; i < titles_.size(); ++i) {
        const RECT title = TitleRect(i);
        if (PtInRect(&title, point)) return i;
    }
    return kNone;
}

void MenuBar::Paint(HDC context, const RECT& client, const Theme& theme) const {
    const FrameColors colors = ColorsOf(theme);
    FillColor(context, {0, 0, client.right, kBarHeight}, colors.face);
    FillColor(context, {0, kBarHeight - 1, client.right, kBarHeight}, colors.border);
    for (size_t i = 0; i < titles_.size(); ++i) {
        const RECT title = TitleRect(i);
        if (i == open_) FillColor(context, {title.left, 0, title.right, kBarHeight - 1}, colors.highlight);
        DrawLine(context, title, kTitlePadding, titles_[i], i == open_ ? colors.highlightText : colors.text);
    }
}

void MenuBar::Open(HWND window, size_t menu, const Theme& theme) {
    // A press on another title closes the menu and opens that title's.
    while (menu != kNone) {
        open_ = menu;
        InvalidateRect(window, nullptr, FALSE);
        UpdateWindow(window);
        const RECT title = TitleRect(menu);
        POINT at{title.left, kBarHeight - 1};
        ClientToScreen(window, &at);
        const int number = RunPopupMenu(window, at, items ? items(menu) : std::vector<PopupItem>{}, theme);
        open_ = kNone;
        InvalidateRect(window, nullptr, FALSE);
        if (number != 0 && picked) picked(number);
        POINT point{};
        GetCursorPos(&point);
        ScreenToClient(window, &point);
        const size_t other = TitleAt(point);
        const bool pressed = (GetKeyState(VK_LBUTTON) & 0x8000) != 0;
        menu = number == 0 && pressed && other != menu ? other : kNone;
    }
}

bool MenuBar::Press(HWND window, POINT point, const Theme& theme) {
    if (point.y >= kBarHeight) return false;
    const size_t menu = TitleAt(point);
    if (menu != kNone) Open(window, menu, theme);
    return true;
}

bool MenuBar::TakeKey(HWND window, int virtualKey, const Theme& theme) {
    for (size_t i = 0; i < titles_.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(titles_[i].front())) != virtualKey) continue;
        Open(window, i, theme);
        return true;
    }
    return false;
}

} // namespace workbench
