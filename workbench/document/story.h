/// Changes to a story that keep text, styles and kerning in step, and what a frame shows of one.
///
/// Positions count UTF-16 units and are cut to the text's end.  Text that is appended piece by piece costs in
/// step with its length.
#pragma once

#include <cstddef>
#include <string_view>

#include "workbench/document/document.h"

namespace workbench {

struct StoryRange {
    size_t first = 0, end = 0;
    bool operator==(const StoryRange&) const = default;
};

/// The style of the unit at `at`; at the text's end, that of the last unit; of an empty story, the defaults.
/// Both pointers are set.
CharacterStyle StyleOf(const Story& story, size_t at);

/// New units have `style` where it has a pointer, else the style of the unit before them, or at the text's
/// start of the unit behind them, or of an empty story the defaults.  Kerning from `at` on moves along.
void InsertText(Story& story, size_t at, std::u16string_view text, const CharacterStyle& style = {});

/// Kerning within the range goes with it; that at `end` and behind it moves along.  A story that is emptied
/// has the style of what was its start as its defaults.
void RemoveText(Story& story, size_t first, size_t end);

/// Sets what `style` has a pointer for.  An empty story takes it as its defaults.
void SetStyle(Story& story, size_t first, size_t end, const CharacterStyle& style);

/// 0 takes the kerning away.
void SetKerning(Story& story, size_t at, int32_t kerning);

/// What a frame shows of its story: a lone frame all of it; of a chain each frame what has room in it (by
/// CurrentTextLayout, else by a plain estimate), and the last one the rest.
StoryRange ShownRange(const Document& document, const Art& frame);

/// The paint of letters as that of paths, and back; clip, rule and resolution are those of no path.
HostPathStyle PaintOf(const CharacterAttributes& attributes);
void SetPaint(CharacterAttributes& attributes, const HostPathStyle& paint);

} // namespace workbench
