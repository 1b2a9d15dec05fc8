/// Contact sheets: small pictures in rows, each with its name below, under headings.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/render/page_files.h"

namespace workbench {

struct SheetCell {
    std::vector<uint8_t> pixels; ///< 128 x 128, 4 bytes a pixel: unused, red, green, blue; empty: no picture
    std::string name;            ///< UTF-8
};

struct SheetSection {
    std::string heading; ///< UTF-8; empty: none
    std::vector<SheetCell> cells;
};

/// The sections as pictures of at most `rowsPerSheet` rows of cells.
/// @param cellSize  pixels of a picture's side: 32, 64 or 128
std::vector<PagePicture> DrawContactSheets(const std::vector<SheetSection>& sections, int cellSize,
                                           int rowsPerSheet = 100);

} // namespace workbench
