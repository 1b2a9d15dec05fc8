/// Reading far behind in a group, appending to a long one, and deleting from a large one, against peers.
///
/// Each counter is a ratio of two times in one run, the best of several, in turn.  The files lie in TMPDIR,
/// so that a disk and a file system in memory can both be measured.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/group_file.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/swap_words.h"
#include "win32/path_names.h"

namespace {

namespace fs = std::filesystem;

constexpr uint32_t kRecordBytes = 2048;    ///< bodies of zeros: no work for the coder
constexpr uint32_t kAppendedBytes = 16384; ///< about what a drawing comes to

std::vector<uint8_t> RecordOf(uint32_t bytes) {
    std::vector<uint8_t> record(bytes);
    auto* start = reinterpret_cast<RecordStart*>(record.data());
    start->header.size = SwapLong(bytes);
    std::strcpy(start->header.name, "a record");
    start->packedPreview = SwapLong(600);
    start->packedObjects = SwapLong(bytes - kSmallestRecordBytes - 600);
    return record;
}

class Database {
public:
    explicit Database(const fs::path& where = "/dev/shm") {
        std::string name = (where / "bench-store-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        folder = name;
        globals = block_.get();
        globals->swapBytes = 1;
        globals->curRecordNo = -1;
        std::strcpy(globals->aidbfpath, StorePathOfUtf8(name).path.c_str());
    }
    ~Database() {
        FreeHandle(globals->rihList);
        FreeHandle(globals->curRecord);
        FreeOffsets();
        globals = nullptr;
        fs::remove_all(folder);
    }

    void MakeGroup(const std::string& group, uint32_t count, uint32_t bytes) const {
        const std::vector<uint8_t> record = RecordOf(bytes);
        const uint32_t stored = SwapLong(count);
        std::ofstream file(folder / (group + ".AID"), std::ios::binary);
        file.write(reinterpret_cast<const char*>(&stored), sizeof stored);
        for (uint32_t i = 0; i < count; ++i)
            file.write(reinterpret_cast<const char*>(record.data()), static_cast<std::streamsize>(bytes));
    }

    fs::path folder;

private:
    std::unique_ptr<Globals> block_ = std::make_unique<Globals>();
};

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Processor time, which other programs on a busy machine disturb less; not for what waits for a disk.
double ProcessorSeconds(const std::function<void()>& work) {
    timespec start, end;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &start);
    work();
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &end);
    return static_cast<double>(end.tv_sec - start.tv_sec) +
           1e-9 * static_cast<double>(end.tv_nsec - start.tv_nsec);
}

using Timing = double (*)(const std::function<void()>& work);

/// The best times of two works, run in turn.
std::pair<double, double> BestOf(int runs, const std::function<void()>& a, const std::function<void()>& b,
                                 Timing timing = ProcessorSeconds) {
    double bestA = std::numeric_limits<double>::max(), bestB = bestA;
    for (int run = 0; run < runs; ++run) {
        bestA = std::min(bestA, timing(a));
        bestB = std::min(bestB, timing(b));
    }
    return {bestA, bestB};
}

void ReadFar(benchmark::State& state, uint32_t depth) {
    const Database database;
    database.MakeGroup("G", 100000, kRecordBytes);
    HandleOwner record(NewRecord());
    const auto read = [&](int32_t number) {
        return [&record, depth, number] {
            for (int i = 0; i < 200; ++i) AidbReadRecord("G", number, &record.get(), depth, true);
        };
    };
    read(99900)();
    for (auto _ : state) {
        const auto [far, near] = BestOf(15, read(99900), read(0));
        state.counters["us"] = far / 200 * 1e6;
        state.counters["of_first"] = far / near;
    }
}

void ReadFarRecord(benchmark::State& state) {
    ReadFar(state, kReadWhole);
}
void ReadFarPreview(benchmark::State& state) {
    ReadFar(state, kReadPreview);
}

constexpr int kAppends = 50;

std::function<void()> Appends(const char* group) {
    return [group] {
        const std::vector<uint8_t> record = RecordOf(kAppendedBytes);
        uint32_t number;
        for (int i = 0; i < kAppends; ++i) {
            if (!AppendToGroup(group, record.data(), kAppendedBytes, &number)) std::abort();
        }
    };
}

