// Actions as a file: what is recorded by hand at the window comes to the same when it is played again.

#include <gmock/gmock.h>
#include <cmath>
#include <fstream>

#include "app/action_file.h"
#include "app/texts.h"
#include "plugin/actions/place_action.h"
#include "tests/app/run_command.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

std::string ErrorOf(const std::string& text) {
    std::string error;
    EXPECT_FALSE(ParseActions(text, &error).has_value()) << text;
    return error;
}

std::string File(const std::string& actions) {
    return R"({"schema": 1, "actions": [{"action": "undo"}, )" + actions + "]}";
}

TEST(ActionFile, ParametersHaveEnglishAndJapaneseNamesAndKeys) {
    std::string error;
    const auto steps = ParseActions(
        File(R"({"action": "VELQUORNE_PLACE", "record": {"group": "食品/果物", "number": 3}, "parameters":
                 {"X 座標": 1.5, "plcy": -2, "Width": 30, "高さ": 40, "angl": 0.25}})"),
        &error);
    ASSERT_TRUE(steps) << error;
    const ActionStep& place = steps->at(1);
    EXPECT_EQ(
        place.reals,
        (std::map<uint32_t, double>{
            {kPlaceX, 1.5}, {kPlaceY, -2}, {kPlaceWidth, 30}, {kPlaceHeight, 40}, {kPlaceAngle, 0.25}}));
    EXPECT_EQ(Utf8OfCp932(place.record->group), "\\食品\\果物");
    // What is written is read as the same.
    const std::string text = TextOfActions(*steps);
    EXPECT_EQ(TextOfActions(ParseActions(text, &error).value()), text);
}

TEST(ActionFile, RefusesWhatIsElseAndNamesThePlace) {
    const std::string place = R"({"action": "VELQUORNE_PLACE", )", both = R"("Y-coordinate": 1, "plcx": 2)";
    const std::string entry = R"({"action": "VELQUORNE_INTERNAL_ACTION", "command": "register", "entry": )";
    const std::pair<std::string, const char*> kBad[] = {
        {R"({"action": "VELQUORNE_PAINT"})", "action 2: there is no action 'VELQUORNE_PAINT'"},
        {R"({"action": 7})", "action 2: 'action' is no text"},
        {R"("undo")", "action 2: it is no object"},
        {place + R"("parameters": {"plcx": 1}})", "action 2: parameter 'Y-coordinate' is missing"},
        {place + R"("parameters": {"Depth": 1}})", "action 2: the action has no parameter 'Depth'"},
        {place + R"("parameters": {"Angle": "1",)" + both + "}}", "action 2: parameter 'Angle' is no number"},
        {place + R"("parameters": {"X 座標": 1, )" + both + "}}", "is there twice"},
        {place + R"("parameters": {"Width": 1e999, )" + both + "}}", "number overflow"},
        {place + R"("size": 1, "parameters": {)" + both + "}}", "action 2: 'size' can't stand there"},
        {place + R"("record": {"group": "A", "number": -1}, "parameters": {)" + both + "}}",
         "action 2: 'number' is no whole number"},
        {place + R"("record": {"group": "A/B/C/D", "number": 0}, "parameters": {)" + both + "}}",
         "action 2: 'group': a group lies at most two folders deep"},
        {R"({"action": "VELQUORNE_INTERNAL_ACTION", "command": "drag"})",
         "action 2: the command 'drag' can't be played"},
        {entry + R"({"group": "A", "name": "🍎"}})", "action 2: 'name': the character"},
        {entry + R"({"group": "A", "kind": ")" + std::string(63, 'k') + R"("}})", "'kind' is longer than 62"},
        {entry + R"({"name": "A"}})", "action 2: 'group' is missing"},
        {entry + R"({"group": "A"}, "select": [1.5]})", "action 2: 'select' is no whole number"},
    };
    for (const auto& [action, reason] : kBad) EXPECT_THAT(ErrorOf(File(action)), HasSubstr(reason)) << action;
    EXPECT_THAT(ErrorOf("{\"schema\": 1,\n\"actions\": [}"), HasSubstr("line 2, column 13"));
    EXPECT_THAT(ErrorOf(R"({"schema": 2, "actions": []})"),
                HasSubstr("its schema is 2, and only 1 is known"));
    EXPECT_THAT(ErrorOf("{\"schema\": 1}"), HasSubstr("'actions' is missing"));
    EXPECT_NE(ErrorOf(std::string(100000, '[')), "");
    // No prefix of a good file is one.
    const std::string good = File(place + R"("parameters": {)" + both + "}}");
    std::string error;
    ASSERT_TRUE(ParseActions(good, &error)) << error;
    for (size_t length = 0; length < good.size(); ++length) ErrorOf(good.substr(0, length));
}

