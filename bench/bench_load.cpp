/// The whole way of a record, there and back: capture, store, read and load.
///
/// `growth` is the time for a record of 100,000 one-segment paths divided by the time for one of 10,000 in
/// the same run, 10 being in step with the work; `load_growth` is the same for reading and loading alone.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "win32/path_names.h"
#include "win32/shell_folder.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

namespace {

constexpr char kGroup[] = "\\Folder\\Group";

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

/// The plug-in with a database of its own, the suites held.
struct Desk {
    std::filesystem::path folder;
    workbench::Host host;
    workbench::PluginModule plugin{host, PluginMain};
    bool ready = false;

    Desk() {
        std::string name = (std::filesystem::temp_directory_path() / "bench-load-XXXXXX").string();
        if (!mkdtemp(name.data())) return;
        folder = name;
        std::filesystem::create_directory(folder / "Folder");
        SetDocumentsFolder(name.c_str());
        host.Open(std::make_unique<workbench::Document>());
        ready = !plugin.StartUp() && !AcquireHostSuites(host.basic());
        const std::string root = StorePathOfUtf8(name).path;
        if (ready && root.size() < sizeof globals->aidbfpath) std::strcpy(globals->aidbfpath, root.c_str());
    }
    ~Desk() {
        if (ready) ReleaseHostSuites(host.basic());
        plugin.ShutDown();
        if (!folder.empty()) std::filesystem::remove_all(folder);
    }
};

struct Seconds {
    double all = 0, load = 0;
};

/// One record there and back; below 0 if art is missing at the end.
Seconds RoundTrip(int64_t paths) {
    using Clock = std::chrono::steady_clock;
    const auto since = [](Clock::time_point start) {
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    Desk desk;
    if (!desk.ready) return {-1, -1};
    desk.host.Open(DocumentOf(paths));
    const auto start = Clock::now();
    if (AidbPostArt() != kHostNoError || WriteRecord(kGroup, -1) != 0) return {-1, -1};
    Seconds seconds{since(start), 0};
    desk.host.Open(std::make_unique<workbench::Document>());

    const auto loadStart = Clock::now();
    AidbLoadArt(kGroup, 0);
    seconds.load = since(loadStart);
    seconds.all += seconds.load;
    const workbench::Art& root = *desk.host.front()->LayerAt(0).root;
    int64_t loaded = 0;
    for (const workbench::Art* art = root.firstChild; art; art = art->below) ++loaded;
    return loaded == paths ? seconds : Seconds{-1, -1};
}

/// The best of three, so that a busy machine doesn't show as growth.
Seconds BestOfThree(int64_t paths) {
    Seconds best{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int i = 0; i < 3; ++i) {
        const Seconds one = RoundTrip(paths);
        best = {std::min(best.all, one.all), std::min(best.load, one.load)};
    }
    return best;
}

void LoadGrowth(benchmark::State& state) {
    for (auto _ : state) {
        const Seconds few = BestOfThree(10000), many = BestOfThree(100000);
        if (few.all < 0 || many.all < 0) {
            state.SkipWithError("art is missing");
            return;
        }
        state.counters["ms_10000"] = few.all * 1000;
        state.counters["ms_100000"] = many.all * 1000;
        state.counters["growth"] = many.all / few.all;
        state.counters["load_ms_100000"] = many.load * 1000;
        state.counters["load_growth"] = many.load / few.load;
    }
}
BENCHMARK(LoadGrowth)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
