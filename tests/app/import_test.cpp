#include <gmock/gmock.h>
#include <fstream>
#include <map>

#include "tests/app/run_command.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

class ImportTest : public CommandTest {
protected:
    void Draw(const std::string& name, const std::string& title = "", const std::string& extra = "") {
        WriteText((folder.path() / "art" / name).string(),
                  "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10pt\" height=\"10pt\">" +
                      (title.empty() ? "" : "<title>" + title + "</title>") +
                      "<rect width=\"5\" height=\"5\"/>" + extra + "</svg>");
    }

    CommandResult Import(const std::vector<std::string>& more = {}) {
        std::vector<std::string> words = {"import", Path("art")};
        words.insert(words.end(), more.begin(), more.end());
        return Run(words);
    }

    std::map<std::string, int> Counts() {
        std::map<std::string, int> counts;
        const json list = json::parse(Done({"list", "--json"}).out);
        for (const json& group : list["groups"]) counts[group["group"]] = group["count"];
        return counts;
    }

    std::vector<std::string> Names(const std::string& group) {
        std::vector<std::string> names;
        for (const json& record : Records(group)) names.push_back(record["name"]);
        return names;
    }

    fs::path OnlyJournal() const { return fs::directory_iterator(root() / ".velquorne-import")->path(); }
};

using Counted = std::map<std::string, int>;

// Names that a database uses for itself are changed.
TEST_F(ImportTest, FoldersBecomeFoldersAndGroupsByTheRule) {
    for (const char* name : {"top.svg", "a/1.svg", "a/2.svg", "a/b/1.svg", "a/b/c/1.svg", "a/b/c/d/e/1.svg",
                             "None/1.svg", "x.DAT/1.svg", ".hidden/1.svg"})
        Draw(name);
    ASSERT_EQ(Import().code, 0);
    EXPECT_EQ(Counts(), (Counted{{"\\art", 1},
                                 {"\\a", 2},
                                 {"\\a\\b", 1},
                                 {"\\a\\b\\c", 1},
                                 {"\\a\\b\\c - d - e", 1},
                                 {"\\_None", 1},
                                 {"\\_.hidden", 1},
                                 {"\\x_DAT", 1}}));
}

TEST_F(ImportTest, IntoAFolderEverythingLiesOneLevelDeeper) {
    for (const char* name : {"top.svg", "a/1.svg", "a/b/1.svg", "a/b/c/1.svg"}) Draw(name);
    ASSERT_EQ(Import({"--into", "New"}).code, 0);
    EXPECT_EQ(Counts(),
              (Counted{{"\\New\\art", 1}, {"\\New\\a", 1}, {"\\New\\a\\b", 1}, {"\\New\\a\\b - c", 1}}));
}

TEST_F(ImportTest, SeveralProcessesStoreTheSameAsOne) {
    for (int group = 0; group < 5; ++group) {
        for (int i = 0; i < 4; ++i)
            Draw("g" + std::to_string(group) + "/" + std::to_string(i) + ".svg", "n" + std::to_string(i));
    }
    const CommandResult result = Import({"--jobs", "3"});
    ASSERT_EQ(result.code, 0) << result.out << result.err;
    for (int group = 0; group < 5; ++group) {
        EXPECT_EQ(Names("g" + std::to_string(group)), (std::vector<std::string>{"n0", "n1", "n2", "n3"}));
    }
}

TEST_F(ImportTest, ADryRunStoresNothing) {
    Draw("g/1.svg");
    const CommandResult result = Import({"--dry-run"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("\\g\tg/1.svg"));
    EXPECT_FALSE(fs::exists(root()));
}

TEST_F(ImportTest, FilesThatLoseSomethingOrAreRefusedAreReported) {
    Draw("g/1.svg");
    Draw("g/2.svg", "", "<filter id=\"f\"/><rect filter=\"url(#f)\" width=\"3\" height=\"3\"/>");
    WriteText((folder.path() / "art/g/3.svg").string(), "no drawing");
    const CommandResult result = Import();
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, HasSubstr("g/2.svg\tlost: filter 1"));
    EXPECT_THAT(result.out, HasSubstr("g/3.svg\trefused: "));
    EXPECT_THAT(result.err, HasSubstr("2 stored, 0 taken before, 1 refused; 1 lost something"));
}

TEST_F(ImportTest, RunAgainItTakesOnlyWhatIsNew) {
    Draw("g/1.svg");
    Draw("g/3.svg");
    ASSERT_EQ(Import().code, 0);
    Draw("g/2.svg");
    const CommandResult again = Import();
    EXPECT_THAT(again.err, HasSubstr("1 stored, 2 taken before"));
    EXPECT_EQ(Names("g"), (std::vector<std::string>{"1", "3", "2"}));
}

// The program can be stopped between a record and its line in the journal, or within the line.
TEST_F(ImportTest, StoppedBetweenARecordAndItsNoteItStoresNothingTwice) {
    for (const char* name : {"g/1.svg", "g/2.svg", "g/3.svg"}) Draw(name);
    ASSERT_EQ(Import().code, 0);
    std::ifstream file(OnlyJournal());
    const std::string whole((std::istreambuf_iterator<char>(file)), {});
    const size_t lastLine = whole.rfind('\n', whole.size() - 2) + 1;
    for (const size_t end : {lastLine, lastLine + 3, whole.size() - 1}) {
        fs::resize_file(OnlyJournal(), end);
        const CommandResult again = Import();
        EXPECT_EQ(again.code, 0) << again.err;
        EXPECT_EQ(Names("g"), (std::vector<std::string>{"1", "2", "3"})) << "journal cut at " << end;
    }
}

} // namespace
