/// From characters to glyphs: what the letters of one paragraph are and how far each goes along its line.
///
/// Lines run along x; y grows downward, across them.  In vertical text the line is later turned a quarter
/// to the right, so glyphs that stand upright there lie on their left side here.
#pragma once

#include <pango/pango.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "workbench/document/text_data.h"

namespace workbench {

struct FontRelease {
    void operator()(PangoFont* font) const { g_object_unref(font); }
};

struct ShapedGlyph {
    PangoGlyph glyph;
    double x, y; ///< from the cell's origin
};

/// The smallest piece that a line can be made of: the glyphs of one cluster.
struct Cell {
    size_t first = 0, end = 0; ///< units of the story
    std::shared_ptr<PangoFont> font;
    std::vector<ShapedGlyph> glyphs;
    const CharacterAttributes* style = nullptr;
    double along = 1, across = 1; ///< scales of the glyphs
    double advance = 0;           ///< scaled, with tracking and spacing
    double kerning = 0;           ///< in front of the cell; not at a line's start
    double ascent = 0, descent = 0;
    double leading = 0;
    double rise = 0;   ///< of the baseline
    uint8_t level = 0; ///< of the bidirectional algorithm
    bool blank = false;
    bool tab = false;
    bool breakAfter = false; ///< a line may end behind it
    bool mustBreakAfter = false;
    bool hangs = false; ///< may stand outside at a line's end
};

/// The cells of the units from `first` up to `end`, in the order of the text, within one paragraph; the
/// return at its end is no part of it.
std::vector<Cell> ShapeParagraph(const Story& story, size_t first, size_t end, int32_t orientation);

/// What an empty line is as high as: a cell without glyphs, of the style at `at`.
Cell EmptyCell(const Story& story, size_t at, int32_t orientation);

/// The advance of a blank in a style.
double BlankAdvance(const CharacterAttributes& style);

} // namespace workbench
