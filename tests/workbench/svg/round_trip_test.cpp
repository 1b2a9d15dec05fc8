// Documents that are written and read again must be the same in every field that art can have here.
#include <algorithm>
#include <filesystem>
#include <random>

#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/svg_writer.h"

namespace workbench {
namespace {

ReadFile WriteAndRead(const Document& document) {
    const std::string text = WriteSvg(document);
    ReadFile file = ReadText(text);
    EXPECT_TRUE(file.document) << file.error << "\n" << text.substr(0, 2000);
    if (!file.document) file.document = std::make_unique<Document>();
    file.report.losses.erase("missing image file"); // bytes lie in no folder that links could start from
    EXPECT_THAT(file.report.losses, testing::IsEmpty());
    return file;
}

/// The first line in which two texts differ, with the lines before it.
std::string FirstDifference(const std::string& a, const std::string& b) {
    const size_t at = static_cast<size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
    if (at == a.size() && at == b.size()) return {};
    const size_t from = at > 600 ? at - 600 : 0;
    return a.substr(from, at - from) + ">>>" + a.substr(at, 100) + "\n--- instead of ---\n" +
           b.substr(at, 100);
}

void ExpectSameAgain(const Document& document) {
    const ReadFile file = WriteAndRead(document);
    EXPECT_EQ(FirstDifference(DocumentText(*file.document), DocumentText(document)), "");
}

/// Random art with awkward numbers in every field.
class Artist {
public:
    Artist(Document& document, unsigned seed) : document_(document), random_(seed) {}

    int Below(int bound) { return std::uniform_int_distribution<>(0, bound - 1)(random_); }
    bool Often(int percent) { return Below(100) < percent; }
    double Share() { return Often(20) ? Below(2) : std::uniform_real_distribution<>(0, 1)(random_); }
    double Number() {
        return Often(30) ? Below(200) - 100 : std::uniform_real_distribution<>(-1000, 1000)(random_);
    }
    HostPoint Point() { return {Number(), Number()}; }
    HostMatrix Matrix() {
        return {1 + Share(), Share() - 0.5, Share() - 0.5, 1 + Share(), Number(), Number()};
    }

    HostColor Plain() {
        switch (Below(4)) {
            case 0:
                return GrayColor(Share());
            case 1:
                return FourColor(Share(), Share(), Share(), Share());
            case 2: {
                HostColor color{};
                color.kind = kColorCustom;
                color.u.custom = {Ink(), Share()};
                return color;
            }
            default:
                return Often(50) ? ThreeColor(Below(256) / 255.0, Below(256) / 255.0, 1)
                                 : ThreeColor(Share(), Share(), Share());
        }
    }

    CustomColorHandle Ink() {
        const std::string name = std::string("Ink & <") + std::to_string(Below(4)) + "> \"x\"";
        if (const CustomColor* known = document_.FindCustomColor(name)) return known->handle;
        HostCustomColor definition{};
        definition.kind = Below(4);
        const int channels = definition.kind == kCustomFour ? 4 : definition.kind == kCustomOne ? 1 : 3;
        for (int i = 0; i < channels; ++i) definition.values[i] = Share();
        definition.flags = Below(3) - 1;
        return document_.NewCustomColor(name, definition).handle;
    }

    HostColor GradientColor() {
        HostColor color{};
        color.kind = kColorGradient;
        Gradient& gradient = document_.NewGradient("Fade " + std::to_string(Below(1000)));
        gradient.type = Below(2);
        gradient.stops.clear();
        double location = Share() * 20;
        for (int i = 2 + Below(5); i-- > 0; location = std::min(100.0, location + Share() * 30))
            gradient.stops.push_back({Often(50) ? 50 : Share() * 100, location, Plain(), Share()});
        HostGradientUse& use = color.u.gradient;
        use = {gradient.handle, Point(), Number(), 1 + Share() * 100, Matrix(), 0, 0};
        if (gradient.type == kGradientRadial && Often(60))
            use.highlightAngle = Number(), use.highlightLength = Share() * 0.9;
        if (gradient.type == kGradientRadial) use.angle = Often(50) ? Number() : 0;
        return color;
    }

