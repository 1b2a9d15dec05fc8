#include "tests/roundtrip/compare_documents.h"

#include <cmath>
#include <sstream>

using workbench::Art;
using workbench::Document;

namespace {

constexpr double kStep = 1.0 / 65536;        // of a stored real
constexpr double kNarrowing = 1.0 / 8388608; // relative error of a 32-bit float
constexpr double kPercentStep = 0.01;        // a group's opacity is cut to percents
constexpr double kTintStep = 1.0 / 200;
constexpr double kCustomStep = 0.00101; // a custom colour's value is cut to a tenth of a percent
constexpr double kLabStep = 0.101;      // a Lab value to a tenth

/// How far art was moved between the two documents.  A pattern's art is stored relative to its own corner,
/// and comes back there; its gradients move with the placement all the same.
struct Moves {
    HostPoint points{0, 0};
    HostPoint gradients{0, 0};
    HostPoint origin{0, 0}; ///< what coordinates were stored relative to
};

class Comparison {
public:
    Comparison(Document& original, Document& rebuilt, const HostPoint& placed)
        : original_(original), rebuilt_(rebuilt), placed_(placed) {}

    void Members(const std::vector<const Art*>& a, const std::vector<const Art*>& b, const std::string& where,
                 const Moves& moves) {
        Equal(a.size(), b.size(), where + " members");
        for (size_t i = 0; i < a.size() && i < b.size(); ++i)
            OneArt(*a[i], *b[i], where + "/" + std::to_string(i), moves);
    }

    static std::vector<const Art*> MembersOf(const Art& art) {
        std::vector<const Art*> members;
        for (const Art* member = art.firstChild; member; member = member->below) members.push_back(member);
        return members;
    }

    std::vector<std::string> differences;

private:
    template <typename Value>
    void Equal(const Value& a, const Value& b, const std::string& what) {
        if (a == b) return;
        std::ostringstream line;
        line.precision(17);
        line << what << ": " << a << " became " << b;
        differences.push_back(line.str());
    }

    void Near(double a, double b, double tolerance, const std::string& what) {
        if (!(std::fabs(a - b) <= tolerance)) Equal(a, b, what);
    }

    void Real(double a, double b, const std::string& what) {
        Near(a, b, kStep + std::fabs(a) * kNarrowing, what);
    }

    void Position(const HostPoint& a, const HostPoint& b, const Moves& moves, const std::string& what) {
        Near(a.x + moves.points.x, b.x, kStep + std::fabs(a.x - moves.origin.x) * kNarrowing, what + ".x");
        Near(a.y + moves.points.y, b.y, kStep + std::fabs(a.y - moves.origin.y) * kNarrowing, what + ".y");
    }

    void Matrix(const HostMatrix& a, const HostMatrix& b, const std::string& what) {
        Real(a.a, b.a, what + ".a");
        Real(a.b, b.b, what + ".b");
        Real(a.c, b.c, what + ".c");
        Real(a.d, b.d, what + ".d");
        Real(a.tx, b.tx, what + ".tx");
        Real(a.ty, b.ty, what + ".ty");
    }

    void OneArt(const Art& a, const Art& b, const std::string& where, const Moves& moves) {
        Equal(a.kind, b.kind, where + " kind");
        if (a.kind != b.kind) return;
        Tags(a, b, where);
        if (a.kind == kArtPath) return Path(a, b, where, moves);
        if (a.kind == kArtGroup) {
            Equal(a.group()->clipped, b.group()->clipped, where + " clipped");
            Near(a.blend.opacity, b.blend.opacity, kPercentStep + 1e-9, where + " opacity");
        }
        Members(MembersOf(a), MembersOf(b), where, moves);
    }

    void Tags(const Art& a, const Art& b, const std::string& where) {
        Equal(a.tags.size(), b.tags.size(), where + " tags");
        for (size_t i = 0; i < a.tags.size() && i < b.tags.size(); ++i) {
            Equal(a.tags[i].name, b.tags[i].name, where + " tag name");
            Equal(a.tags[i].value, b.tags[i].value, where + " tag value");
        }
    }

