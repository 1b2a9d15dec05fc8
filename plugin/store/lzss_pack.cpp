#include <algorithm>
#include <array>
#include <utility>

#include "plugin/store/lzss.h"
#include "plugin/store/lzss_form.h"
#include "plugin/store/lzss_run.h"
#include "plugin/store/lzss_sorted.h"
#include "plugin/store/lzss_tree.h"
#include "plugin/store/lzss_unit.h"
#include "plugin/store/lzss_writer.h"
#include "plugin/store/memory_handle.h"

// Strings go into trees as the form says, but for those of runs, which most of a stream and of a preview
// consists of: the string of a run stands in the tree already, wherever the run ends.

namespace {

constexpr uint32_t kReach = kRingBytes - kLongest + 1; ///< a string that is so far back has left the window
constexpr uint32_t kSlack = 32;                        ///< readable behind the last place of a piece
constexpr uint32_t kPieceBytes = 2 * kRingBytes;

// Trees that took more steps have become lists, as the strings of a ramp come in order.
constexpr uint64_t kFreeSteps = 5'000;
constexpr uint64_t kStepsForString = 16;

enum class Outcome { kDone, kNoRoom, kTooSlow };

/// What a call needs, in one zeroed block of memory.
struct Packer {
    MatchTree tree;
    UnitMemory unit;
    std::array<uint8_t, kRingBytes + kPieceBytes + kSlack> text; ///< of a piece at the input's start or end
    uint32_t inItem;                                             ///< places that the last item still covers
};

/// Places that follow each other in memory, with the ring's bytes in front.
struct Piece {
    const uint8_t* text;
    size_t count;
    size_t inputBytes;  ///< from the first place to the input's end
    uint32_t ringPlace; ///< of the first place

