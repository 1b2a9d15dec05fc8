// The drawing of every kind of art, through each command that takes drawings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/app/run_command.h"
#include "tests/support/temporary_folder.h"

namespace {

using Json = nlohmann::json;

class SampleTest : public testing::Test {
protected:
    SampleTest() {
        setenv("XDG_DATA_HOME", (folder.path() / "data").c_str(), 1);
        Run({"sample", "--out", Path("doc.svg")});
    }

    std::string Path(const std::string& name) const { return (folder.path() / name).string(); }

    static CommandResult Run(const std::vector<std::string>& words) {
        CommandResult result = RunCommand(words);
        EXPECT_EQ(result.code, 0) << words[0] << ": " << result.err;
        return result;
    }

    Json Read(const std::string& name) const { return Json::parse(std::ifstream(Path(name))); }

    TemporaryFolder folder;
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
    Run({"convert", Path("doc.svg"), "--out", Path("doc.json"), "--out", Path("again.svg")});
    Run({"convert", Path("again.svg"), "--out", Path("again.json")});
    const Json document = Read("doc.json");
    EXPECT_EQ(document, Read("again.json"));
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

TEST_F(SampleTest, GoesBackToItsLayersWhereThatIsAskedFor) {
    Run({"register", "--db", Path("db"), "--group", "G", "--layers", Path("doc.svg")});
    for (const char* layers : {"--layers", "--no-layers"}) {
        Run({"place", "--db", Path("db"), "G", "0", "--at", "0,0", layers, "--out", Path("placed.json")});
        std::set<std::string> titles;
        const Json placed = Read("placed.json");
        for (const Json& layer : placed["layers"])
            if (!layer["art"].empty()) titles.insert(layer["title"]);
        if (std::string(layers) == "--layers") {
            EXPECT_EQ(titles, (std::set<std::string>{"Words and pictures", "\u7DDA\u3068\u8272"}));
        } else {
            EXPECT_EQ(titles, (std::set<std::string>{"Layer 1"}));
        }
    }
}

} // namespace
