#include "win32/screen/screen_keys.h"

#include <windows.h>

#include "win32/codepage_932.h"
#include "win32/utf8.h"

namespace {

struct KeyPair {
    SDL_Keycode key;
    int virtualKey;
};
constexpr int kVirtualF1 = 0x70, kVirtualInsert = 0x2D;
constexpr KeyPair kKeys[] = {
    {SDLK_BACKSPACE, VK_BACK},  {SDLK_TAB, VK_TAB},       {SDLK_RETURN, VK_RETURN},
    {SDLK_KP_ENTER, VK_RETURN}, {SDLK_LSHIFT, VK_SHIFT},  {SDLK_RSHIFT, VK_SHIFT},
    {SDLK_LCTRL, VK_CONTROL},   {SDLK_RCTRL, VK_CONTROL}, {SDLK_LALT, VK_MENU},
    {SDLK_RALT, VK_MENU},       {SDLK_ESCAPE, VK_ESCAPE}, {SDLK_SPACE, VK_SPACE},
    {SDLK_PAGEUP, VK_PRIOR},    {SDLK_PAGEDOWN, VK_NEXT}, {SDLK_END, VK_END},
    {SDLK_HOME, VK_HOME},       {SDLK_LEFT, VK_LEFT},     {SDLK_UP, VK_UP},
    {SDLK_RIGHT, VK_RIGHT},     {SDLK_DOWN, VK_DOWN},     {SDLK_INSERT, kVirtualInsert},
    {SDLK_DELETE, VK_DELETE},
};

} // namespace

int VirtualKeyOf(SDL_Keycode key) {
    for (const KeyPair& pair : kKeys)
        if (pair.key == key) return pair.virtualKey;
    if (key >= SDLK_0 && key <= SDLK_9) return '0' + (key - SDLK_0);
    if (key >= SDLK_a && key <= SDLK_z) return 'A' + (key - SDLK_a);
    if (key >= SDLK_F1 && key <= SDLK_F12) return kVirtualF1 + (key - SDLK_F1);
    return 0;
}

std::string Cp932OfInput(std::string_view utf8) {
    std::string text;
    while (!utf8.empty()) {
        const char32_t character = TakeUtf8(utf8);
        if (character < 0x20 || character == 0x7F || character > 0xFFFF) continue;
        const uint16_t unit = Cp932OfUnicode(static_cast<char16_t>(character));
        if (unit == 0) continue;
        if (unit > 0xFF) text += static_cast<char>(unit >> 8);
        text += static_cast<char>(unit & 0xFF);
    }
    return text;
}
