#include "workbench/text/lines.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "workbench/document/story.h"

namespace workbench {

namespace {

constexpr double kTabWidth = 36;
constexpr size_t kMostLines = 50'000; ///< of an area; bounds the work on texts that nobody could read
constexpr double kNoEnd = std::numeric_limits<double>::infinity();

/// How far a cell goes in a line that has come to `x`.
double AdvanceAt(const Cell& cell, double x) {
    return cell.tab ? kTabWidth - std::fmod(std::max(x, 0.0), kTabWidth) : cell.advance;
}

/// The end of the line that begins at cell `first`, by the room that it has: at least one cell.
size_t EndOfLine(const std::vector<Cell>& cells, size_t first, double width) {
    double x = 0;
    size_t lastBreak = first;
    for (size_t i = first; i < cells.size(); ++i) {
        const Cell& cell = cells[i];
        const double kerning = i == first ? 0 : cell.kerning;
        const double advance = kerning + AdvanceAt(cell, x);
        const bool outside = cell.blank || cell.hangs;
        if (!outside && i > first && x + advance > width + 1e-6) return lastBreak > first ? lastBreak : i;
        x += advance;
        if (cell.mustBreakAfter) return i + 1;
        if (cell.breakAfter) lastBreak = i + 1;
    }
    return cells.size();
}

/// The published rule for the order of the eye: runs of the highest levels are turned first.
void Reorder(std::vector<PlacedCell>& cells) {
    uint8_t highest = 0;
    for (const PlacedCell& each : cells) highest = std::max(highest, each.cell->level);
    for (uint8_t level = highest; level > 0; --level) {
        for (size_t i = 0; i < cells.size();) {
            size_t end = i;
            while (end < cells.size() && cells[end].cell->level >= level) ++end;
            std::reverse(cells.begin() + static_cast<std::ptrdiff_t>(i),
                         cells.begin() + static_cast<std::ptrdiff_t>(end));
            i = std::max(end, i + 1);
        }
    }
}

struct Heights {
    double ascent = 0, descent = 0, leading = 0;
    void Take(const Cell& cell) {
        ascent = std::max(ascent, cell.ascent + cell.rise);
        descent = std::max(descent, cell.descent - cell.rise);
        leading = std::max(leading, cell.leading);
    }
};

Heights HeightsOf(const std::vector<Cell>& cells, size_t first, size_t end) {
    Heights heights;
    for (size_t i = first; i < end; ++i) heights.Take(cells[i]);
    return heights;
}

/// Where the free room of a line goes.
enum class Spread { kEnd, kStart, kBoth, kGaps };

Spread SpreadOf(int32_t justification, bool lastLine) {
    static constexpr Spread kLast[] = {Spread::kEnd,   Spread::kStart, Spread::kBoth, Spread::kEnd,
                                       Spread::kStart, Spread::kBoth,  Spread::kGaps};
    if (justification < 0 || justification > 6) return Spread::kEnd;
    return justification >= 3 && !lastLine ? Spread::kGaps : kLast[justification];
}

/// Widens the blanks of a line, or all gaps if it has none, so that it fills its room.
void Justify(std::vector<PlacedCell>& cells, size_t shown, double free) {
    size_t blanks = 0;
    for (size_t i = 0; i + 1 < shown; ++i) blanks += cells[i].cell->blank;
    const size_t gaps = blanks ? blanks : shown > 0 ? shown - 1 : 0;
    if (gaps == 0 || free <= 0) return;
    for (size_t i = 0; i + 1 < shown; ++i) {
        if (!blanks || cells[i].cell->blank) cells[i].advance += free / static_cast<double>(gaps);
    }
}

/// Places the cells of a line; its heights and units are set by the caller.
void PlaceCells(Line& line, const std::vector<Cell>& cells, size_t first, size_t end, Room room,
                Spread spread) {
    double width = 0, x = 0;
    size_t shown = 0; // without the blanks at the end
    for (size_t i = first; i < end; ++i) {
        const double kerning = i == first ? 0 : cells[i].kerning;
        line.cells.push_back({&cells[i], 0, line.baseline, AdvanceAt(cells[i], x + kerning)});
        x += kerning + line.cells.back().advance;
        if (!cells[i].blank) {
            shown = i + 1 - first;
            width = x;
        }
    }
    const bool endless = room.right == kNoEnd;
    const double free = endless ? -width : room.right - room.left - width;
    if (spread == Spread::kGaps && !endless) Justify(line.cells, shown, free);
    if (spread == Spread::kGaps && !endless && free > 0) width = room.right - room.left;
    const double share = spread == Spread::kStart ? 1 : spread == Spread::kBoth ? 0.5 : 0;
    x = room.left + free * share;
    line.left = x;
    line.right = x + width;
    Reorder(line.cells);
    for (size_t i = 0; i < line.cells.size(); ++i) {
        PlacedCell& each = line.cells[i];
        if (i > 0) x += each.cell->kerning;
        each.x = x;
        x += each.advance;
    }
}

size_t ParagraphEnd(const Story& story, size_t first, size_t end) {
    const size_t found = story.text.find(u'\r', first);
    return std::min(found, end);
}

/// What both kinds of several lines share: the pen that goes down the page.
struct Setter {
    const Story& story;
    int32_t orientation;
    const LineRoom* place; ///< null: point text
    Lines result;
    double y; ///< of the last baseline, or the top of the place
    bool begun = false;

