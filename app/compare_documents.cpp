#include "app/compare_documents.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "app/compare_meshes.h"
#include "app/compare_rasters.h"
#include "app/compare_texts.h"
#include "app/difference_list.h"
#include "workbench/document/matrix.h"
#include "workbench/render/page_files.h"

using workbench::Art;
using workbench::Document;

namespace {

class Comparison : public DifferenceList {
public:
    Comparison(const Document& stored, const Document& rebuilt, const RecordFrame& frame)
        : stored_(stored), rebuilt_(rebuilt), frame_(frame) {}

    void Members(const std::vector<const Art*>& expected, const std::vector<const Art*>& actual,
                 const std::string& place) {
        if (expected.size() != actual.size()) {
            Report(place, "members", static_cast<double>(expected.size()),
                   static_cast<double>(actual.size()));
            return;
        }
        for (size_t i = 0; i < expected.size(); ++i) {
            ArtOf(*expected[i], *actual[i], place + "/" + std::to_string(i));
        }
    }

private:
    static std::vector<const Art*> MembersOf(const Art& art) {
        std::vector<const Art*> members;
        for (const Art* member = art.firstChild; member; member = member->below) members.push_back(member);
        return members;
    }

    void ArtOf(const Art& expected, const Art& actual, const std::string& place) {
        if (expected.kind != actual.kind) return Report(place, "kind", expected.kind, actual.kind);
        BlendOf(expected.blend, actual.blend, place);
        TagsOf(expected, actual, place);
        if (expected.kind == kArtPath) {
            PathOf(*expected.path(), *actual.path(), place);
        } else if (expected.kind == kArtPlaced) {
            PlacedOf(expected, actual, place);
        } else if (expected.kind == kArtRaster) {
            RasterOf(expected, actual, place);
        } else if (expected.kind == kArtMesh) {
            MeshOf(expected, actual, place);
        } else if (expected.kind == kArtTextFrame) {
            CompareTexts(stored_, expected, rebuilt_, actual,
                         {inPattern_ ? patternOrigin_ : frame_.origin, frame_.origin}, place, this,
                         [this](const HostColor& a, const HostColor& b, const std::string& where) {
                             ColorOf(a, b, where);
                         });
        } else {
            if (expected.group()) Same(expected.group()->clipped, actual.group()->clipped, place, "clipped");
            Members(MembersOf(expected), MembersOf(actual), place);
        }
    }

    void RasterOf(const Art& expected, const Art& actual, const std::string& place) {
        const auto& raster = std::get<workbench::RasterData>(expected.data);
        CompareRasters(raster, std::get<workbench::RasterData>(actual.data), frame_.origin, place, this);
        const auto* a = stored_.Find(expected.artStyle);
        const auto* b = rebuilt_.Find(actual.artStyle);
        Same(a != nullptr, b != nullptr, place, "image with a style");
        if (a && b) StyleOf(a->paint, b->paint, place + " style");
    }

    void MeshOf(const Art& expected, const Art& actual, const std::string& place) {
        const MeshFrame frame{inPattern_ ? patternOrigin_ : frame_.origin, frame_.origin};
        CompareMeshes(std::get<workbench::MeshData>(expected.data),
                      std::get<workbench::MeshData>(actual.data), frame, place, this,
                      [this](const HostColor& a, const HostColor& b, const std::string& where) {
                          ColorOf(a, b, where);
                      });
    }

    /// A note holds six digits of each number.
    void PlacedOf(const Art& expected, const Art& actual, const std::string& place) {
        constexpr double kDigits = 1e-5;
        const auto& a = std::get<workbench::PlacedData>(expected.data);
        const auto& b = std::get<workbench::PlacedData>(actual.data);
        Same(a.width == b.width && a.height == b.height, true, place, "picture size");
        Same(a.method == b.method && a.alignment == b.alignment && (a.clip != 0) == (b.clip != 0), true,
             place, "place options");
        const auto near = [&](double x, double y, double room, const char* what) {
            Near(x, y, room, place, what);
        };
        for (double HostMatrix::*member : {&HostMatrix::a, &HostMatrix::b, &HostMatrix::c, &HostMatrix::d})
            near(a.matrix.*member, b.matrix.*member, std::abs(a.matrix.*member) * kDigits, "picture matrix");
        HostRect from{}, to{};
        stored_.Bounds(expected, &from);
        rebuilt_.Bounds(actual, &to);
        const double room =
            kDigits * (std::abs(from.left - frame_.origin.x) + std::abs(from.right - from.left) +
                       std::abs(from.top - frame_.origin.y) + std::abs(from.top - from.bottom)) +
            1e-3;
        near(from.left, to.left, room, "picture left");
        near(from.right, to.right, room, "picture right");
        near(from.top, to.top, room, "picture top");
        near(from.bottom, to.bottom, room, "picture bottom");
    }

