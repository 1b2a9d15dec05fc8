#include "tests/support/random_document.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include "tests/support/random_text.h"

using workbench::Art;
using workbench::Document;

namespace {

constexpr int kDeepest = 5;        // groups within each other
constexpr int kDeepestPattern = 4; // where a pattern may still be begun
constexpr int kLabNumber = 2;      // of the ink in Lab
constexpr int kMostLabUses = 2;

class Artist {
public:
    Artist(Document& document, RandomArt art, unsigned seed)
        : document_(document), recordable_(art == RandomArt::kRecordable), random_(seed) {}

    void Draw(unsigned seed) {
        document_.title = "A title & <more> \"quoted\"";
        document_.subject = "one, two";
        document_.description = "Line one\nline two";
        if (seed % 3 == 1) document_.page = {-10.1, 333.3, 700.7, 12.34};
        document_.LayerAt(0).title = "Top \xE5\xB1\xA4";
        Fill(document_.LayerAt(0).root, 0);
        if (seed % 2 == 0) return;
        workbench::Layer& below = document_.InsertLayer(1, "Below");
        below.visible = recordable_;
        below.locked = !recordable_;
        below.root->name = "below";
        Fill(below.root, 0);
    }

private:
    int Below(int bound) { return std::uniform_int_distribution<>(0, bound - 1)(random_); }
    bool Often(int percent) { return Below(100) < percent; }
    double Share() { return Often(20) ? Below(2) : std::uniform_real_distribution<>(0, 1)(random_); }
    double Number() {
        return Often(30) ? Below(200) - 100 : std::uniform_real_distribution<>(-1000, 1000)(random_);
    }
    HostPoint Point() { return {Number(), Number()}; }
    /// Always far from singular, and for a record nothing that a Fixed must round, so that positions seen
    /// through the matrix can be compared closely.
    HostMatrix Matrix() {
        const auto step = [&](double value) { return recordable_ ? std::round(value * 16) / 16 : value; };
        return {step(1 + Share()), step(Share() - 0.5), step(Share() - 0.5),
                step(1 + Share()), step(Number()),      step(Number())};
    }

    HostColor Plain() {
        switch (Below(4)) {
            case 0:
                return workbench::GrayColor(Share());
            case 1:
                return workbench::FourColor(Share(), Share(), Share(), Share());
            case 2: {
                HostColor color{};
                color.kind = kColorCustom;
                color.u.custom = {Ink(), Share()};
                return color;
            }
            default:
                return Often(50) ? workbench::ThreeColor(Below(256) / 255.0, Below(256) / 255.0, 1)
                                 : workbench::ThreeColor(Share(), Share(), Share());
        }
    }

    CustomColorHandle Ink() {
        // Every use of a Lab colour takes a row of its own in a record's table, which has 255.
        int number = Below(4);
        if (recordable_ && number == kLabNumber && ++labUses_ > kMostLabUses) number = 0;
        const std::string name =
            (recordable_ ? "\xE8\x97\x8D, = " : "Ink & <> \"x\"") + std::to_string(number);
        if (const workbench::CustomColor* known = document_.FindCustomColor(name)) return known->handle;
        HostCustomColor definition{};
        // A record forgets a one-value colour's process equivalent, and keeps equal ones under one name.
        static_assert(kLabNumber % 3 == kCustomLab);
        definition.kind = recordable_ ? number % 3 : number;
        const int channels = definition.kind == kCustomFour ? 4 : definition.kind == kCustomOne ? 1 : 3;
        for (int i = 0; i < channels; ++i) definition.values[i] = Share();
        if (recordable_) definition.values[0] = number / 100.0;
        if (recordable_ && definition.kind == kCustomLab) definition.values[1] = Number() / 10;
        // Of two colours of one kind and the same flags, a record takes a row for each use of the second.
        definition.flags = recordable_ ? number : Below(3) - 1;
        return document_.NewCustomColor(name, definition).handle;
    }

