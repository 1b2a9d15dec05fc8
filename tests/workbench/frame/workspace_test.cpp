// The host's windows with the plug-in in them, by hands on a headless desktop.

#include <gtest/gtest.h>

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
        document->AppendArt(kArtPath, document->LayerAt(0).root)->path()->segments.resize(2);
        workspace_->ShowDocument(std::move(document), "/drawings/art.svg", {});
        workspace_->Begin();
    }
    void TearDown() override {
        workspace_->windows().StopTimers();
        ShutDownPlugin();
        workspace_.reset();
        HoldSuites();
        PluginFixture::TearDown();
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

    /// Lets the queued hands do their work.
    void Play() {
        hands().Do([this] { workspace().windows().Quit(); });
        workspace().windows().Run();
    }

    TestDesktop desktop_;
    std::unique_ptr<Workspace> workspace_;
    std::vector<std::string> saved_;
    int pictures_ = 0;
};

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
