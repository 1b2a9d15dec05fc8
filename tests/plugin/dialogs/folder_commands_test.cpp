// Groups and folders made, moved, renamed and deleted by their dialogs, and what is on the disk then.
#include "plugin/dialogs/folder_commands.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/search.h"
#include "plugin/store/store_names.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/panel_fixture.h"

namespace {

namespace fs = std::filesystem;
using Paths = std::set<std::string>;

constexpr int kShareNothing = 0;

class FolderCommandsTest : public PanelFixture {
protected:
    void SetUp() override {
        PanelFixture::SetUp();
        globals->language = 1;
        MakeFolder("\\P");
        for (const char* group : {"G", "\\F\\A", "\\F\\B", "\\F\\S\\T"}) MakeGroup(group, {"r"});
        fs::create_directories(rootOnDisk() / "F" / "A.DAT" / "0");
        BuildThePanel();
    }

    void MakeCurrent(const char* name) {
        SelectGroup(name);
        RefreshAfterFolderChange(panel());
        ASSERT_STREQ(globals->aidbfname, name);
    }

    /// All below the root but the store's own files.
    Paths Tree() {
        Paths paths;
        for (const auto& entry : fs::recursive_directory_iterator(rootOnDisk())) {
            const std::string path = fs::relative(entry.path(), rootOnDisk()).generic_string();
            if (!path.starts_with("VLQ.")) paths.insert(path);
        }
        return paths;
    }
    Paths TreeWith(Paths gone, const Paths& come) {
        Paths tree = before_;
        for (const std::string& path : gone) EXPECT_EQ(tree.erase(path), 1u) << path;
        tree.insert(come.begin(), come.end());
        return tree;
    }

    void Answer(const char* folder, const char* subFolder, const std::string& name, int button = 1) {
        answers_.Next([=, shown = std::exchange(shown_, "")](HWND dialog) {
            if (!shown.empty()) {
                EXPECT_EQ(TextOf(dialog, 8) + "|" + TextOf(dialog, 5), shown);
            }
            EXPECT_EQ(GetFocus(), GetDlgItem(dialog, 5));
            Choose(dialog, 8, folder);
            if (subFolder != nullptr) Choose(dialog, 10, subFolder);
            Type(dialog, 5, name);
            Press(dialog, button);
        });
    }
    std::string LastAlert() { return host().alerts().empty() ? "" : host().alerts().back().text; }

    DialogAnswers answers_;
    Paths before_;
    std::string shown_; ///< by the next dialog: the parent and the name, if that is to be seen
};

} // namespace

TEST_F(FolderCommandsTest, FoldersAreAdded) {
    MakeCurrent("G");
    before_ = Tree();
    Answer("None", nullptr, "N");
    EXPECT_EQ(AddFolder(panel(), globals->aidbfname), 0);
    Answer("F", nullptr, "N" + std::string(90, 'n'));
    EXPECT_EQ(AddFolder(panel(), globals->aidbfname), 0);
    EXPECT_EQ(Tree(), TreeWith({}, {"N", "F/N" + std::string(77, 'n')})); // as long as names may be
    EXPECT_EQ(globals->hasFolders, kNotKnown);
    EXPECT_TRUE(host().alerts().empty());
    before_ = Tree();
    struct Refused {
        const char *parent, *name, *message;
    };
    // Taken, leading elsewhere, or hidden from every list afterwards.
    const Refused refused[] = {
        {"None", "F", "'\\F' folder cannot be made. [-1]"},
        {"F", "S", "'\\F\\S' folder cannot be made. [-1]"},
        {"P", "", "'\\P' folder cannot be made. [-1]"},
        {"P", "..", "'\\P\\..' folder cannot be made. [-1]"},
        {"P", "a\\b", "cannot be made. [-1]"},
        {"None", "..\\x", "cannot be made. [-1]"},
        {"None", "C:x", "cannot be made. [-1]"},
        {"None", "x/y", "cannot be made. [-1]"},
        {"None", "x.DAT", "cannot be made. [-1]"},
        {"None", "None", "cannot be made. [-1]"},
        {"P", "end.", "cannot be made. [-1]"},
    };
    for (const Refused& each : refused) {
        host().ClearAlerts();
        Answer(each.parent, nullptr, each.name);
        EXPECT_EQ(AddFolder(panel(), globals->aidbfname), -1) << each.name;
        EXPECT_NE(LastAlert().find(each.message), std::string::npos) << each.name << ": " << LastAlert();
    }
    Answer("None", nullptr, "never", 2);
    EXPECT_EQ(AddFolder(panel(), globals->aidbfname), 0);
    EXPECT_EQ(Tree(), before_);
}