void AppendToLongGroup(benchmark::State& state) {
    const Database database;
    database.MakeGroup("Short", 10, kRecordBytes);
    database.MakeGroup("Long", 10000, kRecordBytes);
    Appends("Long")();
    for (auto _ : state) {
        const auto [toLong, toShort] = BestOf(9, Appends("Long"), Appends("Short"));
        state.counters["per_second"] = kAppends / toLong;
        state.counters["of_short"] = toLong / toShort;
    }
}

/// What an append has to do at least: opening the file, writing the record and the count, closing it.  No
/// lock, no look at what is there, no flush.
void AppendBarely(const fs::path& path) {
    const std::vector<uint8_t> record = RecordOf(kAppendedBytes);
    for (uint32_t i = 0; i < kAppends; ++i) {
        const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
        const off_t end = lseek(file, 0, SEEK_END);
        if (pwrite(file, record.data(), kAppendedBytes, end) != kAppendedBytes ||
            pwrite(file, &i, sizeof i, 0) != sizeof i)
            std::abort();
        close(file);
    }
}

/// Rows in SQLite as it comes, one transaction each; `synchronous` FULL or OFF.
class Peer {
public:
    Peer(const fs::path& path, const std::string& synchronous) {
        sqlite3_open(path.c_str(), &peer_);
        Run("PRAGMA synchronous=" + synchronous);
        Run("CREATE TABLE records (name TEXT, record BLOB)");
        sqlite3_prepare_v2(peer_, "INSERT INTO records VALUES ('a record', ?)", -1, &insert_, nullptr);
    }
    ~Peer() {
        sqlite3_finalize(insert_);
        sqlite3_close(peer_);
    }

    void Insert() {
        const std::vector<uint8_t> record = RecordOf(kAppendedBytes);
        for (int i = 0; i < kAppends; ++i) {
            sqlite3_bind_blob(insert_, 1, record.data(), kAppendedBytes, SQLITE_STATIC);
            if (sqlite3_step(insert_) != SQLITE_DONE) std::abort();
            sqlite3_reset(insert_);
        }
    }

private:
    void Run(const std::string& statement) {
        if (sqlite3_exec(peer_, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
    }
    sqlite3* peer_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
};

// On a file system in memory flushing costs nothing, so OFF is the fair peer there.
void AppendAgainstSqlite(benchmark::State& state, const Database& database, const char* synchronous,
                         Timing timing) {
    database.MakeGroup("Long", 10000, kRecordBytes);
    Peer peer(database.folder / "peer.db", synchronous);
    Appends("Long")();
    peer.Insert();
    database.MakeGroup("Bare", 10, kRecordBytes);
    const auto bare = [path = database.folder / "Bare.AID"] { AppendBarely(path); };
    for (auto _ : state) {
        const auto [ours, theirs] = BestOf(
            25, Appends("Long"), [&] { peer.Insert(); }, timing);
        state.counters["per_second"] = kAppends / ours;
        state.counters["times_sqlite"] = theirs / ours;
        state.counters["bare_times_sqlite"] = theirs / BestOf(
                                                           25, bare, [] {}, timing)
                                                           .first;
    }
}

void AppendFlushed(benchmark::State& state) {
    AppendAgainstSqlite(state, Database(fs::temp_directory_path()), "FULL", Seconds);
}
void AppendNotFlushed(benchmark::State& state) {
    AppendAgainstSqlite(state, Database(), "OFF", ProcessorSeconds);
}

void DeleteFromLargeGroup(benchmark::State& state) {
    const Database database;
    database.MakeGroup("Large", 10000, 20000);
    const std::string copy = "cp '" + (database.folder / "Large.AID").string() + "' '" +
                             (database.folder / "copy").string() + "' && sync '" +
                             (database.folder / "copy").string() + "'";
    const auto copyIt = [&] {
        if (std::system(copy.c_str()) != 0) std::abort();
        fs::remove(database.folder / "copy");
    };
    const auto deleteOne = [] {
        if (DeleteRecord("Large", 5000) != 0) std::abort();
    };
    deleteOne();
    for (auto _ : state) {
        const auto [ours, theirs] = BestOf(5, deleteOne, copyIt, Seconds); // cp is another process
        state.counters["ms"] = ours * 1e3;
        state.counters["of_cp"] = ours / theirs;
    }
}

BENCHMARK(ReadFarRecord)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadFarPreview)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(AppendToLongGroup)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(AppendFlushed)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(AppendNotFlushed)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DeleteFromLargeGroup)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
