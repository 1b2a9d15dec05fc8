/// Packing and unpacking against their peers, each peer over the same bytes in the same run.
///
/// The bodies of real records come from group files: `VELQUORNE_BENCH_GROUPS=a.AID:b.AID bench_lzss`; without
/// them only the bodies made here are measured.  All times are by the clock, for packing takes two threads;
/// the peers have one each.  `over_classic` and `over_zlib` are a peer's time divided by the
/// store's, `of_memcpy` is memcpy's time divided by the store's; `mb` is the store's megabytes of plain
/// bytes in a second.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "plugin/objects/object_layout.h"
#include "plugin/store/lzss.h"
#include "plugin/store/record_layout.h"
#include "tests/plugin/store/classic_lzss.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr size_t kMostStreamBytes = 64'000'000; ///< enough of them, and short rounds
constexpr size_t kMostPreviews = 200;

struct Bodies {
    std::vector<Bytes> plain, packed;

    void Add(Bytes bytes) {
        packed.push_back(ClassicPack(bytes));
        plain.push_back(std::move(bytes));
    }
    size_t plainBytes() const {
        size_t sum = 0;
        for (const Bytes& bytes : plain) sum += bytes.size();
        return sum;
    }
    size_t longest() const {
        size_t most = 0;
        for (const Bytes& bytes : plain) most = std::max(most, bytes.size());
        return most;
    }
};

uint32_t FileWord(const Bytes& file, size_t at) {
    uint32_t word = 0;
    for (size_t i = 0; i < 4; ++i) word = word << 8 | file[at + i];
    return word;
}

