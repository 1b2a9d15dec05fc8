/// Keys and letters of the machine in Windows' terms.
#pragma once

#include <SDL_keycode.h>

#include <string>
#include <string_view>

/// The virtual key of a key; 0 for one that no program here knows.
int VirtualKeyOf(SDL_Keycode key);

/// What of a text cp932 has, without control characters.
std::string Cp932OfInput(std::string_view utf8);
