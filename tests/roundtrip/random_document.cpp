#include "tests/roundtrip/random_document.h"

#include <rapidcheck.h>

#include <algorithm>

using workbench::Art;
using workbench::Document;

namespace {

constexpr int kMaxDepth = 4;
constexpr int kPatternDepth = 1; // patterns within patterns, but not further

/// rapidcheck starts with small ranges and widens them from case to case; documents are to be as varied in
/// the first case as in the last.
int Between(int from, int end) {
    return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(from, end));
}
int Pick(int end) {
    return Between(0, end);
}
bool Chance(int percent) {
    return Pick(100) < percent;
}
double Share() {
    return Pick(1001) / 1000.0;
} // 0 to 1
double Coordinate() {
    return Between(-800000, 800000) / 999.0;
} // not on any grid
HostPoint Point() {
    return {Coordinate(), Coordinate()};
}

/// Nothing that a Fixed must round, so that positions seen through the matrix can be compared closely, and
/// always far from singular.
HostMatrix Matrix() {
    const auto step = [](int from, int to) { return Between(from, to) / 16.0; };
    return {step(8, 33), step(-6, 7), step(-6, 7), step(8, 33), step(-4000, 4000), step(-4000, 4000)};
}

class Painter {
public:
    explicit Painter(Document& document) : document_(document) {}

    HostPathStyle Style(int patternDepth) {
        HostPathStyle style = workbench::DefaultPathStyle();
        style.fillPaint = Chance(70);
        style.strokePaint = Chance(60);
        style.fill = style.fillPaint ? Fill(patternDepth) : workbench::GrayColor(0);
        style.stroke = style.strokePaint ? Stroke(patternDepth) : workbench::GrayColor(0);
        style.fillOverprint = Chance(10);
        style.strokeOverprint = Chance(10);
        style.lineWidth = Pick(4000) / 100.0;
        style.dash.count = Chance(30) ? Pick(7) : 0;
        style.dash.offset = Pick(100) / 10.0;
        for (int i = 0; i < style.dash.count; ++i) style.dash.lengths[i] = Pick(200) / 10.0;
        style.lineCap = Pick(3);
        style.lineJoin = Pick(3);
        style.miterLimit = 1 + Pick(20);
        style.evenOdd = Chance(30);
        style.lockClip = Chance(10);
        style.resolution = 800;
        return style;
    }

    void AddCustomColors() {
        const int count = Pick(6);
        for (int i = 0; i < count; ++i) {
            // Values differ from colour to colour, because a record keeps equal ones under one name.
            HostCustomColor color{i % 3, {}, Pick(3)};
            for (double& value : color.values) value = Share();
            color.values[0] = i / 100.0;
            if (color.kind != kCustomFour) color.values[3] = 0;
            custom_.push_back(document_.NewCustomColor("Ink " + std::to_string(i), color).handle);
        }
    }

    Art* PatternArt(int patternDepth);

private:
    HostColor Plain() {
        switch (Pick(custom_.empty() ? 3 : 4)) {
            case 0:
                return workbench::GrayColor(Share());
            case 1:
                return workbench::ThreeColor(Share(), Share(), Share());
            case 2:
                return workbench::FourColor(Share(), Share(), Share(), Share());
            default:
                HostColor color{};
                color.kind = kColorCustom;
                color.u.custom = {custom_[static_cast<size_t>(Pick(static_cast<int>(custom_.size())))],
                                  Share()};
                return color;
        }
    }

    HostColor GradientFill() {
        workbench::Gradient& gradient = document_.NewGradient("");
        gradient.type = Pick(2);
        gradient.stops.clear();
        const int count = Chance(10) ? 32 : 2 + Pick(4);
        for (int i = 0; i < count; ++i)
            gradient.stops.push_back({13.0 + Pick(75), 100.0 * i / count + Share(), Plain(), 1.0});
        HostColor color{};
        color.kind = kColorGradient;
        color.u.gradient = {gradient.handle, Point(),         Pick(360) * 0.5, Pick(3000) / 7.0,
                            Matrix(),        Pick(360) * 1.0, Share()};
        return color;
    }

