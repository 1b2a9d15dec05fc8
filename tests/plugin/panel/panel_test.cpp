// The panel as a whole: its windows, its size, its bars, its commands.

#include <cstring>
#include <string>

#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_names.h"
#include "tests/plugin/panel/browser_fixture.h"
#include "tests/plugin/panel/rectangles.h"
#include "tests/support/beeps.h"

namespace {

class PanelTest : public BrowserFixture {
protected:
    RECT PlaceOf(int id) {
        RECT place{};
        GetWindowRect(control(id), &place);
        MapWindowPoints(nullptr, panel(), reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
};

// All but the group combo, which takes its height itself.
constexpr int kPlaced[] = {1001, 1002, 1003, 1004, 1, 2, 3, 5, 6, 11, 12, 13, 14, 15, 16};

TEST_F(PanelTest, FollowsItsSize) {
    MakeGroup("G", {"a", "b", "c", "d", "e", "f", "g"});
    Browse("G");
    for (const int id : kPlaced) EXPECT_EQ(PlaceOf(id), FirstPlace(PlanOfPanel(panel()), id)) << id;
    EXPECT_EQ(PlaceOf(4).left, 30);
    EXPECT_EQ(PlaceOf(4).right, 300);
    EXPECT_EQ(Bar(1002).nMax, 0); // seven cells in a line of 242 pixels
    frame().Resize({320, 260});
    const PanelPlan plan = PlanOfPanel(panel());
    EXPECT_EQ(plan.width, 320);
    for (const int id : kPlaced) EXPECT_EQ(PlaceOf(id), LaterPlace(plan, id, true)) << id;
    EXPECT_EQ(Bar(1002).nMax, 1); // five in a line
    Command(16);
    EXPECT_EQ(globals->browseMode, 0);
    EXPECT_EQ(TextOf(panel(), 16), "7");
    EXPECT_EQ(PlaceOf(1001).left, 5);
    for (const int id : {1003, 1004, 11, 12, 13, 14, 15}) EXPECT_FALSE(IsWindowVisible(control(id))) << id;
    EXPECT_EQ(Bar(1002).nMax, 0);
    frame().Resize({400, 388});
    EXPECT_EQ(PlaceOf(1003), LaterPlace(PlanOfPanel(panel()), 1003, false)) << "placed while hidden";
    Command(16);
    EXPECT_EQ(TextOf(panel(), 16), "6");
    EXPECT_TRUE(IsWindowVisible(control(1003)));
}

TEST_F(PanelTest, ScrollsByEveryCode) {
    globals->toolMode = 3;
    MakeGroup("G", {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k"});
    Browse("G");
    EXPECT_EQ(Bar(1002).nMax, 10);
    const auto after = [this](WORD code, WORD place = 0) {
        SendMessageA(panel(), WM_VSCROLL, static_cast<WPARAM>(MAKELONG(code, place)),
                     reinterpret_cast<LPARAM>(control(1002)));
        return Bar(1002).nPos;
    };
    EXPECT_EQ(after(SB_LINEUP), 0);
    EXPECT_EQ(after(SB_LINEDOWN), 1);
    EXPECT_EQ(after(SB_PAGEDOWN), 6);
    EXPECT_EQ(after(SB_PAGEDOWN), 10);
    EXPECT_EQ(after(SB_PAGEUP), 5);
    EXPECT_EQ(after(SB_LINEUP), 4);
    EXPECT_EQ(after(SB_THUMBTRACK, 9), 4);
    EXPECT_EQ(after(SB_THUMBPOSITION, 7), 7);
    EXPECT_EQ(after(SB_THUMBPOSITION, 700), 10);
    EXPECT_EQ(after(SB_TOP), 0);
    EXPECT_EQ(after(SB_BOTTOM), 10);
    EXPECT_EQ(after(SB_ENDSCROLL), 10);
    // Without a bar the message isn't the panel's.
    SendMessageA(panel(), WM_VSCROLL, SB_TOP, 0);
    EXPECT_EQ(Bar(1002).nPos, 10);
    RebuildRecordList(panel(), true);
    EXPECT_EQ(Bar(1002).nPos, 0);
}

TEST_F(PanelTest, CommandsAreRefusedWhileOneIsAtWork) {
    Browse("UNTITLED");
    const auto beeps = BeepsSoFar();
    globals->menuBusy = 1;
    Command(16);
    EXPECT_EQ(globals->browseMode, 1);
    if (beeps) {
        EXPECT_EQ(*BeepsSoFar(), *beeps + 1);
    }
    globals->menuBusy = 0;
    for (const int id : {2, 3}) Command(id); // nothing is selected
    if (beeps) {
        EXPECT_EQ(*BeepsSoFar(), *beeps + 3);
    }
    EXPECT_EQ(globals->menuBusy, 0);
    EXPECT_TRUE(host().alerts().empty());
}

TEST_F(PanelTest, HandsRegisteringToTheHost) {
    MakeGroup("G", {"a", "b"});
    Browse("G");
    SelectListRow(recordList(), 1);
    std::string played;
    host().SetTrace([&played](const std::string& line) {
        if (line.find("PlayAction") != std::string::npos) played = line;
    });
    Command(1);
    EXPECT_NE(played.find("VELQUORNE_INTERNAL_ACTION"), std::string::npos) << played;
    EXPECT_EQ(globals->selectedRow, 1);
    played.clear();
    globals->commandPending = 1001;
    Command(1);
    EXPECT_EQ(played, "") << "another command is pending";
    globals->commandPending = 0;
    host().SetTrace({});
}

TEST_F(PanelTest, DeletesTheSelectedRecord) {
    MakeGroup("G", {"a", "b", "c"});
    Browse("G");
    SelectListRow(recordList(), 2);
    host().AnswerNext(false);
    Command(2);
    ASSERT_EQ(host().alerts().size(), 1u);
    EXPECT_EQ(host().alerts()[0].text, "Do you want to delete this object completely?\r\nREC_ID = [3]");
    EXPECT_EQ(NamesIn("G"), (Names{"a", "b", "c"}));
    host().AnswerNext(true);
    Command(2);
    EXPECT_EQ(NamesIn("G"), (Names{"a", "b"}));
    EXPECT_EQ(selectedRecord(), 1) << "the row that is the last one now";
    SelectListRow(recordList(), 0);
    host().AnswerNext(true);
    Command(2);
    EXPECT_EQ(NamesIn("G"), Names{"b"});
    EXPECT_EQ(selectedRecord(), 0);
    host().AnswerNext(true);
    Command(2);
    EXPECT_EQ(NamesIn("G"), Names{});
    EXPECT_EQ(selectedRecord(), -1);
    EXPECT_EQ(GetRowCount(recordList()), 0);
    EXPECT_EQ(Bar(1002).nMax, 0);
}

// A number is a place in the file: after another machine has deleted a record in front, it means another one.
TEST_F(PanelTest, DeletesNoOtherRecordThanTheOneShown) {
    MakeGroup("G", {"a", "b", "c"});
    Browse("G");
    SelectListRow(recordList(), 1);
    int32_t number;
    char group[kNameBytes];
    ASSERT_EQ(GetRecordOfRow(1, group, &number), 1);
    const MemoryHandle shown = globals->rihList; // another machine doesn't know of our list
    globals->rihList = nullptr;
    ASSERT_EQ(DeleteRecordAndData("G", 0), 0);
    FreeHandle(globals->rihList);
    globals->rihList = shown;
    host().AnswerNext(true);
    Command(2);
    ASSERT_EQ(host().alerts().size(), 2u);
    EXPECT_NE(host().alerts()[1].text.find("was changed by another"), std::string::npos);
    EXPECT_EQ(NamesIn("G"), (Names{"b", "c"}));
    EXPECT_EQ(GetRowCount(recordList()), 2) << "the list is built anew";
    EXPECT_EQ(selectedRecord(), -1);
}

TEST_F(PanelTest, TellsThatTheGroupIsInUse) {
    MakeGroup("G", {"a", "b"});
    Browse("G");
    SelectListRow(recordList(), 0);
    const std::string path = std::string(globals->aidbfpath) + "\\VLQ.LCK";
    const HANDLE other = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    host().AnswerNext(true);
    Command(2);
    CloseHandle(other);
    ASSERT_EQ(host().alerts().size(), 2u);
    EXPECT_NE(host().alerts()[1].text.find("in use by another program"), std::string::npos);
    EXPECT_EQ(NamesIn("G"), (Names{"a", "b"}));
    EXPECT_EQ(GetRowCount(recordList()), 2);
    EXPECT_EQ(selectedRecord(), 0);
}

TEST_F(PanelTest, TheComboChangesTheGroup) {
    MakeGroup("\\F\\A", {"a", "b"});
    MakeGroup("\\F\\B", {"c"});
    Browse("\\F\\A");
    EXPECT_EQ(GetRowCount(recordList()), 2);
    SendMessageA(control(4), CB_SETCURSEL, 1, 0);
    Command(4);
    EXPECT_STREQ(globals->aidbfname, "\\F\\B");
    EXPECT_EQ(GetRowCount(recordList()), 1);
    EXPECT_EQ(SelectedFolderRow(), "\\F\\B");
    SendMessageA(control(4), CB_SETCURSEL, 2, 0);
    Command(4);
    EXPECT_STREQ(globals->aidbfname, "Search Result");
}

// Presses without a button down: what a click of a pen looks like when it is over before it is polled.
TEST_F(PanelTest, Presses) {
    MakeGroup("\\F\\A", {"a", "b"});
    MakeGroup("Z", {"c"});
    Browse("Z");
    PointAt(control(6), 18, 10);
    Command(6);
    EXPECT_EQ(globals->originMode, 7);
    EXPECT_EQ(TextOf(panel(), 6), "7");
    PointAt(control(6), 7, 10);
    Command(6);
    EXPECT_EQ(globals->originMode, 7) << "between the cells";

    ASSERT_EQ(FolderRows(), (Names{"Z", "\\F\\$$$\\$$$.$$$", "Search Result"}));
    PointAt(folderList(), 10, 30); // the triangle
    Command(1003);
    EXPECT_EQ(FolderRows(), (Names{"Z", "\\F\\$$$\\$$$.$$$", "\\F\\A", "Search Result"}));
    EXPECT_STREQ(globals->aidbfname, "Z");
    EXPECT_EQ(SelectedFolderRow(), "Z") << "as the list finds it";
    PointAt(folderList(), 50, 30);
    Command(1003);
    EXPECT_STREQ(globals->aidbfname, "\\F\\A Folder is Selected");
    EXPECT_EQ(GetRowCount(recordList()), 2);
    EXPECT_EQ(ComboEntries(), (Names{"A", "A Folder is Selected"}));
    PointAt(folderList(), 50, 200);
    Command(1003);
    EXPECT_EQ(SelectedFolderRow(), "\\F\\$$$\\$$$.$$$") << "below the rows";
    PointAt(folderList(), 50, 60);
    globals->lastClickTicks = GetTickCount();
    Command(1003);
    EXPECT_STREQ(globals->aidbfname, "\\F\\A") << "another row: no second press";

    PointAt(recordList(), 40, 10);
    Command(1001);
    EXPECT_EQ(selectedRecord(), 1);
    PointAt(recordList(), 33, 10);
    Command(1001);
    EXPECT_EQ(selectedRecord(), 0) << "of two rows with an edge in common the first";
    PointAt(recordList(), 100, 100);
    Command(1001);
    EXPECT_EQ(selectedRecord(), -1);
    globals->commandPending = 1003;
    PointAt(recordList(), 40, 10);
    Command(1001);
    EXPECT_EQ(selectedRecord(), -1);
    globals->commandPending = 0;
}

// Every suite call of building the panel refused in turn: whatever is missing then, nothing is left over.
TEST_F(PanelTest, EveryRefusalWhileItIsBuilt) {
    MakeGroup("G", {"a"});
    SelectGroup("G");
    for (uint64_t n = 1;; ++n) {
        host().RefuseCall(n);
        plugin().Notify("AI Application Started Notifier");
        Tick(); // takes what is missing as it is
        const bool refused = host().refused();
        host().RefuseNone();
        host().ClearAlerts();
        ShutDownPlugin();
        ASSERT_TRUE(host().panels().empty()) << n;
        ASSERT_EQ(plugin().StartUp(), kHostNoError);
        std::strcpy(globals->aidbfpath, StorePathOf(rootOnDisk()).c_str());
        SelectGroup("G");
        if (!refused) break;
    }
}

} // namespace
