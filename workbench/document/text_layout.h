/// What tells the document where letters come to lie.  Without one the document estimates, so that it needs
/// no font library.
#pragma once

#include "workbench/document/document.h"

namespace workbench {

class TextLayout {
public:
    virtual ~TextLayout() = default;

    /// The box of the lines that a frame shows, in art coordinates: the full height of each line, also of
    /// blanks.  False, and `bounds` untouched, if the frame shows no text or has no place for any.
    virtual bool LineBounds(const Document& document, const Art& frame, HostRect* bounds) = 0;

    /// How many units of the frame's story, from `first` on, have room in it; 0 if there is none for a line.
    virtual size_t Fitting(const Document& document, const Art& frame, size_t first) = 0;
};

/// The one in use by all documents of this process; null: none.  It is not owned.
TextLayout* CurrentTextLayout();
void UseTextLayout(TextLayout* layout);

/// By the letters' sizes alone: half an em for each letter of the Latin page, an em for all others.
bool EstimateLineBounds(const Document& document, const Art& frame, HostRect* bounds);
size_t EstimateFitting(const Document& document, const Art& frame, size_t first);

} // namespace workbench
