#include "workbench/frame/popup_menu.h"

#include <algorithm>

#include "workbench/frame/frame_looks.h"

namespace workbench {

namespace {

constexpr char kPopupClass[] = "WorkbenchPopup";
constexpr int kMarkWidth = 24;
constexpr int kRightMargin = 28;

struct Popup {
    const std::vector<PopupItem>& items;
    const Theme& theme;
    HWND window = nullptr;
    int hot = -1; ///< row under the pointer or chosen by keys
    int picked = 0;
    bool open = true;
    Popup* parent = nullptr;
};

Popup* topPopup = nullptr;

int HeightOf(const PopupItem& item) {
    return item.separator ? kPopupSeparator : kPopupRow;
}

RECT RowRect(const Popup& popup, size_t row) {
    RECT client;
    GetClientRect(popup.window, &client);
    int top = 2;
    for (size_t i = 0; i < row; ++i) top += HeightOf(popup.items[i]);
    return {1, top, client.right - 1, top + HeightOf(popup.items[row])};
}

int RowAt(const Popup& popup, POINT point) {
    for (size_t i = 0; i < popup.items.size(); ++i) {
        const RECT row = RowRect(popup, i);
        if (PtInRect(&row, point)) return static_cast<int>(i);
    }
    return -1;
}

bool CanPick(const PopupItem& item) {
    return !item.separator && item.enabled;
}

void Paint(const Popup& popup) {
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(popup.window, &paint);
    const FrameColors colors = ColorsOf(popup.theme);
    RECT client;
    GetClientRect(popup.window, &client);
    FillColor(context, client, colors.face);
    FrameColor(context, client, colors.border);
    for (size_t i = 0; i < popup.items.size(); ++i) {
        const PopupItem& item = popup.items[i];
        RECT row = RowRect(popup, i);
        if (item.separator) {
            const int y = (row.top + row.bottom) / 2;
            FillColor(context, {row.left + kMarkWidth, y, row.right - 4, y + 1}, colors.border);
            continue;
        }
        const bool hot = popup.hot == static_cast<int>(i) && item.enabled;
        if (hot) FillColor(context, row, colors.highlight);
        const COLORREF text = !item.enabled ? colors.disabledText : hot ? colors.highlightText : colors.text;
        if (item.marked) {
            const int y = row.top + kPopupRow / 2;
            FillColor(context, {row.left + 9, y - 3, row.left + 15, y + 3}, text);
        }
        DrawLine(context, row, kMarkWidth, item.text, text);
        if (!item.items.empty())
            DrawLine(context, {row.right - 16, row.top, row.right, row.bottom}, 0, ">", text);
    }
    EndPaint(popup.window, &paint);
}

void SetHot(Popup& popup, int row) {
    if (row == popup.hot) return;
    popup.hot = row;
    InvalidateRect(popup.window, nullptr, FALSE);
}

void Step(Popup& popup, int direction) {
    const int count = static_cast<int>(popup.items.size());
    int row = popup.hot;
    for (int tries = 0; tries < count; ++tries) {
        row = row < 0 ? (direction > 0 ? 0 : count - 1) : (row + direction + count) % count;
        if (CanPick(popup.items[static_cast<size_t>(row)])) break;
    }
    if (row >= 0) SetHot(popup, row);
}

void Choose(Popup& popup, int row) {
    if (row < 0 || !CanPick(popup.items[static_cast<size_t>(row)])) return;
    const PopupItem& item = popup.items[static_cast<size_t>(row)];
    if (item.items.empty()) {
        popup.picked = item.number;
    } else {
        const RECT place = RowRect(popup, static_cast<size_t>(row));
        POINT at{place.right - 4, place.top};
        ClientToScreen(popup.window, &at);
        popup.picked = RunPopupMenu(popup.window, at, item.items, popup.theme);
    }
    popup.open = false;
}

LRESULT CALLBACK PopupProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Popup* popup = ObjectOf<Popup>(window, message, lParam);
    if (!popup) return DefWindowProcA(window, message, wParam, lParam);
    const POINT point{static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
    switch (message) {
        case WM_PAINT:
            Paint(*popup);
            return 0;
        case WM_MOUSEMOVE:
            SetHot(*popup, RowAt(*popup, point));
            return 0;
        case WM_LBUTTONDOWN: {
            RECT client;
            GetClientRect(window, &client);
            if (!PtInRect(&client, point)) popup->open = false;
            return 0;
        }
        case WM_LBUTTONUP:
            Choose(*popup, RowAt(*popup, point));
            return 0;
        case WM_CAPTURECHANGED:
            if (topPopup == popup) popup->open = false;
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

void TakeKey(Popup& popup, WPARAM key) {
    if (key == VK_DOWN) Step(popup, 1);
    if (key == VK_UP) Step(popup, -1);
    if (key == VK_RETURN) Choose(popup, popup.hot);
    if (key == VK_ESCAPE) popup.open = false;
}

RECT PlaceOf(POINT at, int width, int height) {
    const int left = std::max(0, std::min<int>(at.x, GetSystemMetrics(SM_CXSCREEN) - width));
    const int top = std::max(0, std::min<int>(at.y, GetSystemMetrics(SM_CYSCREEN) - height));
    return {left, top, width, height};
}

} // namespace

int RunPopupMenu(HWND owner, POINT at, const std::vector<PopupItem>& items, const Theme& theme) {
    RegisterFrameClass(kPopupClass, PopupProcedure);
    const HDC measure = GetDC(nullptr);
    int width = 80, height = 4;
    for (const PopupItem& item : items) {
        width = std::max(width, kMarkWidth + TextWidth(measure, item.text) + kRightMargin);
        height += HeightOf(item);
    }
    ReleaseDC(nullptr, measure);
    Popup popup{.items = items, .theme = theme, .parent = topPopup};
    const RECT place = PlaceOf(at, width, height);
    popup.window =
        CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kPopupClass, "", WS_POPUP,
                        place.left, place.top, place.right, place.bottom, owner, nullptr, nullptr, &popup);
    if (!popup.window) return 0;
    topPopup = &popup;
    ShowWindow(popup.window, SW_SHOWNA);
    SetCapture(popup.window);
    MSG message;
    while (popup.open && GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_KEYDOWN) {
            TakeKey(popup, message.wParam);
        } else {
            DispatchMessageA(&message);
        }
    }
    topPopup = nullptr; // the lost capture is no leaving
    if (GetCapture() == popup.window) ReleaseCapture();
    topPopup = popup.parent;
    DestroyWindow(popup.window);
    return popup.picked;
}

RECT PopupItemRect(int number) {
    RECT place{};
    if (!topPopup) return place;
    for (size_t i = 0; i < topPopup->items.size(); ++i) {
        if (topPopup->items[i].number != number) continue;
        place = RowRect(*topPopup, i);
        MapWindowPoints(topPopup->window, nullptr, reinterpret_cast<POINT*>(&place), 2);
    }
    return place;
}

} // namespace workbench