    void BlendOf(const workbench::Blend& expected, const workbench::Blend& actual, const std::string& place) {
        Same(expected.mode, actual.mode, place, "blending mode");
        Near(expected.opacity, actual.opacity, place, "opacity");
        Same(expected.isolated, actual.isolated, place, "isolated");
        Same(expected.knockout, actual.knockout, place, "knockout");
        Same(expected.alphaIsShape, actual.alphaIsShape, place, "alpha is shape");
    }

    void TagsOf(const Art& expected, const Art& actual, const std::string& place) {
        const auto same = [](const workbench::Tag& a, const workbench::Tag& b) {
            return a.name == b.name && a.type == b.type && a.value == b.value;
        };
        if (!std::equal(expected.tags.begin(), expected.tags.end(), actual.tags.begin(), actual.tags.end(),
                        same))
            Report(place, "tags", static_cast<double>(expected.tags.size()),
                   static_cast<double>(actual.tags.size()));
    }

    void PathOf(const workbench::PathData& expected, const workbench::PathData& actual,
                const std::string& place) {
        Same(expected.closed, actual.closed, place, "closed");
        if (expected.segments.size() != actual.segments.size()) {
            Report(place, "anchors", static_cast<double>(expected.segments.size()),
                   static_cast<double>(actual.segments.size()));
            return;
        }
        for (size_t i = 0; i < expected.segments.size(); ++i) {
            const HostPathSegment& a = expected.segments[i];
            const HostPathSegment& b = actual.segments[i];
            PointOf(a.anchor, b.anchor, place, "anchor");
            PointOf(a.in, b.in, place, "in handle");
            PointOf(a.out, b.out, place, "out handle");
            Same(a.corner != 0, b.corner != 0, place, "corner");
        }
        StyleOf(expected.style, actual.style, place);
    }

    /// Coordinates of the page, or of the pattern that is being compared.
    void PointOf(const HostPoint& expected, const HostPoint& actual, const std::string& place,
                 const char* what) {
        const HostPoint& origin = inPattern_ ? patternOrigin_ : frame_.origin;
        const double roomX = ToleranceOf(expected.x - origin.x), roomY = ToleranceOf(expected.y - origin.y);
        const HostPoint shift = inPattern_ ? patternOrigin_ : HostPoint{0, 0};
        if (!(std::abs(expected.x - shift.x - actual.x) <= roomX))
            Report(place, std::string(what) + " x", expected.x - shift.x, actual.x);
        if (!(std::abs(expected.y - shift.y - actual.y) <= roomY))
            Report(place, std::string(what) + " y", expected.y - shift.y, actual.y);
    }

    void StyleOf(const HostPathStyle& a, const HostPathStyle& b, const std::string& place) {
        Same(a.fillPaint != 0, b.fillPaint != 0, place, "filled");
        Same(a.strokePaint != 0, b.strokePaint != 0, place, "stroked");
        if (a.fillPaint && b.fillPaint) ColorOf(a.fill, b.fill, place + " fill");
        if (a.strokePaint && b.strokePaint) ColorOf(a.stroke, b.stroke, place + " stroke");
        Same(a.fillOverprint, b.fillOverprint, place, "fill overprint");
        Same(a.strokeOverprint, b.strokeOverprint, place, "stroke overprint");
        Near(a.lineWidth, b.lineWidth, place, "line width");
        Same(a.dash.count, b.dash.count, place, "dashes");
        Near(a.dash.offset, b.dash.offset, place, "dash offset");
        for (size_t i = 0; i < 6; ++i) Near(a.dash.lengths[i], b.dash.lengths[i], place, "dash");
        Same(a.lineCap, b.lineCap, place, "line cap");
        Same(a.lineJoin, b.lineJoin, place, "line join");
        Near(a.miterLimit, b.miterLimit, place, "miter limit");
        Same(a.clip != 0, b.clip != 0, place, "clip");
        Same(a.lockClip != 0, b.lockClip != 0, place, "lock clip");
        Same(a.evenOdd != 0, b.evenOdd != 0, place, "even-odd");
        Near(a.resolution, b.resolution, place, "resolution");
    }

