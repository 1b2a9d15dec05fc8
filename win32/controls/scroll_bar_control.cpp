#include <algorithm>
#include <cstdint>

#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"
#include "win32/controls/scroll_state.h"

namespace {

constexpr UINT_PTR kRepeatTimer = 1;
constexpr UINT kFirstDelay = 200, kNextDelay = 50; ///< milliseconds

struct ScrollData {
    ScrollState state;
    ScrollPart pressed = ScrollPart::Nothing;
    bool isInside = false; ///< the pointer, of the pressed part
    int grip = 0;          ///< from the thumb's top to where it was taken
    int thumbStart = 0;    ///< the thumb's position at the press
    POINT pointer = {0, 0};
};

bool IsVertical(HWND window) {
    return (StyleOf(window) & SBS_VERT) != 0;
}

ScrollGeometry GeometryOf(HWND window, const ScrollState& state) {
    const RECT client = ClientRectangle(window);
    return MeasureScrollBar(state, IsVertical(window) ? client.bottom : client.right,
                            GetSystemMetrics(SM_CXVSCROLL));
}

int AlongBar(HWND window, POINT point) {
    return IsVertical(window) ? point.y : point.x;
}

ScrollPart PartAt(HWND window, const ScrollState& state, POINT point) {
    const RECT client = ClientRectangle(window);
    if (!PtInRect(&client, point)) return ScrollPart::Nothing;
    return PartOfBar(GeometryOf(window, state), AlongBar(window, point));
}

RECT PartOf(HWND window, int from, int to) {
    const RECT client = ClientRectangle(window);
    return IsVertical(window) ? RECT{0, from, client.right, to} : RECT{from, 0, to, client.bottom};
}

void DrawArrowButton(HWND window, HDC context, const RECT& place, bool first, bool pressed, bool enabled) {
    DrawRaisedFace(context, place, pressed);
    const int color = enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT;
    if (IsVertical(window)) DrawArrow(context, place, first ? VK_UP : VK_DOWN, color);
}

void Draw(HWND window, const ScrollData& data, HDC context) {
    const ScrollGeometry bar = GeometryOf(window, data.state);
    const bool enabled = IsWindowEnabled(window) && CanScroll(data.state);
    const RECT client = ClientRectangle(window);
    SetTextColor(context, GetSysColor(COLOR_BTNHIGHLIGHT));
    SetBkColor(context, GetSysColor(COLOR_SCROLLBAR));
    const LRESULT brush = SendMessageA(GetParent(window), WM_CTLCOLORSCROLLBAR,
                                       reinterpret_cast<WPARAM>(context), reinterpret_cast<LPARAM>(window));
    FillRect(context, &client,
             brush != 0 ? reinterpret_cast<HBRUSH>(brush) : GetSysColorBrush(COLOR_SCROLLBAR));
    const auto isPressed = [&](ScrollPart part) { return data.pressed == part && data.isInside; };
    DrawArrowButton(window, context, PartOf(window, 0, bar.arrow), true, isPressed(ScrollPart::FirstArrow),
                    enabled);
    DrawArrowButton(window, context, PartOf(window, bar.length - bar.arrow, bar.length), false,
                    isPressed(ScrollPart::LastArrow), enabled);
    if (IsWindowEnabled(window) && bar.thumb > 0)
        DrawRaisedFace(context, PartOf(window, bar.thumbStart, bar.thumbStart + bar.thumb),
                       data.pressed == ScrollPart::Thumb);
}

void DrawNow(HWND window) {
    const auto* data = DataOf<ScrollData>(window);
    if (data == nullptr || !IsWindowVisible(window)) return;
    const WindowContext context(window);
    Draw(window, *data, context.context());
}

void Report(HWND window, int code, int position) {
    SendMessageA(GetParent(window), IsVertical(window) ? WM_VSCROLL : WM_HSCROLL, PackWParam(code, position),
                 reinterpret_cast<LPARAM>(window));
}

int CodeOf(ScrollPart part) {
    switch (part) {
        case ScrollPart::FirstArrow:
            return SB_LINEUP;
        case ScrollPart::LastArrow:
            return SB_LINEDOWN;
        case ScrollPart::BeforeThumb:
            return SB_PAGEUP;
        default:
            return SB_PAGEDOWN;
    }
}

void Press(HWND window, ScrollData& data, POINT point) {
    data.pressed = PartAt(window, data.state, point);
    data.pointer = point;
    if (data.pressed == ScrollPart::Nothing) return;
    if (data.state.arrowsDisabled) {
        data.pressed = ScrollPart::Nothing;
        return;
    }
    if ((StyleOf(window) & WS_TABSTOP) != 0) SetFocus(window);
    data.isInside = true;
    SetCapture(window);
    if (data.pressed == ScrollPart::Thumb) {
        const ScrollGeometry bar = GeometryOf(window, data.state);
        data.grip = AlongBar(window, point) - bar.thumbStart;
        data.thumbStart = data.state.position;
        data.state.isTracking = true;
        data.state.trackPosition = data.state.position;
        DrawNow(window);
        Report(window, SB_THUMBTRACK, data.state.position);
        return;
    }
    SetTimer(window, kRepeatTimer, kFirstDelay, nullptr);
    DrawNow(window);
    Report(window, CodeOf(data.pressed), 0);
}

// Where the thumb is let go too far beside the bar it goes back to where it was taken.
bool IsFarFromBar(HWND window, POINT point) {
    RECT reach = ClientRectangle(window);
    const int far_ = IsVertical(window) ? reach.right : reach.bottom;
    InflateRect(&reach, IsVertical(window) ? 8 * far_ : 2 * far_, IsVertical(window) ? 2 * far_ : 8 * far_);
    return !PtInRect(&reach, point);
}

void MoveThumb(HWND window, ScrollData& data, POINT point) {
    const int wanted = IsFarFromBar(window, point)
                           ? data.thumbStart
                           : PositionOfThumb(GeometryOf(window, data.state), data.state,
                                             AlongBar(window, point) - data.grip);
    if (wanted == data.state.trackPosition) return;
    data.state.trackPosition = wanted;
    DrawNow(window);
    Report(window, SB_THUMBTRACK, wanted);
}

void Drag(HWND window, ScrollData& data, POINT point) {
    data.pointer = point;
    if (data.pressed == ScrollPart::Nothing) return;
    if (data.pressed == ScrollPart::Thumb) {
        MoveThumb(window, data, point);
        return;
    }
    const bool inside = PartAt(window, data.state, point) == data.pressed;
    if (inside == data.isInside) return;
    data.isInside = inside;
    DrawNow(window);
}

void Repeat(HWND window, ScrollData& data) {
    if (data.pressed == ScrollPart::Nothing || data.pressed == ScrollPart::Thumb) {
        KillTimer(window, kRepeatTimer);
        return;
    }
    SetTimer(window, kRepeatTimer, kNextDelay, nullptr);
    // A page area ends where the thumb has come to.
    data.isInside = PartAt(window, data.state, data.pointer) == data.pressed;
    if (data.isInside) Report(window, CodeOf(data.pressed), 0);
}

void EndPress(HWND window, ScrollData& data) {
    const ScrollPart pressed = data.pressed;
    if (pressed == ScrollPart::Nothing) return;
    const int position = data.state.trackPosition;
    data.pressed = ScrollPart::Nothing;
    data.state.isTracking = false;
    KillTimer(window, kRepeatTimer);
    if (GetCapture() == window) ReleaseCapture();
    DrawNow(window);
    if (pressed == ScrollPart::Thumb) Report(window, SB_THUMBPOSITION, position);
    if (IsWindow(window)) Report(window, SB_ENDSCROLL, 0);
}

} // namespace

ScrollState* ScrollStateOf(HWND window) {
    char name[sizeof kScrollBarClass + 1] = {};
    if (GetClassNameA(window, name, sizeof name) == 0 || !IsSameClass(name, kScrollBarClass)) return nullptr;
    auto* data = DataOf<ScrollData>(window);
    return data != nullptr ? &data->state : nullptr;
}

void DrawScrollBar(HWND window) {
    DrawNow(window);
}

LRESULT CALLBACK ScrollBarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* data = KeepData<ScrollData>(window, message);
    if (data == nullptr) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
        case WM_PAINT: {
            const PaintContext paint(window, wParam);
            Draw(window, *data, paint.context());
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            Press(window, *data, PointOf(lParam));
            return 0;
        case WM_MOUSEMOVE:
            Drag(window, *data, PointOf(lParam));
            return 0;
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED:
            EndPress(window, *data);
            return 0;
        case WM_TIMER:
            if (wParam == kRepeatTimer) Repeat(window, *data);
            return 0;
        case WM_ENABLE:
            Redraw(window);
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}
