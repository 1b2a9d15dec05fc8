#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/app/run_command.h"
#include "tests/support/temporary_folder.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

/// A page of 100 x 100 points; the square covers (10, 20) to (40, 60) in page coordinates with y upward.
constexpr char kSquare[] =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="100pt" height="100pt" viewBox="0 0 100 100">)"
    R"(<title>Square</title><rect id="box" x="10" y="40" width="30" height="40" fill="#ff0000"/></svg>)";

class CommandsTest : public testing::Test {
protected:
    CommandsTest() { setenv("XDG_DATA_HOME", (folder.path() / "data").c_str(), 1); }

    std::string Path(const std::string& name) const { return (folder.path() / name).string(); }
    std::string Database() const { return Path("db"); }

    std::string Drawing(const std::string& name, const std::string& text = kSquare) {
        WriteText(Path(name), text);
        return Path(name);
    }

    /// Stores the square as the next record of a group.
    void Store(const std::string& group, const std::string& name = "Square") {
        const CommandResult result =
            RunCommand({"register", Drawing("in.svg"), "--db", Database(), "--group", group, "--name", name});
        ASSERT_EQ(result.code, 0) << result.err;
    }

    json Records(const std::string& group) {
        const CommandResult result = RunCommand({"list", "--db", Database(), group, "--json"});
        EXPECT_EQ(result.code, 0) << result.err;
        return json::parse(result.out)["records"];
    }

    json Groups() { return json::parse(RunCommand({"list", "--db", Database(), "--json"}).out)["groups"]; }

    static json ReadJson(const std::string& path) { return json::parse(std::ifstream(path)); }

    TemporaryFolder folder;
};

TEST_F(CommandsTest, ADrawingIsStoredListedShownAndPlacedAgain) {
    const CommandResult stored =
        RunCommand({"register", Drawing("in.svg"), "--db", Database(), "--group", "Shapes/Plain/Squares",
                    "--kind", "shape", "--comment", "a test"});
    ASSERT_EQ(stored.code, 0) << stored.err;
    EXPECT_THAT(stored.out, HasSubstr("\\Shapes\\Plain\\Squares\t0\tSquare\t1 objects"));

    const json record = Records("Shapes/Plain/Squares")[0];
    EXPECT_EQ(record["name"], "Square");
    EXPECT_EQ(record["kind"], "shape");
    EXPECT_EQ(record["comment"], "a test");
    EXPECT_EQ(record["width"], 30.0);
    EXPECT_EQ(record["height"], 40.0);
    EXPECT_EQ(record["bytes"], fs::file_size(folder.path() / "db/Shapes/Plain/Squares.AID") - 4);

    const json shown =
        json::parse(RunCommand({"show", "--db", Database(), "Shapes\\Plain\\Squares", "0", "--json"}).out);
    ASSERT_EQ(shown["objects"].size(), 1U);
    EXPECT_EQ(shown["objects"][0]["style"]["fill"]["red"], 1.0);
    EXPECT_EQ(shown["objects"][0]["segmentCount"], 4);

    const CommandResult placed = RunCommand({"place", "--db", Database(), "Shapes/Plain/Squares", "0", "--at",
                                             "200,300", "--origin", "2", "--out", Path("out.json")});
    ASSERT_EQ(placed.code, 0) << placed.err;
    double left = 1e9, bottom = 1e9;
    const json page = ReadJson(Path("out.json"));
    for (const json& segment : page["layers"][0]["art"][0]["segments"]) {
        left = std::min(left, segment["anchor"][0].get<double>());
        bottom = std::min(bottom, segment["anchor"][1].get<double>());
    }
    EXPECT_DOUBLE_EQ(left, 200);
    EXPECT_DOUBLE_EQ(bottom, 300);
}

TEST_F(CommandsTest, PlacingIntoADrawingKeepsWhatItHolds) {
    Store("G");
    const CommandResult placed =
        RunCommand({"place", "--db", Database(), "G", "0", "--at", "50,50", "--into", Drawing("page.svg"),
                    "--out", Path("out.json"), Path("out.svg"), Path("out.pdf"), Path("out.png")});
    ASSERT_EQ(placed.code, 0) << placed.err;
    EXPECT_EQ(ReadJson(Path("out.json"))["layers"][0]["art"].size(), 2U);
    for (const char* name : {"out.svg", "out.pdf", "out.png"})
        EXPECT_GT(fs::file_size(Path(name)), 100U) << name;
    const CommandResult again = RunCommand({"convert", Path("out.svg"), "--out", Path("again.json")});
    ASSERT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(ReadJson(Path("again.json"))["layers"][0]["art"].size(), 2U);
}

TEST_F(CommandsTest, OnlyTheArtWithAnIdIsStored) {
    const std::string two =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="100pt" height="100pt" viewBox="0 0 100 100">)"
        R"(<rect x="0" y="0" width="90" height="90"/><rect id="small" x="10" y="10" width="5" height="5"/></svg>)";
    ASSERT_EQ(RunCommand({"register", Drawing("two.svg", two), "--db", Database(), "--group", "G", "--select",
                          "small"})
                  .code,
              0);
    EXPECT_EQ(Records("G")[0]["width"], 5.0);
    const CommandResult none = RunCommand(
        {"register", Drawing("two.svg", two), "--db", Database(), "--group", "G", "--select", "missing"});
    EXPECT_EQ(none.code, 1);
    EXPECT_THAT(none.err, HasSubstr("missing"));
}