    HostColor PatternFill(int patternDepth) {
        workbench::Pattern& pattern = document_.NewPattern("");
        const PatternHandle handle = pattern.handle;
        pattern.art = PatternArt(patternDepth + 1);
        HostColor color{};
        color.kind = kColorPattern;
        color.u.pattern = {handle,       Share(),    Share(),      {1 + Share(), 1 + Share()},
                           10 * Share(), Chance(50), 20 * Share(), Share(),
                           Share(),      Matrix()};
        return color;
    }

    HostColor Fill(int patternDepth) {
        if (Chance(25)) return GradientFill();
        return Stroke(patternDepth);
    }

    HostColor Stroke(int patternDepth) {
        if (patternDepth <= kPatternDepth && Chance(15)) return PatternFill(patternDepth);
        return Plain();
    }

    Document& document_;
    std::vector<CustomColorHandle> custom_;
};

class TreeGrower {
public:
    TreeGrower(Document& document, Painter& painter, int patternDepth)
        : document_(document), painter_(painter), patternDepth_(patternDepth) {}

    void FillGroup(Art* group, int depth) {
        const int count = Pick(depth == 0 ? 5 : 4);
        for (int i = 0; i < count; ++i) {
            const int kind = depth < kMaxDepth ? Pick(10) : 9;
            if (kind < 2)
                AddGroup(group, depth);
            else if (kind < 4)
                AddCompoundPath(group);
            else
                AddPath(group);
        }
    }

    Art* AddPath(Art* parent) {
        Art* path = document_.AppendArt(kArtPath, parent);
        const int count = 1 + Pick(5);
        for (int i = 0; i < count; ++i) {
            const HostPoint anchor = Point();
            path->path()->segments.push_back(
                {anchor, Chance(50) ? anchor : Point(), Chance(50) ? anchor : Point(), Chance(50)});
        }
        path->path()->closed = Chance(60);
        path->path()->style = painter_.Style(patternDepth_);
        path->blend = {Pick(workbench::kBlendModeCount), Share(), Chance(20), Pick(3), Chance(20)};
        AddTags(path);
        return path;
    }

private:
    void AddGroup(Art* parent, int depth) {
        Art* group = document_.AppendArt(kArtGroup, parent);
        if (Chance(40)) group->blend.opacity = Share();
        AddTags(group);
        if (Chance(30)) {
            group->group()->clipped = true;
            AddPath(group)->path()->style.clip = 1;
        }
        FillGroup(group, depth + 1);
    }

    void AddCompoundPath(Art* parent) {
        Art* compound = document_.AppendArt(kArtCompoundPath, parent);
        AddTags(compound);
        const int count = 1 + Pick(3);
        for (int i = 0; i < count; ++i) AddPath(compound);
    }

    void AddTags(Art* art) {
        for (int i = Chance(20) ? 1 + Pick(3) : 0; i > 0; --i)
            art->tags.push_back(
                {"name" + std::to_string(i), "string", "a, b = c\\" + std::to_string(Pick(1000))});
    }

    Document& document_;
    Painter& painter_;
    int patternDepth_;
};

Art* Painter::PatternArt(int patternDepth) {
    Art* art = document_.AppendArt(kArtGroup, nullptr);
    TreeGrower grower(document_, *this, patternDepth);
    grower.AddPath(art);
    grower.FillGroup(art, kMaxDepth - 1);
    return art;
}

} // namespace

void FillRandomDocument(Document& document) {
    Painter painter(document);
    painter.AddCustomColors();
    TreeGrower grower(document, painter, 0);
    if (Chance(30)) document.InsertLayer(0, "Upper");
    for (size_t i = 0; i < document.LayerCount(); ++i) grower.FillGroup(document.LayerAt(i).root, 0);
    grower.AddPath(document.LayerAt(0).root);
}
