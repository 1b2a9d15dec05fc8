/// Our own words for text: all that a story has, so that what was written reads back as the same frames.
///
/// A text element has `vlq:frame`: the mark of what the element says in SVG's words, then frame kind,
/// orientation, the matrix and where on its path the text begins; `vlq:story`: the id of its story and its
/// number in the chain, from 0; and `vlq:text-path`: the id of the frame's own path, in art coordinates.
///
/// A story is an element `vlq:story` with `frames`, how many show it, and `kerning`, pairs of position and
/// value.  Its members are `vlq:run`, one for each stretch of text with the same attributes, with the paint
/// attributes of paths and:
///
/// | attribute | |
/// |---|---|
/// | text | `\uXXXX` for signs that XML can't hold, for returns and for the backslash |
/// | font | stable name |
/// | character | size, baseline shift, leading, auto leading, tracking, horizontal and vertical scale,
/// Japanese alternate | | paragraph | first line, start and end indent, justification, auto hyphenation,
/// characters before and after, limit, word spacing (3), letter spacing (3), hanging roman, auto leading,
/// repeated characters, bunri-kinshi, burasagari | | kinsoku | name of the set, escaped as the text; absent:
/// none |
///
/// The first run has no text: its attributes are those of a story without any.
#pragma once

#include "workbench/svg/read_context.h"
#include "workbench/svg/svg_text.h"

namespace workbench {

/// Reads the frame of a text element by our own words, if it has some and SVG's own words still say the same,
/// for this frame and for all others of its chain.
/// @param own  set if that is so; the answer is null then only once the bounds are reached
Art* ReadOwnText(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container,
                 bool* own);

/// Defines the story of a frame, once, and gives the attributes that tie the frame to it.
/// @param words  the text element as SVG's own words have it, whole
std::string OwnTextAttributes(WriteContext& context, const TextFrameData& frame, ArtHandle handle,
                              const std::string& words);

/// What the paint of letters needs defined.
template <typename Visitor>
void ForEachTextColor(const Story& story, Visitor&& visit) {
    const CharacterAttributes* last = nullptr;
    const auto take = [&](const CharacterStyle& style) {
        if (!style.character || style.character.get() == last) return;
        last = style.character.get();
        visit(last->fillColor);
        visit(last->strokeColor);
    };
    take(story.defaults);
    for (const CharacterStyle& style : story.styles) take(style);
}

} // namespace workbench
