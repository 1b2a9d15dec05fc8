#include "workbench/svg/path_data.h"

#include "workbench/svg/svg_values.h"

namespace workbench {
namespace {

class PathParser {
public:
    PathParser(std::string_view text, PathBuilder& builder) : cursor_(text), builder_(builder) {}

    /// False at a fault.
    bool Parse() {
        cursor_.SkipBlanks();
        if (cursor_.AtEnd() || cursor_.TakeWord("none")) return true;
        if (cursor_.Peek() != 'M' && cursor_.Peek() != 'm') return false;
        while (!cursor_.AtEnd()) {
            const char command = *cursor_.at++;
            if (!Command(command)) return false;
            if (builder_.overflow()) return true;
            cursor_.SkipBlanks();
        }
        return true;
    }

private:
    /// All arguments of one command letter; a repeated moveto draws lines.
    bool Command(char letter) {
        relative_ = letter >= 'a';
        char command = relative_ ? static_cast<char>(letter - 32) : letter;
        if (command == 'Z') {
            builder_.Close();
            last_ = 'Z';
            return true;
        }
        if (std::string_view("MLHVCSQTA").find(command) == std::string_view::npos) return false;
        bool first = true;
        for (;;) {
            first ? cursor_.SkipBlanks() : cursor_.SkipSeparators();
            const char next = cursor_.Peek();
            const bool number = (next >= '0' && next <= '9') || next == '.' || next == '-' || next == '+';
            if (!first && !number) return true;
            if (!Step(command)) return false;
            last_ = command;
            if (builder_.overflow()) return true;
            if (command == 'M') command = 'L';
            first = false;
        }
    }

    bool Step(char command) {
        const HostPoint from = builder_.current();
        HostPoint to = from, first{}, second{};
        switch (command) {
            case 'M':
                if (!Point(from, &to)) return false;
                builder_.MoveTo(to);
                return true;
            case 'L':
                if (!Point(from, &to)) return false;
                builder_.LineTo(to);
                return true;
            case 'H':
                if (!Coordinate(from.x, &to.x)) return false;
                builder_.LineTo(to);
                return true;
            case 'V':
                if (!Coordinate(from.y, &to.y)) return false;
                builder_.LineTo(to);
                return true;
            case 'C':
                if (!Point(from, &first) || !Next() || !Point(from, &second) || !Next() || !Point(from, &to))
                    return false;
                return Curve(first, second, to);
            case 'S':
                first = last_ == 'C' || last_ == 'S' ? Mirrored(from) : from;
                if (!Point(from, &second) || !Next() || !Point(from, &to)) return false;
                return Curve(first, second, to);
            case 'Q':
                if (!Point(from, &first) || !Next() || !Point(from, &to)) return false;
                return Quadratic(from, first, to);
            case 'T':
                first = last_ == 'Q' || last_ == 'T' ? Mirrored(from) : from;
                if (!Point(from, &to)) return false;
                return Quadratic(from, first, to);
            default:
                return Arc(from);
        }
    }

    bool Next() {
        cursor_.SkipSeparators();
        return true;
    }

    bool Coordinate(double from, double* value) {
        if (!cursor_.Number(value)) return false;
        if (relative_) *value += from;
        return true;
    }

    bool Point(HostPoint from, HostPoint* point) {
        return Coordinate(from.x, &point->x) && Next() && Coordinate(from.y, &point->y);
    }

    HostPoint Mirrored(HostPoint from) const { return {2 * from.x - handle_.x, 2 * from.y - handle_.y}; }

    bool Curve(HostPoint first, HostPoint second, HostPoint to) {
        handle_ = second;
        builder_.CurveTo(first, second, to);
        return true;
    }

    bool Quadratic(HostPoint from, HostPoint control, HostPoint to) {
        handle_ = control;
        const auto between = [&](HostPoint end) {
            return HostPoint{end.x + (control.x - end.x) * 2 / 3, end.y + (control.y - end.y) * 2 / 3};
        };
        builder_.CurveTo(between(from), between(to), to);
        return true;
    }

    bool Arc(HostPoint from) {
        double radiusX = 0, radiusY = 0, degrees = 0;
        bool large = false, sweep = false;
        HostPoint to = from;
        const bool good = cursor_.Number(&radiusX) && Next() && cursor_.Number(&radiusY) && Next() &&
                          cursor_.Number(&degrees) && Next() && cursor_.Flag(&large) && Next() &&
                          cursor_.Flag(&sweep) && Next() && Point(from, &to);
        if (good) builder_.ArcTo(radiusX, radiusY, degrees, large, sweep, to);
        return good;
    }

    TextCursor cursor_;
    PathBuilder& builder_;
    HostPoint handle_{0, 0}; ///< of the last curve, for the smooth commands
    char last_ = 0;
    bool relative_ = false;
};

} // namespace

Subpaths ParsePathData(std::string_view text, size_t mostSegments, bool* damaged, bool* overflow) {
    PathBuilder builder(mostSegments);
    *damaged = !PathParser(text, builder).Parse();
    *overflow = builder.overflow();
    return builder.Finish();
}

} // namespace workbench
