/// UTF-8, one character at a time.
#pragma once

#include <string>
#include <string_view>

constexpr char32_t kInvalidUtf8 = 0xFFFFFFFF;
constexpr char32_t kReplacementCharacter = 0xFFFD;

/// Takes the first character off `rest`, which must not be empty.  Overlong forms, surrogates and what lies
/// beyond U+10FFFF are invalid.  Of an invalid sequence it takes the bytes up to the one that shows it, but
/// not a byte that could begin a character.
char32_t TakeUtf8(std::string_view& rest);

/// Appends a character.
void AppendUtf8(std::string& text, char32_t character);
