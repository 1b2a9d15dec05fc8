#include "workbench/text/frame_layout.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "workbench/document/matrix.h"
#include "workbench/document/story.h"
#include "workbench/text/frame_path.h"
#include "workbench/text/lines.h"

namespace workbench {

namespace {

std::optional<HostMatrix> Inverted(const HostMatrix& m) {
    const double determinant = m.a * m.d - m.b * m.c;
    if (determinant == 0 || !std::isfinite(1 / determinant)) return std::nullopt;
    const HostMatrix linear{
        m.d / determinant, -m.b / determinant, -m.c / determinant, m.a / determinant, 0, 0};
    const HostPoint origin = Apply(linear, {m.tx, m.ty});
    return HostMatrix{linear.a, linear.b, linear.c, linear.d, -origin.x, -origin.y};
}

/// From the space of the lines to text space: a mirror, with a quarter's turn of vertical text.
HostMatrix TextFromLines(int32_t orientation) {
    if (orientation == kVerticalText) return {0, -1, -1, 0, 0, 0};
    return {1, 0, 0, -1, 0, 0};
}

class LetterSetter {
public:
    LetterSetter(const TextFrameData& frame, FrameLayout* layout)
        : frame_(frame), layout_(layout), textFromLines_(TextFromLines(frame.orientation)) {}

    /// @param turn  from where the cell lies alone, at (0, 0), to the space of the lines
    void AddCell(const Cell& cell, const HostMatrix& turn) {
        const HostMatrix toArt = Concat(frame_.matrix, Concat(textFromLines_, turn));
        for (const ShapedGlyph& glyph : cell.glyphs) {
            // Outlines have y up, lines have it down.
            const HostMatrix outline{cell.along, 0, 0, -cell.across, glyph.x, glyph.y - cell.rise};
            layout_->letters.push_back(
                {cell.font, glyph.glyph, Concat(toArt, outline), cell.style, cell.first});
        }
    }

    void AddPlace(const PlacedCell& placed) {
        layout_->places.push_back({placed.cell->first, placed.cell->end,
                                   Apply(textFromLines_, {placed.x, placed.y}), placed.advance});
    }

    void AddLine(const Line& line) {
        const HostPoint a = Apply(textFromLines_, {line.left, line.top});
        const HostPoint b = Apply(textFromLines_, {line.right, line.bottom});
        const HostRect box{std::min(a.x, b.x), std::max(a.y, b.y), std::max(a.x, b.x), std::min(a.y, b.y)};
        layout_->lines.push_back({line.first, line.end, Apply(textFromLines_, {line.left, line.baseline}),
                                  Apply(textFromLines_, {line.right, line.baseline}), box});
        AddBox(box, frame_.matrix);
    }

    void AddBox(const HostRect& box, const HostMatrix& matrix) {
        for (const HostPoint corner : {HostPoint{box.left, box.top},
                                       {box.right, box.top},
                                       {box.left, box.bottom},
                                       {box.right, box.bottom}}) {
            const HostPoint p = Apply(matrix, corner);
            HostRect& sum = layout_->box;
            if (!layout_->hasBox) sum = {p.x, p.y, p.x, p.y};
            layout_->hasBox = true;
            sum = {std::min(sum.left, p.x), std::max(sum.top, p.y), std::max(sum.right, p.x),
                   std::min(sum.bottom, p.y)};
        }
    }

    void AddLines(const Lines& lines) {
        for (const Line& line : lines.lines) {
            AddLine(line);
            for (const PlacedCell& placed : line.cells) {
                AddPlace(placed);
                AddCell(*placed.cell, {1, 0, 0, 1, placed.x, placed.y});
            }
        }
        layout_->end = lines.end;
    }

