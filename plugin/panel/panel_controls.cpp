#include "plugin/panel/panel_controls.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "plugin/frame/line_grammar.h"

COLORREF ThemeColor(const double* color) {
    BYTE channels[3];
    for (int i = 0; i < 3; ++i) {
        const double value = color[i + 1];
        channels[i] = std::isnan(value) ? BYTE{0} : static_cast<BYTE>(255 * std::clamp(value, 0.0, 1.0));
    }
    return RGB(channels[0], channels[1], channels[2]);
}

POINT PointerIn(HWND window) {
    POINT pointer{};
    GetCursorPos(&pointer);
    ScreenToClient(window, &pointer);
    return pointer;
}

void ShowControlNumber(HWND panel, int control, int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%d", number);
    SetWindowTextA(GetDlgItem(panel, control), text);
}

int ControlNumber(HWND control) {
    char text[16] = "";
    GetWindowTextA(control, text, sizeof text);
    return DecimalInteger(text);
}