TEST_F(FolderCommandsTest, GroupsAreAdded) {
    MakeCurrent("\\F\\A");
    fs::create_directory(rootOnDisk() / "F" / "D.DAT");
    before_ = Tree();
    shown_ = "F|";
    Answer("F", "S", "New");
    EXPECT_EQ(AddGroup(panel(), globals->aidbfname), 0);
    EXPECT_STREQ(globals->aidbfname, "\\F\\S\\New");
    EXPECT_EQ(fs::file_size(rootOnDisk() / "F" / "S" / "New.AID"), 0u);
    EXPECT_EQ(Tree(), TreeWith({}, {"F/S/New.AID"}));
    before_ = Tree();
    const std::pair<const char*, const char*> refused[] = {
        {"A", "'\\F\\A.AID' group cannot be made. [-1]"},
        {"D", "'\\F\\D.DAT' folder cannot be made. [-1]"},
        {"", "'' group cannot be made. [-1]"},
        {"..\\out", "'..\\out' group cannot be made. [-1]"},
        {"\\P\\x", "'P\\x' group cannot be made. [-1]"},
        {"Search Result", "'Search Result' group cannot be made. [-1]"},
        {"A Folder is Selected", "'A Folder is Selected' group cannot be made. [-1]"},
    };
    for (const auto& [name, message] : refused) {
        host().ClearAlerts();
        Answer("F", "None", name);
        EXPECT_EQ(AddGroup(panel(), globals->aidbfname), -1) << name;
        EXPECT_EQ(LastAlert().substr(0, std::strlen(message)), message);
        EXPECT_STREQ(globals->aidbfname, "\\F\\S\\New");
    }
    EXPECT_EQ(Tree(), before_);
}

TEST_F(FolderCommandsTest, DeletionsAskFirst) {
    MakeCurrent("\\F\\A");
    before_ = Tree();
    host().AnswerNext(false);
    EXPECT_EQ(DeleteGroup(panel(), globals->aidbfname), 0);
    EXPECT_EQ(LastAlert(),
              "Do you want to delete this '\\F\\A' group? \r\nOnce You deleted,  it cannot be restored. ");
    host().AnswerNext(false);
    EXPECT_EQ(DeleteFolder(panel(), globals->aidbfname), 0);
    EXPECT_EQ(LastAlert(),
              "Do you want to delete this 'F' folder? \r\nAll the groups will be deleted in this folder. ");
    EXPECT_EQ(Tree(), before_);

    host().AnswerNext(true);
    EXPECT_EQ(DeleteGroup(panel(), globals->aidbfname), 0);
    EXPECT_EQ(Tree(), TreeWith({"F/A.AID", "F/A.DAT", "F/A.DAT/0"}, {}));
    EXPECT_STREQ(globals->aidbfname, "\\F\\A Folder is Selected"); // the row that is left of its place
    MakeCurrent("\\F\\S\\T");
    host().AnswerNext(true);
    EXPECT_EQ(DeleteFolder(panel(), globals->aidbfname), 0);
    EXPECT_FALSE(fs::exists(rootOnDisk() / "F" / "S"));
    EXPECT_TRUE(fs::exists(rootOnDisk() / "F" / "B.AID"));
    MakeCurrent("\\F\\B");
    host().AnswerNext(true);
    globals->hasFolders = 1;
    EXPECT_EQ(DeleteFolder(panel(), globals->aidbfname), 0);
    EXPECT_EQ(Tree(), (Paths{"G.AID", "P"}));
    EXPECT_EQ(globals->hasFolders, kNotKnown);
    EXPECT_STREQ(globals->aidbfname, "G");
    EXPECT_EQ(DeleteFolder(panel(), globals->aidbfname), -1); // in none
}