// The trail byte of the second character of 表示 in cp932 is a backslash's code, 0x5C belongs to 表.
TEST_F(CommandsTest, JapaneseNamesReachTheDiskAsPeopleReadThem) {
    Store("ソフト/表示/能力", "十二表");
    EXPECT_TRUE(fs::exists(folder.path() / "db/ソフト/表示/能力.AID"));
    EXPECT_EQ(Groups()[0]["group"], "\\ソフト\\表示\\能力");
    EXPECT_EQ(Records("ソフト/表示/能力")[0]["name"], "十二表");
}

TEST_F(CommandsTest, ATextWithoutAStoredFormIsRefusedByItsCharacter) {
    for (const char* option : {"--name", "--kind", "--comment"}) {
        const CommandResult result = RunCommand(
            {"register", Drawing("in.svg"), "--db", Database(), "--group", "G", option, "caf\u00e9"});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.err, HasSubstr("'\u00e9' (U+00E9)"));
    }
    EXPECT_EQ(RunCommand({"register", Drawing("in.svg"), "--db", Database(), "--group", "\u00e9"}).code, 1);
    EXPECT_TRUE(Groups().empty());
}

struct RefusedGroup {
    const char* group;
    const char* why;
};
class RefusedGroupTest : public CommandsTest, public testing::WithParamInterface<RefusedGroup> {};

TEST_P(RefusedGroupTest, IsRefusedWithoutATrace) {
    const CommandResult result =
        RunCommand({"register", Drawing("in.svg"), "--db", Database(), "--group", GetParam().group});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr(GetParam().why));
    EXPECT_TRUE(fs::is_empty(folder.path() / "db"));
}
INSTANTIATE_TEST_SUITE_P(Names, RefusedGroupTest,
                         testing::Values(RefusedGroup{"a/b/c/d", "two folders deep"},
                                         RefusedGroup{"a//b", "empty"}, RefusedGroup{"../../b", "dots"},
                                         RefusedGroup{".git/b", "hidden"}, RefusedGroup{"x.DAT/b", "hidden"},
                                         RefusedGroup{"Search Result", "itself"},
                                         RefusedGroup{"None/b", "no folder"}, RefusedGroup{"b.AID", ".AID"}));

TEST_F(CommandsTest, ExitCodesTellUsageFromFilesFromRefusals) {
    Store("G");
    const std::string db = Database();
    EXPECT_EQ(RunCommand({}).code, 2);
    EXPECT_EQ(RunCommand({"place", "--db", db, "G", "0", "--at", "1;2", "--out", Path("a.svg")}).code, 2);
    EXPECT_EQ(RunCommand({"place", "--db", db, "G", "0", "--at", "1,2", "--out", Path("a.doc")}).code, 2);
    EXPECT_EQ(RunCommand({"list", "--db", Path("missing")}).code, 3);
    EXPECT_FALSE(fs::exists(Path("missing")));
    EXPECT_EQ(RunCommand({"list", "--db", db, "Nothing"}).code, 3);
    EXPECT_EQ(RunCommand({"show", "--db", db, "G", "1"}).code, 1);
    EXPECT_EQ(RunCommand({"place", "--db", db, "G", "1", "--at", "1,2", "--out", Path("a.svg")}).code, 1);
    EXPECT_FALSE(fs::exists(Path("a.svg")));
    EXPECT_EQ(RunCommand({"convert", Path("missing.svg"), "--out", Path("a.svg")}).code, 3);
    EXPECT_EQ(RunCommand({"convert", Drawing("no.svg", "no drawing"), "--out", Path("a.svg")}).code, 1);
    EXPECT_EQ(RunCommand({"--help"}).code, 0);
    EXPECT_THAT(RunCommand({"--version"}).out, HasSubstr("2.0.4.0"));
}

TEST_F(CommandsTest, ADamagedGroupShowsWhatStandsBeforeTheDamage) {
    for (const char* name : {"a", "b", "c"}) Store("G", name);
    const fs::path file = folder.path() / "db/G.AID";
    fs::resize_file(file, fs::file_size(file) - 10);
    const CommandResult list = RunCommand({"list", "--db", Database(), "G", "--json"});
    EXPECT_EQ(list.code, 1);
    EXPECT_THAT(list.err, HasSubstr("2 of 3"));
    EXPECT_EQ(json::parse(list.out)["records"].size(), 2U);
    // A group that can't be walked to its end takes no new record: it could hide behind the damage.
    const CommandResult refused =
        RunCommand({"register", Path("in.svg"), "--db", Database(), "--group", "G", "--name", "d"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(RunCommand({"show", "--db", Database(), "G", "1"}).code, 0);
}

TEST_F(CommandsTest, SheetsHaveAPictureForEveryRecord) {
    for (const char* name : {"one", "two", "three"}) Store("G", name);
    const CommandResult result =
        RunCommand({"sheet", "--db", Database(), "--out", Path("sheet.png"), "--size", "32"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_GT(fs::file_size(Path("sheet.png")), 500U);
}

TEST_F(CommandsTest, TraceNamesEveryCallOfTheHost) {
    const CommandResult result =
        RunCommand({"register", Drawing("in.svg"), "--db", Database(), "--group", "G", "--trace"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("AI Path Style Suite"));
}

} // namespace
