#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/text_encoding.h"

namespace workbench {
namespace {

constexpr char kUmlaut[] = "\xC3\xBC"; // u with two dots, UTF-8

std::string TitleIn(const std::string& text) {
    const ReadFile file = ReadText(text);
    return file.document ? file.document->title : "refused: " + file.error;
}

std::string Utf16(const std::string& ascii, bool bigEndian, bool mark) {
    std::string text = mark ? (bigEndian ? "\xFE\xFF" : "\xFF\xFE") : "";
    for (const char c : ascii) {
        // 0xFC stands for itself in the first 256 code points.
        text += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return text;
}

TEST(Encoding, ByDeclarationAndByMark) {
    const std::string western = "<svg><title>\xFC</title></svg>",
                      modern = std::string("<svg><title>") + kUmlaut + "</title></svg>";
    EXPECT_EQ(TitleIn("<?xml version=\"1.0\" encoding='ISO-8859-1'?>" + western), kUmlaut);
    EXPECT_EQ(TitleIn("<?xml version=\"1.0\" encoding=\"latin1\" standalone='yes'?>" + western), kUmlaut);
    EXPECT_EQ(TitleIn(modern), kUmlaut);
    EXPECT_EQ(TitleIn("\xEF\xBB\xBF" + modern), kUmlaut);
    for (const bool bigEndian : {false, true}) {
        EXPECT_EQ(TitleIn(Utf16(western, bigEndian, true)), kUmlaut);
        EXPECT_EQ(TitleIn(Utf16(western, bigEndian, false)), kUmlaut);
    }
    EXPECT_EQ(TitleIn("<?xml version='1.0' encoding='shift_jis'?><svg><title>\x83\x41</title></svg>"),
              "\xE3\x82\xA2");
    EXPECT_EQ(TitleIn("<?xml version='1.0' encoding='windows-1252'?><svg><title>\x80</title></svg>"),
              "\xE2\x82\xAC");
}

TEST(Encoding, WrongBytesAreReplacedAndNoted) {
    const ReadFile file = ReadText("<svg><title>a\xFCz \xC0\xAF \xED\xA0\x80</title></svg>");
    ASSERT_TRUE(file.document);
    EXPECT_EQ(file.document->title.substr(0, 5), "a\xEF\xBF\xBDz");
    EXPECT_EQ(file.report.notes.size(), 1u);
}

TEST(Entities, OfTheInternalSubsetAreExpanded) {
    const std::string head =
        "<?xml version='1.0'?><!-- <!DOCTYPE no [<!ENTITY t 'no'>]> --><!DOCTYPE svg PUBLIC \"-//W3C//DTD "
        "SVG 1.0//EN\" 'a>b' ["
        "<!ENTITY ns \"http://www.w3.org/2000/svg\"> <!-- <!ENTITY t 'no'> --> <!ENTITY % p 'x'> <!ENTITY t "
        "'red &amp; &u;'><!ENTITY u 'gr>een'><!ENTITY t 'late'>"
        "<!ENTITY style 'fill:#0f0'><!ENTITY mark '<path id=\"m\" d=\"M0 0h1\" style=\"&style;\"/>'><!ENTITY "
        "out SYSTEM 'x.txt'><!ATTLIST svg a CDATA #IMPLIED>]>";
    const ReadFile file = ReadText(
        head + "<svg xmlns='&ns;'><title>&t; &#65;&out;</title>&mark;<desc><![CDATA[&t;]]></desc></svg>");
    ASSERT_TRUE(file.document) << file.error;
    EXPECT_EQ(file.document->title, "red & gr>een A");
    EXPECT_EQ(file.document->description, "&t;");
    ASSERT_TRUE(Named(*file.document, "m"));
    EXPECT_EQ(ColorOf(*file.document, Named(*file.document, "m")->path()->style.fill), "three 0 1 0");
}

TEST(Entities, NobodyDeclaredStayAsTheyAre) {
    EXPECT_EQ(TitleIn("<!DOCTYPE svg><svg><title>a&nbsp;b &lt;</title></svg>"), "a&nbsp;b <");
    EXPECT_EQ(TitleIn("<!DOCTYPE svg [<!ENTITY a 'b'>]><svg><title>a & b &a</title></svg>"), "a & b &a");
}

} // namespace
} // namespace workbench
