/// Images: cost has to grow in step with the pixels.
///
/// `capture_growth` and `load_growth` are the times for an image of 4096 by 4096 pixels divided by the times
/// for a tenth of it, 4096 by 410, in the same run, 10 being in step with the work.  Capturing goes from the
/// document to the record in memory, loading from there to another document.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
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

constexpr int32_t kSide = 4096;

std::unique_ptr<workbench::Document> DocumentOf(int32_t rows) {
    auto document = std::make_unique<workbench::Document>();
    workbench::Art* art = document->AppendArt(kArtRaster, document->LayerAt(0).root);
    auto& raster = std::get<workbench::RasterData>(art->data);
    raster.record = workbench::NewRasterRecord(kSide, rows, workbench::kSpaceThreeAlpha);
    raster.pixels.resize(raster.RowBytes() * static_cast<size_t>(rows));
    uint32_t noise = 1;
    for (uint8_t& byte : raster.pixels)
        byte = static_cast<uint8_t>((noise = noise * 1664525 + 1013904223) >> 24);
    document->SelectAll();
    return document;
}

/// The pixels of the only image of the front document.
const std::vector<uint8_t>* PixelsOf(workbench::Host& host) {
    const workbench::Art* art = host.front()->LayerAt(0).root->firstChild;
    const auto* raster = art ? std::get_if<workbench::RasterData>(&art->data) : nullptr;
    return raster ? &raster->pixels : nullptr;
}

struct Seconds {
    double capture = std::numeric_limits<double>::infinity(), load = capture;
};

/// The best of three, so that a busy machine doesn't show as growth; below 0 if a pixel is another at the
/// end.
Seconds BestOfThree(int32_t rows) {
    using Clock = std::chrono::steady_clock;
    const auto since = [](Clock::time_point start) {
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    workbench::Host host;
    workbench::PluginModule plugin(host, PluginMain);
    host.Open(DocumentOf(rows));
    Seconds best;
    const bool ready = !plugin.StartUp() && !AcquireHostSuites(host.basic());
    for (int i = 0; ready && i < 3; ++i) {
        const auto start = Clock::now();
        AidbPostArt();
        best.capture = std::min(best.capture, since(start));
        auto original = host.Close();
        host.Open(std::make_unique<workbench::Document>());
        const auto loadStart = Clock::now();
        RebuildCurrentRecord();
        best.load = std::min(best.load, since(loadStart));
        const std::vector<uint8_t>* rebuilt = PixelsOf(host);
        const workbench::Art* art = original->LayerAt(0).root->firstChild;
        const bool same = rebuilt && *rebuilt == std::get<workbench::RasterData>(art->data).pixels;
        if (!same) best = {-1, -1};
        host.Close();
        host.Open(std::move(original));
    }
    if (ready) ReleaseHostSuites(host.basic());
    plugin.ShutDown();
    return ready ? best : Seconds{-1, -1};
}

void RasterGrowth(benchmark::State& state) {
    for (auto _ : state) {
        const Seconds tenth = BestOfThree(kSide / 10 + 1), whole = BestOfThree(kSide);
        if (tenth.capture <= 0 || whole.capture <= 0) {
            state.SkipWithError("pixels are missing");
            return;
        }
        state.counters["capture_ms"] = whole.capture * 1000;
        state.counters["capture_growth"] = whole.capture / tenth.capture;
        state.counters["load_ms"] = whole.load * 1000;
        state.counters["load_growth"] = whole.load / tenth.load;
    }
}
BENCHMARK(RasterGrowth)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
