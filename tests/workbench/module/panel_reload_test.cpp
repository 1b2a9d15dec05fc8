// The built module goes and comes back, to another address, while its panel stands on the screen.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "plugin/dialogs/flyout.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "tests/support/blocked_range.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_desktop.h"
#include "workbench/frame/host_windows.h"

namespace {

using workbench::Host;
using workbench::Library;
using workbench::PluginModule;

constexpr char kFile[] = VELQUORNE_MODULE_FILE;
constexpr SIZE kDesktop{1280, 800};
constexpr RECT kIcon{0, 0, 24, 16};

using Colors = std::vector<COLORREF>;

/// The module with its panel over 40 records.  `globals` is its state, so that this program's own copy of the
/// plug-in can be asked what the lists hold.
class PanelReloadTest : public ::testing::Test {
protected:
    void SetUp() override {
        RedirectDocumentsOfModules(folder.path());
        host.Open(std::make_unique<workbench::Document>());
        windows.showAlerts = false;
        ASSERT_EQ(plugin.StartUp(), kHostNoError) << plugin.error();
        globals = static_cast<Globals*>(plugin.state());
        std::filesystem::create_directory(folder.path() / "root");
        std::strcpy(globals->aidbfpath, StorePathOf(folder.path() / "root").c_str());
        for (int i = 0; i < 40; ++i) MakeRecord('a' + i % 26);
        std::strcpy(globals->aidbfname, "UNTITLED");
        ASSERT_EQ(plugin.Notify("AI Application Started Notifier"), kHostNoError);
        ASSERT_EQ(host.panels().size(), 1u);
    }

    void TearDown() override {
        EXPECT_EQ(plugin.ShutDown(), kHostNoError);
        globals = nullptr;
        host.CheckBalance(true);
        for (const std::string& fault : host.faults()) ADD_FAILURE() << fault;
    }

    static void MakeRecord(int letter) {
        globals->curRecord = NewRecord();
        auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
        header->name[0] = static_cast<char>(letter);
        ASSERT_EQ(WriteRecord("UNTITLED", -1), 0);
        FreeHandle(globals->curRecord);
    }

    HWND panel() { return windows.FrameOf(*host.panels().front())->body(); }
    HWND control(int id) { return GetDlgItem(panel(), id); }
    void Command(int id) { SendMessageA(panel(), WM_COMMAND, static_cast<WPARAM>(id), 0); }
    void Scroll(int id, int request) {
        SendMessageA(panel(), WM_VSCROLL, static_cast<WPARAM>(request),
                     reinterpret_cast<LPARAM>(control(id)));
    }
    int Position(int id) {
        SCROLLINFO state{};
        state.cbSize = sizeof state;
        state.fMask = SIF_POS;
        GetScrollInfo(control(id), SB_CTL, &state);
        return state.nPos;
    }
    /// What the panel paints for its New button, whatever a display shows of it.
    Colors PaintedButton() {
        const HDC screen = GetDC(nullptr);
        const HDC context = CreateCompatibleDC(screen);
        const HBITMAP bitmap = CreateCompatibleBitmap(screen, kIcon.right, kIcon.bottom);
        const HGDIOBJ old = SelectObject(context, bitmap);
        DRAWITEMSTRUCT item{};
        item.CtlType = ODT_BUTTON;
        item.CtlID = kNewButton;
        item.itemAction = ODA_DRAWENTIRE;
        item.hwndItem = control(kNewButton);
        item.hDC = context;
        item.rcItem = kIcon;
        SendMessageA(panel(), WM_DRAWITEM, kNewButton, reinterpret_cast<LPARAM>(&item));
        Colors colors;
        for (int y = 0; y < kIcon.bottom; ++y)
            for (int x = 0; x < kIcon.right; ++x) colors.push_back(GetPixel(context, x, y));
        SelectObject(context, old);
        DeleteObject(bitmap);
        DeleteDC(context);
        ReleaseDC(nullptr, screen);
        return colors;
    }

    /// All that a user or the host can do to the panel while nobody is there to answer.
    void DisturbThePanel(int width) {
        PaintedButton();
        for (const int id : {kNewButton, kFolderListButton, kOriginControl, kGroupSettingButton}) Command(id);
        Scroll(kRecordScroll, SB_LINEDOWN);
        EXPECT_FALSE(IsWindowEnabled(control(kGroupCombo)));
        EXPECT_EQ(SendMessageA(control(kGroupCombo), CB_GETDROPPEDSTATE, 0, 0), FALSE);
        SendMessageA(panel(), WM_LBUTTONDOWN, 0, MAKELONG(60, 60));
        SendMessageA(panel(), WM_CTLCOLORSTATIC, 0, 0);
        frame().Resize({static_cast<double>(width), 420});
        EXPECT_EQ(host.panels().front()->onFlyout, nullptr);
        EXPECT_EQ(host.panels().front()->onSize, nullptr);
        EXPECT_EQ(Tick(), kHostRefused);
        EXPECT_EQ(plugin.PickMenu(globals->panelMenuItem), kHostRefused);
        windows.RunWaiting();
    }

    workbench::PanelFrame& frame() { return *windows.FrameOf(*host.panels().front()); }
    HostError Tick() { return plugin.Tick(globals->timerRef); }