    void ColorOf(const HostColor& a, const HostColor& b, const std::string& place) {
        if (a.kind != b.kind) return Report(place, "colour kind", a.kind, b.kind);
        switch (a.kind) {
            case kColorGray:
                Near(a.u.gray.gray, b.u.gray.gray, place, "gray");
                break;
            case kColorFour:
                Near(a.u.four.cyan, b.u.four.cyan, place, "cyan");
                Near(a.u.four.magenta, b.u.four.magenta, place, "magenta");
                Near(a.u.four.yellow, b.u.four.yellow, place, "yellow");
                Near(a.u.four.black, b.u.four.black, place, "black");
                break;
            case kColorThree:
                Near(a.u.three.red, b.u.three.red, place, "red");
                Near(a.u.three.green, b.u.three.green, place, "green");
                Near(a.u.three.blue, b.u.three.blue, place, "blue");
                break;
            case kColorCustom:
                CustomOf(a, b, place);
                break;
            case kColorGradient:
                GradientOf(a.u.gradient, b.u.gradient, place);
                break;
            case kColorPattern:
                PatternOf(a.u.pattern, b.u.pattern, place);
                break;
            default:
                break;
        }
    }

    static int ChannelsOf(int32_t kind) { return kind == kCustomFour ? 4 : kind == kCustomOne ? 1 : 3; }

    void CustomOf(const HostColor& a, const HostColor& b, const std::string& place) {
        const workbench::CustomColor* expected = stored_.Find(a.u.custom.color);
        const workbench::CustomColor* actual = rebuilt_.Find(b.u.custom.color);
        if (!expected || !actual)
            return Report(place, "custom colour", expected != nullptr, actual != nullptr);
        if (expected->name != actual->name)
            Add(place + ": custom colour '" + expected->name + "' became '" + actual->name + "'");
        if (std::abs(a.u.custom.tint - b.u.custom.tint) > 0.0025 + 1e-9)
            Report(place, "tint", a.u.custom.tint, b.u.custom.tint);
        Same(expected->definition.kind, actual->definition.kind, place, "custom colour's form");
        Same(expected->definition.flags, actual->definition.flags, place, "custom colour's flags");
        // A Lab value is stored with a tenth, any other with a tenth of a percent.
        const double room = expected->definition.kind == kCustomLab ? 0.101 : 0.00101;
        for (int i = 0; i < ChannelsOf(expected->definition.kind); ++i) {
            const double from = expected->definition.values[i], to = actual->definition.values[i];
            if (!(std::abs(from - to) <= room)) Report(place, "custom colour's value", from, to);
        }
    }

    void MatrixOf(const HostMatrix& a, const HostMatrix& b, const std::string& place) {
        const std::array<double, 6> expected = {a.a, a.b, a.c, a.d, a.tx, a.ty};
        const std::array<double, 6> actual = {b.a, b.b, b.c, b.d, b.tx, b.ty};
        for (size_t i = 0; i < expected.size(); ++i) Near(expected[i], actual[i], place, "matrix");
    }

    void GradientOf(const HostGradientUse& a, const HostGradientUse& b, const std::string& place) {
        MatrixOf(a.matrix, b.matrix, place);
        // The origin is stored in gradient space: its step and the matrix's grow with each other on the page.
        const HostPoint shift = inPattern_ ? patternOrigin_ : HostPoint{0, 0};
        const HostPoint expected = workbench::Apply(a.matrix, a.origin),
                        actual = workbench::Apply(b.matrix, b.origin);
        const HostMatrix& m = a.matrix;
        const double room =
            4 * kFixedStep *
                (1 + std::abs(m.a) + std::abs(m.b) + std::abs(m.c) + std::abs(m.d) + std::abs(a.origin.x) +
                 std::abs(a.origin.y) + std::abs(b.origin.x) + std::abs(b.origin.y)) +
            4e-7 * (std::abs(expected.x) + std::abs(expected.y) + std::abs(m.tx) + std::abs(m.ty));
        if (!(std::abs(expected.x - shift.x - actual.x) <= room))
            Report(place, "gradient origin x", expected.x - shift.x, actual.x);
        if (!(std::abs(expected.y - shift.y - actual.y) <= room))
            Report(place, "gradient origin y", expected.y - shift.y, actual.y);
        Near(a.angle, b.angle, place, "gradient angle");
        Near(a.length, b.length, place, "gradient length");
        Near(a.highlightAngle, b.highlightAngle, place, "highlight angle");
        Near(a.highlightLength, b.highlightLength, place, "highlight length");
        const workbench::Gradient* expectedRamp = stored_.Find(a.gradient);
        const workbench::Gradient* actualRamp = rebuilt_.Find(b.gradient);
        if (!expectedRamp || !actualRamp)
            return Report(place, "gradient", expectedRamp != nullptr, actualRamp != nullptr);
        StopsOf(*expectedRamp, *actualRamp, place);
    }

