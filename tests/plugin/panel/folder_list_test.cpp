// What the folder list and the group combo show of a tree, and which name is current afterwards.

#include <algorithm>
#include <cstring>
#include <random>
#include <set>

#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/store_names.h"
#include "tests/plugin/panel/browser_fixture.h"

namespace {

class FolderListTest : public BrowserFixture {
protected:
    void MakeTree() {
        for (const char* group : {"Stones", "Water", "\\Animals\\Birds", "\\Animals\\Africa\\Lions",
                                  "\\Animals\\Africa\\Zebras", "\\Animals\\Asia\\Tigers", "\\Plants\\Moss"}) {
            MakeGroup(group);
        }
        MakeFolder("\\Empty");
        MakeFolder("\\Plants\\Africa");
    }
};

TEST_F(FolderListTest, FirstBuildOpensTheWayToTheCurrentGroup) {
    MakeTree();
    Browse("\\Animals\\Africa\\Lions");
    EXPECT_EQ(FolderRows(), (Names{"Stones", "Water", "\\Animals\\$$$\\$$$.$$$", "\\Animals\\Birds",
                                   "\\Animals\\Africa\\$$$.$$$", "\\Animals\\Africa\\Lions",
                                   "\\Animals\\Africa\\Zebras", "\\Animals\\Asia\\$$$.$$$",
                                   "\\Empty\\$$$\\$$$.$$$", "\\Plants\\$$$\\$$$.$$$", "Search Result"}));
    EXPECT_EQ(SelectedFolderRow(), "\\Animals\\Africa\\Lions");
    EXPECT_EQ(ComboEntries(), (Names{"Lions", "Zebras", "Search Result"}));
    EXPECT_EQ(SendMessageA(control(4), CB_GETCURSEL, 0, 0), 0);
    EXPECT_EQ(globals->expandedCount, 2);
}

// The group stays current in a folder that is closed; the folder's row stands for it.
TEST_F(FolderListTest, ClosingAFolderKeepsItsGroup) {
    MakeTree();
    Browse("\\Animals\\Africa\\Lions");
    EXPECT_EQ(ToggleExpanded("\\Plants\\$$$\\$$$.$$$"), 1);
    RebuildFolderList(panel());
    EXPECT_EQ(SelectedFolderRow(), "\\Animals\\Africa\\Lions") << "not Africa in Plants";
    EXPECT_EQ(ToggleExpanded("\\Animals\\$$$\\$$$.$$$"), 1);
    RebuildFolderList(panel());
    EXPECT_EQ(SelectedFolderRow(), "\\Animals\\$$$\\$$$.$$$");
    EXPECT_STREQ(globals->aidbfname, "\\Animals\\Africa\\Lions");
}

TEST_F(FolderListTest, ANameThatIsNowhereGivesTheFirstEntry) {
    Browse("Search Result");
    const struct {
        Names groups; ///< that come to those before
        const char *current, *becomes;
    } cases[] = {{{}, "Gone", "UNTITLED"},
                 {{"\\F\\A"}, "Gone", "\\F\\A Folder is Selected"},
                 {{"B", "A"}, "Gone", "A"},
                 {{}, "\\Gone\\A", "A"},
                 {{}, "\\F\\Gone", "\\F\\A Folder is Selected"},
                 {{}, "Search Result", "Search Result"}};
    for (const auto& each : cases) {
        for (const std::string& group : each.groups) MakeGroup(group);
        SelectGroup(each.current);
        RebuildFolderList(panel());
        EXPECT_STREQ(globals->aidbfname, each.becomes) << each.current;
    }
}

TEST_F(FolderListTest, AGroupThatIsGoneLeavesItsFolder) {
    MakeTree();
    Browse("\\Animals\\Africa\\Lions");
    ASSERT_TRUE(DeleteFileA((std::string(globals->aidbfpath) + "\\Animals\\Africa\\Lions.AID").c_str()));
    RebuildFolderList(panel());
    EXPECT_STREQ(globals->aidbfname, "\\Animals\\Africa\\A Folder is Selected");
    EXPECT_EQ(globals->findMode, kFindFolder);
    RebuildGroupCombo(panel());
    EXPECT_EQ(ComboEntries(), (Names{"Zebras", "A Folder is Selected"}));
    EXPECT_EQ(SendMessageA(control(4), CB_GETCURSEL, 0, 0), 1);
}

// The same rules in a second, simple way, over a list of all groups and folders.
class SecondList {
public:
    std::set<std::string> groups, folders; ///< folders as rows of the list

