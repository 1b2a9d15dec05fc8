/// Capturing: cost has to grow in step with the art.
///
/// `growth` is the time for 100,000 one-segment paths divided by the time for 10,000 in the same run, 10
/// being in step with the work.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <memory>

#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "plugin/store/record_layout.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

namespace {

/// Selected one-segment paths, each at a place of its own.
std::unique_ptr<workbench::Document> DocumentOf(int64_t paths) {
    auto document = std::make_unique<workbench::Document>();
    for (int64_t i = 0; i < paths; ++i) {
        workbench::Art* path = document->AppendArt(kArtPath, document->LayerAt(0).root);
        const HostPoint point{static_cast<double>(i % 100), static_cast<double>(i / 100)};
        path->path()->segments.push_back({point, point, point, 0});
    }
    document->SelectAll();
    return document;
}

/// The plug-in over a document, with the suites held.
struct Capturing {
    workbench::Host host;
    workbench::PluginModule plugin{host, PluginMain};
    bool ready = false;

    explicit Capturing(int64_t paths) {
        host.Open(DocumentOf(paths));
        ready = !plugin.StartUp() && !AcquireHostSuites(host.basic());
    }
    ~Capturing() {
        if (ready) ReleaseHostSuites(host.basic());
        plugin.ShutDown();
    }
};

uint32_t CapturedObjects() {
    RecordHeader header{};
    if (globals->curRecord) std::memcpy(&header, BlockBytes(globals->curRecord), sizeof header);
    return header.objectCount;
}

/// Seconds for one capture, the best of three, so that a busy machine doesn't show as growth; below 0 if art
/// is missing.
double CaptureSeconds(int64_t paths) {
    const Capturing capturing(paths);
    if (!capturing.ready) return -1;
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 3; ++i) {
        const auto start = std::chrono::steady_clock::now();
        AidbPostArt();
        best =
            std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return CapturedObjects() == paths ? best : -1;
}

void CaptureGrowth(benchmark::State& state) {
    for (auto _ : state) {
        const double few = CaptureSeconds(10000);
        const double many = CaptureSeconds(100000);
        if (few <= 0 || many <= 0) {
            state.SkipWithError("the plug-in doesn't start, or art is missing");
            return;
        }
        state.counters["ms_10000"] = few * 1000;
        state.counters["ms_100000"] = many * 1000;
        state.counters["growth"] = many / few;
    }
}
BENCHMARK(CaptureGrowth)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
