#include "plugin/store/lzss_walk.h"

#include <algorithm>
#include <array>

// In a block, at each place of the input the string of 18 bytes there enters the window, and the one that
// falls out of the ring leaves it.  A string that stands one to four bytes back as well goes on with a run,
// as most of a stream and of a preview does: it takes the place of that one, and is not looked for.

namespace {

/// One block: the places in the text from kHistory to `end`.
struct Block {
    uint32_t end;
    uint32_t inputEnd; ///< place of the input's end, or of one that is out of reach
    uint32_t firstAge; ///< of place 0
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

// Moves the window on by one place, whose string is no other's of a run.
bool Advance(Packer& packer, const Block& block, GroupWriter& writer, uint32_t place) {
    MatchWindow& window = packer.window;
    RemoveString(window, window.RingPlace(place - kReach));
    const Spot spot = FindSpot(window, packer.text.data(), place);
    const bool starts = packer.inItem == 0;
    if (spot.equal != kFirstString) {
        if (starts && !PutItem(packer, block, writer, place, {window.strings[spot.equal].place, kLongest}))
            return false;
        LeavePlace(window, spot.equal);
        SetPlace(window, spot.equal, place);
    } else {
        if (starts &&
            !PutItem(packer, block, writer, place, FindMatch(window, packer.text.data(), place, spot)))
            return false;
        AddString(window, spot, place, block.firstAge + place);
    }
    --packer.inItem;
    return true;
}

// The strings of a run's last period go on to its end; all that the run outlasts leave.
void AdvanceRun(MatchWindow& window, uint32_t from, uint32_t end, uint32_t period) {
    const uint32_t otherwise = std::min(end - kReach, from - period);
    if (otherwise > from - kReach)
        RemoveStrings(window, window.RingPlace(from - kReach), otherwise - (from - kReach));
    std::array<uint16_t, kLongestPeriod> strings{};
    for (uint32_t i = 0; i < period; ++i) {
        strings[i] = window.stringAt[window.RingPlace(from - period + i)];
        LeavePlace(window, strings[i]);
    }
    for (uint32_t place = end - period; place < end; ++place)
        SetPlace(window, strings[(place - from) % period], place);
}

bool PackRun(Packer& packer, const Block& block, GroupWriter& writer, uint32_t place, uint32_t end,
             uint32_t period) {
    MatchWindow& window = packer.window;
    // The first ones may stand elsewhere as well, at the start; and a short rest isn't worth more.
    const bool isShort = end - place < 3 * period;
    for (const uint32_t singly = isShort ? end : place + period; place < singly; ++place) {
        RemoveString(window, window.RingPlace(place - kReach));
        const uint32_t string = window.stringAt[window.RingPlace(place - period)];
        if (packer.inItem == 0 &&
            !PutItem(packer, block, writer, place, {window.strings[string].place, kLongest}))
            return false;
        LeavePlace(window, string);
        SetPlace(window, string, place);
        --packer.inItem;
    }
    window.nearPlace = end - 1 - period;
    if (isShort) return true;
    AdvanceRun(window, place, end, period);
    const uint32_t covered = std::min(packer.inItem, end - place);
    packer.inItem -= covered;
    place += covered;
    const uint32_t whole = (std::min(end, block.inputEnd) - place) / kLongest;
    if (!writer.Pairs(window.RingPlace(place - period), whole)) return false;
    place += whole * kLongest;
    while (place < end) {
        if (!PutItem(packer, block, writer, place, {place - period, kLongest})) return false;
        const uint32_t step = std::min(packer.inItem, end - place);
        packer.inItem -= step;
        place += step;
    }
    return true;
}

bool PackBlock(Packer& packer, const Block& block, GroupWriter& writer) {
    for (uint32_t place = kHistory; place < block.end;) {
        const uint8_t* string = &packer.text[place];
        const uint32_t period = PeriodAt(string);
        if (period == 0) {
            if (!Advance(packer, block, writer, place++)) return false;
            continue;
        }
        const uint32_t end = place + 1 + RunBytes(string + kLongest, period, block.end - place - 1);
        if (!PackRun(packer, block, writer, place, end, period)) return false;
        place = end;
    }
    return true;
}

// The strings before the start go in from the nearest to the farthest.
void StartWindow(Packer& packer) {
    MatchWindow& window = packer.window;
    InitWindow(window);
    window.ringOffset = (kFirstPlace - kHistory) & (kRingBytes - 1);
    for (uint32_t back = 1; back <= kLongest; ++back) {
        const uint32_t place = kHistory - back;
        const Spot spot = FindSpot(window, packer.text.data(), place);
        if (spot.equal != kFirstString) {
            LeavePlace(window, spot.equal);
            SetPlace(window, spot.equal, place);
        } else {
            AddString(window, spot, place, back);
        }
    }
}

// Goes on behind units: all before is zeros, and their last string alone is in the window.
void GoOnBehindZeros(Packer& packer, size_t bytes) {
    MatchWindow& window = packer.window;
    std::fill_n(packer.text.begin(), kHistory, uint8_t{0});
    MoveText(window, static_cast<uint32_t>(bytes & (kRingBytes - 1)));
    const uint32_t zeros = window.strings[kFirstString].behind;
    LeavePlace(window, zeros);
    SetPlace(window, zeros, kHistory - 1);
}

bool PackNextBlock(Packer& packer, std::span<const uint8_t> plain, size_t start, uint32_t bytes,
                   GroupWriter& writer) {
    const auto rest = plain.subspan(start);
    const auto read = static_cast<uint32_t>(std::min<size_t>(rest.size(), bytes + kLongest));
    std::memcpy(&packer.text[kHistory], rest.data(), read);
    // Behind the input the ring still holds what came a round before.
    for (uint32_t i = read; i < bytes + kLongest; ++i)
        packer.text[kHistory + i] = packer.text[kHistory + i - kRingBytes];
    if (start == 0) StartWindow(packer);
    if (!PackBlock(packer, {kHistory + bytes, kHistory + read, static_cast<uint32_t>(start)}, writer))
        return false;
    std::memmove(packer.text.data(), &packer.text[bytes], kHistory);
    MoveText(packer.window, bytes);
    return true;
}

} // namespace

PackWalk::PackWalk(std::span<const uint8_t> body, std::span<uint8_t> room)
    : memory(NewHandle(sizeof(Packer), kSmallGrain)), plain(body), writer(room) {}

void BeginBehindZeros(PackWalk& walk, size_t runEnd) {
    Packer& packer = walk.packer();
    MatchWindow& window = packer.window;
    InitWindow(window);
    walk.start = walk.blocksEnd = PlaceBehindZeros(runEnd);
    walk.onlyZeros = true;
    packer.inItem = kLongest - 1;
    window.ringOffset = static_cast<uint32_t>((walk.start + kFirstPlace - kHistory) & (kRingBytes - 1));
    AddString(window, FindSpot(window, packer.text.data(), kHistory - 1), kHistory - 1, 1);
}

bool PackLastZeros(PackWalk& walk) {
    // The string of zeros is the oldest of those that match as many.
    const auto zerosPlace = static_cast<uint32_t>((walk.start - 1 + kFirstPlace) & (kRingBytes - 1));
    const uint32_t left = kLongest - 1 - walk.packer().inItem;
    if (left >= kShortest) return walk.writer.Pair(zerosPlace, left);
    for (uint32_t i = 0; i < left; ++i)
        if (!walk.writer.Literal(0)) return false;
    return true;
}

bool PackNext(PackWalk& walk, size_t limit) {
    Packer& packer = walk.packer();
    const size_t start = walk.start;
    const ZeroRun run = FindZeroRun(walk.plain, start, start + kBlockBytes);
    if (walk.onlyZeros && run.end != 0 && run.start - start <= kMostUnitBytes &&
        PlaceBehindZeros(run.end) <= limit) {
        if (!PackUnit(packer.unit, walk.plain, start, run, packer.inItem, walk.writer)) return false;
        walk.start = PlaceBehindZeros(run.end);
        return true;
    }
    size_t end = std::min(limit, start + kBlockBytes);
    if (run.end != 0) end = std::min(end, PlaceBehindZeros(run.end));
    if (start != walk.blocksEnd) GoOnBehindZeros(packer, start - walk.blocksEnd);
    if (walk.onlyZeros) LeaveZerosAlone(packer.window);
    if (!PackNextBlock(packer, walk.plain, start, static_cast<uint32_t>(end - start), walk.writer))
        return false;
    walk.onlyZeros = run.end != 0 && end >= run.start + kResettingZeros;
    walk.start = walk.blocksEnd = end;
    return true;
}
