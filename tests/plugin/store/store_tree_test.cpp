#include "plugin/store/store_tree.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "plugin/store/store_names.h"
#include "tests/support/temporary_folder.h"

namespace {

using Rows = std::vector<std::string>;

Rows Take(MemoryHandle rows) {
    HandleOwner owner(rows);
    Rows texts;
    for (int32_t i = 0; i < RowCount(rows); ++i) texts.emplace_back(RowText(rows, i));
    return texts;
}

class StoreTreeTest : public ::testing::Test {
protected:
    std::string Path(const std::string& path) const { return root_ + "\\" + path; }
    void MakeFolders(std::initializer_list<const char*> paths) const {
        for (const char* path : paths) EXPECT_TRUE(CreateDirectoryA(Path(path).c_str(), nullptr)) << path;
    }
    void MakeFile(const std::string& path) const {
        const HFILE file = _lcreat(Path(path).c_str(), 0);
        ASSERT_NE(file, HFILE_ERROR) << path;
        _lclose(file);
    }
    void MakeFiles(std::initializer_list<const char*> paths) const {
        for (const char* path : paths) MakeFile(path);
    }
    Rows Folders() const { return Take(ListFolders(root_.c_str())); }
    Rows Groups(const char* folder, const char* subFolder) const {
        return Take(ListGroups(root_.c_str(), folder, subFolder));
    }

    const TemporaryFolder folder_;
    const std::string root_ = folder_.storePath();
};

// A row's backslash stands behind every other single-byte character, so `\ab c\` comes before `\AB\`, and
// both before `\a\`; a lead byte stands in front of the backslash's 0xFF too.
TEST_F(StoreTreeTest, FolderListsShowFoldersInOrder) {
    MakeFolders({"B", "a", "a.DAT", "_%%image", "_%%Trash", ".hidden", "AB", "表", "ab c"});
    MakeFiles({"G.AID", "x"});
    EXPECT_EQ(Take(ListSubFolders(root_.c_str(), "")), Rows{});
    EXPECT_EQ(Folders(), (Rows{"\\ab c\\$$$\\$$$.$$$", "\\AB\\$$$\\$$$.$$$", "\\a\\$$$\\$$$.$$$",
                               "\\B\\$$$\\$$$.$$$", "\\表\\$$$\\$$$.$$$"}));
}

TEST_F(StoreTreeTest, GroupsOfOnePlaceOrOfAllBelowIt) {
    MakeFolders({"表", "表\\ソ", "表\\ソ\\deep", "z", ".git", "G.DAT"});
    MakeFiles({"G.AID", "表\\能.AID", "表\\ソ\\S.AID", "表\\ソ\\deep\\D.AID", "z\\Z.AID", ".git\\no.AID",
               "G.DAT\\d.AID"});
    EXPECT_EQ(Groups("", nullptr), (Rows{"G"}));
    EXPECT_EQ(Groups("", "表"), (Rows{"G"}));
    EXPECT_EQ(Groups("表", ""), (Rows{"\\表\\能"}));
    EXPECT_EQ(Groups("表", "ソ"), (Rows{"\\表\\ソ\\S"}));
    const Rows below = {"\\表\\ソ\\deep\\D", "\\表\\ソ\\S", "\\表\\能"};
    EXPECT_EQ(Groups("表", nullptr), below);
    EXPECT_EQ(Groups(nullptr, "表"), (Rows{"G", "\\G.DAT\\d", "\\z\\Z", below[0], below[1], below[2]}));
    EXPECT_EQ(Take(ListSubFolders(root_.c_str(), "表")), (Rows{"\\表\\ソ\\$$$.$$$"}));
    EXPECT_EQ(Groups("none", nullptr), Rows{});
    EXPECT_EQ(Take(ListGroups("", nullptr, nullptr)), Rows{});
    MakeFiles(
        {"H.AID.bak", "lower.aid", "plain", "Search Result.AID", ".AID", "x.DAT", "z\\Search Result.AID"});
    EXPECT_EQ(Groups("", nullptr), (Rows{"G", "H"}));
    EXPECT_EQ(Groups("z", nullptr), (Rows{"\\z\\Search Result", "\\z\\Z"}));
}

// Against the rule as it is told: a row goes in front of the first one that is greater.  More than one grain
// of rows, and none lost.
TEST_F(StoreTreeTest, RowsStandWhereInsertionPutsThem) {
    std::mt19937 random(11);
    const std::vector<std::string> pieces = {"a", "b", "c", "-", "_", "表", "ソ", "1", "zz"};
    std::set<std::string> names;
    while (names.size() < 1500) {
        std::string name;
        for (size_t n = random() % 4 + 1; n > 0; --n) name += pieces[random() % pieces.size()];
        if (names.insert(name).second) MakeFile(name + ".AID");
    }
    const Rows rows = Groups("", nullptr);
    EXPECT_EQ(std::set<std::string>(rows.begin(), rows.end()), names);
    Rows inserted;
    for (const std::string& row : rows) {
        const auto greater = std::find_if(inserted.begin(), inserted.end(), [&row](const std::string& other) {
            return CompareStoreNames(other.c_str(), row.c_str()) > 0;
        });
        inserted.insert(greater, row);
    }
    EXPECT_EQ(rows, inserted);
}

// Two links back to the root in every folder would be an endless tree, and one link a tree without use.
TEST_F(StoreTreeTest, ACircleOfLinksEnds) {
    MakeFolders({"f"});
    MakeFiles({"G.AID", "f\\H.AID"});
    std::error_code error;
    std::filesystem::create_directory_symlink(folder_.path(), folder_.path() / "f" / "back", error);
    if (error) GTEST_SKIP() << "a test makes no links here";
    std::filesystem::create_directory_symlink(folder_.path(), folder_.path() / "again", error);
    EXPECT_EQ(Groups(nullptr, nullptr),
              (Rows{"G", "\\again\\f\\H", "\\again\\G", "\\f\\back\\f\\H", "\\f\\back\\G", "\\f\\H"}));
}

} // namespace
