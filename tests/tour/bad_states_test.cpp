// What the panel makes of a database and of settings that it can't work with.

#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>

#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/group_file.h"
#include "plugin/store/record.h"
#include "tests/tour/tour.h"

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

class BadStates : public Tour {
public:
    std::string LastAlert() { return host().alerts().empty() ? "" : host().alerts().back().text; }

    /// Presses everything once that could look at the store.
    void UseThePanel() {
        frame().Resize({640, 480});
        ClickRow(kFolderList, 0).ClickRow(kRecordList, 0);
        for (const int entry : {2, 3, 1, 6, 7, 5}) PickFlyout(entry);
        ClickControl(kFolderListButton).ClickControl(kFolderListButton);
        PointAt([&] { return RowPoint(kRecordList, 0); }).WaitTicks().WaitTicks().Play();
    }
};

TEST_P(BadStates, SettingsOutOfRange) {
    MakeGroup("g", {"a", "b"});
    globals->toolMode = 77;
    globals->sortMode = -5;
    globals->originMode = 300;
    globals->browseMode = -9;
    globals->browseWidth = std::numeric_limits<float>::quiet_NaN();
    globals->expandedCount = -1;
    globals->layerOption = 500;
    globals->flCnvFnMode = 40;
    std::strcpy(globals->aidbfname, "\\no\\such\\place\\at\\all");
    // By way of the preferences, as a person's editor might leave them.
    ShutDownPlugin();
    ASSERT_EQ(plugin().StartUp(), kHostNoError);
    globals->language = GetParam();
    EXPECT_EQ(globals->browseWidth, LimitBrowseWidth(globals->browseWidth));
    BuildThePanel();
    windows().StartTimers();
    UseThePanel();
    globals->browseWidth = -3;
    frame().Resize({500, 400});
    Play();
    globals->browseWidth = 50;
    frame().Resize({510, 400});
    PickFlyout(9).PressButton(3).Play();
    EXPECT_GE(Rows(kFolderList).size(), 2u);
}

TEST_P(BadStates, RootVanishes) {
    MakeGroup("g", {"a", "b"});
    BuildThePanel();
    windows().StartTimers();
    Play();
    fs::remove_all(rootOnDisk());
    std::ofstream(rootOnDisk()) << "no folder";
    UseThePanel();
    ClickControl(kNewFolderButton).SetText(5, "x").PressButton(IDOK).Play();
    EXPECT_NE(LastAlert(), "");
    host().AnswerNext(true);
    ClickRow(kRecordList, 0).ClickControl(kDeleteButton).Play();
    EXPECT_TRUE(fs::is_regular_file(rootOnDisk()));
    fs::remove(rootOnDisk());
    Do([&] { RebuildFolderList(panel()); }).Play();
    EXPECT_EQ(Rows(kFolderList), (Texts{"UNTITLED", "Search Result"}));
}

TEST_P(BadStates, DamagedGroupIsShownAsFarAsItGoesAndNeverWritten) {
    MakeGroup("g", {"a", "b", "c"});
    const fs::path file = rootOnDisk() / "g.AID";
    {
        // The second record's size word.
        std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
        bytes.seekg(8);
        unsigned char size[4];
        bytes.read(reinterpret_cast<char*>(size), 4);
        const auto first =
            static_cast<std::streamoff>(size[0] << 24 | size[1] << 16 | size[2] << 8 | size[3]);
        bytes.seekp(4 + first + 4);
        bytes.write("\x7F\xFF\xFF\xFF", 4);
    }
    const auto before = fs::file_size(file);
    BuildThePanel();
    windows().StartTimers();
    UseThePanel();
    EXPECT_EQ(Records(), (Texts{"a"}));
    host().AnswerNext(true);
    ClickRow(kRecordList, 0).ClickControl(kDeleteButton).Play();
    EXPECT_EQ(fs::file_size(file), before);
    EXPECT_NE(LastAlert().find(Utf8(Either("damage", "壊れ"))), std::string::npos) << LastAlert();
    EXPECT_EQ(Records(), (Texts{"a"}));
}

TEST_P(BadStates, LongNamesOfDoubleBytes) {
    std::string part;
    while (part.size() + 2 <= 76) part += "表"; // its second byte is a backslash's
    const std::string group = "\\" + part + "\\" + part + "\\" + part;
    MakeGroup(group, {part, "b"});
    BuildThePanel();
    windows().StartTimers();
    UseThePanel();
    Do([&] { ToggleExpanded(("\\" + part + "\\$$$\\$$$.$$$").c_str()); });
    Do([&] { RebuildFolderList(panel()); }).Play();
    EXPECT_GE(Rows(kFolderList).size(), 3u);
    ClickControl(kSearchButton).SetText(5, "表").PressButton(1).Play();
    EXPECT_EQ(Rows(kRecordList).size(), 1u);
}

TEST_P(BadStates, ManyFoldersAndRecords) {
    for (int i = 0; i < 5000; ++i) fs::create_directory(rootOnDisk() / ("F" + std::to_string(i)));
    MakeGroup("g", {"only"});
    {
        // The same record twenty thousand times.
        std::ifstream in(rootOnDisk() / "g.AID", std::ios::binary);
        std::string file((std::istreambuf_iterator<char>(in)), {});
        const std::string record = file.substr(4);
        std::ofstream out(rootOnDisk() / "g.AID", std::ios::binary);
        out.write("\0\0\x4E\x20", 4);
        for (int i = 0; i < 20000; ++i) out << record;
    }
    BuildThePanel();
    Play();
    EXPECT_EQ(Rows(kRecordList).size(), 20000u);
    EXPECT_EQ(Rows(kFolderList).size(), 5002u);
    UseThePanel();
    SendMessageA(panel(), WM_VSCROLL, SB_BOTTOM, reinterpret_cast<LPARAM>(control(kRecordScroll)));
    Play();
    ClickRow(kRecordList, 19999).Play();
    EXPECT_EQ(Selected(kRecordList), 19999);
}

INSTANTIATE_TEST_SUITE_P(Languages, BadStates, ::testing::Values(0, 1));

} // namespace
