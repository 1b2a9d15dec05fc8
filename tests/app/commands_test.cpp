#include <gmock/gmock.h>

#include "tests/app/run_command.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

/// A page of 100 x 100 points; the square covers (10, 20) to (40, 60) in page coordinates with y upward.
constexpr char kSquare[] =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="100pt" height="100pt" viewBox="0 0 100 100">)"
    R"(<title>Square</title><rect id="box" x="10" y="40" width="30" height="40" fill="#ff0000"/></svg>)";

class CommandsTest : public CommandTest {
protected:
    std::string Drawing(const std::string& name, const std::string& text = kSquare) {
        WriteText(Path(name), text);
        return Path(name);
    }

    /// Stores the square as the next record of a group.
    void Store(const std::string& group, const std::string& name = "Square") {
        Done({"register", Drawing("in.svg"), "--group", group, "--name", name});
    }
};

TEST_F(CommandsTest, ADrawingIsStoredListedShownAndPlacedAgain) {
    const CommandResult stored = Run({"register", Drawing("in.svg"), "--group", "Shapes/Plain/Squares",
                                      "--kind", "shape", "--comment", "a test"});
    ASSERT_EQ(stored.code, 0) << stored.err;
    EXPECT_THAT(stored.out, HasSubstr("\\Shapes\\Plain\\Squares\t0\tSquare\t1 objects"));

    const json record = Records("Shapes/Plain/Squares")[0];
    EXPECT_EQ(record["name"], "Square");
    EXPECT_EQ(record["kind"], "shape");
    EXPECT_EQ(record["comment"], "a test");
    EXPECT_EQ(record["width"], 30.0);
    EXPECT_EQ(record["height"], 40.0);
    EXPECT_EQ(record["bytes"], fs::file_size(root() / "Shapes/Plain/Squares.AID") - 4);

    const json shown = json::parse(Run({"show", "Shapes\\Plain\\Squares", "0", "--json"}).out);
    ASSERT_EQ(shown["objects"].size(), 1U);
    EXPECT_EQ(shown["objects"][0]["style"]["fill"]["red"], 1.0);
    EXPECT_EQ(shown["objects"][0]["segmentCount"], 4);

    const CommandResult placed = Run({"place", "Shapes/Plain/Squares", "0", "--at", "200,300", "--origin",
                                      "2", "--out", Path("out.json")});
    ASSERT_EQ(placed.code, 0) << placed.err;
    double left = 1e9, bottom = 1e9;
    const json page = ReadJson("out.json");
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
        Run({"place", "G", "0", "--at", "50,50", "--into", Drawing("page.svg"), "--out", Path("out.json"),
             Path("out.svg"), Path("out.pdf"), Path("out.png")});
    ASSERT_EQ(placed.code, 0) << placed.err;
    EXPECT_EQ(ReadJson("out.json")["layers"][0]["art"].size(), 2U);
    for (const char* name : {"out.svg", "out.pdf", "out.png"})
        EXPECT_GT(fs::file_size(Path(name)), 100U) << name;
    const CommandResult again = RunCommand({"convert", Path("out.svg"), "--out", Path("again.json")});
    ASSERT_EQ(again.code, 0) << again.err;
    EXPECT_EQ(ReadJson("again.json")["layers"][0]["art"].size(), 2U);
}

TEST_F(CommandsTest, OnlyTheArtWithAnIdIsStored) {
    const std::string two =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="100pt" height="100pt" viewBox="0 0 100 100">)"
        R"(<rect x="0" y="0" width="90" height="90"/><rect id="small" x="10" y="10" width="5" height="5"/></svg>)";
    ASSERT_EQ(Run({"register", Drawing("two.svg", two), "--group", "G", "--select", "small"}).code, 0);
    EXPECT_EQ(Records("G")[0]["width"], 5.0);
    const CommandResult none =
        Run({"register", Drawing("two.svg", two), "--group", "G", "--select", "missing"});
    EXPECT_EQ(none.code, 1);
    EXPECT_THAT(none.err, HasSubstr("missing"));
}