    bool SetParagraph(size_t first, size_t end, size_t next);
    bool FindRoom(const std::vector<Cell>& cells, size_t first, const ParagraphAttributes& paragraph,
                  double indent, Line* line, size_t* lineEnd, Room* room);
    bool RoomAt(double top, double bottom, double indent, const ParagraphAttributes& paragraph,
                Room* room) const;
};

bool Setter::RoomAt(double top, double bottom, double indent, const ParagraphAttributes& paragraph,
                    Room* room) const {
    if (!place->At(top, bottom, room)) return false;
    room->left += indent;
    room->right -= paragraph.endIndent;
    return room->right > room->left;
}

/// Finds the next height at which a line has room.  What stands on a line decides how high it is, and its
/// height decides what has room on it: two rounds come close enough.
bool Setter::FindRoom(const std::vector<Cell>& cells, size_t first, const ParagraphAttributes& paragraph,
                      double indent, Line* line, size_t* lineEnd, Room* room) {
    Heights heights = HeightsOf(cells, first, first + 1);
    const double step = std::max((place->bottom() - place->top()) / 1000, heights.ascent / 4);
    double skipped = 0;
    for (int round = 0; round < 2;) {
        line->baseline = y + skipped + (begun ? heights.leading : heights.ascent);
        line->top = line->baseline - heights.ascent;
        line->bottom = line->baseline + heights.descent;
        if (line->bottom > place->bottom() + 1e-6 || !(line->baseline < kNoEnd)) return false;
        if (!RoomAt(line->top, line->bottom, indent, paragraph, room)) {
            if (!(step > 0)) return false;
            skipped += step;
            continue;
        }
        *lineEnd = EndOfLine(cells, first, room->right - room->left);
        const Heights needed = HeightsOf(cells, first, *lineEnd);
        if (needed.ascent <= heights.ascent && needed.descent <= heights.descent &&
            needed.leading <= heights.leading)
            return true;
        heights = needed;
        ++round;
    }
    // The last round's height with what was found in it.
    line->baseline = y + skipped + (begun ? heights.leading : heights.ascent);
    line->top = line->baseline - heights.ascent;
    line->bottom = line->baseline + heights.descent;
    return line->bottom <= place->bottom() + 1e-6;
}

/// @param next  the first unit behind the paragraph's return
/// @return false once there is no more room
bool Setter::SetParagraph(size_t first, size_t end, size_t next) {
    std::vector<Cell> cells = ShapeParagraph(story, first, end, orientation);
    if (cells.empty()) cells.push_back(EmptyCell(story, first, orientation));
    const CharacterStyle style = StyleOf(story, first);
    const ParagraphAttributes& paragraph = *style.paragraph;
    result.paragraphs.push_back(std::move(cells));
    const std::vector<Cell>& kept = result.paragraphs.back();
    for (size_t at = 0; at < kept.size();) {
        const double indent = paragraph.startIndent + (at == 0 ? paragraph.firstLineIndent : 0);
        Line line;
        size_t lineEnd = 0;
        Room room{indent, kNoEnd};
        if (place) {
            if (result.lines.size() >= kMostLines ||
                !FindRoom(kept, at, paragraph, indent, &line, &lineEnd, &room))
                return false;
        } else {
            lineEnd = EndOfLine(kept, at, kNoEnd);
            const Heights heights = HeightsOf(kept, at, lineEnd);
            line.baseline = begun ? y + heights.leading : 0;
            line.top = line.baseline - heights.ascent;
            line.bottom = line.baseline + heights.descent;
        }
        const bool last = lineEnd == kept.size();
        line.first = kept[at].first;
        line.end = last ? next : kept[lineEnd].first;
        const bool broken = last || kept[lineEnd - 1].mustBreakAfter;
        PlaceCells(line, kept, at, lineEnd, room, SpreadOf(paragraph.justification, broken));
        y = line.baseline;
        begun = true;
        result.end = line.end;
        result.lines.push_back(std::move(line));
        at = lineEnd;
    }
    return true;
}

Lines SetAll(const Story& story, size_t first, size_t end, int32_t orientation, const LineRoom* place) {
    Setter setter{story, orientation, place, {}, place ? place->top() : 0};
    setter.result.end = first;
    while (first < end) {
        const size_t stop = ParagraphEnd(story, first, end);
        const size_t next = std::min(stop + 1, end);
        if (!setter.SetParagraph(first, stop, next)) break;
        first = next;
    }
    return std::move(setter.result);
}

} // namespace

Lines LayPointLines(const Story& story, size_t first, size_t end, int32_t orientation) {
    return SetAll(story, first, end, orientation, nullptr);
}

Lines LayAreaLines(const Story& story, size_t first, size_t end, int32_t orientation, const LineRoom& place) {
    return SetAll(story, first, end, orientation, &place);
}

Lines LaySingleLine(const Story& story, size_t first, size_t end, int32_t orientation) {
    Lines result;
    Line line;
    line.first = first;
    line.end = result.end = end;
    double x = 0;
    while (first < end) {
        const size_t stop = ParagraphEnd(story, first, end);
        result.paragraphs.push_back(ShapeParagraph(story, first, stop, orientation));
        const auto& cells = result.paragraphs.back();
        Line part;
        PlaceCells(part, cells, 0, cells.size(), {x, kNoEnd}, Spread::kEnd);
        for (const PlacedCell& each : part.cells) {
            line.cells.push_back(each);
            line.top = std::min(line.top, -each.cell->ascent - each.cell->rise);
            line.bottom = std::max(line.bottom, each.cell->descent - each.cell->rise);
            x = each.x + each.advance;
        }
        first = stop + 1;
    }
    line.right = x;
    result.lines.push_back(std::move(line));
    return result;
}

} // namespace workbench
