#include <gmock/gmock.h>
#include <fstream>

#include "tests/app/run_command.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

class RecordCommandsTest : public CommandTest {
protected:
    void Store(const std::string& group, const std::string& name, int width = 30) {
        WriteText(Path("in.svg"),
                  R"(<svg xmlns="http://www.w3.org/2000/svg" width="90pt" height="90pt" )"
                  R"(viewBox="0 0 90 90"><rect x="10" y="40" height="40" fill="#f00" width=")" +
                      std::to_string(width) + "\"/></svg>");
        Done({"register", Path("in.svg"), "--group", group, "--name", name});
        // A file beside each record tells later whose directory it is.
        const auto number = Records(group).size() - 1;
        WriteText((root() / (group + ".DAT") / std::to_string(number) / name).string(), name);
    }

    /// The records' names; each must have its own directory.
    std::vector<std::string> Names(const std::string& group) {
        std::vector<std::string> names;
        for (const json& record : Records(group)) {
            names.push_back(record["name"]);
            const fs::path data = root() / (group + ".DAT") / std::to_string(names.size() - 1);
            EXPECT_EQ(std::distance(fs::directory_iterator(data), {}), 1) << data;
            for (const auto& file : fs::directory_iterator(data))
                EXPECT_EQ(file.path().filename(), names.back());
        }
        return names;
    }
};

TEST_F(RecordCommandsTest, EditChangesTheTextsThatAreNamedAndNothingElse) {
    for (const char* name : {"zero", "one", "two"}) Store("G", name);
    const json before = Records("G");
    EXPECT_EQ(Done({"edit", "G", "1", "--kind", "種類", "--comment", "ソ表"}).out, "\\G\t1\n");
    json after = Records("G");
    EXPECT_EQ(after[1]["kind"], "種類");
    EXPECT_EQ(after[1]["comment"], "ソ表");
    for (const char* field : {"kind", "comment", "modified"}) after[1][field] = before[1][field];
    EXPECT_EQ(after, before);
    EXPECT_EQ(Run({"edit", "G", "1", "--comment", ""}).code, 0);
    EXPECT_EQ(Records("G")[1]["comment"], "");
}

TEST_F(RecordCommandsTest, EditMovesARecordWithItsFilesAndItsDates) {
    for (const char* name : {"zero", "one", "two"}) Store("G", name);
    Store("F/H", "there");
    const json moved = Records("G")[1];
    EXPECT_EQ(Done({"edit", "G", "1", "--to", "F/H"}).out, "\\F\\H\t1\n");
    EXPECT_THAT(Names("G"), ElementsAre("zero", "two"));
    EXPECT_THAT(Names("F/H"), ElementsAre("there", "one"));
    json there = Records("F/H")[1];
    there["group"] = moved["group"];
    EXPECT_EQ(there, moved);
    ASSERT_EQ(Run({"edit", "F/H", "1", "--to", "新/表", "--name", "一"}).code, 0);
    EXPECT_EQ(Records("新/表")[0]["name"], "一");
}

TEST_F(RecordCommandsTest, EditRefusesWhatCantBeStored) {
    Store("G", "zero");
    const json before = Records("G");
    EXPECT_THAT(Run({"edit", "G", "0", "--name", "caf\u00e9"}).err, HasSubstr("U+00E9"));
    EXPECT_EQ(Run({"edit", "G", "0", "--name", std::string(64, 'x')}).code, 1);
    EXPECT_EQ(Run({"edit", "G", "0", "--kind", "k", "--to", "a/b/c/d"}).code, 1);
    EXPECT_EQ(Run({"edit", "G", "1", "--name", "n"}).code, 1);
    EXPECT_EQ(Run({"edit", "G", "1", "--to", "New"}).code, 1);
    EXPECT_EQ(Run({"edit", "Missing", "0", "--name", "n"}).code, 3);
    EXPECT_EQ(Run({"edit", "G", "0"}).code, 2);
    EXPECT_EQ(Records("G"), before);
    EXPECT_FALSE(fs::exists(root() / "New.AID"));
}

