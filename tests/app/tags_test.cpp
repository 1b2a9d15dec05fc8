// Tags and layers on their way through the command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/app/run_command.h"
#include "tests/support/temporary_folder.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kHead[] =
    "<svg xmlns='http://www.w3.org/2000/svg' width='90pt' height='90pt' viewBox='0 0 90 90' "
    "xmlns:inkscape='http://www.inkscape.org/namespaces/inkscape'>";

class TagsTest : public testing::Test {
protected:
    TagsTest() { setenv("XDG_DATA_HOME", (folder.path() / "data").c_str(), 1); }

    std::string Path(const std::string& name) const { return (folder.path() / name).string(); }

    CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin() + 1, {"--db", Path("db")});
        return RunCommand(words);
    }

    void Register(const std::string& body, const std::vector<std::string>& options = {}) {
        WriteText(Path("in.svg"), kHead + body + "</svg>");
        std::vector<std::string> words{"register", Path("in.svg"), "--group", "G"};
        words.insert(words.end(), options.begin(), options.end());
        const CommandResult result = Run(words);
        ASSERT_EQ(result.code, 0) << result.err;
    }

    CommandResult Transfer(const std::string& body, const std::string& target) {
        std::filesystem::remove(Path("out.svg"));
        WriteText(Path("onto.svg"), kHead + body + "</svg>");
        return Run(
            {"tags", "G", "0", "--onto", Path("onto.svg"), "--target", target, "--out", Path("out.svg")});
    }

    /// The written drawing; empty if there is none.
    std::string Written() {
        std::ifstream file(Path("out.svg"));
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    /// The element of an id in what was written.
    std::string Element(const std::string& id) {
        const std::string text = Written();
        const size_t at = text.find("id=\"" + id + "\"");
        if (at == std::string::npos) return "no " + id;
        const size_t start = text.rfind('<', at);
        return text.substr(start, text.find('>', at) - start);
    }

    TemporaryFolder folder;
};

std::string Square(const std::string& attributes) {
    return "<path d='M10 10h30v30z' " + attributes + "/>";
}

TEST_F(TagsTest, OneObjectHandsItsTagsToTheTarget) {
    Register(Square("data-price='12' data-title='\xE7\xB7\x9A'"));
    const CommandResult result = Transfer(Square("id='a' data-old='1'") + Square("id='b' data-old='1'"), "b");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(Element("a"), HasSubstr("data-old=\"1\""));
    EXPECT_THAT(Element("b"), HasSubstr("data-price=\"12\" data-title=\"\xE7\xB7\x9A\""));
    EXPECT_THAT(Element("b"), Not(HasSubstr("old")));
}

TEST_F(TagsTest, SeveralObjectsGoToWhatIsAroundTheTarget) {
    Register("<g data-n='whole'>" + Square("data-n='lower'") + Square("data-n='upper'") + "</g>");
    EXPECT_EQ(Transfer("<g id='g'>" + Square("id='a'") + Square("id='b'") + "</g>", "a").code, 0);
    EXPECT_THAT(Element("g"), HasSubstr("data-n=\"whole\""));
    EXPECT_THAT(Element("a"), HasSubstr("data-n=\"lower\""));
    EXPECT_THAT(Element("b"), HasSubstr("data-n=\"upper\""));

    // A pair of different kinds is left alone, and the others are handed over.
    const std::string compound = "<path id='b' d='M0 0h9v9zM20 20h9v9z'/>";
    CommandResult result = Transfer("<g id='g'>" + Square("id='a'") + compound + "</g>", "a");
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("The type of object does not accord."));
    EXPECT_THAT(Element("a"), HasSubstr("data-n=\"lower\""));
    EXPECT_THAT(Element("b"), Not(HasSubstr("data-n")));

    result = Transfer(Square("id='a'") + Square("id='b'"), "a");
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("The number of objects does not accord."));
    EXPECT_EQ(Written(), "");
}

TEST_F(TagsTest, TargetsThatArentThereOrCantBeToldAreRefused) {
    Register(Square("data-n='1'"));
    for (const char* target : {"nobody", "twice", "locked"}) {
        const CommandResult result =
            Transfer(Square("id='a'") + Square("id='twice'") + Square("id='twice'") +
                         "<g inkscape:groupmode='layer' display='none'>" + Square("id='locked'") + "</g>",
                     target);
        EXPECT_EQ(result.code, 1) << target;
        EXPECT_THAT(result.err, HasSubstr(target == std::string("locked") ? "layer" : target));
        EXPECT_EQ(Written(), "");
    }
    EXPECT_EQ(
        Run({"tags", "G", "7", "--onto", Path("onto.svg"), "--target", "a", "--out", Path("out.svg")}).code,
        1);
    EXPECT_EQ(
        Run({"tags", "G", "0", "--onto", Path("none.svg"), "--target", "a", "--out", Path("out.svg")}).code,
        3);
    EXPECT_EQ(
        Run({"tags", "G", "0", "--onto", Path("onto.svg"), "--target", "a", "--out", Path("out.x")}).code, 2);
}

TEST_F(TagsTest, ArtFollowsItsLayersTitleIfBothSidesWantIt) {
    const std::string layers = "<g inkscape:groupmode='layer' inkscape:label='Ground'>" + Square("id='low'") +
                               "</g><g inkscape:groupmode='layer' inkscape:label='\xE5\x89\x8D'>" +
                               Square("id='high'") + "</g>";
    Register(layers, {"--layers"});
    Register(layers, {"--no-layers"});
    const auto titles = [&](const std::string& number, const std::string& option) {
        const CommandResult result =
            Run({"place", "G", number, "--at", "0,0", "--out", Path("out.svg"), option});
        EXPECT_EQ(result.code, 0) << result.err;
        const std::string text = Written();
        return (text.find("label=\"Ground\"") != std::string::npos ? std::string("ground ") : "") +
               (text.find("label=\"\xE5\x89\x8D\"") != std::string::npos ? "front" : "");
    };
    EXPECT_EQ(titles("0", "--layers"), "ground front");
    EXPECT_EQ(titles("0", "--no-layers"), "");
    EXPECT_EQ(titles("1", "--layers"), "");
}

} // namespace
