// The host's windows with the plug-in in them, by hands on a headless desktop.

#include <gtest/gtest.h>

#include <map>

#include "tests/support/plugin_fixture.h"
#include "tests/support/posix/headless_desktop.h"
#include "workbench/document/undo_history.h"
#include "workbench/frame/alert_window.h"
#include "workbench/frame/frame_looks.h"
#include "workbench/frame/name_dialog.h"
#include "workbench/frame/workspace.h"
#include "workbench/render/view_picture.h"

using namespace workbench;

namespace {

constexpr SIZE kScreen{1280, 800};

class WorkspaceTest : public PluginFixture {
protected:
    WorkspaceTest() : desktop_(kScreen) {}

    void SetUp() override {
        PluginFixture::SetUp();
        ReleaseSuites(); // messages come from outside here
        host().SetTheme(LightTheme());
        workspace_ = std::make_unique<Workspace>(
            host(), plugin(), kScreen,
            CanvasPictures{.draw =
                               [this](const Document& front, const View& view, SIZE size, uint32_t* pixels,
                                      const auto& progress) {
                                   ++pictures_;
                                   DrawView(front, view, size.cx, size.cy, pixels, progress);
                               },
                           .paintsAt = PaintsWithin},
            WorkspaceFiles{.open = nullptr,
                           .save =
                               [this](const Document&, const std::string& path, std::string*) {
                                   saved_.push_back(path);
                                   return true;
                               },
                           .exists = [](const std::string& path) { return path == "there.svg"; }});
        auto document = std::make_unique<Document>();
        for (const double x : {100.0, 300.0}) squares_.push_back(AddSquare(*document, x));
        workspace_->ShowDocument(std::move(document), "/drawings/two squares.svg", {});
        workspace_->Begin();
    }
    void TearDown() override {
        workspace_->windows().StopTimers();
        ShutDownPlugin();
        workspace_.reset();
        HoldSuites();
        PluginFixture::TearDown();
    }

    /// A black square of 80 points with its left lower corner at (x, 400).
    static ArtHandle AddSquare(Document& document, double x) {
        Art* art = document.AppendArt(kArtPath, document.LayerAt(0).root);
        for (const auto& [dx, dy] :
             {std::pair(0, 0), std::pair(80, 0), std::pair(80, 80), std::pair(0, 80)}) {
            const HostPoint point{x + dx, 400.0 + dy};
            art->path()->segments.push_back({.anchor = point, .in = point, .out = point, .corner = 1});
        }
        art->path()->closed = true;
        art->path()->style.fillPaint = 1;
        art->path()->style.fill = GrayColor(1);
        return art->handle;
    }

    HeadlessDisplay& hands() { return DisplayOf(desktop_); }
    Workspace& workspace() { return *workspace_; }
    HWND canvas() { return workspace().document().canvas().window(); }
    std::string title() {
        char text[256] = {};
        GetWindowTextA(workspace().document().window(), text, sizeof text);
        return text;
    }
    POINT OnScreen(double x, double y) {
        POINT pixel = PixelOf(document().view(), {x, y});
        ClientToScreen(canvas(), &pixel);
        return pixel;
    }
    bool IsSelected(size_t square) { return document().Find(squares_[square])->selected; }

    /// Lets the queued hands do their work.
    void Play() {
        hands().Do([this] { workspace().windows().Quit(); });
        workspace().windows().Run();
    }