    HostColor GradientColor() {
        HostColor color{};
        color.kind = kColorGradient;
        workbench::Gradient& gradient = document_.NewGradient("Fade " + std::to_string(Below(1000)));
        gradient.type = Below(2);
        gradient.stops.clear();
        double location = Share() * 20;
        for (int i = Often(5) ? 40 : 2 + Below(5); i-- > 0;
             location = std::min(100.0, location + Share() * 30))
            gradient.stops.push_back({Often(50) ? 50 : 13 + Share() * 74, location, Plain(), Share()});
        HostGradientUse& use = color.u.gradient;
        use = {gradient.handle, Point(), Number(), 1 + Share() * 100, Matrix(), 0, 0};
        if (gradient.type == kGradientRadial && Often(60)) {
            use.highlightAngle = Number();
            use.highlightLength = Share() * 0.9;
        }
        if (gradient.type == kGradientRadial) use.angle = Often(50) ? Number() : 0;
        return color;
    }

    HostColor PatternColor(int depth) {
        HostColor color{};
        color.kind = kColorPattern;
        Art* art = document_.AppendArt(kArtGroup, nullptr);
        // A record measures a pattern with all that is in it, and then leaves out guides and its own clip.
        art->group()->clipped = !recordable_;
        ++patterns_;
        Fill(art, depth + 2);
        --patterns_;
        SetRectangle(*document_.PrependArt(kArtPath, art), !recordable_);
        workbench::Pattern& pattern = document_.NewPattern("Tile " + std::to_string(Below(1000)));
        pattern.art = art;
        color.u.pattern = {pattern.handle, Share() * 9, Number(), {1 + Share(), 1 + Share()},
                           Number(),       Below(2),    Number(), Share() * 40,
                           Number(),       Matrix()};
        return color;
    }

    HostPathStyle Style(int depth) {
        HostPathStyle style = workbench::DefaultPathStyle();
        style.fillPaint = Below(2);
        style.strokePaint = Below(2);
        if (style.fillPaint || Often(30)) style.fill = Plain();
        if (style.strokePaint || Often(30)) style.stroke = Plain();
        if (style.fillPaint && Often(25))
            style.fill = Often(40) && depth < kDeepestPattern ? PatternColor(depth) : GradientColor();
        if (style.strokePaint && Often(10)) style.stroke = GradientColor();
        if (recordable_ && style.strokePaint && depth < kDeepestPattern && Often(5))
            style.stroke = PatternColor(depth);
        style.fillOverprint = Below(2);
        style.strokeOverprint = Below(2);
        style.lineWidth = Often(20) ? 0 : Share() * 10;
        style.lineCap = Below(3);
        style.lineJoin = Below(3);
        style.miterLimit = 1 + Below(9);
        if (Often(30)) {
            style.dash.count = 1 + Below(6);
            style.dash.offset = Number();
            for (int i = 0; i < style.dash.count; ++i) style.dash.lengths[i] = 0.1 + Share();
        }
        style.evenOdd = Below(2);
        style.lockClip = Often(10);
        style.resolution = Often(80) ? 800 : 300;
        return style;
    }

    void SetSegments(workbench::PathData& path) {
        path.closed = Below(2);
        for (int i = 1 + Below(5); i-- > 0;) {
            const HostPoint anchor =
                Often(10) && !path.segments.empty() ? path.segments.front().anchor : Point();
            path.segments.push_back(
                {anchor, Often(50) ? anchor : Point(), Often(50) ? anchor : Point(), Below(2)});
        }
    }

    void SetRectangle(Art& art, bool clip) {
        workbench::PathData& path = *art.path();
        path.closed = true;
        path.style.fillPaint = path.style.strokePaint = 0;
        path.style.miterLimit = workbench::DefaultPathStyle().miterLimit;
        path.style.clip = clip;
        const double left = Number(), bottom = Number(), right = left + 1 + Share() * 50,
                     top = bottom + 1 + Share() * 50;
        for (const HostPoint p : {HostPoint{left, bottom}, {right, bottom}, {right, top}, {left, top}})
            path.segments.push_back({p, p, p, 1});
    }

    workbench::Blend SomeBlend() {
        return {Often(70) ? 0 : Below(workbench::kBlendModeCount), Often(60) ? 1 : Share(), Often(20),
                Below(3), Often(10)};
    }

    void SetNature(Art& art) {
        static const char* const kNames[] = {"",    "",      "leaf",        "leaf",        "two words",
                                             "1st", "<&\">", "vlq-paint-1", "\xE7\xB7\x9A"};
        art.name = kNames[Below(9)];
        art.hidden = !recordable_ && Often(10);
        art.locked = !recordable_ && Often(10);
        for (int i = Often(20) ? 1 + Below(3) : 0; i > 0; --i) art.tags.push_back(SomeTag(i));
    }

