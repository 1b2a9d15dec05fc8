#include <cstring>

#include "tests/workbench/svg/svg_helpers.h"
#include "workbench/svg/path_data.h"
#include "workbench/svg/svg_limits.h"

// What the commands draw is compared with another renderer in the tests of render/.
namespace workbench {
namespace {

TEST(PathData, KeepsWhatComesBeforeAFault) {
    for (const char* data : {"M10 20L30 40 L50", "M10 20L30 40 X 1 2", "M10 20L30 40 L nan nan",
                             "M10 20L30 40 A1 1 0 2 0 5 5", "M10 20L30 40,"}) {
        const ReadFile file = ReadBody(std::string("<path d='") + data + "'/>");
        EXPECT_EQ(OnlyArt(*file.document)->path()->segments.size(), 2u) << data;
        EXPECT_EQ(file.report.losses.count("damaged path data"), data[std::strlen(data) - 1] == ',' ? 0u : 1u)
            << data;
    }
    EXPECT_EQ(Structure(*ReadBody("<path d='L10 10'/>").document), "g()");
}

// Hosts keep one anchor where a file says the start a second time before it closes the path, and tell smooth
// anchors, whose handles lie on one line, from corners.
TEST(PathData, AnchorsAreThoseOfAHost) {
    const ReadFile closed = ReadBody("<path d='M0 0 C5 0 10 5 10 10 C10 15 0 5 0 0 z'/>");
    EXPECT_EQ(OnlyArt(*closed.document)->path()->segments.size(), 2u);
    const ReadFile open = ReadBody("<path d='M0 0C0 5 5 10 10 10S20 15 20 20C20 25 25 25 30 30'/>");
    std::string corners;
    for (const auto& segment : OnlyArt(*open.document)->path()->segments)
        corners += segment.corner ? 'c' : 's';
    EXPECT_EQ(corners, "cssc");
    EXPECT_EQ(Structure(*ReadBody("<path d='M0 0H9V9z m2 2h2v2z'/>").document), "g(c(p,p))");
}

TEST(PathData, StopsAtTheBoundOfAnchors) {
    bool damaged = false, overflow = false;
    std::string data = "M0 0";
    for (int i = 0; i < 50; ++i) data += "l1 1";
    EXPECT_EQ(ParsePathData(data, 20, &damaged, &overflow)[0].segments.size(), 21u);
    EXPECT_TRUE(overflow);
}

} // namespace
} // namespace workbench
