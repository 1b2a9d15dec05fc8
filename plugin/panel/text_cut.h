/// Texts that don't fit their place.
#pragma once

#include <windows.h>

#include <cstddef>

constexpr int kShownBytes = 256; ///< of a text that is shown in a list, its NUL among them

/// How many bytes of a text stay in front of "..." so that both are narrower than `limit`: whole characters,
/// at least one fewer than there are, 0 if nothing fits.
/// @param widths  the width of the text up to the end of each byte, pixels
size_t BytesBeforeDots(const char* text, const int* widths, int dotsWidth, int limit);

/// A text as it is shown.
struct ShownText {
    char bytes[kShownBytes + 3]; ///< with room for the dots
    int count;                   ///< without the NUL
};

/// The text, cp932, at most kShownBytes - 1 bytes of it, cut with "..." if it is wider than `limit` pixels in
/// the context's font.
ShownText CutToWidth(HDC context, const char* text, int limit);
