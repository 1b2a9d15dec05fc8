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

// A component is cut at 255 bytes by whole characters and then at 79 between bytes.
TEST(SplittingNames, GivesTheirParts) {
    std::string longFolder;
    for (int i = 0; i < 130; ++i) longFolder += "表";
    const std::pair<std::string, Parts> cases[] = {
        {"G", {"", "", "G"}},
        {"\\G", {"", "", "G"}},
        {"A\\B", {"", "", "A\\B"}},
        {"\\A\\B", {"A", "", "B"}},
        {"\\A\\B\\C\\D", {"A", "B", "C"}},
        {"\\A\\B\\", {"A", "", "B"}},
        {"\\A\\\\C", {"A", "", "C"}},
        {"\\\\B", {"", "", "B"}},
        {"\\", {"", "", ""}},
        {"", {"", "", ""}},
        {"\\表\\ソ\\能", {"表", "ソ", "能"}},
        {"\\A\\" + kLong, {"A", "", std::string(79, 'x')}},
        {kLong, {"", "", std::string(79, 'x')}},
        {"\\" + longFolder + "\\B", {longFolder.substr(0, 79), "", "B"}},
        {"\\A\\B\x83", {"A", "", "B\x83"}}};
    for (const auto& [name, parts] : cases) EXPECT_EQ(Split(name), parts) << name;
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

class SelectingGroups : public ::testing::Test {
protected:
    SelectingGroups() { globals = globals_.get(); }
    ~SelectingGroups() override {
        FreeHandle(globals->curRecord);
        FreeHandle(globals->rihList);
        globals = nullptr;
    }

private:
    std::unique_ptr<Globals> globals_ = std::make_unique<Globals>();
};

TEST_F(SelectingGroups, AnotherNameDropsTheRecordAndTheList) {
    SelectGroup("\\A\\G");
    globals->curRecord = NewHandle(1, kSmallGrain);
    globals->rihList = NewHandle(1, kSmallGrain);
    globals->curRecordNo = 3;
    SelectGroup("\\A\\G");
    EXPECT_NE(globals->curRecord, nullptr);
    EXPECT_NE(globals->rihList, nullptr);
    EXPECT_EQ(globals->curRecordNo, 3);
    EXPECT_EQ(SelectGroup("\\A\\H"), 0);
    EXPECT_STREQ(globals->aidbfname, "\\A\\H");
    EXPECT_EQ(globals->curRecord, nullptr);
    EXPECT_EQ(globals->rihList, nullptr);
    EXPECT_EQ(globals->curRecordNo, -1);
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

TEST_F(SelectingGroups, ARootThatWasDeletedComesBackEmptyAndWithoutAChoiceOneIsMade) {
    const TemporaryFolder folder;
    std::strcpy(globals->aidbfpath, StorePathOf(folder.path() / "db").c_str());
    char data[kNameBytes], root[kNameBytes];
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(GetDatabaseRoot(root), 0);
        EXPECT_STREQ(root, globals->aidbfpath);
        EXPECT_TRUE(std::filesystem::remove(folder.path() / "db"));
    }
    globals->aidbfpath[0] = '\0';
    RedirectDocuments(folder.path());
    EXPECT_EQ(GetHostDataFolder(data), 0);
    GetDatabaseRoot(root);
    RedirectDocuments({});
    EXPECT_TRUE(std::string(data).ends_with("\\Adobe\\Illustrator")) << data;
    EXPECT_EQ(root, std::string(data) + "\\Velquorne");
    EXPECT_EQ(GetFileAttributesA(root), DWORD{FILE_ATTRIBUTE_DIRECTORY});
}

} // namespace
