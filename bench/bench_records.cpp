/// Building and reading object streams: cost has to grow in step with the number of objects.
///
/// Each `growth` is a time at 20,000 objects divided by the time at 10,000 in the same run, 2 being in step
/// with the work; `gain` is the time of the plain way divided by that of the way in use.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <limits>
#include <memory>

#include "plugin/frame/globals.h"
#include "plugin/objects/byte_order.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/record_layout.h"

namespace {

constexpr uint32_t kObjects = 10000;
constexpr uint32_t kFewObjects = 4000; ///< where the plain way is quadratic
constexpr uint32_t kPathBytes = kPathBaseBytes + sizeof(AidbSegment);

struct State {
    std::unique_ptr<Globals> block = std::make_unique<Globals>();
    State() {
        globals = block.get();
        globals->swapBytes = 1;
    }
    ~State() { globals = nullptr; }
};

MemoryHandle EmptyRecord() {
    const MemoryHandle record = NewHandle(kEmptyRecordBytes, kRecordGrain);
    reinterpret_cast<RecordStart*>(BlockBytes(record))->header.size = kEmptyRecordBytes;
    return record;
}

void Append(HandleOwner& record, uint32_t count) {
    uint8_t path[kPathBytes] = {};
    const AidbObjectHeader header = {kPathObject, kPathBytes, 0, 0x10000, 0, 0, 0, 0};
    std::memcpy(path, &header, sizeof header);
    for (uint32_t i = 0; i < count; ++i) AddAIDBObj(record.get(), path);
}

/// Copies every object, last one first, as a load does.
void FetchByOffsets(MemoryHandle record, HandleOwner& object) {
    const ObjectOffsets offsets(record);
    for (uint32_t i = offsets.count(); i-- > 0;) {
        const auto found = offsets.Object(record, i);
        object.get() = ResizeHandle(object.get(), found.size(), kSmallGrain);
        std::memcpy(object.bytes(), found.data(), found.size());
        benchmark::ClobberMemory();
    }
}

/// Processor time, which other programs on a busy machine disturb less than they do the clock.
template <typename Work>
double Seconds(Work work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// The best of a few, so that a busy machine doesn't show as growth.
template <typename Work>
double BestSeconds(Work work) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 5; ++i) best = std::min(best, work());
    return best;
}

/// Runs `seconds(count)` at both sizes and reports how the time grows.
template <typename Timed>
void ReportGrowth(benchmark::State& state, Timed seconds) {
    const State plugin;
    double once = 0, twice = 0;
    for (auto _ : state) {
        once = BestSeconds([&] { return seconds(kObjects); });
        twice = BestSeconds([&] { return seconds(2 * kObjects); });
    }
    state.counters["ms"] = once * 1000;
    state.counters["growth"] = twice / once;
}

void AppendObjects(benchmark::State& state) {
    ReportGrowth(state, [](uint32_t count) {
        HandleOwner record(EmptyRecord());
        return Seconds([&] { Append(record, count); });
    });
}
BENCHMARK(AppendObjects)->Iterations(1)->Unit(benchmark::kMillisecond);

void FetchObjects(benchmark::State& state) {
    ReportGrowth(state, [](uint32_t count) {
        HandleOwner record(EmptyRecord()), object;
        Append(record, count);
        return Seconds([&] { FetchByOffsets(record.get(), object); });
    });
}
BENCHMARK(FetchObjects)->Iterations(1)->Unit(benchmark::kMillisecond);

void SwapObjects(benchmark::State& state) {
    ReportGrowth(state, [](uint32_t count) {
        HandleOwner record(EmptyRecord());
        Append(record, count);
        return Seconds([&] { SwapRecordToStore(record.get()); });
    });
}
BENCHMARK(SwapObjects)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Against fetching each object by a walk from the first one.
void FetchAgainstWalking(benchmark::State& state) {
    const State plugin;
    HandleOwner record(EmptyRecord()), object;
    Append(record, kFewObjects);
    double walking = 0, offsets = 0;
    for (auto _ : state) {
        walking = Seconds([&] {
            for (int32_t i = kFewObjects - 1; i >= 0; --i) GetAIDBObj(record.get(), i, object.get());
        });
        offsets = BestSeconds([&] { return Seconds([&] { FetchByOffsets(record.get(), object); }); });
    }
    state.counters["gain"] = walking / offsets;
}
BENCHMARK(FetchAgainstWalking)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
