// What refuses, or can't be had, in the middle of a search.
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "plugin/placement/geometry.h"
#include "plugin/placement/snap.h"
#include "plugin/placement/snap_index.h"
#include "tests/support/plugin_fixture.h"

namespace {

int allocationsLeft = 0; // 0: no failure planned; the one that makes it 0 fails

void* Allocate(size_t bytes) {
    if (allocationsLeft > 0 && --allocationsLeft == 0) return nullptr;
    return std::malloc(bytes ? bytes : 1);
}

} // namespace

void* operator new(size_t bytes) {
    if (void* memory = Allocate(bytes)) return memory;
    throw std::bad_alloc();
}
void* operator new(size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

namespace {

using Search = HostError (*)(HostPoint&, int16_t&);
constexpr auto kSearches = std::to_array<Search>({SnapToAnchor, SnapToIntersection, SnapToPath});

struct Snapped {
    HostPoint point;
    int16_t kind;
    bool operator==(const Snapped& other) const {
        return kind == other.kind && std::memcmp(&point, &other.point, sizeof point) == 0;
    }
};

class SnapRefusalTest : public PluginFixture {
protected:
    /// A hidden layer, groups in groups, and at the end of the walk two lines that cross at (20, 10).
    void SetUp() override {
        PluginFixture::SetUp();
        workbench::Art* group = document().AppendArt(kArtGroup, document().LayerAt(0).root);
        workbench::Art* inner = document().AppendArt(kArtCompoundPath, group);
        Add(inner, {{{60, 60}, {60, 60}, {60, 65}, 0}, {{70, 70}, {65, 70}, {70, 70}, 0}}, true);
        document().InsertLayer(0, "hidden").visible = false;
        Add(group, {{{0, 10}, {0, 10}, {0, 10}, 1}, {{40, 10}, {40, 10}, {40, 10}, 1}}, false);
        Add(group,
            {{{20, 0}, {20, 0}, {20, 0}, 1},
             {{20, 40}, {20, 40}, {30, 45}, 1},
             {{50, 20}, {45, 40}, {50, 20}, 1}},
            true);
    }

    void Add(workbench::Art* parent, std::vector<HostPathSegment> segments, bool closed) {
        workbench::PathData& path = *document().AppendArt(kArtPath, parent)->path();
        path.segments = std::move(segments);
        path.closed = closed;
    }

    uint64_t CallsOf(Search search, HostPoint point) {
        const uint64_t before = host().callCount();
        Run(search, point);
        return host().callCount() - before;
    }
    static Snapped Run(Search search, HostPoint point) {
        Snapped result{point, kSnapNone};
        search(result.point, result.kind);
        return result;
    }
};

constexpr HostPoint kBesideCrossing{20.5, 10.5};

// An index that can't read the document, at the start or on the way, gives way to the walk at once.
TEST_F(SnapRefusalTest, WithoutAnIndexTheWalkGivesTheSame) {
    for (const Search search : kSearches) {
        const Snapped good = Run(search, kBesideCrossing);
        const uint64_t walk = CallsOf(search, kBesideCrossing);
        uint64_t first = 0, next = 0;
        {
            const Snapping snapping;
            first = CallsOf(search, kBesideCrossing);
            next = CallsOf(search, kBesideCrossing);
        }
        uint64_t failed = 0;
        for (uint64_t n = 3; n <= first; ++n) { // behind the two that read the zoom
            const Snapping snapping;
            host().RefuseCall(n);
            const Snapped result = Run(search, kBesideCrossing);
            host().RefuseNone();
            EXPECT_TRUE(Run(search, kBesideCrossing) == good) << n;
            if (globals->snapIndex->state != IndexState::kFailed) continue;
            ++failed;
            EXPECT_TRUE(result == good) << n;
            EXPECT_EQ(CallsOf(search, kBesideCrossing), walk) << n; // nobody tries to make it again
        }
        EXPECT_GT(failed, 20u);
        EXPECT_EQ(failed, first - next); // all that read the document
    }
    EXPECT_EQ(globals->snapIndex, nullptr);
}

TEST_F(SnapRefusalTest, WithoutMemoryTheWalkGivesTheSame) {
    const Snapped good = Run(SnapToIntersection, kBesideCrossing);
    int failed = 0;
    for (bool reached = true; reached; ++failed) {
        allocationsLeft = failed + 1;
        Snapped result{};
        {
            const Snapping snapping; // the first allocation
            result = Run(SnapToIntersection, kBesideCrossing);
            reached = allocationsLeft == 0;
            allocationsLeft = 0;
        }
        EXPECT_TRUE(result == good) << failed;
    }
    EXPECT_GT(failed, 5);
    EXPECT_EQ(globals->snapIndex, nullptr);
}

} // namespace
