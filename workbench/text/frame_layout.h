/// Where the letters of a text frame lie.
///
/// Three spaces follow each other: that of the lines (see lines.h), text space (y up, before the frame's
/// matrix) and art coordinates.  The frame's matrix maps all of text space, so an area or a path is taken
/// back into text space first and the letters are stretched and turned as the matrix says.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "workbench/document/document.h"
#include "workbench/document/text_layout.h"

struct _PangoFont; // whose library's headers define macros that the platform's define too

namespace workbench {

struct Letter {
    std::shared_ptr<_PangoFont> font;
    uint32_t glyph;   ///< as Pango numbers it
    HostMatrix toArt; ///< of an outline with an em of 1, y up
    const CharacterAttributes* style;
    size_t unit;
};

/// A cluster of letters as a program that sets text by positions wants it.
struct LetterPlace {
    size_t first, end; ///< units of the story
    HostPoint origin;  ///< on the baseline, in text space
    double advance;    ///< along the line, in text space
};

struct LinePlace {
    size_t first, end;     ///< units
    HostPoint start, stop; ///< of what is seen, on the baseline, in text space
    HostRect box;          ///< in text space
};

struct FrameLayout {
    std::vector<Letter> letters; ///< in the order of their units but for right-to-left text
    std::vector<LetterPlace> places;
    std::vector<LinePlace> lines; ///< of text on a path: none
    HostRect box{};               ///< of the lines, in art coordinates; see hasBox
    bool hasBox = false;
    double start = 0;          ///< of text on a path: where on it the text may begin, in text space
    size_t first = 0, end = 0; ///< the units that are shown
};

/// @param first, end  units of the frame's story
FrameLayout LayFrame(const Document& document, const Art& frame, size_t first, size_t end);

/// The same of what the frame shows.
FrameLayout LayFrame(const Document& document, const Art& frame);

/// The document's layout by Pango, with TextFonts.
class PangoTextLayout : public TextLayout {
public:
    bool LineBounds(const Document& document, const Art& frame, HostRect* bounds) override;
    size_t Fitting(const Document& document, const Art& frame, size_t first) override;
};

/// From now on all documents of this process measure text by Pango.
void UsePangoTextLayout();

} // namespace workbench
