/// Text: cost has to grow in step with its length, to a record and back.
///
/// `capture_growth` is the time to capture a text of 100,000 characters divided by the time for one of
/// 10,000 in the same run, 10 being in step with the work; `load_growth` is the same for building it again.
/// Every hundredth character differs from the others, so that there are runs of all lengths.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <string>

#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "plugin/rebuild/load_art.h"
#include "tests/support/text_art.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

namespace {

std::unique_ptr<workbench::Document> DocumentOf(size_t characters) {
    auto document = std::make_unique<workbench::Document>();
    const std::u16string text(characters, u'\u3042');
    workbench::Art& frame = AddPointText(*document, *document->LayerAt(0).root, text);
    for (size_t at = 0; at < characters; at += 100) SetCharacter(frame, at, at + 1, OddCharacter());
    document->SelectAll();
    return document;
}

struct Seconds {
    double capture = std::numeric_limits<double>::infinity();
    double load = std::numeric_limits<double>::infinity();
};

/// The plug-in over a document, with the suites held.
struct Desk {
    workbench::Host host;
    workbench::PluginModule plugin{host, PluginMain};
    TestFonts fonts = FewFonts();
    bool ready = false;

    Desk() {
        host.Open(std::make_unique<workbench::Document>());
        host.SetFontList(&fonts);
        ready = !plugin.StartUp() && !AcquireHostSuites(host.basic());
    }
    ~Desk() {
        if (ready) ReleaseHostSuites(host.basic());
        plugin.ShutDown();
    }
};

template <typename Work>
double SecondsOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The best of three, so that a busy machine doesn't show as growth; false if text is missing at the end.
bool Measure(size_t characters, Seconds* best) {
    Desk desk;
    if (!desk.ready) return false;
    for (int i = 0; i < 3; ++i) {
        desk.host.Open(DocumentOf(characters));
        best->capture = std::min(best->capture, SecondsOf([] { AidbPostArt(); }));
        desk.host.Open(std::make_unique<workbench::Document>());
        best->load = std::min(best->load, SecondsOf([] { RebuildCurrentRecord(); }));
    }
    const workbench::Art* frame = desk.host.front()->LayerAt(0).root->firstChild;
    return frame && TextOf(*frame).story->text.size() == characters;
}

void TextGrowth(benchmark::State& state) {
    for (auto _ : state) {
        Seconds few, many;
        if (!Measure(10000, &few) || !Measure(100000, &many)) {
            state.SkipWithError("the plug-in doesn't start, or text is missing");
            return;
        }
        state.counters["capture_ms_100000"] = many.capture * 1000;
        state.counters["capture_growth"] = many.capture / few.capture;
        state.counters["load_ms_100000"] = many.load * 1000;
        state.counters["load_growth"] = many.load / few.load;
    }
}
BENCHMARK(TextGrowth)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
