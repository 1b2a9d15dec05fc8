/// From cells to lines, in the space of the lines: x along them, y growing downward across them.
#pragma once

#include <functional>
#include <vector>

#include "workbench/text/shaping.h"

namespace workbench {

/// Where on a line there is room.
struct Room {
    double left = 0, right = 0;
};

/// A place for lines.
class LineRoom {
public:
    virtual ~LineRoom() = default;

    /// The room of a line between two heights; false if there is none.
    virtual bool At(double top, double bottom, Room* room) const = 0;
    virtual double top() const = 0, bottom() const = 0;
};

struct PlacedCell {
    const Cell* cell;
    double x, y;    ///< of its origin on the baseline, the rise left out
    double advance; ///< with what justification added
};

struct Line {
    size_t first = 0, end = 0; ///< units, a return or blanks at its end included
    double left = 0, right = 0, top = 0, baseline = 0, bottom = 0;
    std::vector<PlacedCell> cells; ///< in the order of the eye
};

struct Lines {
    std::vector<Line> lines;
    size_t end = 0;                            ///< the first unit that had no room
    std::vector<std::vector<Cell>> paragraphs; ///< what the placed cells point to
};

/// Lines of a place whose lines have no end: point text.  The first baseline is at y = 0, and x = 0 is where
/// lines begin, end or have their middle.
Lines LayPointLines(const Story& story, size_t first, size_t end, int32_t orientation);

/// Lines within a place, from its top to its bottom.
Lines LayAreaLines(const Story& story, size_t first, size_t end, int32_t orientation, const LineRoom& place);

/// All of the text on one line from x = 0, returns left out.
Lines LaySingleLine(const Story& story, size_t first, size_t end, int32_t orientation);

} // namespace workbench
