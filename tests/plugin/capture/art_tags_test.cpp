#include "tests/plugin/capture/capture_fixture.h"

using ::testing::ElementsAre;
using workbench::Art;

namespace {

class ArtTagsTest : public CaptureTest {
protected:
    /// The stream of one line with these tags.
    Strings StreamWith(std::vector<workbench::Tag> tags) {
        OpenEmptyDocument();
        AddLine(root()).tags = std::move(tags);
        CaptureAll();
        return Stream();
    }
};

TEST_F(ArtTagsTest, AllStringTagsThatFitInOneNote) {
    EXPECT_THAT(StreamWith({{"a", "string", "1"},
                            {"b", "real", "2"},
                            {"c", "string", "部品 \"x\""},
                            {"n", "string", std::string(459, 'v')},
                            {"m", "string", std::string(460, 'v')}}),
                ElementsAre("path", "Tag = \"1\", string, a\rTag = \"部品 \"x\"\", string, c\rTag = \"" +
                                        std::string(459, 'v') + "\", string, n\r"));
    EXPECT_THAT(StreamWith({{"b", "real", "2"}}), ElementsAre("path"));
}

TEST_F(ArtTagsTest, ANoteEndsBefore65001Bytes) {
    std::vector<workbench::Tag> tags;
    for (int i = 100; i < 400; ++i) {
        tags.push_back({"n" + std::to_string(i), "string", std::string(400, 'v')});
    }
    const size_t line = std::string("Tag = \"\", string, n100\r").size() + 400;
    EXPECT_EQ(StreamWith(tags).at(1).size(), 65000 / line * line);
}

} // namespace