/// Two drawings in the group Shapes, and a page with a third.
constexpr char kPageHead[] =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="600pt" height="600pt" viewBox="0 0 600 600">)";
constexpr char kRedBox[] = R"(<rect id="box" x="10" y="40" width="150" height="120" fill="#f00"/></svg>)";
constexpr char kTwo[] =
    R"(<circle cx="50" cy="50" r="40" fill="#0f0"/><path d="M100 100h90v77z" fill="#00f"/></svg>)";
constexpr char kPage[] = R"(<ellipse id="base" cx="450" cy="450" rx="70" ry="33" stroke="#808"/></svg>)";

class PlayTest : public CommandTest {
protected:
    void SetUp() override {
        for (const auto& [name, art] : {std::pair("square.svg", kRedBox), {"two.svg", kTwo}}) {
            WriteText(Path(name), std::string(kPageHead) + art);
            Done({"register", Path(name), "--group", "Shapes", "--name", name});
        }
        WriteText(Path("page.svg"), std::string(kPageHead) + kPage);
    }

    /// What is drawn in a drawing, the topmost first, whatever groups it lies in.
    json Drawn(const std::string& svg) {
        RunCommand({"convert", svg, "--out", Path("drawn.json")});
        json drawn = json::array();
        const json document = ReadJson("drawn.json");
        for (const json& layer : document["layers"]) Flatten(layer["art"], drawn);
        return drawn;
    }

private:
    static void Flatten(const json& members, json& drawn) {
        for (const json& art : members) {
            if (art["kind"] == "group") {
                Flatten(art["members"], drawn);
            } else {
                drawn.push_back(art);
            }
        }
    }
};

/// Numbers within a millionth; all else the same.
void ExpectAlike(const json& a, const json& b, const std::string& where) {
    ASSERT_EQ(a.is_number(), b.is_number()) << where;
    if (a.is_number()) {
        EXPECT_NEAR(a.get<double>(), b.get<double>(), 1e-6) << where;
    } else if (a.is_structured()) {
        ASSERT_EQ(a.type(), b.type()) << where;
        ASSERT_EQ(a.size(), b.size()) << where << "\n" << a << "\n" << b;
        for (const auto& member : a.items()) {
            const json::json_pointer key("/" + member.key());
            ASSERT_TRUE(b.contains(key)) << where << key;
            ExpectAlike(member.value(), b[key], where + key.to_string());
        }
    } else {
        EXPECT_EQ(a, b) << where;
    }
}

