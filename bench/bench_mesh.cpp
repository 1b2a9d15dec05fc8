/// Meshes: cost has to grow in step with the net.
///
/// `growth` is the time for a mesh of 64 by 64 patches divided by the time for one of 20 by 20, which has a
/// tenth of them, in the same run; up to 12 is in step with the work.  Once for capturing, once for
/// rebuilding.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>

#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "plugin/rebuild/load_art.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

namespace {

using workbench::MeshData;

constexpr int32_t kLarge = 64, kSmall = 20;

/// A selected mesh, each vertex of which lies by itself.
std::unique_ptr<workbench::Document> DocumentOf(int32_t side) {
    auto document = std::make_unique<workbench::Document>();
    workbench::Art* art = document->AppendArt(kArtMesh, document->LayerAt(0).root);
    auto& mesh = std::get<MeshData>(art->data);
    InitMesh(mesh, workbench::kMeshGrid, side, side);
    for (size_t i = 0; i < mesh.vertices.size(); ++i) {
        const auto rows = static_cast<size_t>(side) + 1;
        mesh.vertices[i].position = {static_cast<double>(i / rows), static_cast<double>(i % rows)};
        mesh.vertices[i].color = workbench::ThreeColor(0.25, 0.5, 0.75);
    }
    StraightenMesh(mesh);
    document->SelectAll();
    return document;
}

/// The plug-in over a document, with the suites held.
struct Desk {
    workbench::Host host;
    workbench::PluginModule plugin{host, PluginMain};
    bool ready = false;

    Desk() {
        host.Open(std::make_unique<workbench::Document>());
        ready = !plugin.StartUp() && !AcquireHostSuites(host.basic());
    }
    ~Desk() {
        if (ready) ReleaseHostSuites(host.basic());
        plugin.ShutDown();
    }
};

size_t VerticesOnPage(Desk& desk) {
    const workbench::Art* art = desk.host.front()->LayerAt(0).root->firstChild;
    const auto* mesh = art ? std::get_if<MeshData>(&art->data) : nullptr;
    return mesh ? mesh->vertices.size() : 0;
}

/// Processor seconds of the best of seven, so that a busy machine doesn't show as growth.
double BestSeconds(const std::function<void()>& prepare, const std::function<void()>& work) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 7; ++i) {
        prepare();
        const std::clock_t start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

struct Seconds {
    double capture = -1, load = -1; ///< below 0 if vertices are missing at the end
};

Seconds Measure(int32_t side) {
    Desk desk;
    if (!desk.ready) return {};
    Seconds seconds;
    seconds.capture = BestSeconds([&] { desk.host.Open(DocumentOf(side)); }, [] { AidbPostArt(); });
    seconds.load = BestSeconds([&] { desk.host.Open(std::make_unique<workbench::Document>()); },
                               [] { RebuildCurrentRecord(); });
    const auto rows = static_cast<size_t>(side) + 1;
    return VerticesOnPage(desk) == rows * rows ? seconds : Seconds{};
}

void MeshGrowth(benchmark::State& state) {
    for (auto _ : state) {
        const Seconds few = Measure(kSmall), many = Measure(kLarge);
        if (few.load < 0 || many.load < 0) {
            state.SkipWithError("the plug-in doesn't start, or vertices are missing");
            return;
        }
        state.counters["capture_ms"] = many.capture * 1000;
        state.counters["capture_growth"] = many.capture / few.capture;
        state.counters["load_ms"] = many.load * 1000;
        state.counters["load_growth"] = many.load / few.load;
    }
}
BENCHMARK(MeshGrowth)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
