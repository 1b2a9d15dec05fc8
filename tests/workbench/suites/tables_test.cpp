// What the tables do over a document, where it is more than handing a value on.
#include <algorithm>
#include <cmath>

#include "tests/workbench/suites/suites_fixture.h"

namespace workbench {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class TablesTest : public SuitesFixture {
protected:
    UnicodeStringHandle Text(const std::string& utf8) {
        UnicodeStringHandle text = nullptr;
        EXPECT_EQ(TextSuite().New(utf8.data(), utf8.size(), kEncodingUtf8, &text), kHostNoError);
        texts_.push_back(text);
        return text;
    }
    std::string Content(UnicodeStringHandle text) {
        char bytes[256];
        uint64_t length = 0;
        EXPECT_EQ(TextSuite().GetBytes(text, kEncodingUtf8, bytes, sizeof bytes, &length), kHostNoError);
        return {bytes, std::min<size_t>(length, sizeof bytes)};
    }
    void TearDown() override {
        for (const auto text : texts_) EXPECT_EQ(TextSuite().Dispose(text), kHostNoError);
        SuitesFixture::TearDown();
    }

private:
    std::vector<UnicodeStringHandle> texts_;
};

TEST_F(TablesTest, SegmentsAreReplacedAndAddedWithoutGaps) {
    const AIPathSuite& suite = PathSuite();
    Art* path = NewPath();
    const HostPathSegment one{{1, 0}, {1, 0}, {1, 0}, 1}, two{{2, 0}, {2, 0}, {2, 0}, 0};
    const HostPathSegment both[]{one, two};
    EXPECT_EQ(suite.SetPathSegments(path->handle, 1, 1, &one), kHostBadParameter);
    EXPECT_EQ(suite.SetPathSegments(path->handle, 0, 2, both), kHostNoError);
    EXPECT_EQ(suite.SetPathSegments(path->handle, 1, 2, both), kHostNoError);
    int32_t count = 0;
    EXPECT_EQ(suite.GetPathSegmentCount(path->handle, &count), kHostNoError);
    EXPECT_EQ(count, 3);
    HostPathSegment read[2];
    EXPECT_EQ(suite.GetPathSegments(path->handle, 1, 2, read), kHostNoError);
    EXPECT_EQ(read[0].anchor.x, 1);
    EXPECT_EQ(read[1].anchor.x, 2);
    EXPECT_EQ(suite.GetPathSegments(path->handle, 2, 2, read), kHostBadParameter);
    EXPECT_EQ(suite.GetPathSegments(path->handle, INT32_MAX, INT32_MAX, read), kHostBadParameter);
    EXPECT_EQ(suite.GetPathSegments(path->handle, -1, 1, read), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(4));
    HostPathSegment endless = one;
    endless.out.y = INFINITY;
    EXPECT_EQ(suite.SetPathSegments(path->handle, 0, 1, &endless), kHostBadParameter);
}

TEST_F(TablesTest, GradientStopsAreSetAndInserted) {
    const auto& suite = Use<AIGradientSuite>("AI Gradient Suite", 9);
    GradientHandle gradient = nullptr;
    ASSERT_EQ(suite.NewGradient(&gradient), kHostNoError);
    HostGradientStop stop{};
    ASSERT_EQ(suite.GetNthStop(gradient, 0, &stop), kHostNoError);
    EXPECT_EQ(stop.color.u.gray.gray, 0) << "white";
    ASSERT_EQ(suite.GetNthStop(gradient, 1, &stop), kHostNoError);
    EXPECT_EQ(stop.location, 100);
    stop.location = 30;
    EXPECT_EQ(suite.InsertStop(gradient, 1, &stop), kHostNoError);
    EXPECT_EQ(suite.InsertStop(gradient, 4, &stop), kHostBadParameter);
    EXPECT_EQ(suite.GetNthStop(gradient, 3, &stop), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(2));
    stop.color.kind = kColorPattern;
    EXPECT_EQ(suite.SetNthStop(gradient, 0, &stop), kHostBadParameter);
    const auto& stops = document().Find(gradient)->stops;
    ASSERT_THAT(stops, SizeIs(3));
    EXPECT_THAT((std::vector<double>{stops[0].location, stops[1].location, stops[2].location}),
                ElementsAre(0, 30, 100));
}

TEST_F(TablesTest, APatternTakesACopyAndNeverContainsItself) {
    const auto& suite = Use<AIPatternSuite>("AI Pattern Suite", 10);
    PatternHandle pattern = nullptr, second = nullptr;
    ASSERT_EQ(suite.NewPattern(&pattern), kHostNoError);
    auto art = reinterpret_cast<ArtHandle>(uintptr_t{1});
    EXPECT_EQ(suite.GetPatternArt(pattern, &art), kHostNoError);
    EXPECT_EQ(art, nullptr);
    Art* path = NewPath();
    EXPECT_EQ(suite.SetPatternArt(pattern, path->handle), kHostNoError);
    EXPECT_EQ(suite.GetPatternArt(pattern, &art), kHostNoError);
    EXPECT_EQ(document().Find(art)->kind, kArtGroup);
    EXPECT_NE(document().Find(art)->firstChild, path);
    const ArtHandle before = art;

    HostPathStyle& style = path->path()->style;
    style.fillPaint = 1;
    style.fill.kind = kColorPattern;
    style.fill.u.pattern = {};
    style.fill.u.pattern.pattern = pattern;
    EXPECT_EQ(suite.SetPatternArt(pattern, path->handle), kHostRefused);
    ASSERT_EQ(suite.NewPattern(&second), kHostNoError);
    EXPECT_EQ(suite.SetPatternArt(second, path->handle), kHostNoError);
    style.fill.u.pattern.pattern = second;
    EXPECT_EQ(suite.SetPatternArt(pattern, path->handle), kHostRefused) << "through the other pattern";
    style = DefaultPathStyle();
    EXPECT_EQ(suite.SetPatternArt(pattern, path->handle), kHostNoError);
    EXPECT_EQ(document().Find(before), nullptr);
}

TEST_F(TablesTest, SwatchesAreFoundByNameAndKind) {
    const auto& suite = Use<AISwatchListSuite>("AI Swatch List Suite", 7);
    SwatchListHandle list = nullptr;
    ASSERT_EQ(suite.GetSwatchList(nullptr, &list), kHostNoError);
    SwatchHandle gray = nullptr, red = nullptr, found = nullptr;
    ASSERT_EQ(suite.InsertNthSwatch(list, 0, &gray), kHostNoError);
    ASSERT_EQ(suite.InsertNthSwatch(list, 0, &red), kHostNoError);
    const UnicodeStringHandle name = Text("Ink");
    EXPECT_EQ(suite.SetSwatchName(gray, name), kHostNoError);
    EXPECT_EQ(suite.SetSwatchName(red, name), kHostNoError);
    const HostColor color = ThreeColor(1, 0, 0);
    EXPECT_EQ(suite.SetSwatchColor(red, &color), kHostNoError);
    EXPECT_EQ(suite.GetSwatchByName(list, name, kColorGray, &found), kHostNoError);
    EXPECT_EQ(found, gray);
    EXPECT_EQ(suite.GetSwatchByName(list, name, kColorThree, &found), kHostNoError);
    EXPECT_EQ(found, red);
    EXPECT_EQ(suite.GetSwatchByName(list, name, kColorFour, &found), kHostNotFound);
}

TEST_F(TablesTest, TagsAreReplacedByNameAndReadAsTextsOnlyIfTheyAre) {
    const auto& suite = Use<AITagSuite>("AI Tag Suite", 4);
    const ArtHandle art = NewPath()->handle;
    EXPECT_EQ(suite.SetTag(art, "a", "string", "\x95\x5C"), kHostNoError);
    EXPECT_EQ(suite.SetTag(art, "b", "number", "1"), kHostNoError);
    EXPECT_EQ(suite.SetTag(art, "a", "string", "\x94\x5C"), kHostNoError);
    EXPECT_EQ(suite.SetTag(art, "", "string", "x"), kHostBadParameter);
    int32_t count = 0;
    EXPECT_EQ(suite.CountTags(art, &count), kHostNoError);
    EXPECT_EQ(count, 2);
    const char *name = nullptr, *value = nullptr;
    ASSERT_EQ(suite.GetNthTagName(art, 0, &name), kHostNoError);
    // A text that came out of the suite may go straight into its next call.
    ASSERT_EQ(suite.GetTagString(art, name, &value), kHostNoError);
    EXPECT_STREQ(value, "\x94\x5C");
    EXPECT_EQ(suite.GetTagString(art, "b", &value), kHostNotFound);
    EXPECT_EQ(suite.RemoveTag(art, "a"), kHostNoError);
    EXPECT_EQ(suite.RemoveTag(art, "a"), kHostNotFound);
}

TEST_F(TablesTest, LinkedFilesComeOutWithBackslashes) {
    const auto& suite = Use<AIPlacedSuite>("AI Placed Suite", 8);
    Art* placed = document().AppendArt(kArtPlaced, document().CurrentLayer().root);
    auto& data = std::get<PlacedData>(placed->data);
    const UnicodeStringHandle path = Text("untouched");
    EXPECT_EQ(suite.GetPlacedFile(placed->handle, path), kHostNotFound);
    EXPECT_EQ(Content(path), "untouched");
    data.file = "/home/anna/sky.tif";
    EXPECT_EQ(suite.GetPlacedFile(placed->handle, path), kHostNoError);
    EXPECT_EQ(Content(path), "\\home\\anna\\sky.tif");
    data.file = "/home/anna/a\\b.tif"; // would name another file
    EXPECT_EQ(suite.GetPlacedFile(placed->handle, path), kHostNotFound);
}

TEST_F(TablesTest, PluginArtTakesItsDataInPieces) {
    host_.AddPluginGroup("Warp");
    host_.AddPluginGroup("Brush");
    const auto& suite = Use<AIPluginGroupSuite>("AI Plugin Group Suite", 6);
    Art* plugin = document().AppendArt(kArtPlugin, document().CurrentLayer().root);
    Art* edit = document().AppendArt(kArtGroup, document().CurrentLayer().root);
    int32_t count = 0;
    EXPECT_EQ(suite.CountPluginGroups(&count), kHostNoError);
    ASSERT_EQ(count, 2);
    PluginGroupHandle group = nullptr;
    ASSERT_EQ(suite.GetNthPluginGroup(1, &group), kHostNoError);
    const char* name = nullptr;
    EXPECT_EQ(suite.GetPluginGroupName(group, &name), kHostNoError);
    EXPECT_STREQ(name, "Brush");
    EXPECT_EQ(suite.SetEditArt(plugin->handle, edit->handle), kHostNoError);
    EXPECT_EQ(suite.UsePluginGroup(plugin->handle, group), kHostNoError);
    EXPECT_EQ(suite.SetDataSize(plugin->handle, 4), kHostNoError);
    EXPECT_EQ(suite.SetDataRange(plugin->handle, "xyz", 1, 3), kHostNoError);
    EXPECT_EQ(suite.SetDataRange(plugin->handle, "xyz", 2, 3), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(1));
    const auto& data = std::get<PluginArtData>(plugin->data);
    EXPECT_THAT(data.data, ElementsAre(0, 'x', 'y', 'z'));
    EXPECT_EQ(data.groupName, "Brush");
    EXPECT_EQ(edit->parent, plugin);
    ArtHandle result = nullptr;
    EXPECT_EQ(suite.GetResultArt(plugin->handle, &result), kHostNoError);
    EXPECT_EQ(result, nullptr);
}

TEST_F(TablesTest, LayersAreInsertedAboveAndBelow) {
    const auto& suite = Use<AILayerSuite>("AI Layer Suite", 13);
    LayerHandle current = nullptr, above = nullptr, below = nullptr, nth = nullptr;
    ASSERT_EQ(suite.GetCurrentLayer(&current), kHostNoError);
    EXPECT_EQ(suite.InsertLayer(nullptr, kPlaceAboveAll, &above), kHostNoError);
    EXPECT_EQ(suite.InsertLayer(current, kPlaceBelow, &below), kHostNoError);
    EXPECT_EQ(suite.GetNthLayer(0, &nth), kHostNoError);
    EXPECT_EQ(nth, above);
    EXPECT_EQ(suite.GetNthLayer(2, &nth), kHostNoError);
    EXPECT_EQ(nth, below);
    LayerHandle still = nullptr;
    EXPECT_EQ(suite.GetCurrentLayer(&still), kHostNoError);
    EXPECT_EQ(still, current);
    EXPECT_EQ(suite.SetLayerTitle(above, Text("\xE8\xA1\xA8")), kHostNoError);
    EXPECT_EQ(document().LayerAt(0).title, "\xE8\xA1\xA8");
}

TEST_F(TablesTest, UndoTextsAlertsAndHardCoordinatesReachTheHost) {
    const auto& undo = Use<AIUndoSuite>("AI Undo Suite", 7);
    const auto& user = Use<AIUserSuite>("AI User Suite", 12);
    const auto& hard = Use<AIHardSoftSuite>("AI Hard Soft Suite", 5);
    EXPECT_EQ(undo.BeginStep(), kHostNoError);
    EXPECT_EQ(undo.SetUndoTexts(Text("Undo it"), Text("Redo it")), kHostNoError);
    EXPECT_EQ(document().undoText, "Undo it");
    EXPECT_EQ(document().redoText, "Redo it");
    EXPECT_EQ(user.ErrorAlert(Text("no")), kHostNoError);
    ASSERT_THAT(host_.alerts(), SizeIs(1));
    EXPECT_TRUE(host_.alerts()[0].error);
    EXPECT_EQ(host_.alerts()[0].text, "no");
    document().hardOrigin = {100, -20};
    HostPoint point{1, 2};
    EXPECT_EQ(hard.HardenPoint(&point), kHostNoError);
    EXPECT_EQ(point.x, 101);
    EXPECT_EQ(point.y, -18);
}

TEST_F(TablesTest, MathematicsFollowsTheContract) {
    const auto& math = Use<AIRealMathSuite>("AI Real Math Suite", 3);
    HostMatrix matrix{2, 1, -1, 3, 5, 7};
    const HostPoint from{0.25, -4};
    HostPoint to{}, back{};
    math.TransformPoint(&matrix, &from, &to);
    EXPECT_EQ(to.x, 2 * 0.25 + 4 + 5);
    EXPECT_EQ(to.y, 0.25 - 12 + 7);
    ASSERT_EQ(math.InvertMatrix(&matrix), kHostNoError);
    math.TransformPoint(&matrix, &to, &back);
    EXPECT_NEAR(back.x, from.x, 1e-12);
    EXPECT_NEAR(back.y, from.y, 1e-12);
    math.TransformPoint(&matrix, &back, &back); // in place
    HostRect rect{0, 10, 20, 0};
    math.InsetRect(&rect, -1, -2);
    const HostPoint corner{21, -2}, outside{21, -2.001};
    EXPECT_EQ(rect.top, 12);
    EXPECT_EQ(math.PointInRect(&corner, &rect), 1);
    EXPECT_EQ(math.PointInRect(&outside, &rect), 0);
    EXPECT_EQ(math.PointsEqual(&corner, &outside), 0);
}

/// Notes what it is asked to draw.
class RecordingPainter : public Painter {
public:
    struct Surface : PaintSurface {
        explicit Surface(RecordingPainter& owner) : owner_(owner) {}
        void Fill(const Document&, const HostColor& color) override { owner_.fill = color.u.gray.gray; }
        void Draw(const Document&, const Art&, const HostMatrix& matrix) override { owner_.matrix = matrix; }
        const uint8_t* Pixels(int32_t* rowPixels) override {
            *rowPixels = 300;
            return pixels_;
        }
        RecordingPainter& owner_;
        uint8_t pixels_[4]{};
    };
    std::unique_ptr<PaintSurface> NewSurface(int32_t width, int32_t) override {
        return width == 13 ? nullptr : std::make_unique<Surface>(*this);
    }
    double fill = -1;
    HostMatrix matrix{};
};

TEST_F(TablesTest, DrawingTurnsArtUnitsIntoPixelsFromTheTop) {
    RecordingPainter painter;
    host_.SetPainter(&painter);
    const auto& suite = Use<AIDrawArtSuite>("AI Draw Art Suite", 11);
    PortHandle port = nullptr;
    EXPECT_EQ(suite.NewOffscreenPort(13, 13, &port), kHostOutOfMemory);
    ASSERT_EQ(suite.NewOffscreenPort(256, 256, &port), kHostNoError);
    const HostColor white = GrayColor(0);
    EXPECT_EQ(suite.FillPort(port, &white), kHostNoError);
    EXPECT_EQ(painter.fill, 0);
    HostDrawData data{};
    data.version = 11;
    data.outputKind = kDrawOutputPort;
    data.origin = {10, 50};
    data.matrix = {2, 0, 0, 2, 0, 0};
    data.art = NewPath()->handle;
    data.port = port;
    EXPECT_EQ(suite.DrawArt(&data), kHostNoError);
    // The origin falls on the upper left pixel; one unit lower is two pixels further down.
    const HostMatrix& m = painter.matrix;
    const auto x = [&](double px, double py) { return m.a * px + m.c * py + m.tx; };
    const auto y = [&](double px, double py) { return m.b * px + m.d * py + m.ty; };
    EXPECT_EQ(x(10, 50), 0);
    EXPECT_EQ(y(10, 50), 0);
    EXPECT_EQ(x(11, 49), 2);
    EXPECT_EQ(y(11, 49), 2);
    data.version = 10;
    EXPECT_EQ(suite.DrawArt(&data), kHostBadParameter);
    EXPECT_THAT(TakeFaults(), SizeIs(1));
    const uint8_t* pixels = nullptr;
    int32_t row = 0;
    EXPECT_EQ(suite.GetPortPixels(port, &pixels, &row), kHostNoError);
    EXPECT_EQ(row, 300);
    EXPECT_EQ(suite.ReleasePort(port), kHostNoError);
}

TEST_F(TablesTest, WithoutAPainterAPortShowsItsFillAndNothingIsDrawn) {
    const auto& suite = Use<AIDrawArtSuite>("AI Draw Art Suite", 11);
    PortHandle port = nullptr;
    ASSERT_EQ(suite.NewOffscreenPort(3, 2, &port), kHostNoError);
    const HostColor white = GrayColor(0);
    EXPECT_EQ(suite.FillPort(port, &white), kHostNoError);
    HostDrawData data{};
    data.version = 11;
    data.outputKind = kDrawOutputPort;
    data.art = NewPath()->handle;
    data.port = port;
    EXPECT_EQ(suite.DrawArt(&data), kHostRefused);
    const uint8_t* pixels = nullptr;
    int32_t row = 0;
    ASSERT_EQ(suite.GetPortPixels(port, &pixels, &row), kHostNoError);
    ASSERT_EQ(row, 3);
    for (int i = 0; i < 6; ++i) {
        EXPECT_THAT(std::vector<uint8_t>(pixels + 4 * i, pixels + 4 * i + 4), ElementsAre(0, 255, 255, 255));
    }
    EXPECT_EQ(suite.ReleasePort(port), kHostNoError);
}

} // namespace
} // namespace workbench
