/// Snapping: the index of a drag against the walk over the document, and against a bare R-tree.
///
/// Same document, same moves, one run.  A move is the three searches of a drag, each while the one before it
/// missed.  Of 100,000 pieces:
/// `walk_over_index`     time of all moves by walking, divided by that with the index
/// `make_in_walks`       time to make the index, divided by that of one search that walks all paths in vain
/// `begin_in_walks`      the same with the first search amid the art, which reads the paths there
/// `p99_us`              99th percentile of one search with the index, microseconds
/// `p99_over_rtree`      the same, divided by the 99th percentile of a query for the pieces' boxes in reach
/// The index grows below the moves, so these numbers are of moves that were made before.  The first time:
/// `walk_over_new`       time of all moves by walking, divided by that of the first time, with making the
/// index `new_over_again`      the latter, divided by that of the same moves afterwards
#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <chrono>
#include <ctime>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <vector>

#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "plugin/placement/snap.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

namespace {

namespace bg = boost::geometry;
using TreePoint = bg::model::d2::point_xy<double>;
using TreeBox = bg::model::box<TreePoint>;
using Tree = bg::index::rtree<TreeBox, bg::index::quadratic<16>>;

constexpr int kPieces = 100000;
constexpr int kMoves = 2000;
constexpr int kRounds = 4;

class Artist {
public:
    double Uniform(double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }
    HostPoint Beside(const HostPoint& point, double reach) {
        return {point.x + Uniform(-reach, reach), point.y + Uniform(-reach, reach)};
    }
    HostPoint OnPage(double side) { return {Uniform(0, side), Uniform(0, side)}; }

    /// An open path that wanders, a third of its pieces curved.
    void Draw(workbench::PathData& path, HostPoint at, int pieces, double step) {
        for (int i = 0; i <= pieces; ++i) {
            HostPathSegment segment{at, at, at, 1};
            if (Uniform(0, 3) < 1) segment.in = Beside(at, step / 2), segment.out = Beside(at, step / 2);
            path.segments.push_back(segment);
            at = Beside(at, step);
        }
    }

private:
    std::mt19937 random_{1987};
};

/// The plug-in over a document of that many paths on a square page, with the suites held.
struct Drag {
    workbench::Host host;
    workbench::PluginModule plugin{host, PluginMain};
    std::vector<TreeBox> boxes;
    std::vector<HostPoint> moves;
    double side;
    bool ready = false;

    Drag(int paths, double pageSide, double step) : side(pageSide) {
        Artist artist;
        auto document = std::make_unique<workbench::Document>();
        for (int i = 0; i < paths; ++i) {
            workbench::PathData& path = *document->AppendArt(kArtPath, document->LayerAt(0).root)->path();
            artist.Draw(path, artist.OnPage(side), kPieces / paths, step);
            AddBoxes(path);
        }
        for (int i = 0; i < kMoves; ++i) moves.push_back(artist.OnPage(side));
        host.Open(std::move(document));
        ready = !plugin.StartUp() && !AcquireHostSuites(host.basic());
    }
    ~Drag() {
        if (ready) ReleaseHostSuites(host.basic());
        plugin.ShutDown();
    }

private:
    void AddBoxes(const workbench::PathData& path) {
        for (size_t i = 1; i < path.segments.size(); ++i) {
            const HostPathSegment &a = path.segments[i - 1], &b = path.segments[i];
            const auto [left, right] = std::minmax({a.anchor.x, a.out.x, b.in.x, b.anchor.x});
            const auto [bottom, top] = std::minmax({a.anchor.y, a.out.y, b.in.y, b.anchor.y});
            boxes.push_back({{left, bottom}, {right, top}});
        }
    }
};

double Seconds(std::chrono::steady_clock::time_point from) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

double Percentile99(std::vector<double> times) {
    const auto place = times.begin() + static_cast<ptrdiff_t>(times.size() * 99 / 100);
    std::nth_element(times.begin(), place, times.end());
    return *place;
}

struct Played {
    double total = 0;
    std::vector<double> searches; ///< seconds
    std::vector<HostPoint> points;

