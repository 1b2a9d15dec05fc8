#include <cstring>

#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/path_data.h"
#include "workbench/svg/svg_limits.h"

namespace workbench {
namespace {

struct PathCase {
    const char* data;
    const char* outline; ///< y upward on a page of 100
};

class PathDataCases : public testing::TestWithParam<PathCase> {};

TEST_P(PathDataCases, GivesTheOutline) {
    const ReadFile file = ReadBody(std::string("<path d='") + GetParam().data + "'/>");
    EXPECT_EQ(Outline(*OnlyArt(*file.document)), GetParam().outline);
    EXPECT_EQ(file.report.losses.count("damaged path data"), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, PathDataCases,
    testing::Values(
        PathCase{"M10 20L30 40", "M10,80 L30,60"}, PathCase{"m10,20 20,20 -5-5", "M10,80 L30,60 L25,65"},
        PathCase{"M10 20 30 40z", "M10,80 L30,60 Z"},
        PathCase{"M10 10H30V40h-5v-5", "M10,90 L30,90 L30,60 L25,60 L25,65"},
        PathCase{"M0 0C10 0 20 10 20 20", "M0,100 C10,100 20,90 20,80"},
        PathCase{"M0 0c10 0 20 10 20 20s10 20 20 20", "M0,100 C10,100 20,90 20,80 C20,70 30,60 40,60"},
        // The handle is mirrored only behind another curve of the same kind.
        PathCase{"M0 0L10 10S20 20 30 10", "M0,100 L10,90 C10,90 20,80 30,90"},
        PathCase{"M0 0Q30 0 30 30", "M0,100 C20,100 30,90 30,70"},
        PathCase{"M0 0Q15 0 15 15T30 30", "M0,100 C10,100 15,95 15,85 C15,75 20,70 30,70"},
        PathCase{"M0 0T30 30", "M0,100 C0,100 10,90 30,70"},
        // A quarter circle, with flags that have no blanks around them.
        PathCase{"M10 0a10 10 0 0110 10", "M10,100 C15.522847,100 20,95.522847 20,90"},
        PathCase{"M10 0A10,10,0,0,1,20,10", "M10,100 C15.522847,100 20,95.522847 20,90"},
        // Radii that don't reach grow to a half circle; an arc without a radius is a line.
        PathCase{"M0 50A1 1 0 0 1 20 50",
                 "M0,50 C0,55.522847 4.477153,60 10,60 C15.522847,60 20,55.522847 20,50"},
        PathCase{"M0 0A0 5 0 0 1 9 9", "M0,100 L9,91"}, PathCase{"M.5.5.25-.25", "M0.5,99.5 L0.25,100.25"},
        PathCase{"M1e1 2E+1l.1e2-1", "M10,80 L20,81"},
        PathCase{"\n M 10\t,\r20 L 30 , 40 ", "M10,80 L30,60"}));

TEST(PathData, SubpathsAreOneCompoundPathWithTheFirstAtTheBottom) {
    const ReadFile file = ReadBody("<path d='M0 0H9V9z m2 2h2v2z'/>");
    const Art* art = OnlyArt(*file.document);
    ASSERT_EQ(Structure(*art), "c(p,p)");
    EXPECT_EQ(Outline(*art->lastChild), "M0,100 L9,100 L9,91 Z");
    EXPECT_EQ(Outline(*art->firstChild), "M2,98 L4,98 L4,96 Z");
}

// Hosts keep one anchor where a file says the start a second time before it closes the path.
TEST(PathData, TheStartSaidTwiceIsOneAnchor) {
    const ReadFile file = ReadBody("<path d='M0 0 C5 0 10 5 10 10 C10 15 0 5 0 0 z'/>");
    EXPECT_EQ(Outline(*OnlyArt(*file.document)), "M0,100 C5,100 10,95 10,90 C10,85 0,95 0,100 Z");
    EXPECT_EQ(OnlyArt(*file.document)->path()->segments.size(), 2u);
}

TEST(PathData, KeepsWhatComesBeforeAFault) {
    for (const char* data : {"M10 20L30 40 L50", "M10 20L30 40 X 1 2", "M10 20L30 40 L nan nan",
                             "M10 20L30 40 A1 1 0 2 0 5 5", "M10 20L30 40,"}) {
        const ReadFile file = ReadBody(std::string("<path d='") + data + "'/>");
        EXPECT_EQ(Outline(*OnlyArt(*file.document)), "M10,80 L30,60") << data;
        EXPECT_EQ(file.report.losses.count("damaged path data"), data[std::strlen(data) - 1] == ',' ? 0u : 1u)
            << data;
    }
    EXPECT_EQ(Structure(*ReadBody("<path d='L10 10'/>").document), "g()");
}

TEST(PathData, AnchorsAreSmoothWhereBothHandlesLieOnOneLine) {
    const ReadFile file = ReadBody("<path d='M0 0C0 5 5 10 10 10S20 15 20 20C20 25 25 25 30 30'/>");
    const auto& segments = OnlyArt(*file.document)->path()->segments;
    ASSERT_EQ(segments.size(), 4u);
    EXPECT_TRUE(segments[0].corner);
    EXPECT_FALSE(segments[1].corner);
    EXPECT_FALSE(segments[2].corner);
    EXPECT_TRUE(segments[3].corner);
}

TEST(PathData, StopsAtTheBoundOfAnchors) {
    bool damaged = false, overflow = false;
    std::string data = "M0 0";
    for (int i = 0; i < 50; ++i) data += "l1 1";
    EXPECT_EQ(ParsePathData(data, 20, &damaged, &overflow)[0].segments.size(), 21u);
    EXPECT_TRUE(overflow);
}

TEST(Shapes, OfNoExtentAreNone) {
    for (const char* element : {"<rect width='0' height='10'/>", "<rect width='-5' height='10'/>",
                                "<circle r='0'/>", "<polygon points=''/>"})
        EXPECT_EQ(Structure(*ReadBody(element).document), "g()") << element;
}

} // namespace
} // namespace workbench
