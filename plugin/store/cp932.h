/// Texts in cp932, character by character.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// A byte that begins a double-byte character.
constexpr bool IsLeadByte(uint8_t byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

/// Bytes of the character at `text`: 2 for a lead byte with any byte behind it, 1 for any other and for a
/// lead byte that dangles in front of the NUL, 0 at the NUL.
inline size_t CharacterBytes(const char* text) {
    if (text[0] == '\0') return 0;
    return IsLeadByte(static_cast<uint8_t>(text[0])) && text[1] != '\0' ? 2 : 1;
}

/// The first place where `part`, single-byte characters alone, stands in `text`; null if nowhere.  A
/// double-byte character's second byte is part of no match.
const char* FindPart(const char* text, const char* part);

inline bool SameText(const char* a, const char* b) {
    return std::strcmp(a, b) == 0;
}

/// Copies a text to `out` of `capacity` bytes, cut to fit with a NUL.  The cut is made between bytes, also in
/// the middle of a double-byte character.
void CopyText(char* out, size_t capacity, const char* text);

/// The longest start of `text` of at most `bytes` bytes that doesn't end within a character.
std::string_view CutWhole(std::string_view text, size_t bytes);