TEST_F(FolderCommandsTest, WhatMovesIsFollowed) {
    MakeCurrent("\\F\\A");
    before_ = Tree();
    globals->flCnvFnStr[0] = '\0';
    ASSERT_EQ(RunSearch(), 0);
    std::strcpy(globals->aidbfname, "\\F\\A");
    shown_ = "F|A";
    Answer("F", "S", "a");
    EXPECT_EQ(MoveOrRename(panel(), globals->aidbfname), 0) << LastAlert();
    EXPECT_EQ(Tree(),
              TreeWith({"F/A.AID", "F/A.DAT", "F/A.DAT/0"}, {"F/S/a.AID", "F/S/a.DAT", "F/S/a.DAT/0"}));
    EXPECT_STREQ(globals->aidbfname, "\\F\\S\\a");
    EXPECT_GE(FindRihItem("\\F\\S\\a", 0), 0); // what a search found opens still
    EXPECT_EQ(FindRihItem("\\F\\A", 0), -1);

    MakeCurrent("\\F\\A Folder is Selected");
    if (IsExpanded("\\F\\$$$\\$$$.$$$") == 0) ToggleExpanded("\\F\\$$$\\$$$.$$$");
    shown_ = "None|F";
    Answer("None", nullptr, "Q");
    EXPECT_EQ(MoveOrRename(panel(), globals->aidbfname), 0);
    EXPECT_STREQ(globals->aidbfname, "\\Q\\A Folder is Selected");
    EXPECT_EQ(IsExpanded("\\Q\\$$$\\$$$.$$$"), 1);
    EXPECT_TRUE(fs::exists(rootOnDisk() / "Q" / "S" / "a.DAT" / "0"));
    EXPECT_FALSE(fs::exists(rootOnDisk() / "F"));

    // Not every platform takes a name of another case, but the group is there.
    MakeCurrent("\\Q\\B");
    Answer("Q", "None", "b");
    const bool renamed = MoveOrRename(panel(), globals->aidbfname) == 0;
    EXPECT_EQ(Tree().contains("Q/b.AID"), renamed);
    EXPECT_EQ(Tree().contains("Q/B.AID"), !renamed);
    EXPECT_STREQ(globals->aidbfname, renamed ? "\\Q\\b" : "\\Q\\B");
    EXPECT_EQ(CountRecords(globals->aidbfname), 1u);
}

TEST_F(FolderCommandsTest, MovesThatAreRefusedChangeNothing) {
    MakeCurrent("\\F\\A");
    fs::create_directory(rootOnDisk() / "D.DAT");
    before_ = Tree();
    struct Refused {
        const char *folder, *subFolder, *name;
    };
    const Refused groups[] = {{"F", "None", "A"},      {"F", "None", "B"},
                              {"None", "None", "D"},   {"F", "None", ""},
                              {"P", "None", "..\\x"},  {"P", "None", "x.AID"},
                              {"None", "None", "A:b"}, {"P", "None", "Search Result"}};
    for (const Refused& each : groups) {
        Answer(each.folder, each.subFolder, each.name);
        EXPECT_EQ(MoveOrRename(panel(), globals->aidbfname), -1) << each.name;
        EXPECT_STREQ(globals->aidbfname, "\\F\\A");
    }
    MakeCurrent("\\F\\A Folder is Selected");
    // Below another one its subfolder could not be reached.
    const Refused folders[] = {
        {"None", nullptr, "F"}, {"P", nullptr, "F"}, {"F", nullptr, "F"}, {"None", nullptr, ".F"}};
    for (const Refused& each : folders) {
        host().ClearAlerts();
        Answer(each.folder, nullptr, each.name);
        EXPECT_EQ(MoveOrRename(panel(), globals->aidbfname), -1) << each.folder << each.name;
        EXPECT_NE(LastAlert().find("folder cannot be made. [-1]"), std::string::npos) << LastAlert();
        EXPECT_STREQ(globals->aidbfname, "\\F\\A Folder is Selected");
    }
    EXPECT_EQ(Tree(), before_);
}

// The data directory goes first and comes back when the group's file can't follow.
TEST_F(FolderCommandsTest, AGroupThatIsOpenElsewhereStays) {
    MakeCurrent("\\F\\A");
    before_ = Tree();
    const std::string file = StorePathOf(rootOnDisk() / "F" / "A.AID");
    const HANDLE other = CreateFileA(file.c_str(), GENERIC_READ, kShareNothing, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    Answer("P", "None", "A");
    EXPECT_EQ(MoveOrRename(panel(), globals->aidbfname), -1);
    EXPECT_EQ(LastAlert().substr(0, 26), "The database is in use by ");
    host().AnswerNext(true);
    EXPECT_EQ(DeleteGroup(panel(), globals->aidbfname), -1);
    EXPECT_EQ(LastAlert().substr(0, 26), "The database is in use by ");
    EXPECT_STREQ(globals->aidbfname, "\\F\\A");
    EXPECT_EQ(Tree(), before_);
    CloseHandle(other);
}
