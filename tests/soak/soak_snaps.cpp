#include "tests/soak/soak_snaps.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "tests/plugin/placement/snap_moves.h"
#include "tests/support/temporary_folder.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"
#include "workbench/svg/svg_reader.h"

namespace fs = std::filesystem;

namespace {

constexpr int kMovesEach = 500;
constexpr size_t kMostPieces = 20000; ///< of a drawing: plain searches are slow

size_t PiecesOf(const workbench::Document& document) {
    size_t pieces = 0;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        workbench::ForEachArt(*document.LayerAt(i).root, [&](const workbench::Art& art) {
            if (art.path()) pieces += art.path()->segments.size();
        });
    }
    return pieces;
}

/// A plug-in that holds its suites.
class Drags {
public:
    Drags() : plugin_(host_, PluginMain) {
        RedirectDocuments(folder_.path());
        host_.Open(std::make_unique<workbench::Document>());
        ready = !plugin_.StartUp() && !AcquireHostSuites(host_.basic());
    }
    ~Drags() {
        if (ready) ReleaseHostSuites(host_.basic());
        plugin_.ShutDown();
    }

    bool Over(std::unique_ptr<workbench::Document> document, const std::string& name, unsigned seed) {
        host_.Open(std::move(document));
        PlainSnap plain(*host_.front());
        const std::string difference = MakeMoves(*host_.front(), seed, kMovesEach, plain);
        for (size_t i = 0; i < kSnapCases; ++i) met[i] += plain.counts()[i];
        if (!difference.empty()) std::printf("DIFFERENT over %s: %s\n", name.c_str(), difference.c_str());
        return difference.empty();
    }

    bool ready = false;
    std::array<uint64_t, kSnapCases> met{};

private:
    TemporaryFolder folder_;
    workbench::Host host_;
    workbench::PluginModule plugin_;
};

std::vector<fs::path> DrawingsBelow(const std::string& folder) {
    std::vector<fs::path> drawings;
    if (folder.empty()) return drawings;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == ".svg") drawings.push_back(entry.path());
    }
    std::sort(drawings.begin(), drawings.end());
    return drawings;
}

} // namespace

int RunSnaps(uint64_t moves, unsigned seed, const std::string& folder) {
    const std::vector<fs::path> drawings = DrawingsBelow(folder);
    Drags drags;
    if (!drags.ready) return 1;
    const uint64_t rounds = (moves + kMovesEach - 1) / kMovesEach;
    uint64_t real = 0;
    size_t next = drawings.empty() ? 0 : seed * 7919 % drawings.size();
    for (uint64_t i = 0; i < rounds; ++i) {
        const unsigned each = seed + static_cast<unsigned>(i);
        auto document = std::make_unique<workbench::Document>();
        std::string name = "seed " + std::to_string(each);
        if (i % 2 != 0 && !drawings.empty()) {
            // Drawings at prime steps, so that few moves already see all kinds.
            next = (next + 7919) % drawings.size();
            auto read = workbench::ReadSvgFile(drawings[next].string(), nullptr, nullptr);
            if (read && PiecesOf(*read) <= kMostPieces) {
                document = std::move(read);
                name = drawings[next].string() + ", " + name;
                ++real;
            }
        }
        if (PiecesOf(*document) == 0) Scribbler(each).Scribble(*document);
        if (!drags.Over(std::move(document), name, each)) return 1;
    }
    const auto cases = std::count_if(drags.met.begin(), drags.met.end(), [](uint64_t n) { return n > 0; });
    std::printf(
        "%llu moves, over %llu drawings and %llu random ones, %d of %d cases of a crossing met, no bit "
        "different\n",
        static_cast<unsigned long long>(rounds * kMovesEach), static_cast<unsigned long long>(real),
        static_cast<unsigned long long>(rounds - real), static_cast<int>(cases), int{kSnapCases});
    return 0;
}
