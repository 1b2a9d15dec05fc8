// Colours and sizes of the system: constants, so that a picture is the same on every machine.
#include <array>

#include "win32/gdi/gdi_objects.h"
#include "win32/gdi/screen_context.h"
#include "win32/window_frame.h"

namespace {

// By number, as pixels: red is the highest byte.
constexpr std::array<uint32_t, 21> kSystemColors = {
    0xC8C8C8, // scroll bar
    0x808080, // desktop
    0x99B4D1, // active caption
    0xBFCDDB, // inactive caption
    0xF0F0F0, // menu
    0xFFFFFF, // window
    0x646464, // window frame
    0x000000, // menu text
    0x000000, // window text
    0x000000, // caption text
    0xB4B4B4, // active border
    0xF4F7FC, // inactive border
    0xABABAB, // background of documents
    0x0078D7, // highlight
    0xFFFFFF, // highlight text
    0xF0F0F0, // button
    0xA0A0A0, // button's shadow
    0x6D6D6D, // text that is out of use
    0x000000, // button text
    0x000000, // inactive caption text
    0xFFFFFF, // button's highlight
};

} // namespace

DWORD GetSysColor(int index) {
    if (index < 0 || index >= static_cast<int>(kSystemColors.size())) return 0;
    return ColorOf(kSystemColors[static_cast<size_t>(index)]);
}

HBRUSH GetSysColorBrush(int index) {
    static std::array<HBRUSH, kSystemColors.size()> brushes{};
    if (index < 0 || index >= static_cast<int>(brushes.size())) return nullptr;
    HBRUSH& brush = brushes[static_cast<size_t>(index)];
    if (brush == nullptr) {
        brush = CreateSolidBrush(GetSysColor(index));
        GiveToSystem(brush);
    }
    return brush;
}

int GetSystemMetrics(int index) {
    switch (index) {
        case SM_CXSCREEN:
            return ScreenPixels().width;
        case SM_CYSCREEN:
            return ScreenPixels().height;
        case SM_CXVSCROLL:
        case SM_CYHSCROLL:
            return 17;
        case SM_CYCAPTION:
            return kCaptionHeight;
        case SM_CXICON:
        case SM_CYICON:
            return 32;
        case SM_CXDOUBLECLK:
        case SM_CYDOUBLECLK:
            return 4;
        default:
            return 0;
    }
}