    workbench::Tag SomeTag(int number) {
        const std::string name = "name" + std::to_string(number), value = std::to_string(Below(1000));
        if (recordable_) return {name, Often(20) ? "real" : "string", "a, b = c\\" + value};
        // Shift-JIS, which is no UTF-8, and names that no attribute can have.
        if (Often(20)) return {name, "string", "\x90\x6C \x83\x5C" + value};
        if (Often(20)) return {"a = %41 " + name, "string", value};
        return {name, Often(20) ? "real = %" : "string", " <&\">\n\t\xE7\xB7\x9A " + value};
    }

    void SetPixels(workbench::RasterData& raster) {
        constexpr int32_t kSpaces[] = {workbench::kSpaceGray,
                                       workbench::kSpaceThree,
                                       workbench::kSpaceFour,
                                       workbench::kSpaceGrayAlpha,
                                       workbench::kSpaceThreeAlpha,
                                       workbench::kSpaceFourAlpha,
                                       5 /* none of this host's */};
        const auto side = [this] { return Below(20) == 0 ? 0 : 1 + Below(70); };
        raster.record = workbench::NewRasterRecord(side(), side(), kSpaces[Below(recordable_ ? 7 : 6)]);
        HostRasterRecord& record = raster.record;
        if (Below(3) == 0) {
            const int32_t x = Below(100) - 50, y = Below(100) - 50;
            record.left += x, record.right += x;
            record.top += y, record.bottom += y;
        }
        record.flags = static_cast<uint32_t>(Below(0x10000));
        record.originalColorSpace = Below(20);
        raster.pixels.resize(raster.RowBytes() * static_cast<size_t>(raster.Height()));
        for (uint8_t& byte : raster.pixels) byte = static_cast<uint8_t>(Below(256));
        if (Below(4) == 0) raster.pixels.resize(raster.RowBytes() * static_cast<size_t>(raster.Height() / 2));
        raster.matrix = {0.25 * (1 + Below(9)),  0.25 * (Below(5) - 2), 0.25 * (Below(5) - 2),
                         -0.25 * (1 + Below(9)), Below(2000) / 7.0,     Below(2000) / 7.0};
        raster.box = {double(record.left), double(record.top), double(record.right), record.bottom + 0.5};
    }

    /// A record measures a pattern with its images and then leaves them out.
    void AddRaster(Art* parent) {
        if (recordable_ && patterns_ > 0) return;
        Art* art = document_.PrependArt(kArtRaster, parent);
        SetNature(*art);
        art->blend = SomeBlend();
        SetPixels(std::get<workbench::RasterData>(art->data));
        if (Often(70)) return;
        HostPathStyle style = workbench::DefaultPathStyle();
        style.fillPaint = Below(2);
        style.fill = Plain();
        style.stroke = Plain();
        art->artStyle = document_.NewArtStyle(style).handle;
    }

    void AddMesh(Art* parent) {
        Art* art = document_.PrependArt(kArtMesh, parent);
        SetNature(*art);
        art->blend = SomeBlend();
        auto& mesh = std::get<workbench::MeshData>(art->data);
        InitMesh(mesh, Below(2), 1 + Below(3), 1 + Below(3));
        for (workbench::MeshVertex& vertex : mesh.vertices) vertex.color = Plain();
        for (size_t i = 0; i < mesh.vertices.size(); ++i) {
            for (int number = 0;; ++number) {
                const workbench::MeshDirection direction = NthMeshDirection(mesh, i, number);
                if (direction == workbench::kMeshDirections) break;
                mesh.vertices[i].spokes[direction] = {Point(), Below(2) == 1};
            }
        }
        for (auto* edges : {&mesh.edgesI, &mesh.edgesJ}) {
            for (workbench::MeshEdge& edge : *edges)
                edge.resize(static_cast<size_t>(recordable_ ? 2 : Below(5)));
        }
        ForEachMeshPoint(mesh, [this](HostPoint& each) { each = Point(); });
    }