    HostColor PatternColor(int depth) {
        HostColor color{};
        color.kind = kColorPattern;
        Art* art = document_.AppendArt(kArtGroup, nullptr);
        art->group()->clipped = true;
        Fill(art, depth + 2);
        SetRectangle(*document_.PrependArt(kArtPath, art), true);
        Pattern& pattern = document_.NewPattern("Tile " + std::to_string(Below(1000)));
        pattern.art = art;
        color.u.pattern = {pattern.handle, Share() * 9, Number(), {1 + Share(), 1 + Share()},
                           Number(),       Below(2),    Number(), Share() * 40,
                           Number(),       Matrix()};
        return color;
    }

    HostPathStyle Style(int depth) {
        HostPathStyle style = DefaultPathStyle();
        style.fillPaint = Below(2);
        style.strokePaint = Below(2);
        if (style.fillPaint || Often(30)) style.fill = Plain();
        if (style.strokePaint || Often(30)) style.stroke = Plain();
        if (style.fillPaint && Often(25))
            style.fill = Often(40) && depth < 4 ? PatternColor(depth) : GradientColor();
        if (style.strokePaint && Often(10)) style.stroke = GradientColor();
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

    void SetSegments(PathData& path) {
        path.closed = Below(2);
        for (int i = 1 + Below(5); i-- > 0;) {
            const HostPoint anchor =
                Often(10) && !path.segments.empty() ? path.segments.front().anchor : Point();
            path.segments.push_back(
                {anchor, Often(50) ? anchor : Point(), Often(50) ? anchor : Point(), Below(2)});
        }
    }

    void SetRectangle(Art& art, bool clip) {
        PathData& path = *art.path();
        path.closed = true;
        path.style.fillPaint = path.style.strokePaint = 0;
        path.style.miterLimit = DefaultPathStyle().miterLimit;
        path.style.clip = clip;
        const double left = Number(), bottom = Number(), right = left + 1 + Share() * 50,
                     top = bottom + 1 + Share() * 50;
        for (const HostPoint p : {HostPoint{left, bottom}, {right, bottom}, {right, top}, {left, top}})
            path.segments.push_back({p, p, p, 1});
    }

    Blend SomeBlend() {
        return {Often(70) ? 0 : Below(kBlendModeCount), Often(60) ? 1 : Share(), Often(20), Below(3),
                Often(10)};
    }

    void SetNature(Art& art) {
        static const char* const kNames[] = {"",    "",      "leaf",        "leaf",        "two words",
                                             "1st", "<&\">", "vlq-paint-1", "\xE7\xB7\x9A"};
        art.name = kNames[Below(9)];
        art.hidden = Often(10);
        art.locked = Often(10);
    }

    void AddPath(Art* parent, int depth) {
        Art* art = document_.PrependArt(kArtPath, parent);
        SetNature(*art);
        SetSegments(*art->path());
        art->path()->style = Style(depth);
        art->path()->guide = Often(10);
        art->blend = SomeBlend();
    }

    void AddCompound(Art* parent, int depth, bool clip) {
        Art* art = document_.PrependArt(kArtCompoundPath, parent);
        SetNature(*art);
        if (clip) art->hidden = false;
        HostPathStyle style = Style(depth);
        style.clip = clip;
        const Blend blend = SomeBlend();
        for (int i = 1 + Below(3); i-- > 0;) {
            Art* member = document_.PrependArt(kArtPath, art);
            SetSegments(*member->path());
            member->path()->style = style;
            member->blend = blend;
        }
    }

    void Fill(Art* parent, int depth) {
        for (int i = Below(depth == 0 ? 6 : 4); i-- > 0;) {
            const int kind = Below(depth < 5 ? 4 : 2);
            if (kind == 0) AddCompound(parent, depth, false);
            if (kind == 1) AddPath(parent, depth);
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

private:
    Document& document_;
    std::mt19937 random_;
};

TEST(RoundTrip, RandomDocumentsComeBackInEveryField) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        Document document;
        Artist artist(document, seed);
        document.title = "A title & <more> \"quoted\"";
        document.subject = "one, two";
        document.description = "Line one\nline two";
        if (seed % 3 == 1) document.page = {-10.1, 333.3, 700.7, 12.34};
        document.LayerAt(0).title = "Top \xE5\xB1\xA4";
        artist.Fill(document.LayerAt(0).root, 0);
        if (seed % 2) {
            Layer& below = document.InsertLayer(1, "Below");
            below.visible = false;
            below.locked = true;
            below.root->name = "below";
            artist.Fill(below.root, 0);
        }
        ExpectSameAgain(document);
        if (HasFailure()) FAIL() << "seed " << seed;
    }
}

TEST(RoundTrip, PagesOfAnySizeKeepTheNumbersOfTheArt) {
    for (const HostRect page :
         {HostRect{0, 792, 612, 0}, HostRect{0, 841.8897637795277, 595.2755905511812, 0},
          HostRect{1.1, 3.3, 2.2, -4.4}}) {
        Document document;
        document.page = page;
        Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
        for (const HostPoint p : {HostPoint{0.1, 0.2}, HostPoint{1.0 / 3, 1e-9}, HostPoint{-7e5, 123456.789}})
            art->path()->segments.push_back({p, p, p, 1});
        ExpectSameAgain(document);
    }
}

// A gradient that another program changed means what that program wrote, not what we had noted.
TEST(RoundTrip, OwnWordsYieldToWhatOthersChanged) {
    Document document;
    Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
    for (const HostPoint p : {HostPoint{0, 0}, HostPoint{9, 0}, HostPoint{9, 9}})
        art->path()->segments.push_back({p, {p.x - 1, 1}, p, 0});
    art->path()->style.fillPaint = 1;
    art->path()->style.fill = FourColor(1, 0, 0, 0);
    std::string text = WriteSvg(document);
    ASSERT_NE(text.find("vlq:segments"), std::string::npos);
    const auto replace = [&](const std::string& from, const std::string& to) {
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << text;
        text.replace(at, from.size(), to);
    };
    replace("d=\"M", "d=\"M5 5L");
    replace("fill=\"#00ffff\"", "fill=\"#ff0000\"");
    const ReadFile file = ReadText(text);
    const PathData& path = *OnlyArt(*file.document)->path();
    EXPECT_EQ(path.segments[0].anchor.x, 5);
    EXPECT_EQ(ColorOf(*file.document, path.style.fill), "three 1 0 0");
}

TEST(RoundTrip, WhatHasNoWordsIsCounted) {
    Document document;
    for (const int32_t kind : {kArtRaster, kArtPlaced, kArtMesh, kArtTextFrame})
        document.PrependArt(kind, document.LayerAt(0).root);
    Art* art = document.PrependArt(kArtPath, document.LayerAt(0).root);
    art->path()->segments.push_back({});
    art->tags.push_back({"name", "string", "value"});
    std::map<std::string, int> losses;
    WriteSvg(document, &losses);
    EXPECT_EQ(losses, (std::map<std::string, int>{
                          {"image", 1}, {"placed file", 1}, {"mesh", 1}, {"text", 1}, {"tag", 1}}));
}

// Drawings that none of us made: all are read, and what we write of them is the same drawing.
TEST(RoundTrip, DrawingsOfManyHands) {
    const std::filesystem::path folder = "/usr/share/openclipart/svg";
    std::vector<std::string> files;
    ASSERT_TRUE(std::filesystem::is_directory(folder)) << "the package openclipart-svg is missing";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() == ".svg") files.push_back(entry.path());
    std::ranges::sort(files);
    ASSERT_GT(files.size(), 1000u);
    const size_t stride = files.size() / 300;
    for (size_t i = 0; i < files.size(); i += stride) {
        std::string error;
        const auto document = ReadSvgFile(files[i], nullptr, &error);
        ASSERT_TRUE(document) << files[i] << ": " << error;
        const ReadFile again = WriteAndRead(*document);
        ASSERT_EQ(FirstDifference(DocumentText(*again.document), DocumentText(*document)), "") << files[i];
    }
}

} // namespace
} // namespace workbench
