/// Texts that don't fit their place.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

/// How many bytes of a text stay in front of "..." so that both are narrower than `limit`: whole characters,
/// at least one fewer than there are, 0 if nothing fits.
/// @param widths  the width of the text up to the end of each byte, pixels
size_t BytesBeforeDots(const char* text, const int* widths, int dotsWidth, int limit);

/// The text, cp932, cut with "..." if it is wider than `limit` pixels in the context's font.
std::string CutToWidth(HDC context, const char* text, int limit);
