#include "plugin/capture/note_text.h"

#include <charconv>

void AppendReal(std::string& text, double value) {
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
    text.append(digits, end.ptr);
}
