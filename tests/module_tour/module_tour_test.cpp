// From the panel to the page and back with the built module, by hands alone; the same on every platform.
//
// What the tour leaves (the database as it is, and the documents after each step) lies in the output folder,
// by language; scripts/compare_tours holds two such folders against each other.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>

#include "app/sample_document.h"
#include "tests/module_tour/hosted_plugin.h"
#include "tests/module_tour/tour_dump.h"
#include "tests/support/temporary_folder.h"
#include "workbench/document/undo_history.h"

namespace {

namespace fs = std::filesystem;
using workbench::Art;
using workbench::Document;
using Texts = std::vector<std::string>;

// Controls of dialogs.
constexpr int kRecordName = 7, kRecordKind = 8, kRecordGroup = 14, kRecordComment = 16;
constexpr int kPlaceName = 5, kPlaceFolder = 8, kRootPath = 5;
// Entries of the flyout.
constexpr int kLargeIcons = 2, kPlainList = 3, kByKind = 6, kChooseRoot = 19;

constexpr uint32_t kCentreX = 0x706C6378, kCentreY = 0x706C6379, kWidth = 0x73636C77, kHeight = 0x73636C68,
                   kAngle = 0x616E676C;

/// The words of one language; Japanese ones with second bytes that are backslashes.
struct Words {
    const char *folder, *group, *otherGroup, *sample, *square, *lost, *kind, *comment, *newName;
};
constexpr Words kJapaneseWords{"図表", "樹木", "ソース",           "全種類", "四角",
                               "不要", "能力", "机の上の表です。", "正方形"};
constexpr Words kEnglishWords{
    "Charts", "Trees", "Sources", "All kinds", "Box", "Lost", "skill", "A table on a desk.", "Square"};

constexpr HostPoint kAnchor{200, 500}; ///< of what stands on the page

Art& AddSquare(Document& document, HostPoint corner, double side) {
    Art& path = *document.AppendArt(kArtPath, document.LayerAt(0).root);
    for (const HostPoint step : {HostPoint{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
        const HostPoint at{corner.x + step.x * side, corner.y + step.y * side};
        path.path()->segments.push_back({at, at, at, 1});
    }
    path.path()->closed = true;
    return path;
}

std::unique_ptr<Document> PageWithSquare() {
    auto document = std::make_unique<Document>();
    AddSquare(*document, kAnchor, 100);
    return document;
}

std::unique_ptr<Document> TaggedSquare() {
    auto document = std::make_unique<Document>();
    Art& square = AddSquare(*document, {50, 50}, 60);
    square.tags.push_back({"price", "string", "12"});
    square.path()->style.fillPaint = 1;
    square.path()->style.fill = workbench::ThreeColor(0.25, 0.5, 1.0 / 3);
    return document;
}

/// The parameter is `language`.
class ModuleTour : public ::testing::TestWithParam<int32_t> {
public:
    void SetUp() override {
        fs::remove_all(output());
        fs::create_directories(output() / "database");
        fs::create_directories(output() / "dumps");
        for (const fs::path& picture : {Picture("picture.png"), Picture("picture.jpg")})
            std::ofstream(picture, std::ios::binary) << "bytes of " << picture.filename().string();
        RedirectDocumentsOfModules(output());
        ForgetSettings();
    }

    bool japanese() const { return GetParam() == 0; }
    const Words& words() const { return japanese() ? kJapaneseWords : kEnglishWords; }
    fs::path output() const {
        return fs::path(VELQUORNE_TOUR_OUTPUT) / (japanese() ? "japanese" : "english");
    }
    fs::path Picture(const char* name) const { return output() / name; }

    HostedPlugin& at() { return *hosted_; }
    void Close() { hosted_.reset(); }
    void Open() { hosted_ = std::make_unique<HostedPlugin>(true); }

    void Dump(const std::string& step) {
        DumpDocument(at().document(), output(), output() / "dumps" / (step + ".json"));
    }

    void Show(std::unique_ptr<Document> document, const char* file) {
        auto held = std::make_shared<std::unique_ptr<Document>>(std::move(document));
        at().Do([this, held, file] { at().workspace().ShowDocument(std::move(*held), file, {}); });
        at().WaitTicks();
        at().WaitTicks().WaitTicks();
        WaitForView();
    }

    /// A tick tells the plug-in of the view that a drag goes by.
    void WaitForView() {
        at().hand().Until("the plug-in knows the page",
                          [this] { return at().state().documentView == at().document().view().handle; });
        at().Play();
    }

    // Stages of the tour.
    void ChooseLanguage();
    void PullPanelOut();
    void MakePlaces();
    void RegisterAll();
    void Browse();
    void EditAndDelete();
    void DragOntoAnchor();
    void PlayPlaceAction();
    void UndoAndRedo();
    void UnloadAndReload();
    void HandOverTags();
    void PlaceAllKinds();
    void ShutDownAndRestart();

    void Register(const char* name, const char* step);
    void PlayAction(double x, double y, double width, double height, double angle);

    POINT PixelOfArt(HostPoint point) {
        return PanelHands::PixelOfArt(at().document().view(), at().workspace().document().canvas().window(),
                                      point);
    }

    /// Presses a row, drags it over the page and drops it there when `snapped` is so.
    void Drag(int row, HostPoint point, const char* what, std::function<bool()> snapped);

    std::string GroupOf(const char* folder, const char* group) const {
        return std::string("\\") + folder + "\\" + group;
    }

private:
    std::unique_ptr<HostedPlugin> hosted_;
};

/// A start without windows, whose settings the next one reads.
void ModuleTour::ChooseLanguage() {
    HostedPlugin first(false);
    first.state().language = GetParam();
}

void ModuleTour::PullPanelOut() {
    Open();
    at().PointAt([this] {
        const RECT frame = at().ScreenRect(at().frame().window());
        return POINT{frame.left + 60, frame.top + 10};
    });
    at().hand().Press();
    at().PointAt([] { return POINT{500, 50}; });
    at().hand().Release();
    at().Do([this] { at().frame().Resize({560, 480}); }).Play();
    EXPECT_EQ(at().ScreenRect(at().frame().window()).top, 40);
}

void ModuleTour::MakePlaces() {
    at().PickFlyout(kChooseRoot).SetText(kRootPath, StorePathOf(output() / "database"));
    at().PressButton(IDOK).Play();
    at().ClickControl(kNewFolderButton).TypeOver(kPlaceName, words().folder).PressButton(IDOK).Play();
    for (const char* group : {words().otherGroup, words().group}) {
        at().ClickControl(kNewGroupButton).Choose(kPlaceFolder, words().folder).TypeOver(kPlaceName, group);
        at().PressButton(IDOK).Play();
        EXPECT_EQ(at().state().aidbfname, GroupOf(words().folder, group));
    }
}

/// The whole of what is in front, through the New button and its dialog.
void ModuleTour::Register(const char* name, const char* step) {
    at().KeyWith(VK_CONTROL, 'A').ClickControl(kNewButton).TypeOver(kRecordName, name);
    at().TypeOver(kRecordKind, words().kind)
        .TypeOver(kRecordComment, words().comment)
        .PressButton(IDOK)
        .Play();
    EXPECT_EQ(at().Records().size(), static_cast<size_t>(at().Rows(kRecordList).size()));
    EXPECT_NE(at().Selected(kRecordList), -1);
    Dump(step);
}

void ModuleTour::RegisterAll() {
    Show(MakeSampleDocument(
             {Picture("picture.png").generic_string(), Picture("picture.jpg").generic_string()}),
         "sample.svg");
    Dump("1-sample");
    Register(words().sample, "2-registered");
    Show(TaggedSquare(), "square.svg");
    Register(words().lost, "3-registered");
    Register(words().square, "4-registered");
}

void ModuleTour::Browse() {
    // The folder opens, closes and opens, and both groups in it are looked at.
    const size_t closed = at().Rows(kFolderList).size();
    for (const size_t groups : {2u, 0u, 2u}) {
        at().ClickAt([this] { return at().RowPoint(kFolderList, 0, 10); }).Play();
        EXPECT_EQ(at().Rows(kFolderList).size(), closed + groups);
    }
    for (const char* group : {words().otherGroup, words().group}) {
        const Texts all = at().Rows(kFolderList);
        const auto row = std::ranges::find(all, GroupOf(words().folder, group)) - all.begin();
        at().ClickRow(kFolderList, static_cast<int>(row)).Play();
        EXPECT_EQ(at().state().aidbfname, GroupOf(words().folder, group));
    }
    for (const int view : {kLargeIcons, kPlainList}) {
        at().PickFlyout(view).Play();
        EXPECT_EQ(at().state().toolMode, view);
    }
    at().PickFlyout(kByKind).Play();
    // A line down by the bar's lower arrow, and back.
    for (const int position : {1, 0}) {
        at().ClickAt([this, position] {
            const RECT bar = at().ScreenRect(at().control(kRecordScroll));
            return POINT{(bar.left + bar.right) / 2, position == 1 ? bar.bottom - 6 : bar.top + 6};
        });
        at().Play();
        EXPECT_EQ(at().ScrollPosition(kRecordScroll), position);
    }
}

void ModuleTour::EditAndDelete() {
    const auto rowOf = [this](const char* name) {
        const Texts names = at().Records();
        return static_cast<int>(std::ranges::find(names, name) - names.begin());
    };
    at().ClickRow(kRecordList, rowOf(words().square)).ClickControl(kSettingButton);
    at().TypeOver(kRecordName, words().newName).PressButton(IDOK).Play();
    at().ClickRow(kRecordList, rowOf(words().lost)).ClickControl(kDeleteButton).Key(VK_RETURN).Play();
    EXPECT_EQ(at().Records().size(), 2u);
    EXPECT_LT(rowOf(words().newName), 2);
    // The one that the rest of the tour drags.
    at().LetClicksPass().ClickRow(kRecordList, rowOf(words().newName)).Play();
    EXPECT_EQ(at().Selected(kRecordList), rowOf(words().newName));
}

void ModuleTour::Drag(int row, HostPoint point, const char* what, std::function<bool()> snapped) {
    at().LetClicksPass().PointAt([this, row] { return at().RowPoint(kRecordList, row); });
    at().hand().Press();
    at().hand().Pause(300); // where the press was has to be known before the pointer leaves
    at().PointAt([this, point] {
        const POINT pixel = PixelOfArt(point);
        return POINT{pixel.x + 12, pixel.y};
    });
    at().hand().Until("the drag began", [this] { return at().state().commandPending != 0; });
    at().hand().MoveUntil([this, point] { return PixelOfArt(point); }, what, std::move(snapped));
    at().hand().Release();
    at().Play();
    EXPECT_EQ(at().state().commandPending, 0);
}

void ModuleTour::DragOntoAnchor() {
    Show(PageWithSquare(), "page.svg");
    const double pixel = 1 / at().document().view().zoom;
    Drag(at().Selected(kRecordList), {kAnchor.x + pixel, kAnchor.y + pixel}, "the anchor pulls",
         [this] { return at().state().snapKind == 2; });
    HostRect bounds{};
    ASSERT_TRUE(at().document().Bounds(*at().document().LayerAt(0).root->firstChild, &bounds));
    EXPECT_NEAR(bounds.left, kAnchor.x, 1e-9);
    EXPECT_NEAR(bounds.top, kAnchor.y, 1e-9);
    Dump("5-dropped");
}

void ModuleTour::PlayAction(double x, double y, double width, double height, double angle) {
    const std::map<uint32_t, double> reals{
        {kCentreX, x}, {kCentreY, y}, {kWidth, width}, {kHeight, height}, {kAngle, angle}};
    at().Do([this, reals] { EXPECT_EQ(at().host().PlayAction("VELQUORNE_PLACE", reals), kHostNoError); });
    at().Play();
}

void ModuleTour::PlayPlaceAction() {
    PlayAction(300, 200, 81, 47, 0.3);
    Dump("6-action");
}

void ModuleTour::UndoAndRedo() {
    const auto count = [this] { return at().document().LayerAt(0).root->childCount; };
    EXPECT_EQ(count(), 3u);
    at().ClickAt([this] { return at().Middle(at().workspace().layers().window()); });
    at().Do([this] { SetFocus(at().workspace().document().canvas().window()); });
    at().KeyWith(VK_CONTROL, 'Z').Play();
    EXPECT_EQ(count(), 2u);
    Dump("7-undone");
    at().KeyWith(VK_CONTROL, 'Y').Play();
    EXPECT_EQ(count(), 3u);
    Dump("8-redone");
}

void ModuleTour::UnloadAndReload() {
    const Texts records = at().Records(), folders = at().Rows(kFolderList);
    at().Do([this] {
        EXPECT_EQ(at().plugin().Unload(), kHostNoError);
        EXPECT_FALSE(HostedPlugin::IsModuleInProcess());
    });
    // The panel stands meanwhile and is looked at.
    at().PointAt([this] { return at().Middle(at().control(kNewButton)); });
    at().Do([this] { InvalidateRect(at().panel(), nullptr, TRUE); }).WaitTicks();
    at().Do([this] { EXPECT_EQ(at().plugin().Reload(), kHostNoError) << at().plugin().error(); });
    at().WaitTicks();
    WaitForView();
    EXPECT_EQ(at().Records(), records);
    EXPECT_EQ(at().Rows(kFolderList), folders);
}

/// The record's tags go to the square that stood on the page from the first.
void ModuleTour::HandOverTags() {
    Art& square = *at().document().LayerAt(0).root->lastChild;
    EXPECT_TRUE(square.tags.empty());
    at().hand().KeyDown(VK_CONTROL);
    Drag(at().Selected(kRecordList), {kAnchor.x + 20, kAnchor.y + 83}, "art is under the pointer",
         [this] { return at().state().trackState == 2; });
    at().hand().KeyUp(VK_CONTROL);
    at().Play();
    ASSERT_EQ(square.tags.size(), 1u);
    EXPECT_EQ(square.tags.front().value, "12");
    Dump("9-tags");
}

/// On a page of its own.
void ModuleTour::PlaceAllKinds() {
    Show(std::make_unique<Document>(), "all.svg");
    const Texts names = at().Records();
    const auto sample = static_cast<int>(std::ranges::find(names, words().sample) - names.begin());
    at().ClickRow(kRecordList, sample).Play();
    PlayAction(306, 396, 500, 700, -0.2);
    Dump("10-all");
}

void ModuleTour::ShutDownAndRestart() {
    const Texts folders = at().Rows(kFolderList), records = at().Records();
    at().ShutDown();
    Close();
    EXPECT_FALSE(HostedPlugin::IsModuleInProcess());
    Open();
    at().WaitTicks().Play();
    EXPECT_EQ(at().state().language, GetParam());
    EXPECT_EQ(at().state().toolMode, kPlainList);
    EXPECT_EQ(at().state().aidbfname, GroupOf(words().folder, words().group));
    EXPECT_EQ(at().Rows(kFolderList), folders);
    EXPECT_EQ(at().Rows(kRecordList).size(), records.size());
    EXPECT_EQ(at().Records(), records);
}

TEST_P(ModuleTour, FromThePanelToThePageAndBack) {
    using Stage = void (ModuleTour::*)();
    // Hands that have lost their way would only stray further.
    for (const Stage stage :
         {&ModuleTour::ChooseLanguage, &ModuleTour::PullPanelOut, &ModuleTour::MakePlaces,
          &ModuleTour::RegisterAll, &ModuleTour::Browse, &ModuleTour::EditAndDelete,
          &ModuleTour::DragOntoAnchor, &ModuleTour::PlayPlaceAction, &ModuleTour::UndoAndRedo,
          &ModuleTour::UnloadAndReload, &ModuleTour::HandOverTags, &ModuleTour::PlaceAllKinds,
          &ModuleTour::ShutDownAndRestart}) {
        (this->*stage)();
        if (HasFailure()) break;
    }
    Close();
}

INSTANTIATE_TEST_SUITE_P(Languages, ModuleTour, ::testing::Values(0, 1),
                         [](const auto& language) { return language.param == 0 ? "Japanese" : "English"; });

} // namespace
