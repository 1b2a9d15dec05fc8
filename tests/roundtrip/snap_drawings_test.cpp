// In drawings that none of us made, a drag's index finds what a walk over the document finds.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>
#include <utility>

#include "plugin/placement/snap.h"
#include "tests/support/plugin_fixture.h"
#include "workbench/svg/svg_reader.h"

namespace {

class SnapDrawingsTest : public PluginFixture {
protected:
    std::vector<HostPoint> Anchors() {
        std::vector<HostPoint> anchors;
        for (size_t i = 0; i < document().LayerCount(); ++i) {
            workbench::ForEachArt(*document().LayerAt(i).root, [&](const workbench::Art& art) {
                if (!art.path()) return;
                for (const HostPathSegment& segment : art.path()->segments) anchors.push_back(segment.anchor);
            });
        }
        return anchors;
    }

    /// Half of the moves go near an anchor; each of the three searches alone, from the same place.
    void Move(const std::vector<HostPoint>& anchors) {
        const HostPoint& beside = anchors[random_() % anchors.size()];
        const double reach = random_() % 2 ? 4 : 100;
        std::uniform_real_distribution<double> away(-reach, reach);
        const HostPoint from{beside.x + away(random_), beside.y + away(random_)};
        for (const auto search : {SnapToAnchor, SnapToIntersection, SnapToPath}) {
            HostPoint indexed = from, walked = from;
            int16_t indexedKind = kSnapNone, walkedKind = kSnapNone;
            EXPECT_EQ(search(indexed, indexedKind), kHostNoError);
            SnapIndex* index = std::exchange(globals->snapIndex, nullptr);
            EXPECT_EQ(search(walked, walkedKind), kHostNoError);
            globals->snapIndex = index;
            ASSERT_EQ(indexedKind, walkedKind) << from.x << ", " << from.y;
            ASSERT_EQ(std::memcmp(&indexed, &walked, sizeof indexed), 0) << from.x << ", " << from.y;
            ++found_[walkedKind];
        }
    }

    int found_[kSnapPath + 1] = {};

private:
    std::mt19937 random_{1999};
};

TEST_F(SnapDrawingsTest, IndexAndWalkAgree) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("/usr/share/openclipart/svg"))
        if (entry.is_regular_file() && entry.path().extension() == ".svg") files.push_back(entry.path());
    std::ranges::sort(files);
    ASSERT_GT(files.size(), 1000u) << "the package openclipart-svg is missing";
    for (size_t i = 0; i < files.size(); i += files.size() / 60) {
        SCOPED_TRACE(files[i]);
        std::string error;
        auto read = workbench::ReadSvgFile(files[i], nullptr, &error);
        ASSERT_TRUE(read) << error;
        host().Open(std::move(read));
        const std::vector<HostPoint> anchors = Anchors();
        const Snapping snapping;
        for (int move = 0; move < 200 && !anchors.empty(); ++move) {
            ASSERT_NO_FATAL_FAILURE(Move(anchors));
        }
    }
    for (const int kind : {kSnapNone, kSnapAnchor, kSnapIntersection, kSnapPath})
        EXPECT_GT(found_[kind], 500) << kind;
}

} // namespace