    void StopsOf(const workbench::Gradient& a, const workbench::Gradient& b, const std::string& place) {
        Same(a.type, b.type, place, "gradient type");
        if (a.stops.size() != b.stops.size())
            return Report(place, "stops", static_cast<double>(a.stops.size()),
                          static_cast<double>(b.stops.size()));
        for (size_t i = 0; i < a.stops.size(); ++i) {
            const std::string stop = place + " stop " + std::to_string(i);
            Near(a.stops[i].midpoint, b.stops[i].midpoint, stop, "midpoint");
            Near(a.stops[i].location, b.stops[i].location, stop, "location");
            Near(a.stops[i].opacity, b.stops[i].opacity, stop, "opacity");
            ColorOf(a.stops[i].color, b.stops[i].color, stop);
        }
    }

    void PatternOf(const HostPatternUse& a, const HostPatternUse& b, const std::string& place) {
        MatrixOf(a.matrix, b.matrix, place);
        Near(a.shiftDistance, b.shiftDistance, place, "shift distance");
        Near(a.shiftAngle, b.shiftAngle, place, "shift angle");
        Near(a.scale.x, b.scale.x, place, "scale x");
        Near(a.scale.y, b.scale.y, place, "scale y");
        Near(a.rotation, b.rotation, place, "rotation");
        Same(a.reflect != 0, b.reflect != 0, place, "reflect");
        Near(a.reflectAngle, b.reflectAngle, place, "reflect angle");
        Near(a.shearAngle, b.shearAngle, place, "shear angle");
        Near(a.shearAxis, b.shearAxis, place, "shear axis");
        const workbench::Pattern* expected = stored_.Find(a.pattern);
        const workbench::Pattern* actual = rebuilt_.Find(b.pattern);
        if (!expected || !actual || !expected->art || !actual->art)
            return Report(place, "pattern art", expected && expected->art, actual && actual->art);
        HostRect bounds{};
        stored_.Bounds(*expected->art, &bounds);
        const bool outerPattern = inPattern_;
        const HostPoint outerOrigin = patternOrigin_;
        inPattern_ = true;
        patternOrigin_ = {bounds.left, bounds.bottom};
        ArtOf(*expected->art, *actual->art, place + " pattern");
        inPattern_ = outerPattern;
        patternOrigin_ = outerOrigin;
    }

    const Document& stored_;
    const Document& rebuilt_;
    const RecordFrame& frame_;
    bool inPattern_ = false;
    HostPoint patternOrigin_{};
};

} // namespace

std::vector<std::string> CompareDocuments(const Document& stored, Document& rebuilt,
                                          const RecordFrame& frame) {
    std::vector<const Art*> expected, actual;
    for (size_t i = 0; i < stored.LayerCount(); ++i) {
        for (const Art* art = stored.LayerAt(i).root->firstChild; art; art = art->below)
            expected.push_back(art);
    }
    for (const Art* art = rebuilt.CurrentLayer().root->firstChild; art; art = art->below)
        actual.push_back(art);
    Comparison comparison(stored, rebuilt, frame);
    comparison.Members(expected, actual, "");
    return comparison.Take();
}

std::string ComparePictures(const Document& stored, const Document& rebuilt) {
    constexpr int kSide = 400;
    constexpr int kVisible = 48;            // of 255: more than a shifted edge's shade
    constexpr double kVisibleShare = 0.005; // of all pixels
    const workbench::PagePicture a = workbench::DrawPage(stored, 1, kSide);
    const workbench::PagePicture b = workbench::DrawPage(rebuilt, 1, kSide);
    if (a.width != b.width || a.height != b.height) return "the pictures differ in size";
    size_t visible = 0;
    for (size_t i = 0; i < a.pixels.size(); i += 4) {
        int largest = 0;
        for (size_t channel = 1; channel < 4; ++channel) {
            largest = std::max(largest, std::abs(int{a.pixels[i + channel]} - int{b.pixels[i + channel]}));
        }
        if (largest > kVisible) ++visible;
    }
    const size_t pixels = a.pixels.size() / 4;
    if (static_cast<double>(visible) <= kVisibleShare * static_cast<double>(pixels)) return {};
    return std::to_string(visible) + " of " + std::to_string(pixels) + " pixels look different";
}