    TemporaryFolder folder;
    TestDesktop desktop{kDesktop};
    Host host;
    PluginModule plugin{host, kFile};
    workbench::HostWindows windows{host, plugin, kDesktop};
};

TEST_F(PanelReloadTest, ThePanelWorksAsBeforeFromAnotherAddress) {
    const Colors button = PaintedButton();
    EXPECT_NE(button, Colors(button.size(), button.front())) << "no icon";
    SelectListRow(control(kRecordList), 17);
    Scroll(kRecordScroll, SB_LINEDOWN);
    const int position = Position(kRecordScroll);
    EXPECT_GT(position, 0);
    const WNDPROC procedure = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(panel(), GWLP_WNDPROC));
    const HostFlyoutHandler handler = host.panels().front()->onFlyout;
    BlockedRange old(reinterpret_cast<const void*>(procedure));
    ASSERT_TRUE(old.Contains(reinterpret_cast<const void*>(handler)));

    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        SetFocus(control(kGroupCombo));
        SendMessageA(control(kGroupCombo), CB_SHOWDROPDOWN, TRUE, 0);
        ASSERT_EQ(plugin.Unload(), kHostNoError);
        ASSERT_FALSE(Library::IsInProcess(kFile));
        if (round == 0) {
            ASSERT_TRUE(old.Block());
        }
        DisturbThePanel(500 + 10 * round);
        ASSERT_EQ(plugin.Reload(), kHostNoError) << plugin.error();
        const auto now = reinterpret_cast<const void*>(GetWindowLongPtrA(panel(), GWLP_WNDPROC));
        EXPECT_NE(now, reinterpret_cast<const void*>(procedure));
        EXPECT_FALSE(old.Contains(now));

        // Before the host calls for the first time, and after.
        EXPECT_EQ(PaintedButton(), button);
        EXPECT_NE(globals->cursors[5], nullptr);
        Command(kFolderListButton);
        EXPECT_EQ(globals->browseMode, 0);
        Command(kFolderListButton);
        windows.RunWaiting();
        ASSERT_EQ(Tick(), kHostNoError);
        ASSERT_NE(host.panels().front()->onFlyout, nullptr);
        EXPECT_FALSE(old.Contains(reinterpret_cast<const void*>(host.panels().front()->onFlyout)));
        host.panels().front()->onFlyout(globals->panelRef, kLayerEntry);
        EXPECT_EQ(globals->layerOption, 1 - round % 2);

        EXPECT_EQ(GetRowCount(control(kRecordList)), 40);
        EXPECT_EQ(GetSelectedRow(control(kRecordList)), 17);
        EXPECT_EQ(Position(kRecordScroll), position);
        // It was resized while nobody was there to lay it out.
        RECT whole{}, origin{};
        GetWindowRect(panel(), &whole);
        GetWindowRect(control(kOriginControl), &origin);
        EXPECT_EQ(origin.bottom, whole.bottom - 2);
    }
    Scroll(kRecordScroll, SB_LINEUP);
    EXPECT_EQ(Position(kRecordScroll), position - 1);
}

// The window was the host's before; a host may take it away at any time.
TEST_F(PanelReloadTest, AWindowThatIsGoneIsNotTouched) {
    ASSERT_EQ(plugin.Unload(), kHostNoError);
    DestroyWindow(panel());
    ASSERT_EQ(plugin.Reload(), kHostNoError);
    EXPECT_EQ(Tick(), kHostNoError);
    DestroyWindow(frame().window());
    ASSERT_EQ(plugin.Unload(), kHostNoError);
    ASSERT_EQ(plugin.Reload(), kHostNoError);
}

// A refused handler is asked for again, and a resize in between finds none.
TEST_F(PanelReloadTest, RefusedHandlersComeWithALaterCall) {
    for (uint64_t n = 1; n <= 2; ++n) {
        ASSERT_EQ(plugin.Unload(), kHostNoError);
        ASSERT_EQ(plugin.Reload(), kHostNoError);
        host.RefuseCall(n);
        Tick();
        EXPECT_EQ(host.refused(), true);
        host.RefuseNone();
        EXPECT_EQ(globals->handlersDue, 1);
        EXPECT_EQ(Tick(), kHostNoError);
        EXPECT_EQ(globals->handlersDue, 0);
        EXPECT_NE(host.panels().front()->onFlyout, nullptr);
        EXPECT_NE(host.panels().front()->onSize, nullptr);
    }
    ASSERT_EQ(plugin.Unload(), kHostNoError);
    ASSERT_EQ(plugin.Reload(), kHostNoError);
    EXPECT_EQ(plugin.ShutDown(), kHostNoError); // at once
    ASSERT_EQ(plugin.StartUp(), kHostNoError);
}

// From a call of the plug-in the host can't take the ground away.
TEST_F(PanelReloadTest, NotWhileTheModuleRuns) {
    int tried = 0;
    host.SetTrace([&](const std::string&) {
        ++tried;
        EXPECT_EQ(plugin.Unload(), kHostRefused);
    });
    EXPECT_EQ(Tick(), kHostNoError);
    host.SetTrace({});
    EXPECT_GT(tried, 0);
    EXPECT_TRUE(Library::IsInProcess(kFile));
}

} // namespace
