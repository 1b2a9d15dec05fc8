// The drawing of every kind of art, through each command that takes drawings.
#include <gmock/gmock.h>
#include <set>

#include "tests/app/run_command.h"

namespace {

using Json = nlohmann::json;

class SampleTest : public CommandTest {
protected:
    SampleTest() { RunCommand({"sample", "--out", Path("doc.svg")}); }
};

/// The kinds of art below an object of a dump.
void CollectKinds(const Json& json, std::multiset<std::string>* kinds) {
    if (json.is_object() && json.contains("kind") && json["kind"].is_string() && json.contains("blend"))
        kinds->insert(json["kind"]);
    if (json.is_structured()) {
        for (const Json& member : json) CollectKinds(member, kinds);
    }
}

TEST_F(SampleTest, HoldsEveryKindOfArtAndReadsBackAsTheSameDocument) {
    RunCommand({"convert", Path("doc.svg"), "--out", Path("doc.json"), "--out", Path("again.svg")});
    RunCommand({"convert", Path("again.svg"), "--out", Path("again.json")});
    const Json document = ReadJson("doc.json");
    EXPECT_EQ(document, ReadJson("again.json"));
    std::multiset<std::string> kinds;
    CollectKinds(document, &kinds);
    for (const char* kind :
         {"group", "path", "compound path", "placed", "raster", "plug-in art", "mesh", "text frame"})
        EXPECT_TRUE(kinds.contains(kind)) << kind;
    EXPECT_EQ(kinds.count("mesh"), 2u);
}

// What a record can't keep is named; all else comes back, and looks the same.
TEST_F(SampleTest, ComesBackFromARecordButForWhatTheFormCannotKeep) {
    const CommandResult result = RunCommand({"roundtrip", "--json", Path("doc.svg")});
    const Json trip = Json::parse(result.out)["files"][0];
    EXPECT_EQ(trip["result"], "loss") << trip;
    EXPECT_EQ(trip["differences"], Json::array());
    const Json losses = {{"art style", 1},   {"hanging roman", 2}, {"layer", 1},
                         {"plug-in art", 1}, {"stop opacity", 1},  {"tag of another type", 1},
                         {"text chain", 2}};
    EXPECT_EQ(trip["losses"], losses);
}

// Both sides have to want it.
TEST_F(SampleTest, GoesBackToItsLayersWhereThatIsAskedFor) {
    const auto titles = [&](const char* number, const char* layers) {
        Done({"place", "G", number, "--at", "0,0", layers, "--out", Path("placed.json")});
        std::set<std::string> found;
        const Json placed = ReadJson("placed.json");
        for (const Json& layer : placed["layers"])
            if (!layer["art"].empty()) found.insert(layer["title"]);
        return found;
    };
    for (const char* layers : {"--layers", "--no-layers"})
        Done({"register", "--group", "G", layers, Path("doc.svg")});
    const std::set<std::string> both = {"Words and pictures", "\u7DDA\u3068\u8272"}, one = {"Layer 1"};
    EXPECT_EQ(titles("0", "--layers"), both);
    EXPECT_EQ(titles("0", "--no-layers"), one);
    EXPECT_EQ(titles("1", "--layers"), one);
}

} // namespace