TEST_F(PlayTest, WhatIsRecordedByHandPlaysToTheSameDrawingAndRecords) {
    fs::copy(Path("db"), Path("by-hand"), fs::copy_options::recursive);
    fs::copy(Path("page.svg"), Path("by-hand.svg"));
    WriteText(Path("tour.hands"), R"(
pause 500
control 1003 60 12          # the group Shapes
pause 300
drag 1026 82 330 280 12     # its second record to the page
pause 600
drag 994 82 250 450 12      # the first
pause 600
drag 994 82 500 200 12      # again, and not for long
pause 300
key Control+Z
key Control+Z
key Control+Y
key Control+A
control 1                   # all of it becomes a record
dialog 7
key Control+A
type "all of it"
dialog 1
pause 300
key Escape
pause 300
key Control+S
pause 200
)");
    const CommandResult opened = RunCommand({"open", Path("by-hand.svg"), "--db", Path("by-hand"), "--play",
                                             Path("tour.hands"), "--record", Path("tour.json")});
    ASSERT_EQ(opened.code, 0) << opened.err;
    Done({"play", Path("tour.json"), "--into", Path("page.svg"), "--out", Path("played.svg")});

    const json recorded = ReadJson("tour.json");
    std::vector<std::string> names;
    for (const json& action : recorded["actions"]) names.push_back(action["action"]);
    EXPECT_EQ(names, (std::vector<std::string>{"VELQUORNE_PLACE", "VELQUORNE_PLACE", "VELQUORNE_PLACE",
                                               "undo", "undo", "redo", "VELQUORNE_INTERNAL_ACTION"}));
    const json byHand = Drawn(Path("by-hand.svg"));
    EXPECT_EQ(byHand.size(), 4u);
    ExpectAlike(byHand, Drawn(Path("played.svg")), "");
    const json played = Records("Shapes");
    fs::remove_all(root());
    fs::rename(Path("by-hand"), root());
    const json records = Records("Shapes");
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[2]["name"], "all of it");
    ExpectAlike(records[2]["width"], played[2]["width"], "width");
}

TEST_F(PlayTest, WritesNoDrawingUnlessEveryActionDidItsPart) {
    const auto play = [&](const std::string& actions) {
        WriteText(Path("actions.json"), R"({"schema": 1, "actions": [)" + actions + "]}");
        return Run({"play", Path("actions.json"), "--into", Path("page.svg"), "--out", Path("out.svg")});
    };
    const auto place = [](const std::string& group, int number) {
        return R"({"action": "VELQUORNE_PLACE", "record": {"group": ")" + group + R"(", "number": )" +
               std::to_string(number) + R"(}, "parameters": {"plcx": 300, "plcy": 300, "sclw": 75}})";
    };
    const auto enter = [](const std::string& select) {
        return R"({"action": "VELQUORNE_INTERNAL_ACTION", "command": "register", "select": )" + select +
               R"(, "entry": {"group": "New/Group", "name": "base"}})";
    };
    const std::string bare = R"({"action": "VELQUORNE_PLACE", "parameters": {"plcx": 100, "plcy": 100}})";
    const std::pair<std::string, const char*> kBad[] = {
        {place("Shapes", 0) + "," + place("Shapes", 2), "action 2: \\Shapes: there is no record 2"},
        {place("Nowhere", 0), "action 1: \\Nowhere: there is no such group"},
        {bare, "action 1: Placement record has not been selected."},
        {enter("\"absent\""), "action 1: no art bears the name 'absent'"},
        {enter("[1]"), "action 1: the document has no drawn object"},
        {R"({"action": "redo"})", "action 1: there is nothing to do again"},
        {R"({"action": "cut"})", "action 1: there is no action 'cut'"},
    };
    for (const auto& [actions, reason] : kBad) {
        const CommandResult result = play(actions);
        EXPECT_EQ(result.code, 1) << actions;
        EXPECT_THAT(result.err, HasSubstr(reason));
        EXPECT_FALSE(fs::exists(Path("out.svg"))) << actions;
    }
    // A record that has just been made is the one that is selected.
    const CommandResult good = play(enter("\"base\"") + "," + bare + "," + place("Shapes", 0));
    EXPECT_EQ(good.code, 0) << good.err;
    EXPECT_EQ(good.out, "\\New\\Group\t0\tbase\n");
    EXPECT_EQ(Records("New/Group")[0]["width"], 140.0);
    EXPECT_EQ(Drawn(Path("out.svg")).size(), 3u);
}

} // namespace