    void Path(const Art& a, const Art& b, const std::string& where, const Moves& moves) {
        Equal(a.blend.mode, b.blend.mode, where + " mode");
        Real(a.blend.opacity, b.blend.opacity, where + " opacity");
        Equal(a.blend.isolated, b.blend.isolated, where + " isolated");
        Equal(a.blend.knockout, b.blend.knockout, where + " knockout");
        Equal(a.blend.alphaIsShape, b.blend.alphaIsShape, where + " alphaIsShape");
        Equal(a.path()->closed, b.path()->closed, where + " closed");
        Segments(a.path()->segments, b.path()->segments, where, moves);
        Style(a.path()->style, b.path()->style, where, moves);
    }

    void Segments(const std::vector<HostPathSegment>& a, const std::vector<HostPathSegment>& b,
                  const std::string& where, const Moves& moves) {
        Equal(a.size(), b.size(), where + " segments");
        for (size_t i = 0; i < a.size() && i < b.size(); ++i) {
            Position(a[i].anchor, b[i].anchor, moves, where + " anchor");
            Position(a[i].in, b[i].in, moves, where + " in");
            Position(a[i].out, b[i].out, moves, where + " out");
            Equal(a[i].corner, b[i].corner, where + " corner");
        }
    }

    void Style(const HostPathStyle& a, const HostPathStyle& b, const std::string& where, const Moves& moves) {
        Equal(a.fillPaint, b.fillPaint, where + " fillPaint");
        Equal(a.strokePaint, b.strokePaint, where + " strokePaint");
        if (a.fillPaint && b.fillPaint) Color(a.fill, b.fill, where + " fill", moves);
        if (a.strokePaint && b.strokePaint) Color(a.stroke, b.stroke, where + " stroke", moves);
        Equal(a.fillOverprint, b.fillOverprint, where + " fillOverprint");
        Equal(a.strokeOverprint, b.strokeOverprint, where + " strokeOverprint");
        Real(a.lineWidth, b.lineWidth, where + " lineWidth");
        Equal(a.dash.count, b.dash.count, where + " dash count");
        Real(a.dash.offset, b.dash.offset, where + " dash offset");
        for (int i = 0; i < a.dash.count && i < b.dash.count; ++i)
            Real(a.dash.lengths[i], b.dash.lengths[i], where + " dash");
        Equal(a.lineCap, b.lineCap, where + " cap");
        Equal(a.lineJoin, b.lineJoin, where + " join");
        Real(a.miterLimit, b.miterLimit, where + " miter");
        Equal(a.clip, b.clip, where + " clip");
        Equal(a.lockClip, b.lockClip, where + " lockClip");
        Equal(a.evenOdd, b.evenOdd, where + " evenOdd");
        Real(a.resolution, b.resolution, where + " resolution");
    }

    void Color(const HostColor& a, const HostColor& b, const std::string& what, const Moves& moves) {
        Equal(a.kind, b.kind, what + " kind");
        if (a.kind != b.kind) return;
        switch (a.kind) {
            case kColorGray:
                return Real(a.u.gray.gray, b.u.gray.gray, what + " gray");
            case kColorFour:
                Real(a.u.four.cyan, b.u.four.cyan, what + " cyan");
                Real(a.u.four.magenta, b.u.four.magenta, what + " magenta");
                Real(a.u.four.yellow, b.u.four.yellow, what + " yellow");
                return Real(a.u.four.black, b.u.four.black, what + " black");
            case kColorThree:
                Real(a.u.three.red, b.u.three.red, what + " red");
                Real(a.u.three.green, b.u.three.green, what + " green");
                return Real(a.u.three.blue, b.u.three.blue, what + " blue");
            case kColorCustom:
                return Custom(a, b, what);
            case kColorGradient:
                return Gradient(a.u.gradient, b.u.gradient, what, moves);
            case kColorPattern:
                return Pattern(a.u.pattern, b.u.pattern, what);
        }
    }

    void Custom(const HostColor& a, const HostColor& b, const std::string& what) {
        Near(a.u.custom.tint, b.u.custom.tint, kTintStep, what + " tint");
        const workbench::CustomColor& x = *original_.Find(a.u.custom.color);
        const workbench::CustomColor& y = *rebuilt_.Find(b.u.custom.color);
        Equal(x.name, y.name, what + " name");
        Equal(x.definition.kind, y.definition.kind, what + " custom kind");
        Equal(x.definition.flags, y.definition.flags, what + " flags");
        const double tolerance = x.definition.kind == kCustomLab ? kLabStep : kCustomStep;
        for (int i = 0; i < 4; ++i)
            Near(x.definition.values[i], y.definition.values[i], tolerance, what + " custom value");
    }

