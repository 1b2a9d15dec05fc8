/// Code page 932 as Windows has it, unit by unit.
///
/// A unit is a lead byte (0x81 to 0x9F, 0xE0 to 0xFC) with the byte behind it, written as one number, or a
/// single byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

inline bool IsCp932LeadByte(unsigned char byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

/// Bytes of the unit that `text` begins with: 2 for a lead byte with a byte behind it, else 1; 0 at the end.
inline size_t Cp932UnitBytes(std::string_view text) {
    if (text.empty()) return 0;
    return IsCp932LeadByte(static_cast<unsigned char>(text[0])) && text.size() > 1 ? 2 : 1;
}

/// The unit's number: the byte, or lead byte x 256 + second byte.
inline uint16_t Cp932UnitCode(std::string_view unit) {
    const auto first = static_cast<unsigned char>(unit[0]);
    if (unit.size() == 1) return first;
    return static_cast<uint16_t>(first << 8 | static_cast<unsigned char>(unit[1]));
}

/// The character of a unit.  0 if it is undefined; the NUL byte too gives 0.  Windows takes the bytes 0xA0
/// and 0xFD to 0xFF, to U+F8F0 to U+F8F3, only if it isn't asked to refuse invalid characters.
char16_t UnicodeOfCp932(uint16_t unit);

/// The unit that a character converts to and that converts back to it; 0 if there is none.  Of duplicate
/// units it is the one that Windows prefers.
uint16_t Cp932OfUnicode(char16_t character);

/// The unit of a similar character, for one that has no unit of its own (U+00E9 gives `e`); 0 if there is
/// none.
uint16_t Cp932BestFit(char16_t character);