TEST_F(CommandsTest, ATextWithoutAStoredFormIsRefusedByItsCharacter) {
    for (const char* option : {"--name", "--kind", "--comment"}) {
        const CommandResult result =
            Run({"register", Drawing("in.svg"), "--group", "G", option, "caf\u00e9"});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.err, HasSubstr("'\u00e9' (U+00E9)"));
    }
    EXPECT_EQ(Run({"register", Drawing("in.svg"), "--group", "\u00e9"}).code, 1);
    EXPECT_TRUE(fs::is_empty(root()));
}

TEST_F(CommandsTest, AGroupThatCantBeIsRefusedWithoutATrace) {
    const std::pair<const char*, const char*> kRefused[] = {{"a/b/c/d", "two folders deep"},
                                                            {"a//b", "empty"},
                                                            {"../../b", "dots"},
                                                            {".git/b", "hidden"},
                                                            {"x.DAT/b", "hidden"},
                                                            {"Search Result", "itself"},
                                                            {"None/b", "no folder"},
                                                            {"b.AID", ".AID"}};
    for (const auto& [group, why] : kRefused) {
        const CommandResult result = Run({"register", Drawing("in.svg"), "--group", group});
        EXPECT_EQ(result.code, 1) << group;
        EXPECT_THAT(result.err, HasSubstr(why));
        EXPECT_TRUE(fs::is_empty(root()));
    }
}

TEST_F(CommandsTest, ExitCodesTellUsageFromFilesFromRefusals) {
    Store("G");
    EXPECT_EQ(RunCommand({}).code, 2);
    EXPECT_EQ(Run({"place", "G", "0", "--at", "1;2", "--out", Path("a.svg")}).code, 2);
    EXPECT_EQ(Run({"place", "G", "0", "--at", "1,2", "--out", Path("a.doc")}).code, 2);
    EXPECT_EQ(RunCommand({"list", "--db", Path("missing")}).code, 3);
    EXPECT_FALSE(fs::exists(Path("missing")));
    EXPECT_EQ(Run({"list", "Nothing"}).code, 3);
    EXPECT_EQ(Run({"show", "G", "1"}).code, 1);
    EXPECT_EQ(Run({"place", "G", "1", "--at", "1,2", "--out", Path("a.svg")}).code, 1);
    EXPECT_FALSE(fs::exists(Path("a.svg")));
    EXPECT_EQ(RunCommand({"convert", Path("missing.svg"), "--out", Path("a.svg")}).code, 3);
    EXPECT_EQ(RunCommand({"convert", Drawing("no.svg", "no drawing"), "--out", Path("a.svg")}).code, 1);
    const CommandResult trip = RunCommand({"roundtrip", Path("no.svg"), "--json"});
    EXPECT_EQ(trip.code, 1);
    EXPECT_EQ(json::parse(trip.out)["files"][0]["result"], "refused");
    EXPECT_EQ(RunCommand({"--help"}).code, 0);
    EXPECT_THAT(RunCommand({"--version"}).out, HasSubstr("2.0.4.0"));
}

TEST_F(CommandsTest, ADamagedGroupShowsWhatStandsBeforeTheDamage) {
    for (const char* name : {"a", "b", "c"}) Store("G", name);
    const fs::path file = root() / "G.AID";
    fs::resize_file(file, fs::file_size(file) - 10);
    const CommandResult list = Run({"list", "G", "--json"});
    EXPECT_EQ(list.code, 1);
    EXPECT_THAT(list.err, HasSubstr("2 of 3"));
    EXPECT_EQ(json::parse(list.out)["records"].size(), 2U);
    // A group that can't be walked to its end takes no new record: it could hide behind the damage.
    const CommandResult refused = Run({"register", Path("in.svg"), "--group", "G", "--name", "d"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(Run({"show", "G", "1"}).code, 0);
}

TEST_F(CommandsTest, SheetsHaveAPictureForEveryRecord) {
    for (const char* name : {"one", "two", "three"}) Store("G", name);
    const CommandResult result = Run({"sheet", "--out", Path("sheet.png"), "--size", "32"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_GT(fs::file_size(Path("sheet.png")), 500U);
}

TEST_F(CommandsTest, TraceNamesEveryCallOfTheHost) {
    const CommandResult result = Run({"register", Drawing("in.svg"), "--group", "G", "--trace"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("AI Path Style Suite"));
}

} // namespace
