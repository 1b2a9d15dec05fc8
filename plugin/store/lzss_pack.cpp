#include <algorithm>
#include <array>
#include <limits>

#include "plugin/store/lzss.h"
#include "plugin/store/lzss_form.h"
#include "plugin/store/lzss_ranks.h"
#include "plugin/store/lzss_unit.h"
#include "plugin/store/lzss_window.h"
#include "plugin/store/lzss_writer.h"
#include "plugin/store/memory_handle.h"

// After a long run of zeros nothing but their string is left in the window, and what follows up to the next
// such run is a unit that can be packed with little ado (lzss_unit.h); the objects of a stream are mostly
// such units.
//
// All else goes through in blocks.  In each, the strings of 18 bytes at its places, and those that are left
// from the block before, are put in order first; then each place's string enters the window and the one that
// falls out of the ring leaves it.  A string that stands one to four bytes back as well goes on with a run,
// as most of a stream and of a preview does: it has the rank of that one, and is neither sorted nor searched.

namespace {

constexpr uint32_t kBlockBytes = 0x8000;
constexpr uint32_t kHistory = kRingBytes;              ///< bytes of the text in front of a block
constexpr uint32_t kReach = kRingBytes - kLongest + 1; ///< a string that is so far back has left the window
constexpr uint32_t kLongestPeriod = 4;                 ///< a pixel
static_assert(kBlockBytes + kRingBytes <= kMostStrings);
static_assert(kHistory + kBlockBytes <= std::numeric_limits<uint16_t>::max());

/// Neighbouring places of a block that all go on with runs of the same period, or, with period 0, with none.
struct Span {
    uint16_t end;
    uint16_t period;
};

/// A string that is left from the block before.
struct Left {
    int64_t age;
    uint32_t place;
};

/// What a call needs, in one zeroed block of memory.
struct Packer {
    std::array<uint8_t, kHistory + kBlockBytes + kLongest + 2 * sizeof(uint64_t)> text;
    std::array<Span, kBlockBytes> spans;
    uint32_t spanCount;
    std::array<Left, kRingBytes> left;
    uint32_t leftCount;
    uint32_t inItem; ///< places that the last item still covers
    StringRanks strings;
    MatchWindow window;
    UnitMemory unit;
};

/// One block: the places in the text from kHistory to `end`.
struct Block {
    uint32_t end;
    uint32_t inputEnd; ///< place of the input's end, or of one that is out of reach
    int64_t firstAge;  ///< of place 0
};

uint32_t PeriodAt(const uint8_t* string) {
    const uint64_t start = LoadEight(string);
    for (uint32_t period = 1; period <= kLongestPeriod; ++period)
        if (start == LoadEight(string - period) && AllCommon(string, string - period)) return period;
    return 0;
}

// How many of up to `most` bytes equal the ones `period` before them.
uint32_t RunBytes(const uint8_t* bytes, uint32_t period, uint32_t most) {
    uint32_t count = 0;
    for (; count < most; count += sizeof(uint64_t)) {
        if (const uint64_t difference = LoadEight(bytes + count) ^ LoadEight(bytes + count - period))
            return std::min(most, count + FirstDifference(difference));
    }
    return most;
}

void FindSpans(Packer& packer, uint32_t end) {
    StringRanks& strings = packer.strings;
    packer.spanCount = 0;
    uint32_t place = kHistory;
    while (place < end) {
        const uint8_t* string = &packer.text[place];
        uint32_t period = PeriodAt(string);
        if (period != 0) {
            place += 1 + RunBytes(string + kLongest, period, end - place - 1);
        } else {
            do strings.strings[strings.count++] = place++;
            while (place < end && (period = PeriodAt(&packer.text[place])) == 0);
            period = 0;
        }
        packer.spans[packer.spanCount++] = {static_cast<uint16_t>(place), static_cast<uint16_t>(period)};
    }
}

// Puts what is left from the block before into the window, under the ranks of this one.
void FillWindow(Packer& packer, uint32_t ringOffset) {
    ClearWindow(packer.window, packer.strings, ringOffset);
    for (uint32_t i = 0; i < packer.leftCount; ++i) {
        const Left& left = packer.left[i];
        const uint32_t rank = packer.strings.ranks[left.place];
        if (packer.window.Has(rank)) {
            ReplaceString(packer.window, rank, left.place);
        } else {
            AddString(packer.window, rank, left.place, left.age);
        }
    }
}

void KeepWindow(Packer& packer, uint32_t blockBytes) {
    const MatchWindow& window = packer.window;
    packer.leftCount = 0;
    for (uint32_t i = 0; i < packer.window.presentAt.size(); ++i) {
        for (uint64_t there = window.presentAt[i]; there != 0; there &= there - 1) {
            const uint32_t rank = window.rankAt[i * 64 + static_cast<uint32_t>(std::countr_zero(there))];
            packer.left[packer.leftCount++] = {window.ages[rank], window.places[rank] - blockBytes};
        }
    }
}

bool PutItem(Packer& packer, const Block& block, GroupWriter& writer, uint32_t place, Match match) {
    // At the end of the input a string goes on into what is left of the round before.
    match.bytes = std::min(match.bytes, block.inputEnd - place);
    if (match.bytes < kShortest) {
        packer.inItem = 1;
        return writer.Literal(packer.text[place]);
    }
    packer.inItem = match.bytes;
    return writer.Pair(packer.window.RingPlace(match.place), match.bytes);
}

// Moves the window on by one place.
bool Advance(Packer& packer, const Block& block, GroupWriter& writer, uint32_t place, uint32_t rank) {
    MatchWindow& window = packer.window;
    RemoveString(window, window.RingPlace(place - kReach));
    const bool starts = packer.inItem == 0;
    if (window.Has(rank)) {
        if (starts && !PutItem(packer, block, writer, place, {window.places[rank], kLongest})) return false;
        ReplaceString(window, rank, place);
    } else {
        AddString(window, rank, place, block.firstAge + place);
        if (starts && !PutItem(packer, block, writer, place, FindMatch(window, packer.text.data(), rank)))
            return false;
    }
    --packer.inItem;
    return true;
}

// Moves the strings of a run's last period on to its end.
void MoveRun(MatchWindow& window, uint32_t from, uint32_t end, uint32_t period) {
    const uint32_t otherwise = std::min(end - kReach, from - period);
    if (otherwise > from - kReach)
        RemoveStrings(window, window.RingPlace(from - kReach), otherwise - (from - kReach));
    std::array<uint16_t, kLongestPeriod> ranks{};
    for (uint32_t i = 0; i < period; ++i) {
        const uint32_t old = window.RingPlace(from - period + i);
        ranks[i] = window.rankAt[old];
        window.presentAt[old / 64] &= ~(uint64_t{1} << (old % 64));
    }
    for (uint32_t place = end - period; place < end; ++place) {
        const uint32_t rank = ranks[(place - from) % period], ringPlace = window.RingPlace(place);
        window.rankAt[ringPlace] = static_cast<uint16_t>(rank);
        window.presentAt[ringPlace / 64] |= uint64_t{1} << (ringPlace % 64);
        window.places[rank] = static_cast<uint16_t>(place);
    }
}

bool PackRun(Packer& packer, const Block& block, GroupWriter& writer, uint32_t place, const Span& span) {
    const uint32_t period = span.period;
    // The first ones may stand elsewhere as well, at the start; and a short rest isn't worth more.
    const uint32_t singly = std::min<uint32_t>(span.end, place + period);
    const bool isShort = span.end - singly < 2 * period;
    for (const uint32_t end = isShort ? span.end : singly; place < end; ++place) {
        if (!Advance(packer, block, writer, place,
                     packer.window.rankAt[packer.window.RingPlace(place - period)]))
            return false;
    }
    if (isShort) return true;
    MoveRun(packer.window, place, span.end, period);
    place += std::min(packer.inItem, span.end - place);
    packer.inItem -= place - singly;
    const uint32_t whole = (std::min<uint32_t>(span.end, block.inputEnd) - place) / kLongest;
    if (!writer.Pairs(packer.window.RingPlace(place - period), whole)) return false;
    place += whole * kLongest;
    while (place < span.end) {
        if (!PutItem(packer, block, writer, place, {place - period, kLongest})) return false;
        const uint32_t step = std::min(packer.inItem, span.end - place);
        packer.inItem -= step;
        place += step;
    }
    return true;
}

bool PackBlock(Packer& packer, const Block& block, GroupWriter& writer) {
    uint32_t place = kHistory;
    for (uint32_t i = 0; i < packer.spanCount; ++i) {
        const Span& span = packer.spans[i];
        if (span.period != 0) {
            if (!PackRun(packer, block, writer, place, span)) return false;
            place = span.end;
            continue;
        }
        for (; place < span.end; ++place) {
            if (!Advance(packer, block, writer, place, packer.strings.ranks[place])) return false;
        }
    }
    return true;
}

// The strings before the start go in from the nearest to the farthest.
void StartWindow(Packer& packer) {
    for (uint32_t back = 1; back <= kLongest; ++back)
        packer.left[packer.leftCount++] = {static_cast<int64_t>(back) - kRingBytes, kHistory - back};
}

// Goes on behind a unit: all before is zeros, and their last string alone is in the window.
void StartBehindZeros(Packer& packer, size_t start) {
    std::fill_n(packer.text.begin(), kHistory, uint8_t{0});
    packer.leftCount = 1;
    packer.left[0] = {static_cast<int64_t>(start), kHistory - 1};
}

bool PackNextBlock(Packer& packer, std::span<const uint8_t> plain, size_t start, uint32_t bytes,
                   GroupWriter& writer) {
    const auto rest = plain.subspan(start);
    const auto read = static_cast<uint32_t>(std::min<size_t>(rest.size(), bytes + kLongest));
    std::memcpy(&packer.text[kHistory], rest.data(), read);
    // Behind the input the ring still holds what came a round before.
    for (uint32_t i = read; i < bytes + kLongest; ++i)
        packer.text[kHistory + i] = packer.text[kHistory + i - kRingBytes];
    packer.strings.count = packer.leftCount;
    for (uint32_t i = 0; i < packer.leftCount; ++i) packer.strings.strings[i] = packer.left[i].place;
    const Block block{kHistory + bytes, kHistory + read, static_cast<int64_t>(start)};
    FindSpans(packer, block.end);
    RankStrings(packer.strings, packer.text.data());
    FillWindow(packer, static_cast<uint32_t>((start + kFirstPlace) & (kRingBytes - 1)));
    if (!PackBlock(packer, block, writer)) return false;
    KeepWindow(packer, bytes);
    std::memmove(packer.text.data(), &packer.text[bytes], kHistory);
    return true;
}

} // namespace

