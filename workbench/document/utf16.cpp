#include "workbench/document/utf16.h"

#include <cstdint>

namespace workbench {

namespace {

constexpr uint32_t kLost = 0xFFFD;

/// Takes one character, or one byte that begins none.
uint32_t TakeCharacter(std::string_view text, size_t* at) {
    const auto byte = [&](size_t index) -> uint32_t { return static_cast<uint8_t>(text[index]); };
    const uint32_t first = byte((*at)++);
    if (first < 0x80) return first;
    const int more = first >= 0xF0 && first < 0xF5 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
    if (more == 0 || first >= 0xF5 || text.size() - *at < static_cast<size_t>(more)) return kLost;
    uint32_t code = first & (0x3Fu >> more);
    for (int i = 0; i < more; ++i) {
        const uint32_t next = byte(*at + static_cast<size_t>(i));
        if ((next & 0xC0) != 0x80) return kLost;
        code = code << 6 | (next & 0x3F);
    }
    static constexpr uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (code < kLeast[more] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return kLost;
    *at += static_cast<size_t>(more);
    return code;
}

void AppendUtf8(std::string* text, uint32_t code) {
    const auto add = [&](uint32_t byte) { *text += static_cast<char>(byte); };
    if (code < 0x80) return add(code);
    if (code < 0x800) {
        add(0xC0 | code >> 6);
    } else if (code < 0x10000) {
        add(0xE0 | code >> 12);
        add(0x80 | (code >> 6 & 0x3F));
    } else {
        add(0xF0 | code >> 18);
        add(0x80 | (code >> 12 & 0x3F));
        add(0x80 | (code >> 6 & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

} // namespace

std::u16string Utf16Of(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        const uint32_t code = TakeCharacter(text, &at);
        if (code >= 0x10000) {
            units += static_cast<char16_t>(0xD7C0 + (code >> 10));
            units += static_cast<char16_t>(0xDC00 | (code & 0x3FF));
        } else {
            units += static_cast<char16_t>(code);
        }
    }
    return units;
}

std::string Utf8Of(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        const uint32_t unit = text[at];
        const bool pair = unit >= 0xD800 && unit < 0xDC00 && at + 1 < text.size() && text[at + 1] >= 0xDC00 &&
                          text[at + 1] < 0xE000;
        if (pair)
            AppendUtf8(&bytes, ((unit - 0xD7C0) << 10 | (text[++at] & 0x3FFu)));
        else
            AppendUtf8(&bytes, unit >= 0xD800 && unit < 0xE000 ? kLost : unit);
    }
    return bytes;
}

} // namespace workbench