    static HostPoint Placed(const HostGradientUse& use) {
        const HostMatrix& m = use.matrix;
        const HostPoint& p = use.origin;
        return {m.a * p.x + m.c * p.y + m.tx, m.b * p.x + m.d * p.y + m.ty};
    }

    void Gradient(const HostGradientUse& a, const HostGradientUse& b, const std::string& what,
                  const Moves& moves) {
        Matrix(a.matrix, b.matrix, what + " matrix");
        // The origin is stored in the gradient's own space; the matrix brings its error to the page.
        constexpr double kOriginTolerance = 0.01;
        const HostPoint from = Placed(a), to = Placed(b);
        Near(from.x + moves.gradients.x, to.x, kOriginTolerance, what + " origin x");
        Near(from.y + moves.gradients.y, to.y, kOriginTolerance, what + " origin y");
        Real(a.angle, b.angle, what + " angle");
        Real(a.length, b.length, what + " length");
        Real(a.highlightAngle, b.highlightAngle, what + " highlight angle");
        Real(a.highlightLength, b.highlightLength, what + " highlight length");

        const workbench::Gradient& x = *original_.Find(a.gradient);
        const workbench::Gradient& y = *rebuilt_.Find(b.gradient);
        Equal(x.type, y.type, what + " type");
        Equal(x.stops.size(), y.stops.size(), what + " stops");
        for (size_t i = 0; i < x.stops.size() && i < y.stops.size(); ++i) {
            Real(x.stops[i].location, y.stops[i].location, what + " location");
            Real(x.stops[i].midpoint, y.stops[i].midpoint, what + " midpoint");
            Real(x.stops[i].opacity, y.stops[i].opacity, what + " stop opacity");
            Color(x.stops[i].color, y.stops[i].color, what + " stop", moves);
        }
    }

    void Pattern(const HostPatternUse& a, const HostPatternUse& b, const std::string& what) {
        Real(a.shiftDistance, b.shiftDistance, what + " shift");
        Real(a.shiftAngle, b.shiftAngle, what + " shift angle");
        Real(a.scale.x, b.scale.x, what + " scale x");
        Real(a.scale.y, b.scale.y, what + " scale y");
        Real(a.rotation, b.rotation, what + " rotation");
        Equal(a.reflect, b.reflect, what + " reflect");
        Real(a.reflectAngle, b.reflectAngle, what + " reflect angle");
        Real(a.shearAngle, b.shearAngle, what + " shear angle");
        Real(a.shearAxis, b.shearAxis, what + " shear axis");
        Matrix(a.matrix, b.matrix, what + " matrix");

        const Art* x = original_.Find(a.pattern)->art;
        const Art* y = rebuilt_.Find(b.pattern)->art;
        Equal(x != nullptr, y != nullptr, what + " has art");
        if (!x || !y) return;
        HostRect tile{};
        original_.Bounds(*x, &tile);
        Moves moves;
        moves.origin = {tile.left, tile.bottom};
        moves.points = {-tile.left, -tile.bottom};
        moves.gradients = {moves.points.x + placed_.x, moves.points.y + placed_.y};
        Members(MembersOf(*x), MembersOf(*y), what + " tile", moves);
    }

    Document& original_;
    Document& rebuilt_;
    HostPoint placed_;
};

} // namespace

std::vector<std::string> CompareDocuments(Document& original, Document& rebuilt, const HostPoint& origin) {
    std::vector<const Art*> art;
    for (size_t i = 0; i < original.LayerCount(); ++i) {
        const auto members = Comparison::MembersOf(*original.LayerAt(i).root);
        art.insert(art.end(), members.begin(), members.end());
    }
    Comparison comparison(original, rebuilt, origin);
    Moves moves;
    moves.origin = origin;
    comparison.Members(art, Comparison::MembersOf(*rebuilt.LayerAt(0).root), "", moves);
    return comparison.differences;
}