    /// Sometimes two frames that show one story.
    void AddText(Art* parent, int depth) {
        // A pattern is measured as it was drawn.
        const RandomTextSource source{random_,
                                      recordable_,
                                      recordable_ && patterns_ > 0,
                                      [this] { return Point(); },
                                      [this] { return Matrix(); },
                                      [this, depth] { return Style(depth + 2); }};
        Art* art = document_.PrependArt(kArtTextFrame, parent);
        SetNature(*art);
        art->blend = SomeBlend();
        MakeRandomText(document_, *art, source);
        if (Often(80)) return;
        Art* next = document_.PrependArt(kArtTextFrame, parent);
        MakeRandomText(document_, *next, source);
        auto& frame = std::get<workbench::TextFrameData>(next->data);
        frame.story = std::get<workbench::TextFrameData>(art->data).story;
        frame.story->frames.push_back(next->handle);
    }

    void AddPluginArt(Art* parent, int depth) {
        Art* art = document_.PrependArt(kArtPlugin, parent);
        SetNature(*art);
        art->blend = SomeBlend();
        Art* edit = document_.PrependArt(kArtGroup, art);
        Art* result = document_.PrependArt(kArtGroup, art);
        SetNature(*edit);
        Fill(edit, depth + 2);
        Fill(result, depth + 2);
        auto& plugin = std::get<workbench::PluginArtData>(art->data);
        plugin = {"Some \x83\x5C plug-in", Below(9), -Below(9), {}, edit->handle, result->handle};
        for (int i = Below(40); i > 0; --i) plugin.data.push_back(static_cast<uint8_t>(Below(256)));
    }

    /// A group that the art's style draws in its place.
    void AddStyle(Art& art, int depth) {
        art.artStyle = document_.NewArtStyle(Style(depth + 2)).handle;
        // A record measures a pattern with the art itself and then has what the style draws.
        if (Often(50) || (recordable_ && patterns_ > 0)) return;
        art.blend.opacity = 1;
        Art* drawn = document_.AppendArt(kArtGroup, nullptr);
        SetNature(*drawn);
        drawn->blend = SomeBlend();
        Fill(drawn, depth + 2);
        art.styledArt = drawn->handle;
    }

    void AddPath(Art* parent, int depth) {
        Art* art = document_.PrependArt(kArtPath, parent);
        SetNature(*art);
        SetSegments(*art->path());
        art->path()->style = Style(depth);
        art->path()->guide = !recordable_ && Often(10);
        art->blend = SomeBlend();
        if (Often(5)) AddStyle(*art, depth);
    }

    void AddCompound(Art* parent, int depth, bool clip) {
        Art* art = document_.PrependArt(kArtCompoundPath, parent);
        SetNature(*art);
        if (clip) art->hidden = false;
        HostPathStyle style = Style(depth);
        style.clip = clip;
        const workbench::Blend blend = SomeBlend();
        for (int i = 1 + Below(3); i-- > 0;) {
            Art* member = document_.PrependArt(kArtPath, art);
            SetSegments(*member->path());
            member->path()->style = style;
            member->blend = blend;
        }
    }

    void Fill(Art* parent, int depth) {
        for (int i = Below(depth == 0 ? 6 : 4); i-- > 0;) {
            const int kind = Below(depth < kDeepest ? 4 : 2);
            if (kind == 0) AddCompound(parent, depth, false);
            if (kind == 1) AddPath(parent, depth);
            if (kind < 2 && Often(15)) AddRaster(parent);
            if (kind < 2 && Often(10)) AddMesh(parent);
            if (kind < 2 && Often(15)) AddText(parent, depth);
            if (kind < 2 && depth < kDeepest && Often(5)) AddPluginArt(parent, depth);
            if (kind < 2) continue;
            Art* group = document_.PrependArt(kArtGroup, parent);
            SetNature(*group);
            group->blend = SomeBlend();
            Fill(group, depth + 1);
            if (kind == 2) continue;
            group->group()->clipped = true;
            if (Often(40))
                AddCompound(group, depth, true);
            else if (Often(80))
                SetRectangle(*document_.PrependArt(kArtPath, group), true);
        }
    }

    Document& document_;
    const bool recordable_;
    std::mt19937 random_;
    int labUses_ = 0;
    int patterns_ = 0; ///< that the art in hand lies in
};

} // namespace

void FillRandomDocument(Document& document, RandomArt art, unsigned seed) {
    Artist(document, art, seed).Draw(seed);
}
