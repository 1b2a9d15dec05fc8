#include "plugin/store/store_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "tests/support/temporary_folder.h"

namespace {

// 予 and 表 end in 0x5C or begin a sequence with it; ソ is 83 5C.
const std::string kLong(100, 'x');

struct Parts {
    std::string folder, subFolder, group;
    bool operator==(const Parts&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Parts& parts) {
    return out << "[" << parts.folder << "] [" << parts.subFolder << "] [" << parts.group << "]";
}

Parts Split(const std::string& name) {
    // Exactly as large as promised, so that the address checker sees a byte too many.
    auto parts = std::make_unique<char[][kPartBytes]>(3);
    SplitGroupName(name.c_str(), parts[0], parts[1], parts[2]);
    return {parts[0], parts[1], parts[2]};
}

std::string Join(std::string folder, std::string subFolder, const std::string& group) {
    folder.resize(kPartBytes);
    subFolder.resize(kPartBytes);
    auto out = std::make_unique<char[]>(kNameBytes);
    JoinGroupName(folder.data(), subFolder.data(), group.c_str(), out.get());
    return out.get();
}

std::string GroupPath(const std::string& name, bool dataDirectory) {
    auto path = std::make_unique<uint8_t[]>(kPascalPathBytes);
    EXPECT_EQ(MakeGroupPath(name.c_str(), path.get(), dataDirectory), 0);
    const std::string text = reinterpret_cast<const char*>(path.get()) + 1;
    EXPECT_EQ(path[0], text.size());
    return text;
}

struct SplitCase {
    std::string name;
    Parts parts;
};

class SplittingNames : public ::testing::TestWithParam<SplitCase> {};

TEST_P(SplittingNames, GivesItsParts) {
    EXPECT_EQ(Split(GetParam().name), GetParam().parts);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, SplittingNames,
    ::testing::Values(SplitCase{"G", {"", "", "G"}}, SplitCase{"\\G", {"", "", "G"}},
                      SplitCase{"A\\B", {"", "", "A\\B"}}, SplitCase{"\\A\\B", {"A", "", "B"}},
                      SplitCase{"\\A\\B\\C", {"A", "B", "C"}}, SplitCase{"\\A\\B\\C\\D", {"A", "B", "C"}},
                      SplitCase{"\\A\\B\\", {"A", "", "B"}}, SplitCase{"\\A\\\\C", {"A", "", "C"}},
                      SplitCase{"\\\\B", {"", "", "B"}}, SplitCase{"\\", {"", "", ""}},
                      SplitCase{"", {"", "", ""}}, SplitCase{"\\表\\ソ\\能", {"表", "ソ", "能"}},
                      SplitCase{"\\A\\$$$\\$$$.$$$", {"A", "$$$", "$$$.$$$"}},
                      SplitCase{"\\A\\" + kLong, {"A", "", std::string(79, 'x')}},
                      SplitCase{kLong, {"", "", std::string(79, 'x')}},
                      SplitCase{"\\" + std::string(300, 'y') + "\\B", {std::string(79, 'y'), "", "B"}},
                      SplitCase{"\\A\\B\x83", {"A", "", "B\x83"}}));

// A component is cut at 255 bytes by whole characters and then at 79 between bytes.
TEST(SplittingNames, CutsAPartBetweenBytes) {
    std::string name = "\\";
    for (int i = 0; i < 130; ++i) name += "表";
    const Parts parts = Split(name + "\\B");
    EXPECT_EQ(parts.folder.size(), 79u);
    EXPECT_EQ(static_cast<uint8_t>(parts.folder.back()), 0x95);
    EXPECT_EQ(parts.group, "B");
}

TEST(JoiningNames, LeavesOutWhatIsEmptyOrNone) {
    EXPECT_EQ(Join("None", "None", "G"), "G");
    EXPECT_EQ(Join("A", "None", "G"), "\\A\\G");
    EXPECT_EQ(Join("A", "B", "G"), "\\A\\B\\G");
    EXPECT_EQ(Join("", "B", "G"), "\\B\\G");
    EXPECT_EQ(Join("A", "B", "Search Result"), "Search Result");
    EXPECT_EQ(Join("A", "", "A Folder is Selected"), "\\A\\A Folder is Selected");
    EXPECT_EQ(Join(kLong.substr(0, 79), kLong.substr(0, 79), std::string(200, 'g')).size(), 255u);
    char folder[] = "None", subFolder[] = "none", out[kNameBytes];
    JoinGroupName(folder, subFolder, "G", out);
    EXPECT_STREQ(folder, "");
    EXPECT_STREQ(out, "\\none\\G");
}

TEST(JoiningNames, GivesBackWhatWasSplit) {
    for (const std::string name : {"G", "\\A\\G", "\\表\\ソ\\能"}) {
        const Parts parts = Split(name);
        EXPECT_EQ(Join(parts.folder, parts.subFolder, parts.group), name);
    }
}

TEST(GroupPaths, GetTheirSuffixOnce) {
    EXPECT_EQ(GroupPath("G", false), "G.AID");
    EXPECT_EQ(GroupPath("\\A\\G", false), "\\A\\G.AID");
    EXPECT_EQ(GroupPath("G.AID", false), "G.AID");
    EXPECT_EQ(GroupPath("G.aid", false), "G.aid.AID");
    EXPECT_EQ(GroupPath("G.AID", true), "\\G.AID.DAT");
    EXPECT_EQ(GroupPath("G", true), "\\G.DAT");
    EXPECT_EQ(GroupPath("\\A\\G.DAT", true), "\\A\\G.DAT");
    EXPECT_EQ(GroupPath("", false), ".AID");
    EXPECT_EQ(GroupPath("x\x95.AID", false), "x\x95.AID.AID"); // that dot is half a character
}

// A path cut short would be the path of another group.
TEST(GroupPaths, ANameWithoutRoomForItsSuffixOpensNothing) {
    EXPECT_EQ(GroupPath(std::string(251, 'g'), false).size(), 255u);
    EXPECT_EQ(GroupPath(std::string(252, 'g'), false), "");
    EXPECT_EQ(GroupPath(std::string(250, 'g'), true).size(), 255u);
    EXPECT_EQ(GroupPath(std::string(251, 'g'), true), "");
    EXPECT_EQ(GroupPath("\\" + std::string(300, 'g'), true), "");
}

TEST(FullPaths, AreTheRootAndThePath) {
    char path[kFullPathBytes];
    JoinRootAndPath("\\db", "G.AID", path);
    EXPECT_STREQ(path, "\\db\\G.AID");
    JoinRootAndPath("\\db", "\\A\\G.AID", path);
    EXPECT_STREQ(path, "\\db\\A\\G.AID");
    JoinRootAndPath("", "\\etc", path);
    EXPECT_STREQ(path, "");
    JoinRootAndPath(std::string(255, 'r').c_str(), std::string(255, 'g').c_str(), path);
    EXPECT_EQ(std::strlen(path), 511u);
}

TEST(HiddenFolders, AreToldByTheirNames) {
    for (const char* name : {".git", "a.DAT", "a.DATA", "_%%image", "x_%%imagex", "_%%Trash"}) {
        EXPECT_TRUE(IsHiddenFolderName(name)) << name;
    }
    // 81 2E is no defined character, but its second byte is no dot either.
    for (const char* name : {"a", "a.dat", "_%%IMAGE", "_%image", "表.D", "x\x81.DAT"}) {
        EXPECT_FALSE(IsHiddenFolderName(name)) << name;
    }
}

// A second way to the same order: both texts become sequences of numbers with a greatest one at the end.
std::vector<int> OrderKey(const std::string& text) {
    std::vector<int> key;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uint8_t>(text[i]);
        const bool lead = (byte >= 0x81 && byte < 0xA0) || (byte >= 0xE0 && byte < 0xFD);
        if (lead && i + 1 < text.size()) {
            key.push_back(byte * 256 + static_cast<uint8_t>(text[++i]));
        } else if (byte == '\\') {
            key.push_back(255 * 256);
        } else {
            key.push_back((byte < 128 ? std::tolower(byte) : byte) * 256);
        }
    }
    key.push_back(1 << 20);
    return key;
}

int Sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(ComparingNames, AgreesWithASecondWay) {
    // Few bytes, so that the texts share beginnings: both cases, the backslash, lead bytes and second bytes.
    const std::string bytes = "abAB\\_[\x83\x95\x5C\x41\xB1\xFC\xFF.~";
    std::mt19937 random(7);
    const auto text = [&] {
        std::string result;
        for (size_t length = random() % 5; result.size() < length;) result += bytes[random() % bytes.size()];
        return result;
    };
    for (int round = 0; round < 200000; ++round) {
        const std::string a = text(), b = text();
        const auto keyA = OrderKey(a), keyB = OrderKey(b);
        const int expected = keyA < keyB ? -1 : keyA > keyB ? 1 : 0;
        ASSERT_EQ(Sign(CompareStoreNames(a.c_str(), b.c_str())), expected)
            << testing::PrintToString(a) << " " << testing::PrintToString(b);
    }
}

TEST(ComparingNames, PutsATextBehindItsExtensionsAndBackslashesLast) {
    EXPECT_GT(CompareStoreNames("AB", "ABC"), 0);
    EXPECT_LT(CompareStoreNames("ABC", "AB"), 0);
    EXPECT_EQ(CompareStoreNames("aBc", "AbC"), 0);
    EXPECT_GT(CompareStoreNames("\\A\\G", "\\A~\\G"), 0);
    EXPECT_LT(CompareStoreNames("表", "\\"), 0);
    EXPECT_LT(CompareStoreNames("アA", "アB"), 0);
    EXPECT_NE(CompareStoreNames("ア", "\x83\x61"), 0); // 83 41 and 83 61: no case within a character
}

class SelectingGroups : public ::testing::Test {
protected:
    SelectingGroups() { globals = globals_.get(); }
    ~SelectingGroups() override {
        FreeHandle(globals->curRecord);
        FreeHandle(globals->rihList);
        globals = nullptr;
    }
    void HoldRecord() {
        globals->curRecord = NewHandle(1, kSmallGrain);
        globals->rihList = NewHandle(1, kSmallGrain);
        globals->curRecordNo = 3;
    }

private:
    std::unique_ptr<Globals> globals_ = std::make_unique<Globals>();
};

TEST_F(SelectingGroups, DropsTheRecordAndTheList) {
    SelectGroup("\\A\\G");
    HoldRecord();
    EXPECT_EQ(SelectGroup("\\A\\H"), 0);
    EXPECT_STREQ(globals->aidbfname, "\\A\\H");
    EXPECT_EQ(globals->curRecord, nullptr);
    EXPECT_EQ(globals->rihList, nullptr);
    EXPECT_EQ(globals->curRecordNo, -1);
}

TEST_F(SelectingGroups, TheCurrentNameKeepsThem) {
    SelectGroup("\\A\\G");
    HoldRecord();
    SelectGroup("\\A\\G");
    EXPECT_NE(globals->curRecord, nullptr);
    EXPECT_NE(globals->rihList, nullptr);
    EXPECT_EQ(globals->curRecordNo, 3);
}

TEST_F(SelectingGroups, TellsPseudoEntries) {
    const std::pair<const char*, int> cases[] = {
        {"\\A\\A Folder is Selected", kFindFolder}, {"\\A\\B\\A Folder is Selected", kFindFolder},
        {"A Folder is Selected", kFindFolder},      {"a folder is selected", kFindGroup},
        {"Search Result", kFindSearchResult},       {"Search Results", kFindGroup}};
    for (const auto& [name, mode] : cases) {
        SelectGroup(name);
        EXPECT_EQ(globals->findMode, mode) << name;
    }
    const std::string longName(400, 'n');
    SelectGroup(longName.c_str());
    EXPECT_EQ(std::strlen(globals->aidbfname), 255u);
}

class DatabaseRoots : public SelectingGroups {
protected:
    DatabaseRoots() { RedirectDocuments(folder_.path()); }
    ~DatabaseRoots() override { RedirectDocuments({}); }
    const TemporaryFolder folder_;
};

TEST_F(DatabaseRoots, AChosenRootComesBackEmptyWhenItWasDeleted) {
    const std::string chosen = StorePathOf(folder_.path() / "db");
    std::strcpy(globals->aidbfpath, chosen.c_str());
    char root[kNameBytes];
    EXPECT_EQ(GetDatabaseRoot(root), 0);
    EXPECT_EQ(root, chosen);
    EXPECT_TRUE(std::filesystem::remove(folder_.path() / "db"));
    GetDatabaseRoot(root);
    EXPECT_TRUE(std::filesystem::is_directory(folder_.path() / "db"));
}

TEST_F(DatabaseRoots, WithoutAChoiceItIsInTheHostsDataFolder) {
    char data[kNameBytes], root[kNameBytes];
    EXPECT_EQ(GetHostDataFolder(data), 0);
    const std::string folder = data, end = "\\Adobe\\Illustrator";
    ASSERT_GT(folder.size(), end.size());
    EXPECT_EQ(folder.substr(folder.size() - end.size()), end);
    GetDatabaseRoot(root);
    EXPECT_EQ(root, folder + "\\Velquorne");
    EXPECT_EQ(GetFileAttributesA(root), DWORD{FILE_ATTRIBUTE_DIRECTORY});
}

} // namespace