    TestDesktop desktop_;
    std::unique_ptr<Workspace> workspace_;
    std::vector<ArtHandle> squares_;
    std::vector<std::string> saved_;
    int pictures_ = 0;
};

// Tracking draws on the window that the plug-in finds, and maps pixels by the view: they must be the canvas
// and what it shows.
TEST_F(WorkspaceTest, ThePluginFindsTheCanvasAndTheView) {
    hands().Pause(1000);
    Play();
    EXPECT_EQ(globals->docWindow, canvas());
    RECT client;
    GetClientRect(canvas(), &client);
    EXPECT_NEAR((globals->viewBounds.right - globals->viewBounds.left) * globals->viewZoom, client.right,
                1e-6);
    EXPECT_NEAR((globals->viewBounds.top - globals->viewBounds.bottom) * globals->viewZoom, client.bottom,
                1e-6);
    const POINT inside = OnScreen(140, 440), beside = OnScreen(240, 440);
    EXPECT_EQ(hands().Pixel(inside.x, inside.y), 0x000000u);
    EXPECT_EQ(hands().Pixel(beside.x, beside.y), 0xFFFFFFu);

    workspace().Pick(kMenuClose);
    hands().Pause(1000);
    Play();
    EXPECT_EQ(globals->docWindow, nullptr);
    EXPECT_EQ(title(), "");
}

TEST_F(WorkspaceTest, MenusHoldWhatThePluginAddedAndShowItsMarks) {
    const auto item = [&](MenuTitle menu, const std::string& text) {
        for (const PopupItem& each : workspace().MenuItems(menu)) {
            if (each.text == text) return each;
        }
        ADD_FAILURE() << "no item " << text;
        return PopupItem{};
    };
    const bool shown =
        IsWindowVisible(workspace().windows().FrameOf(*host().panels().front())->window()) != 0;
    EXPECT_EQ(item(kWindowMenu, "Velquorne").marked, shown);
    workspace().Pick(item(kWindowMenu, "Velquorne").number);
    EXPECT_EQ(item(kWindowMenu, "Velquorne").marked, !shown);
    const PopupItem about = item(kHelpMenu, "About Plug-ins (TOLMA-VERNISH INC.)");
    ASSERT_EQ(about.items.size(), 1u);
    EXPECT_TRUE(about.items[0].text.ends_with("..."));
}

TEST_F(WorkspaceTest, HandsSelectDeleteAndUndo) {
    const POINT first = OnScreen(140, 440), second = OnScreen(340, 440);
    std::map<std::string, std::pair<bool, bool>> seen;
    const auto note = [&](const char* when) {
        hands().Do([&, when] { seen[when] = {IsSelected(0), IsSelected(1)}; });
    };
    hands().Click(first.x, first.y);
    note("click");
    hands().KeyDown(VK_SHIFT).Click(second.x, second.y).KeyUp(VK_SHIFT);
    note("shift click");
    hands().KeyDown(VK_SHIFT).Click(first.x, first.y).KeyUp(VK_SHIFT);
    note("shift click again");
    hands().Key(VK_ESCAPE);
    note("escape");
    const POINT from = OnScreen(60, 500), to = OnScreen(110, 430);
    hands().Drag(from, to, 5);
    note("band");
    hands().KeyWith(VK_CONTROL, 'A');
    note("all");
    Play();
    using Both = std::pair<bool, bool>;
    EXPECT_EQ(seen["click"], Both(true, false));
    EXPECT_EQ(seen["shift click"], Both(true, true));
    EXPECT_EQ(seen["shift click again"], Both(false, true));
    EXPECT_EQ(seen["escape"], Both(false, false));
    EXPECT_EQ(seen["band"], Both(true, false));
    EXPECT_EQ(seen["all"], Both(true, true));
    EXPECT_TRUE(title().starts_with("two squares.svg @ ") && title().ends_with("%")) << title();

    hands().Key(VK_DELETE);
    Play();
    EXPECT_EQ(document().LayerAt(0).root->childCount, 0u);
    EXPECT_TRUE(title().ends_with("%*")) << title();
    EXPECT_EQ(hands().Pixel(first.x, first.y), 0xFFFFFFu);
    hands().KeyWith(VK_CONTROL, 'Z');
    Play();
    EXPECT_EQ(document().LayerAt(0).root->childCount, 2u);
    EXPECT_EQ(document().Find(squares_[0]), nullptr);
    EXPECT_TRUE(title().ends_with("%")) << title();
    EXPECT_EQ(hands().Pixel(first.x, first.y), 0x000000u);
}

TEST_F(WorkspaceTest, ABandLeavesNoPixelBehindAndNothingIsDrawnAnewForIt) {
    const POINT from = OnScreen(40, 300), to = OnScreen(90, 200);
    hands().Click(from.x, from.y); // the document's window is the active one from now on
    Play();
    const auto pixels = [&] {
        const FrameBuffer screen = DesktopPixels();
        return std::vector<uint32_t>(screen.pixels, screen.pixels + screen.width * screen.height);
    };
    const std::vector<uint32_t> before = pixels();
    const int drawn = pictures_;
    std::vector<uint32_t> during;
    hands().Move(from.x, from.y).Press().Move(to.x, to.y).Move(to.x + 9, to.y);
    hands().Do([&] {
        during = pixels();
        InvalidateRect(canvas(), nullptr, FALSE); // painted over in the middle of it
    });
    hands().Move(to.x + 20, to.y).Release();
    Play();
    EXPECT_NE(during, before);
    EXPECT_EQ(pixels(), before);
    EXPECT_EQ(pictures_, drawn);
}

TEST_F(WorkspaceTest, WheelZoomsAboutThePointerAndSpaceMovesThePage) {
    const POINT at = OnScreen(300, 400);
    const double zoom = document().view().zoom;
    hands().Click(at.x, at.y).KeyDown(VK_CONTROL).Wheel(2).KeyUp(VK_CONTROL);
    Play();
    EXPECT_GT(document().view().zoom, zoom * 1.5);
    EXPECT_NEAR(OnScreen(300, 400).x, at.x, 1);
    EXPECT_NEAR(OnScreen(300, 400).y, at.y, 1);
    hands().KeyDown(VK_SPACE).Drag(at, {at.x - 50, at.y - 30}, 4).KeyUp(VK_SPACE);
    Play();
    EXPECT_NEAR(OnScreen(300, 400).x, at.x - 50, 1);
    EXPECT_NEAR(OnScreen(300, 400).y, at.y - 30, 1);
}

TEST_F(WorkspaceTest, NothingIsLostWithoutAQuestion) {
    workspace().Pick(kMenuSelectAll);
    workspace().Pick(kMenuDelete);
    const auto answer = [&](int button) {
        hands().Do([&, button] { SendMessageA(GetDlgItem(GetActiveWindow(), button), BM_CLICK, 0, 0); });
    };
    // The screen's own close button, under the question, is no answer and asks nothing anew.
    hands().Do([&] { SendMessageA(workspace().windows().window(), WM_CLOSE, 0, 0); });
    answer(kAlertCancel);
    workspace().Pick(kMenuClose);
    EXPECT_NE(host().front(), nullptr);
    // To save, and then not: it stays.
    answer(kAlertYes);
    hands().Key(VK_ESCAPE);
    workspace().Pick(kMenuClose);
    EXPECT_NE(host().front(), nullptr);

    // A file that is there, not replaced; then one that isn't.
    hands().KeyWith(VK_CONTROL, 'A').TypeBytes("there").Key(VK_RETURN);
    answer(kAlertNo);
    workspace().Pick(kMenuSaveSvg);
    EXPECT_TRUE(saved_.empty());
    EXPECT_FALSE(document().history()->saved());
    hands().KeyWith(VK_CONTROL, 'A').TypeBytes("new.svg").Key(VK_RETURN);
    workspace().Pick(kMenuSaveSvg);
    EXPECT_EQ(saved_, std::vector<std::string>{"new.svg"});
    EXPECT_TRUE(title().starts_with("new.svg @ ") && title().ends_with("%")) << title();
    workspace().Pick(kMenuClose); // asks nothing
    EXPECT_EQ(host().front(), nullptr);
}

TEST_F(WorkspaceTest, ALockedOrHiddenLayerIsAStepAndStandsInTheList) {
    RECT place;
    GetWindowRect(workspace().layers().window(), &place);
    POINT row{0, kLayerRow / 2};
    ClientToScreen(workspace().layers().window(), &row);
    hands().Click(row.x + kLayerEyeWidth + 4, row.y).Click(row.x + 4, row.y);
    Play();
    EXPECT_TRUE(document().LayerAt(0).locked);
    EXPECT_FALSE(document().LayerAt(0).visible);
    workspace().Pick(kMenuUndo);
    workspace().Pick(kMenuUndo);
    EXPECT_FALSE(document().LayerAt(0).locked);
    EXPECT_TRUE(document().LayerAt(0).visible);
}

} // namespace