    void Add(double seconds) {
        searches.push_back(seconds);
        total += seconds;
    }
};

/// What `work` takes, in processor seconds.
template <typename Work>
double ProcessorSeconds(Work work) {
    const clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Every `stride`-th move.
Played PlayOnce(const std::vector<HostPoint>& moves, size_t stride) {
    Played played;
    for (size_t i = 0; i < moves.size(); i += stride) {
        HostPoint point = moves[i];
        int16_t kind = kSnapNone;
        for (const auto search : {SnapToAnchor, SnapToIntersection, SnapToPath}) {
            if (kind != kSnapNone) break;
            const auto start = std::chrono::steady_clock::now();
            search(point, kind);
            played.Add(Seconds(start));
        }
        played.points.push_back(point);
    }
    return played;
}

/// The best times of several rounds, so that a busy machine doesn't count.
Played Play(const std::vector<HostPoint>& moves, size_t stride) {
    Played best = PlayOnce(moves, stride);
    for (int round = 1; round < kRounds; ++round) {
        const Played played = PlayOnce(moves, stride);
        for (size_t i = 0; i < best.searches.size(); ++i)
            best.searches[i] = std::min(best.searches[i], played.searches[i]);
    }
    best.total = std::accumulate(best.searches.begin(), best.searches.end(), 0.0);
    return best;
}

std::vector<double> QueryTree(const Drag& drag) {
    const Tree tree(drag.boxes); // packed
    std::vector<double> times(drag.moves.size(), std::numeric_limits<double>::infinity());
    for (int round = 0; round < kRounds; ++round) {
        for (size_t i = 0; i < times.size(); ++i) {
            const HostPoint p = drag.moves[i];
            const auto start = std::chrono::steady_clock::now();
            size_t found = 0;
            const TreeBox reach({p.x - 2, p.y - 2}, {p.x + 2, p.y + 2});
            for (auto each = tree.qbegin(bg::index::intersects(reach)); each != tree.qend(); ++each) ++found;
            benchmark::DoNotOptimize(found);
            times[i] = std::min(times[i], Seconds(start));
        }
    }
    return times;
}

constexpr HostPoint kNowhere{-1e6, -1e6};

/// Processor seconds for a first search, the best of several: far from all art it is a walk over all of it,
/// or what it takes to make the index.
double SearchSeconds(bool indexed, const HostPoint& from) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 5 * kRounds; ++i) {
        std::optional<Snapping> snapping;
        HostPoint point = from;
        int16_t kind = kSnapNone;
        best = std::min(best, ProcessorSeconds([&] {
                            if (indexed) snapping.emplace();
                            SnapToPath(point, kind);
                        }));
    }
    return best;
}

bool Same(const std::vector<HostPoint>& few, const std::vector<HostPoint>& all, size_t stride) {
    for (size_t i = 0; i < few.size(); ++i) {
        if (few[i].x != all[i * stride].x || few[i].y != all[i * stride].y) return false;
    }
    return true;
}

/// Arguments: paths, side of the page, reach of a piece in points.
void SnapMoves(benchmark::State& state) {
    constexpr size_t kStride = 40; // walks are slow
    for (auto _ : state) {
        const Drag drag(static_cast<int>(state.range(0)), static_cast<double>(state.range(1)),
                        static_cast<double>(state.range(2)));
        if (!drag.ready) return state.SkipWithError("the plug-in doesn't start");
        const Played walked = Play(drag.moves, kStride);
        const double walking = ProcessorSeconds([&] { PlayOnce(drag.moves, kStride); });
        const double walk = SearchSeconds(false, kNowhere), make = SearchSeconds(true, kNowhere);
        const HostPoint middle{drag.side / 2, drag.side / 2};
        const double begin = SearchSeconds(true, middle);
        const Snapping snapping;
        Played first;
        const double growing = ProcessorSeconds([&] { first = PlayOnce(drag.moves, 1); });
        const double grown = ProcessorSeconds([&] { PlayOnce(drag.moves, 1); });
        const Played indexed = Play(drag.moves, 1);
        if (!Same(walked.points, indexed.points, kStride) || !Same(first.points, indexed.points, 1)) {
            return state.SkipWithError("index and walk differ");
        }
        const Played again = Play(drag.moves, kStride); // the very moves that were walked
        const double percentile = Percentile99(indexed.searches);
        state.counters["walk_ms"] = walk * 1e3;
        state.counters["make_ms"] = make * 1e3;
        state.counters["walk_over_index"] = walked.total / again.total;
        state.counters["walk_over_new"] = walking * kStride / growing;
        state.counters["new_over_again"] = growing / grown;
        state.counters["make_in_walks"] = make / walk;
        state.counters["begin_in_walks"] = begin / walk;
        state.counters["p99_us"] = percentile * 1e6;
        state.counters["p99_over_rtree"] = percentile / Percentile99(QueryTree(drag));
    }
}
// A page that is mostly free, one that is full, and the same in other shapes.
BENCHMARK(SnapMoves)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond)
    ->ArgNames({"paths", "side", "step"})
    ->Args({10000, 5000, 20})
    ->Args({10000, 800, 20})
    ->Args({10000, 800, 200})
    ->Args({100000, 5000, 20})
    ->Args({100, 5000, 20});

} // namespace