TEST_F(RecordCommandsTest, DeleteTakesTheNumbersAsTheyAreBeforeAndAsks) {
    for (const char* name : {"0", "1", "2", "3", "4"}) Store("G", name);
    ASSERT_TRUE(std::freopen("/dev/null", "r", stdin)); // nobody to ask
    EXPECT_THAT(Run({"delete", "G", "1"}).err, HasSubstr("--yes"));
    EXPECT_EQ(Run({"delete", "G", "1", "5", "--yes"}).code, 1);
    EXPECT_EQ(Records("G").size(), 5U);
    EXPECT_EQ(Done({"delete", "G", "1", "3", "1", "--yes"}).out, "\\G\t3\t3\n\\G\t1\t1\n");
    EXPECT_THAT(Names("G"), ElementsAre("0", "2", "4"));
}

std::vector<std::string> FilesBelow(const fs::path& folder) {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) files.push_back(entry.path().lexically_relative(folder).string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST_F(RecordCommandsTest, ExportGivesEachRecordAFileThatEverySystemTakes) {
    Store("F/G", "Box", 20);
    Store("F/G", "box", 40);
    Store("F/G", "ＢＯＸ");
    Store("F/G", "ｂｏｘ");
    Store("F", "con");
    fs::copy(root() / "F/G.AID", root() / "H.AID");
    for (const char* name : {"../a:b", ".hidden", "x.", "表"})
        ASSERT_EQ(Run({"edit", "H", "0", "--name", name, "--to", "N"}).code, 0);
    Done({"export", "--out", Path("out"), "--as", "svg"});
    EXPECT_THAT(
        FilesBelow(Path("out")),
        testing::UnorderedElementsAre("F/G/Box.svg", "F/G/box-2.svg", "F/G/ＢＯＸ.svg", "F/G/ｂｏｘ-2.svg",
                                      "F/_con.svg", "N/_._a_b.svg", "N/_hidden.svg", "N/x.svg", "N/表.svg"));
    RunCommand({"convert", Path("out/F/G/box-2.svg"), "--out", Path("box.json")});
    EXPECT_EQ(ReadJson("box.json")["page"], json::parse("[0, 40, 40, 0]"));
}

TEST_F(RecordCommandsTest, ExportKeepsWhatIsThereAndGoesOnBehindABadRecord) {
    for (const char* name : {"a", "b", "c"}) Store("G", name);
    WriteText(Path("out/G/b.png"), "mine");
    EXPECT_EQ(Run({"export", "G", "--out", Path("out"), "--as", "png"}).code, 1);
    EXPECT_THAT(FilesBelow(Path("out")), ElementsAre("G/a.png", "G/b.png", "G/c.png"));
    EXPECT_EQ(fs::file_size(Path("out/G/b.png")), 4U);
    EXPECT_EQ(Run({"export", "G", "--out", Path("out"), "--as", "png", "--force"}).code, 0);
    EXPECT_GT(fs::file_size(Path("out/G/b.png")), 50U);
    fs::resize_file(root() / "G.AID", fs::file_size(root() / "G.AID") - 1);
    const CommandResult damaged = Run({"export", "G", "--out", Path("more"), "--as", "pdf"});
    EXPECT_EQ(damaged.code, 1);
    EXPECT_THAT(damaged.err, HasSubstr("2 of 3 records"));
    EXPECT_THAT(FilesBelow(Path("more")), ElementsAre("G/a.pdf", "G/b.pdf"));
}

TEST_F(RecordCommandsTest, CheckAndRepairTellWhatTheyFoundAndDid) {
    Store("G", "a");
    fs::remove_all(root() / "G.DAT");
    EXPECT_EQ(Run({"check"}).code, 0);
    std::ofstream(root() / "G.AID", std::ios::app) << "tail";
    const CommandResult checked = Run({"check", "--json"});
    EXPECT_EQ(checked.code, 1);
    EXPECT_EQ(json::parse(checked.out),
              json::parse(R"({"schema": 1, "findings": [{"severity": "warning", "place": "\\G",
                              "what": "4 bytes behind the last record belong to none"}]})"));
    const auto size = fs::file_size(root() / "G.AID");
    EXPECT_EQ(Run({"repair", "--dry-run"}).code, 1);
    EXPECT_EQ(fs::file_size(root() / "G.AID"), size);
    const CommandResult repaired = Run({"repair"});
    EXPECT_EQ(repaired.code, 0) << repaired.out;
    EXPECT_THAT(repaired.out, HasSubstr("mended\t\\G\t"));
    EXPECT_EQ(Run({"check"}).code, 0);
}

} // namespace
