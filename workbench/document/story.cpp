#include "workbench/document/story.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "workbench/document/text_layout.h"

namespace workbench {

namespace {

CharacterStyle Filled(CharacterStyle style) {
    static const auto character = std::make_shared<const CharacterAttributes>();
    static const auto paragraph = std::make_shared<const ParagraphAttributes>();
    if (!style.character) style.character = character;
    if (!style.paragraph) style.paragraph = paragraph;
    return style;
}

void Overlay(CharacterStyle& style, const CharacterStyle& with) {
    if (with.character) style.character = with.character;
    if (with.paragraph) style.paragraph = with.paragraph;
}

/// Moves the kerning from `first` on by a distance that takes it past nothing that stays.
void MoveKerning(Story& story, size_t first, std::ptrdiff_t distance) {
    std::map<size_t, int32_t> moved;
    const auto start = story.kerning.lower_bound(first);
    for (auto at = start; at != story.kerning.end(); ++at) {
        moved.emplace_hint(moved.end(), at->first + static_cast<size_t>(distance), at->second);
    }
    story.kerning.erase(start, story.kerning.end());
    story.kerning.merge(moved);
}

std::ptrdiff_t Distance(size_t position) {
    return static_cast<std::ptrdiff_t>(position);
}

} // namespace

CharacterStyle StyleOf(const Story& story, size_t at) {
    if (story.styles.empty()) return Filled(story.defaults);
    return Filled(story.styles[std::min(at, story.styles.size() - 1)]);
}

void InsertText(Story& story, size_t at, std::u16string_view text, const CharacterStyle& style) {
    if (text.empty()) return;
    at = std::min(at, story.text.size());
    CharacterStyle own = StyleOf(story, at == 0 ? 0 : at - 1);
    Overlay(own, style);
    if (!story.kerning.empty()) MoveKerning(story, at, Distance(text.size()));
    story.text.insert(at, text);
    story.styles.insert(story.styles.begin() + Distance(at), text.size(), own);
}

void RemoveText(Story& story, size_t first, size_t end) {
    end = std::min(end, story.text.size());
    if (first >= end) return;
    if (end - first == story.text.size()) story.defaults = StyleOf(story, 0);
    story.kerning.erase(story.kerning.lower_bound(first), story.kerning.lower_bound(end));
    MoveKerning(story, end, -Distance(end - first));
    story.text.erase(first, end - first);
    story.styles.erase(story.styles.begin() + Distance(first), story.styles.begin() + Distance(end));
}

void SetStyle(Story& story, size_t first, size_t end, const CharacterStyle& style) {
    if (story.text.empty()) Overlay(story.defaults, style);
    end = std::min(end, story.text.size());
    for (size_t at = first; at < end; ++at) Overlay(story.styles[at], style);
}

void SetKerning(Story& story, size_t at, int32_t kerning) {
    at = std::min(at, story.text.size());
    if (kerning == 0)
        story.kerning.erase(at);
    else
        story.kerning[at] = kerning;
}

StoryRange ShownRange(const Document& document, const Art& frame) {
    const auto* data = std::get_if<TextFrameData>(&frame.data);
    if (!data || !data->story) return {};
    const Story& story = *data->story;
    StoryRange range{0, story.text.size()};
    size_t last = 0;
    for (size_t i = 0; i < story.frames.size(); ++i) {
        if (document.Find(story.frames[i])) last = i;
    }
    for (size_t i = 0; i < last; ++i) {
        const Art* each = document.Find(story.frames[i]);
        if (!each) continue;
        TextLayout* layout = CurrentTextLayout();
        const size_t room = layout ? layout->Fitting(document, *each, range.first)
                                   : EstimateFitting(document, *each, range.first);
        const size_t end = range.first + std::min(room, story.text.size() - range.first);
        if (each == &frame) return {range.first, end};
        range.first = end;
    }
    return range;
}

HostPathStyle PaintOf(const CharacterAttributes& attributes) {
    HostPathStyle paint = DefaultPathStyle();
    paint.fillPaint = attributes.fill;
    paint.fill = attributes.fillColor;
    paint.fillOverprint = attributes.fillOverprint;
    paint.strokePaint = attributes.stroke;
    paint.stroke = attributes.strokeColor;
    paint.strokeOverprint = attributes.strokeOverprint;
    paint.lineWidth = attributes.lineWidth;
    paint.lineCap = attributes.lineCap;
    paint.lineJoin = attributes.lineJoin;
    paint.miterLimit = attributes.miterLimit;
    const size_t count = std::min(attributes.dashes.size(), std::size(paint.dash.lengths));
    paint.dash.count = static_cast<int32_t>(count);
    paint.dash.offset = attributes.dashOffset;
    std::copy_n(attributes.dashes.begin(), count, paint.dash.lengths);
    return paint;
}

void SetPaint(CharacterAttributes& attributes, const HostPathStyle& paint) {
    attributes.fill = paint.fillPaint != 0;
    attributes.fillColor = paint.fill;
    attributes.fillOverprint = paint.fillOverprint != 0;
    attributes.stroke = paint.strokePaint != 0;
    attributes.strokeColor = paint.stroke;
    attributes.strokeOverprint = paint.strokeOverprint != 0;
    attributes.lineWidth = paint.lineWidth;
    attributes.lineCap = paint.lineCap;
    attributes.lineJoin = paint.lineJoin;
    attributes.miterLimit = paint.miterLimit;
    const auto count = std::clamp<size_t>(static_cast<size_t>(std::max(paint.dash.count, 0)), 0,
                                          std::size(paint.dash.lengths));
    attributes.dashOffset = paint.dash.offset;
    attributes.dashes.assign(paint.dash.lengths, paint.dash.lengths + count);
}

} // namespace workbench