void PutWord(Bytes& bytes, size_t at, uint32_t word) {
    for (size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<uint8_t>(word >> (24 - 8 * i));
}

// Whether any path of a stream in file order is filled with a gradient.
bool HoldsGradient(const Bytes& stream) {
    for (size_t at = 0; at + sizeof(AidbObjectHeader) <= stream.size();) {
        const uint32_t kind = FileWord(stream, at), size = FileWord(stream, at + 4);
        if (size < sizeof(AidbObjectHeader) || size > stream.size() - at) return false;
        const size_t ramp = at + offsetof(AidbPathObject, block) + offsetof(AidbGradientBlock, ramp);
        if (kind == kPathObject && size >= kPathBaseBytes && (stream[ramp] | stream[ramp + 3])) return true;
        at += size;
    }
    return false;
}

struct RealBodies {
    Bodies previews, streams, gradientStreams, allStreams;
};

void ReadGroup(const std::string& path, RealBodies& real) {
    std::ifstream in(path, std::ios::binary);
    const Bytes file((std::istreambuf_iterator<char>(in)), {});
    for (size_t at = kCountBytes; at + kSmallestRecordBytes <= file.size(); at += FileWord(file, at + 4)) {
        const size_t preview = FileWord(file, at + 416), objects = FileWord(file, at + 420);
        const auto body = [&](size_t from, size_t bytes) {
            const auto start = file.begin() + static_cast<std::ptrdiff_t>(at + 424 + from);
            return ClassicUnpack(Bytes(start, start + static_cast<std::ptrdiff_t>(bytes)));
        };
        if (real.previews.plain.size() < kMostPreviews) real.previews.Add(body(0, preview));
        Bytes stream = body(preview, objects);
        if (real.allStreams.plainBytes() + stream.size() > kMostStreamBytes) continue;
        (HoldsGradient(stream) ? real.gradientStreams : real.streams).Add(stream);
        real.allStreams.Add(std::move(stream));
    }
}

const RealBodies& Real() {
    static const RealBodies real = [] {
        RealBodies read;
        const char* paths = std::getenv("VELQUORNE_BENCH_GROUPS");
        std::istringstream list(paths ? paths : "");
        for (std::string path; std::getline(list, path, ':');) ReadGroup(path, read);
        return read;
    }();
    return real;
}

// Paths with gradients of two to five stops and a dozen points, all numbers different.
const Bodies& GradientObjects() {
    static const Bodies made = [] {
        Bytes stream;
        uint32_t noise = 1;
        const auto next = [&] { return (noise = noise * 1664525 + 1013904223) >> 8; };
        for (int i = 0; i < 400; ++i) {
            const uint32_t segments = 4 + next() % 16, stops = 2 + next() % 4;
            const auto bytes = static_cast<uint32_t>(kPathBaseBytes + segments * sizeof(AidbSegment));
            Bytes object(bytes);
            PutWord(object, 0, kPathObject);
            PutWord(object, 4, bytes);
            for (size_t at = 12; at < 24; at += 4) PutWord(object, at, next());
            object[25] = object[29] = 1;
            for (size_t at = 36; at < 64; at += 4) PutWord(object, at, next());
            const size_t ramp = offsetof(AidbPathObject, block) + offsetof(AidbGradientBlock, ramp);
            object[ramp + 1] = static_cast<uint8_t>(i & 1);
            object[ramp + 3] = static_cast<uint8_t>(stops);
            for (size_t stop = 0; stop < stops; ++stop) {
                const size_t at = ramp + 4 + stop * sizeof(AidbGradientStop);
                PutWord(object, at, 0x320000);
                PutWord(object, at + 4, next() % 0x640000);
                object[at + 9] = 2;
                for (size_t channel = 0; channel < 3; ++channel)
                    PutWord(object, at + 12 + 4 * channel, next() & 0xFFFF);
            }
            object[kPathBaseBytes - 1] = static_cast<uint8_t>(segments);
            for (size_t at = kPathBaseBytes; at + 4 <= bytes; at += 4)
                PutWord(object, at, next() & 0x1FFFFFF);
            stream.insert(stream.end(), object.begin(), object.end());
        }
        Bodies bodies;
        bodies.Add(std::move(stream));
        return bodies;
    }();
    return made;
}

// Previews filled from edge to edge, whose colours go up by one from pixel to pixel or from row to row, so
// that the strings of a first byte come in order.
const Bodies& Ramps() {
    static const Bodies made = [] {
        Bodies bodies;
        for (int kind = 0; kind < 5; ++kind) {
            Bytes preview;
            for (int y = 0; y < 128; ++y) {
                for (int x = 0; x < 128; ++x) {
                    const int pixel = 128 * y + x;
                    const int colours[][3] = {{pixel >> 8, pixel & 255, 0},
                                              {pixel >> 8, pixel & 255, pixel & 255},
                                              {y, y, x},
                                              {y, x, 255 - y},
                                              {x + y, x + y, x + y}};
                    preview.push_back(0);
                    for (const int channel : colours[kind]) preview.push_back(static_cast<uint8_t>(channel));
                }
            }
            bodies.Add(std::move(preview));
        }
        return bodies;
    }();
    return made;
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The sum of each body's best of some rounds, so that a busy machine shows as little as can be.
template <typename Work>
double BestSeconds(int rounds, const Bodies& bodies, Work work) {
    double sum = 0;
    for (size_t body = 0; body < bodies.plain.size(); ++body) {
        double best = std::numeric_limits<double>::infinity();
        for (int i = 0; i < rounds; ++i) {
            const auto start = std::chrono::steady_clock::now();
            work(bodies.plain[body], bodies.packed[body]);
            best = std::min(best, SecondsSince(start));
        }
        sum += best;
    }
    return sum;
}

// Gives the room of one deflate state to all bodies, which is kinder to it than one for each.
double ZlibSeconds(const Bodies& bodies) {
    z_stream stream{};
    deflateInit(&stream, 6);
    Bytes out(compressBound(bodies.longest()));
    const double seconds = BestSeconds(5, bodies, [&](const Bytes& plain, const Bytes&) {
        deflateReset(&stream);
        stream.next_in = const_cast<uint8_t*>(plain.data());
        stream.avail_in = static_cast<uInt>(plain.size());
        stream.next_out = out.data();
        stream.avail_out = static_cast<uInt>(out.size());
        deflate(&stream, Z_FINISH);
    });
    deflateEnd(&stream);
    return seconds;
}

void PackBodies(benchmark::State& state, const Bodies& bodies) {
    if (bodies.plain.empty()) return state.SkipWithError("no bodies: VELQUORNE_BENCH_GROUPS is not set");
    Bytes out(MostPackedBytes(bodies.longest()));
    double ours = 0, classic = 0, zlib = 0;
    for (auto _ : state) {
        classic = BestSeconds(5, bodies, [&](const Bytes& plain, const Bytes&) {
            ClassicPack(plain.data(), plain.size(), out.data());
        });
        ours = BestSeconds(10, bodies, [&](const Bytes& plain, const Bytes&) { PackLzss(plain, out); });
        zlib = ZlibSeconds(bodies);
    }
    for (size_t i = 0; i < bodies.plain.size(); ++i) {
        const auto bytes = PackLzss(bodies.plain[i], out);
        if (!bytes || !std::equal(bodies.packed[i].begin(), bodies.packed[i].end(), out.begin(),
                                  out.begin() + static_cast<std::ptrdiff_t>(*bytes)))
            return state.SkipWithError("packed otherwise than by the classic coder");
    }
    state.counters["mb"] = static_cast<double>(bodies.plainBytes()) / ours / 1e6;
    state.counters["over_classic"] = classic / ours;
    state.counters["over_zlib"] = zlib / ours;
}

void UnpackBodies(benchmark::State& state, const Bodies& bodies) {
    if (bodies.plain.empty()) return state.SkipWithError("no bodies: VELQUORNE_BENCH_GROUPS is not set");
    Bytes out(bodies.longest());
    double ours = 0, classic = 0, copy = 0;
    for (auto _ : state) {
        classic = BestSeconds(15, bodies, [&](const Bytes&, const Bytes& packed) {
            ClassicUnpack(packed.data(), packed.size(), out.data());
        });
        // As a record is read: a preview has its size, a stream's has to be found.
        ours = BestSeconds(15, bodies, [&](const Bytes& plain, const Bytes& packed) {
            const bool isPreview = plain.size() == kPreviewBytes;
            UnpackLzss(packed, std::span(out).first(isPreview ? kPreviewBytes : UnpackedLzssBytes(packed)));
        });
        copy = BestSeconds(15, bodies, [&](const Bytes& plain, const Bytes&) {
            if (!plain.empty()) std::memcpy(out.data(), plain.data(), plain.size());
            benchmark::ClobberMemory();
        });
    }
    for (size_t i = 0; i < bodies.plain.size(); ++i) {
        const std::span<uint8_t> room = std::span(out).first(bodies.plain[i].size());
        if (UnpackLzss(bodies.packed[i], room) != room.size() || !std::ranges::equal(room, bodies.plain[i]))
            return state.SkipWithError("unpacked wrongly");
    }
    state.counters["mb"] = static_cast<double>(bodies.plainBytes()) / ours / 1e6;
    state.counters["over_classic"] = classic / ours;
    state.counters["of_memcpy"] = copy / ours;
}

#define MEASURE(work, name, bodies) \
    BENCHMARK_CAPTURE(work, name, bodies)->Iterations(1)->Unit(benchmark::kMillisecond)
MEASURE(PackBodies, all_streams, Real().allStreams);
MEASURE(PackBodies, streams, Real().streams);
MEASURE(PackBodies, gradient_streams, Real().gradientStreams);
MEASURE(PackBodies, gradient_objects, GradientObjects());
MEASURE(PackBodies, previews, Real().previews);
MEASURE(PackBodies, ramps, Ramps());
MEASURE(UnpackBodies, all_streams, Real().allStreams);
MEASURE(UnpackBodies, streams, Real().streams);
MEASURE(UnpackBodies, gradient_streams, Real().gradientStreams);
MEASURE(UnpackBodies, gradient_objects, GradientObjects());
MEASURE(UnpackBodies, previews, Real().previews);
MEASURE(UnpackBodies, ramps, Ramps());

} // namespace
