#include "workbench/document/text_layout.h"

#include <algorithm>
#include <cmath>

#include "workbench/document/story.h"

namespace workbench {

namespace {

TextLayout* currentLayout = nullptr;

/// Along the line, horizontal scale and tracking included.
double AdvanceOf(char16_t unit, const CharacterAttributes& style) {
    if (unit == u'\r') return 0;
    const double em = unit < 0x370 ? 0.5 : 1.0;
    return style.fontSize * (em * style.horizontalScale + style.tracking / 1000.0);
}

double LeadingOf(const CharacterStyle& style) {
    return style.character->autoLeading ? style.character->fontSize * style.paragraph->autoLeading
                                        : style.character->leading;
}

/// Corners of an upright box of text space as art sees them.
void AddMapped(const HostMatrix& m, double x, double y, HostRect* box, bool* any) {
    const HostPoint p{m.a * x + m.c * y + m.tx, m.b * x + m.d * y + m.ty};
    if (!*any) *box = {p.x, p.y, p.x, p.y};
    *any = true;
    *box = {std::min(box->left, p.x), std::max(box->top, p.y), std::max(box->right, p.x),
            std::min(box->bottom, p.y)};
}

} // namespace

TextLayout* CurrentTextLayout() {
    return currentLayout;
}

void UseTextLayout(TextLayout* layout) {
    currentLayout = layout;
}

bool EstimateLineBounds(const Document& document, const Art& frame, HostRect* bounds) {
    const auto* data = std::get_if<TextFrameData>(&frame.data);
    const StoryRange range = ShownRange(document, frame);
    // The box of text on a path or in an area is the path's, which the document measures by itself.
    if (!data || range.first == range.end || data->frameKind != kPointText) return false;
    const Story& story = *data->story;
    double longest = 0, line = 0, depth = 0, first = 0;
    for (size_t at = range.first; at < range.end; ++at) {
        const CharacterStyle style = StyleOf(story, at);
        line += AdvanceOf(story.text[at], *style.character);
        longest = std::max(longest, line);
        first = std::max(first, style.character->fontSize);
        if (story.text[at] == u'\r') {
            depth += LeadingOf(style);
            line = 0;
        }
    }
    HostRect box{0, first * 0.88, longest, -depth - first * 0.12};
    switch (StyleOf(story, range.first).paragraph->justification) {
        case 1:
        case 4:
            box.left = -longest;
            break;
        case 2:
        case 5:
            box.left = -longest / 2;
            break;
        default:
            break;
    }
    box.right = box.left + longest;
    if (data->orientation == kVerticalText) box = {-depth - first / 2, -box.left, first / 2, -box.right};
    bool any = false;
    for (const double x : {box.left, box.right}) {
        for (const double y : {box.top, box.bottom}) AddMapped(data->matrix, x, y, bounds, &any);
    }
    return true;
}

size_t EstimateFitting(const Document& document, const Art& frame, size_t first) {
    const auto* data = std::get_if<TextFrameData>(&frame.data);
    const Art* path = data ? document.Find(data->path) : nullptr;
    HostRect area;
    if (!path || !document.Bounds(*path, &area)) return 0;
    const double scale =
        std::sqrt(std::abs(data->matrix.a * data->matrix.d - data->matrix.b * data->matrix.c));
    const double width = area.right - area.left, height = area.top - area.bottom;
    // What the path's bounds hold, as if lines could be cut anywhere.
    double room = data->frameKind == kPathText ? width + height : width * height;
    const Story& story = *data->story;
    size_t at = first;
    for (; at < story.text.size(); ++at) {
        const CharacterStyle style = StyleOf(story, at);
        const double along = AdvanceOf(story.text[at], *style.character) * scale;
        room -= data->frameKind == kPathText ? along : along * LeadingOf(style) * scale;
        if (!(room >= 0)) break;
    }
    return at - first;
}

} // namespace workbench