std::optional<uint64_t> PackLzss(std::span<const uint8_t> plain, std::span<uint8_t> packed) {
    GroupWriter writer(packed);
    if (plain.empty()) return 0;
    HandleOwner memory(NewHandle(sizeof(Packer), kSmallGrain));
    if (memory.bytes() == nullptr) return std::nullopt;
    Packer& packer = *reinterpret_cast<Packer*>(memory.bytes());
    StartWindow(packer);
    bool onlyZeros = false; // in the window
    for (size_t start = 0; start < plain.size();) {
        const ZeroRun run = FindZeroRun(plain, start, start + kBlockBytes);
        if (onlyZeros && run.end != 0 && run.start - start <= kMostUnitBytes) {
            if (!PackUnit(packer.unit, plain, start, run, packer.inItem, writer)) return std::nullopt;
            start = run.end - kLongest + 1;
            StartBehindZeros(packer, start);
            continue;
        }
        size_t end = std::min(plain.size(), start + kBlockBytes);
        if (run.end != 0) end = std::min(end, run.end - kLongest + 1);
        if (!PackNextBlock(packer, plain, start, static_cast<uint32_t>(end - start), writer))
            return std::nullopt;
        onlyZeros = run.end != 0 && end >= run.start + kResettingZeros;
        start = end;
    }
    return writer.used();
}
