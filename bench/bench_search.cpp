/// Searching and indexing 100,000 records against what it takes to look at their headers at all.
///
/// `loop` is a program's least: one pread of 428 bytes for each record, from size word to size word.  The
/// peer of the search is the same number of rows in SQLite, the texts beside the bodies, and LIKE over one of
/// them. Each ratio is of two processor times in one run, the best of seven, in turn, with the
/// file in memory.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/search.h"
#include "plugin/store/swap_words.h"
#include "win32/path_names.h"

namespace {

constexpr uint32_t kRecords = 100000;
constexpr int kRuns = 7;
constexpr char kText[] = "flower"; ///< in one name of fifty
constexpr const char* kWords[] = {"tree",  "house", "Apple", "star", "ribbon", "car",   "leaf",
                                  "arrow", "heart", "Cloud", "fish", "bird",   "frame", "border"};

uint32_t Random() {
    static uint32_t state = 12345;
    state = state * 1664525 + 1013904223;
    return state >> 8;
}

RecordHeader HeaderOf(uint32_t number, uint32_t bytes) {
    RecordHeader header{};
    header.size = SwapLong(bytes);
    header.created = SwapLong(3500000000u + Random() % 1000000);
    const char* word = number % 50 == 0 ? kText : kWords[Random() % std::size(kWords)];
    std::snprintf(header.name, sizeof header.name, "%s %s %u", kWords[Random() % std::size(kWords)], word,
                  Random() % 10000);
    std::snprintf(header.kind, sizeof header.kind, "%s", kWords[Random() % std::size(kWords)]);
    std::snprintf(header.comment, sizeof header.comment, "drawn by %u, free to use", Random() % 1000);
    return header;
}

/// A group of records of 1 to 7 KB, which is what small drawings come to, and the same in SQLite.
class Database {
public:
    Database() {
        std::string name = (std::filesystem::temp_directory_path() / "bench-search-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        folder_ = name;
        globals = block_.get();
        SetDefaults(nullptr);
        std::strcpy(globals->aidbfpath, StorePathOfUtf8(name).path.c_str());
        std::strcpy(globals->aidbfname, "G");
        sqlite3_open((folder_ / "peer.db").c_str(), &peer);
        Fill();
        sqlite3_open((folder_ / "peer.db").c_str(), &mapped);
        sqlite3_exec(mapped, "PRAGMA mmap_size=2000000000", nullptr, nullptr, nullptr);
        file = open(path().c_str(), O_RDONLY);
    }
    ~Database() {
        close(file);
        sqlite3_close(peer);
        sqlite3_close(mapped);
        FreeHandle(globals->rihList);
        FreeHandle(globals->curRecord);
        globals = nullptr;
        std::filesystem::remove_all(folder_);
    }
    std::filesystem::path path() const { return folder_ / "G.AID"; }

    sqlite3* peer = nullptr;   ///< as it is without settings
    sqlite3* mapped = nullptr; ///< the same with the file in its memory
    int file = -1;

private:
    void Fill() {
        sqlite3_exec(peer,
                     "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
                     "CREATE TABLE r(name TEXT, kind TEXT, comment TEXT, body BLOB); BEGIN",
                     nullptr, nullptr, nullptr);
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(peer, "INSERT INTO r VALUES(?,?,?,?)", -1, &insert, nullptr);
        std::FILE* group = std::fopen(path().c_str(), "wb");
        const uint32_t count = SwapLong(kRecords);
        std::fwrite(&count, 1, sizeof count, group);
        std::vector<char> body(8192);
        for (char& byte : body) byte = static_cast<char>(Random());
        for (uint32_t number = 0; number < kRecords; ++number) {
            const uint32_t bytes = 1024 + Random() % 6144;
            const RecordHeader header = HeaderOf(number, bytes);
            std::fwrite(&header, 1, sizeof header, group);
            std::fwrite(body.data(), 1, bytes - sizeof header, group);
            sqlite3_bind_text(insert, 1, header.name, -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(insert, 2, header.kind, -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(insert, 3, header.comment, -1, SQLITE_TRANSIENT);
            sqlite3_bind_blob(insert, 4, body.data(), static_cast<int>(bytes - sizeof header), SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        std::fclose(group);
        sqlite3_finalize(insert);
        sqlite3_exec(peer, "COMMIT", nullptr, nullptr, nullptr);
    }

    std::filesystem::path folder_;
    std::unique_ptr<Globals> block_ = std::make_unique<Globals>();
};

Database& TheDatabase() {
    static Database database;
    return database;
}

/// Processor time, which other programs on a busy machine disturb less than they do the clock.
double Milliseconds(const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    work();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// What the reader of headers has to do at least; the texts are touched, so that they are read.
void LoopOverHeaders(const Database& database) {
    off_t place = 4;
    uint64_t sum = 0;
    for (uint32_t number = 0; number < kRecords; ++number) {
        uint8_t header[kSmallestRecordBytes];
        if (pread(database.file, header, sizeof header, place) != sizeof header) std::abort();
        uint32_t size;
        std::memcpy(&size, header + 4, sizeof size);
        sum += header[24];
        place += SwapLong(size);
    }
    benchmark::DoNotOptimize(sum);
}

int64_t Like(sqlite3* peer) {
    sqlite3_stmt* query = nullptr;
    sqlite3_prepare_v2(peer, "SELECT rowid, name, kind FROM r WHERE name LIKE '%flower%' ORDER BY name", -1,
                       &query, nullptr);
    int64_t rows = 0;
    while (sqlite3_step(query) == SQLITE_ROW) ++rows;
    sqlite3_finalize(query);
    return rows;
}

// What walks have learned so far, so that each run is a first one.
void Forget() {
    FreeOffsets();
    FreeHandle(globals->rihList);
    FreeHandle(globals->curRecord);
}

void Search(benchmark::State& state) {
    const Database& database = TheDatabase();
    std::strcpy(globals->flCnvFnStr, kText);
    double ours = 1e9, loop = 1e9, like = 1e9, mapped = 1e9;
    int64_t rows = 0;
    for (auto _ : state) {
        for (int run = 0; run < kRuns; ++run) {
            loop = std::min(loop, Milliseconds([&] { LoopOverHeaders(database); }));
            Forget();
            ours = std::min(ours, Milliseconds([] { RunSearch(); }));
            like = std::min(like, Milliseconds([&] { rows = Like(database.peer); }));
            mapped = std::min(mapped, Milliseconds([&] { Like(database.mapped); }));
        }
    }
    if (rows != RihCount(globals->rihList) || rows < kRecords / 50) state.SkipWithError("the hits differ");
    state.counters["ms"] = ours;
    state.counters["loop_ms"] = loop;
    state.counters["like_ms"] = like;
    state.counters["of_loop"] = ours / loop;
    state.counters["of_like"] = ours / like;
    state.counters["of_mapped_like"] = ours / mapped;
}
BENCHMARK(Search)->Iterations(1)->Unit(benchmark::kMillisecond);

void Index(benchmark::State& state) {
    const Database& database = TheDatabase();
    globals->findMode = kFindGroup;
    double ours = 1e9, loop = 1e9;
    for (auto _ : state) {
        for (int run = 0; run < kRuns; ++run) {
            loop = std::min(loop, Milliseconds([&] { LoopOverHeaders(database); }));
            Forget();
            ours = std::min(ours, Milliseconds([] { LoadRihList("G"); }));
        }
    }
    if (RihCount(globals->rihList) != kRecords) state.SkipWithError("not all records are there");
    state.counters["ms"] = ours;
    state.counters["loop_ms"] = loop;
    state.counters["of_loop"] = ours / loop;
}
BENCHMARK(Index)->Iterations(1)->Unit(benchmark::kMillisecond);

/// From names to kinds, to dates and back, without the file.
void Resort(benchmark::State& state) {
    TheDatabase();
    globals->findMode = kFindGroup;
    LoadRihList("G");
    double longest = 0;
    for (auto _ : state) {
        for (const int16_t mode : {kByKind, kByDate, kByName}) {
            double best = 1e9;
            for (int run = 0; run < kRuns; ++run) {
                ResortRihList(static_cast<int16_t>((mode + 1) % 3));
                best = std::min(best, Milliseconds([mode] { ResortRihList(mode); }));
            }
            state.counters[mode == kByKind ? "kind_ms" : mode == kByDate ? "date_ms" : "name_ms"] = best;
            longest = std::max(longest, best);
        }
    }
    state.counters["longest_ms"] = longest;
}
BENCHMARK(Resort)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
