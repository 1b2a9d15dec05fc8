/// A document as a PNG or PDF file, and as pixels to compare.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/document/document.h"

namespace workbench {

/// A picture of the page on white paper: 4 bytes a pixel, one unused, red, green, blue, rows from the top.
struct PagePicture {
    int width = 0, height = 0;
    std::vector<uint8_t> pixels;
};

/// `scale` pixels for each point; pages that would pass `largestSide` pixels are drawn smaller.  An empty
/// picture if the page has no extent.
PagePicture DrawPage(const Document& document, double scale, int largestSide = 8192);

/// The file's bytes; empty, and a text in *error, if the page can't be drawn.
std::vector<uint8_t> PngOfPage(const Document& document, double scale, std::string* error);
std::vector<uint8_t> PdfOfPage(const Document& document, std::string* error);

/// A PNG of a picture.
std::vector<uint8_t> PngOfPicture(const PagePicture& picture, std::string* error);

} // namespace workbench