    Names Rows(const Names& open) const {
        Names rows;
        for (const std::string& group : groups) {
            if (group[0] != '\\') rows.push_back(group);
        }
        const bool hasGroups = !rows.empty();
        for (const std::string& row : folders) {
            if (!row.ends_with("\\$$$\\$$$.$$$")) continue;
            rows.push_back(row);
            if (!Has(open, row)) continue;
            const std::string folder = row.substr(0, row.find('\\', 1));
            AddGroups(rows, folder);
            for (const std::string& sub : folders) {
                if (!sub.starts_with(folder + "\\") || sub.find("\\$$$\\") != std::string::npos) continue;
                rows.push_back(sub);
                if (Has(open, sub)) AddGroups(rows, sub.substr(0, sub.rfind('\\')));
            }
        }
        if (!hasGroups) rows.push_back("UNTITLED");
        rows.push_back("Search Result");
        return rows;
    }

private:
    static bool Has(const Names& names, const std::string& name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    }
    void AddGroups(Names& rows, const std::string& folder) const {
        for (const std::string& group : groups) {
            if (group.substr(0, group.rfind('\\')) == folder && group[0] == '\\') rows.push_back(group);
        }
    }
};

// Names of one letter, so that they sort as bytes do.
TEST_F(FolderListTest, RandomTreesAgreeWithASecondWay) {
    std::mt19937 random(63);
    const auto letter = [&random] { return std::string(1, static_cast<char>('a' + random() % 4)); };
    Browse("Search Result");
    const std::string base = globals->aidbfpath;
    for (int tree = 0; tree < 12; ++tree) {
        std::strcpy(globals->aidbfpath, (base + "\\" + std::to_string(tree)).c_str());
        CreateDirectoryA(globals->aidbfpath, nullptr);
        SecondList second;
        for (int i = 0; i < 12; ++i) {
            std::string group = letter();
            const unsigned depth = random() % 3;
            const std::string folder = "\\" + letter(), sub = folder + "\\" + letter();
            if (depth > 0) second.folders.insert(folder + "\\$$$\\$$$.$$$");
            if (depth == 2) second.folders.insert(sub + "\\$$$.$$$");
            if (depth > 0) group = (depth == 1 ? folder : sub) + "\\" + group;
            MakeGroup(group);
            second.groups.insert(group);
        }
        Names open;
        for (const std::string& folder : second.folders) {
            if (random() % 2 && open.size() < 20) open.push_back(folder);
        }
        globals->expandedCount = 0;
        for (const std::string& row : open) ASSERT_EQ(ToggleExpanded(row.c_str()), 1);
        SelectGroup("Search Result");
        RebuildFolderList(panel());
        ASSERT_EQ(FolderRows(), second.Rows(open)) << tree;
        // Whatever stands in the list can be current, and then the list finds it again.
        for (const std::string& row : FolderRows()) {
            char name[kNameBytes];
            NameOfFolderRow(row.c_str(), name);
            if (row == "UNTITLED") continue;
            SelectGroup(name);
            EnsureCurrentGroup();
            EXPECT_STREQ(globals->aidbfname, name);
            RebuildFolderList(panel());
            EXPECT_STREQ(globals->aidbfname, name);
            EXPECT_EQ(SelectedFolderRow(), row);
        }
    }
}

TEST_F(FolderListTest, TheTwentyFirstNodeClosesTheOldest) {
    globals->expandedCount = -1;
    const auto node = [](int i) { return "\\F" + std::to_string(i) + "\\$$$\\$$$.$$$"; };
    for (int i = 0; i < 21; ++i) EXPECT_EQ(ToggleExpanded(node(i).c_str()), 1);
    EXPECT_EQ(globals->expandedCount, 20);
    EXPECT_EQ(IsExpanded(node(0).c_str()), 0);
    EXPECT_EQ(IsExpanded(node(1).c_str()), 1);
    EXPECT_EQ(ToggleExpanded(node(7).c_str()), 1);
    EXPECT_EQ(IsExpanded(node(7).c_str()), 0);
    EXPECT_EQ(IsExpanded(node(20).c_str()), 1);
    EXPECT_EQ(globals->expandedCount, 19);
    EXPECT_EQ(ToggleExpanded("\\F1\\Group"), 0);
    EXPECT_EQ(ToggleExpanded("Search Result"), 0);
    EXPECT_EQ(ToggleExpanded("\\F1\\A Folder is Selected"), 1);
    EXPECT_EQ(globals->expandedCount, 20);
}

} // namespace
