/// Small pictures of previews.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr int kLargestThumbnail = 64; ///< pixels each way

/// Scales a preview (128 by 128, four bytes each: unused, red, green, blue) down to `width` by `height`, each
/// 1 to kLargestThumbnail: the mean, cut to a whole number, of all pixels that fall nearest to a target
/// pixel, where the corners of both fall on each other.
/// @param out  rows of `width` pixels without gaps, top row first: blue, green, red, 0, as a 32-bit bitmap
///             has them
void ScalePreview(const uint8_t* preview, int width, int height, uint32_t* out);

/// Draws such rows into a box that is white and stays so where the picture is white.
void DrawThumbnail(HDC context, const RECT& box, const uint32_t* pixels);
