// Tags on their way through the command line.
#include <gmock/gmock.h>
#include <fstream>
#include <sstream>

#include "tests/app/run_command.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kHead[] =
    "<svg xmlns='http://www.w3.org/2000/svg' width='90pt' height='90pt' viewBox='0 0 90 90' "
    "xmlns:inkscape='http://www.inkscape.org/namespaces/inkscape'>";

class TagsTest : public CommandTest {
protected:
    void Register(const std::string& body) {
        WriteText(Path("in.svg"), kHead + body + "</svg>");
        Done({"register", Path("in.svg"), "--group", "G"});
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
};

std::string Square(const std::string& attributes) {
    return "<path d='M10 10h30v30z' " + attributes + "/>";
}

TEST_F(TagsTest, SeveralObjectsGoToWhatIsAroundTheTarget) {
    Register("<g data-n='whole' data-title='\xE7\xB7\x9A'>" + Square("data-n='lower'") +
             Square("data-n='upper'") + "</g>");
    EXPECT_EQ(Transfer("<g id='g' data-old='1'>" + Square("id='a'") + Square("id='b'") + "</g>", "a").code,
              0);
    EXPECT_THAT(Element("g"), HasSubstr("data-n=\"whole\" data-title=\"\xE7\xB7\x9A\""));
    EXPECT_THAT(Element("g"), Not(HasSubstr("old")));
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

} // namespace