    /// Each cell's middle lies on the path, and its baseline along the path there.
    void AddLineOnWay(const Line& line, const Way& way, const ParagraphAttributes& paragraph) {
        const double start = way.DistanceAt(frame_.pathStart) + paragraph.startIndent;
        const double free = way.length() - start - paragraph.endIndent - line.right;
        const int32_t justification = paragraph.justification;
        const double share = justification == 1 || justification == 4   ? 1
                             : justification == 2 || justification == 5 ? 0.5
                                                                        : 0;
        layout_->end = line.end;
        layout_->start = way.DistanceAt(frame_.pathStart);
        for (const PlacedCell& placed : line.cells) {
            const double x = start + free * share + placed.x;
            const double middle = x + placed.advance / 2;
            if (middle < 0) continue;
            if (middle > way.length()) {
                layout_->end = std::min(layout_->end, placed.cell->first);
                continue;
            }
            HostPoint point, direction;
            way.At(middle, &point, &direction);
            const HostMatrix turn{direction.x,
                                  direction.y,
                                  -direction.y,
                                  direction.x,
                                  point.x - direction.x * placed.advance / 2,
                                  point.y - direction.y * placed.advance / 2};
            AddCell(*placed.cell, turn);
            layout_->places.push_back({placed.cell->first, placed.cell->end,
                                       Apply(textFromLines_, {turn.tx, turn.ty}), placed.advance});
            AddBox({0, -line.top, placed.advance, -line.bottom},
                   Concat(frame_.matrix, Concat(textFromLines_, Concat(turn, {1, 0, 0, -1, 0, 0}))));
        }
    }

private:
    const TextFrameData& frame_;
    FrameLayout* layout_;
    HostMatrix textFromLines_;
};

bool IsFinite(const HostMatrix& m) {
    return std::ranges::all_of(std::initializer_list<double>{m.a, m.b, m.c, m.d, m.tx, m.ty},
                               [](double value) { return std::isfinite(value); });
}

} // namespace

FrameLayout LayFrame(const Document& document, const Art& art, size_t first, size_t end) {
    FrameLayout layout;
    layout.first = layout.end = first;
    const auto* frame = std::get_if<TextFrameData>(&art.data);
    if (!frame || !frame->story || first >= end || !IsFinite(frame->matrix)) return layout;
    const Story& story = *frame->story;
    LetterSetter setter(*frame, &layout);
    if (frame->frameKind == kPointText) {
        setter.AddLines(LayPointLines(story, first, end, frame->orientation));
        return layout;
    }
    const Art* path = document.Find(frame->path);
    const std::optional<HostMatrix> fromArt = Inverted(frame->matrix);
    const std::optional<HostMatrix> linesFromText = Inverted(TextFromLines(frame->orientation));
    if (!path || !path->path() || !fromArt || !linesFromText) return layout;
    const HostMatrix toLines = Concat(*linesFromText, *fromArt);
    if (frame->frameKind == kAreaText) {
        const AreaRoom room(CornersOf(*path->path(), toLines));
        setter.AddLines(LayAreaLines(story, first, end, frame->orientation, room));
    } else {
        const Way way(*path->path(), toLines);
        const Lines lines = LaySingleLine(story, first, end, frame->orientation);
        const CharacterStyle style = StyleOf(story, first);
        setter.AddLineOnWay(lines.lines.front(), way, *style.paragraph);
    }
    return layout;
}

FrameLayout LayFrame(const Document& document, const Art& frame) {
    const StoryRange range = ShownRange(document, frame);
    return LayFrame(document, frame, range.first, range.end);
}

bool PangoTextLayout::LineBounds(const Document& document, const Art& frame, HostRect* bounds) {
    const FrameLayout layout = LayFrame(document, frame);
    if (!layout.hasBox) return false;
    *bounds = layout.box;
    return true;
}

size_t PangoTextLayout::Fitting(const Document& document, const Art& frame, size_t first) {
    const auto* data = std::get_if<TextFrameData>(&frame.data);
    if (!data || !data->story) return 0;
    return LayFrame(document, frame, first, data->story->text.size()).end - first;
}

void UsePangoTextLayout() {
    static PangoTextLayout layout;
    UseTextLayout(&layout);
}

} // namespace workbench