    uint32_t RingPlace(size_t place) const {
        return static_cast<uint32_t>(ringPlace + place) & (kRingBytes - 1);
    }
};

bool PutItem(Packer& packer, const Piece& piece, GroupWriter& writer, size_t place, Match match) {
    // At the end of the input a string goes on into what is left of the round before.
    match.bytes = static_cast<uint32_t>(std::min<size_t>(match.bytes, piece.inputBytes - place));
    if (match.bytes < kShortest) {
        packer.inItem = 1;
        return writer.Literal(piece.text[place]);
    }
    packer.inItem = match.bytes;
    return writer.Pair(match.place, match.bytes);
}

// Moves the window on to the end of a run; its strings were the last `period` ones.
void MoveRun(MatchTree& tree, const Piece& piece, size_t from, size_t end, uint32_t period) {
    if (period == 1 && piece.text[from] == 0 && end - from >= kReach)
        return KeepZeros(tree, piece.RingPlace(end - 1));
    const size_t leaving = std::min<size_t>(end - from, kReach - period);
    RemoveStrings(tree, piece.RingPlace(from - kReach), static_cast<uint32_t>(leaving));
    const size_t first = std::max(from, end - std::min<size_t>(end, period));
    std::array<uint16_t, kLongestPeriod> nodes{}; // the ring may bring old places and new ones together
    for (size_t place = first; place < end; ++place)
        nodes[place - first] =
            std::exchange(tree.nodeAt[piece.RingPlace(from + (place - from) % period - period)], uint16_t{0});
    for (size_t place = first; place < end; ++place)
        PlaceNode(tree, nodes[place - first], piece.RingPlace(place));
}

bool PackRun(Packer& packer, const Piece& piece, GroupWriter& writer, size_t from, size_t end,
             uint32_t period) {
    MoveRun(packer.tree, piece, from, end, period);
    size_t place = from + packer.inItem;
    if (place < end) {
        const size_t whole = (std::min(end, piece.inputBytes) - std::min(place, piece.inputBytes)) / kLongest;
        if (!writer.Pairs(piece.RingPlace(place - period), whole)) return false;
        place += whole * kLongest;
        for (; place < end; place += packer.inItem) {
            if (!PutItem(packer, piece, writer, place, {piece.RingPlace(place - period), kLongest}))
                return false;
        }
    }
    packer.inItem = static_cast<uint32_t>(place - end);
    return true;
}

// Packs the units between long runs of zeros that begin here, where all before is zeros.
bool PackUnits(Packer& packer, const Piece& piece, GroupWriter& writer, size_t& place) {
    const std::span bytes(piece.text, piece.count);
    const size_t first = place;
    for (;;) {
        const ZeroRun run = FindZeroRun(bytes, place, place + kMostUnitBytes + 1);
        if (run.end == 0) break;
        const Unit unit{bytes, place, run, piece.RingPlace(place)};
        if (!PackUnit(packer.unit, unit, packer.inItem, writer)) return false;
        place = unit.end();
    }
    if (place != first) KeepZeros(packer.tree, piece.RingPlace(place - 1));
    return true;
}

Outcome PackPiece(Packer& packer, const Piece& piece, GroupWriter& writer) {
    MatchTree& tree = packer.tree;
    uint32_t matched = 0; // how far back the last string stood
    for (size_t place = 0; place < piece.count;) {
        const uint8_t* string = piece.text + place;
        if (matched != 0) {
            // Where the last string stood, this one may follow as well, with no later one between.
            const uint32_t old = piece.RingPlace(place - matched);
            if (tree.nodeAt[old] != 0 && string[kLongest - 1] == (string - matched)[kLongest - 1]) {
                RemoveString(tree, piece.RingPlace(place - kReach));
                PlaceNode(tree, std::exchange(tree.nodeAt[old], uint16_t{0}), piece.RingPlace(place));
                if (packer.inItem == 0 && !PutItem(packer, piece, writer, place, {old, kLongest}))
                    return Outcome::kNoRoom;
                --packer.inItem;
                ++place;
                continue;
            }
            matched = 0;
        }
        const uint32_t period = PeriodAt(string);
        // Before the start a string may stand that is in no tree.
        if (period != 0 && tree.nodeAt[piece.RingPlace(place - period)] != 0) {
            const size_t end = place + 1 + RunBytes(string + kLongest, period, piece.count - place - 1);
            if (!PackRun(packer, piece, writer, place, end, period)) return Outcome::kNoRoom;
            const bool onlyZeros = string[0] == 0 && period == 1 && end - place >= kReach;
            place = end;
            if (onlyZeros && !PackUnits(packer, piece, writer, place)) return Outcome::kNoRoom;
            continue;
        }
        RemoveString(tree, piece.RingPlace(place - kReach));
        const Match match = InsertString(tree, string, piece.RingPlace(place), packer.inItem == 0);
        matched = match.bytes == kLongest ? (piece.RingPlace(place) - match.place) & (kRingBytes - 1) : 0;
        if (packer.inItem == 0 && !PutItem(packer, piece, writer, place, match)) return Outcome::kNoRoom;
        --packer.inItem;
        ++place;
        if (tree.steps > kFreeSteps + kStepsForString * tree.inserted) return Outcome::kTooSlow;
    }
    return Outcome::kDone;
}

// A piece in memory of its own, with zeros in front of the input's start.  Behind the input's end the ring
// still holds what came a round before.
Piece CopyPiece(Packer& packer, std::span<const uint8_t> plain, size_t start, size_t count) {
    const size_t before = std::min<size_t>(start, kRingBytes);
    const size_t read = std::min<size_t>(plain.size() - start, count + kSlack);
    uint8_t* const text = &packer.text[kRingBytes];
    std::memcpy(text - before, &plain[start - before], before + read);
    for (size_t i = read; i < count + kSlack; ++i)
        text[i] = text[static_cast<std::ptrdiff_t>(i) - kRingBytes];
    return {text, count, plain.size() - start, 0};
}

Outcome PackByTrees(std::span<const uint8_t> plain, GroupWriter& writer) {
    HandleOwner memory(NewHandle(sizeof(Packer), kSmallGrain));
    if (memory.bytes() == nullptr) return Outcome::kNoRoom;
    Packer& packer = *reinterpret_cast<Packer*>(memory.bytes());
    for (size_t start = 0; start < plain.size();) {
        const size_t rest = plain.size() - start;
        Piece piece = rest > kPieceBytes && start > 0
                          ? Piece{plain.data() + start, rest - kSlack, rest, 0}
                          : CopyPiece(packer, plain, start, std::min<size_t>(rest, kPieceBytes));
        piece.ringPlace = static_cast<uint32_t>((kFirstPlace + start) & (kRingBytes - 1));
        // The strings before the start go in from the nearest to the farthest.
        for (uint32_t back = 1; start == 0 && back <= kLongest; ++back)
            InsertString(packer.tree, piece.text - back, kFirstPlace - back, false);
        const Outcome outcome = PackPiece(packer, piece, writer);
        if (outcome != Outcome::kDone) return outcome;
        start += piece.count;
    }
    return Outcome::kDone;
}

} // namespace

std::optional<uint64_t> PackLzss(std::span<const uint8_t> plain, std::span<uint8_t> packed) {
    GroupWriter writer(packed);
    const Outcome outcome = PackByTrees(plain, writer);
    if (outcome == Outcome::kDone) return writer.used();
    return outcome == Outcome::kTooSlow ? PackSorted(plain, packed) : std::nullopt;
}
