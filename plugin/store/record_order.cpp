#include "plugin/store/record_order.h"

#include <array>
#include <utility>

namespace {

constexpr uint32_t kDigitBits = 11;
constexpr uint32_t kDigits = (64 + kDigitBits - 1) / kDigitBits;
constexpr uint32_t kDigitValues = 1u << kDigitBits;

uint64_t Digit(uint64_t key, uint32_t pass) {
    return key >> (kDigitBits * pass) & (kDigitValues - 1);
}

} // namespace

// From the lowest digit up.  Digits that all keys have in common, such as the zeros behind short texts, are
// passed over.
void SortByDigits(std::span<SortEntry> entries, std::span<SortEntry> spare) {
    std::array<std::array<uint32_t, kDigitValues>, kDigits> ends{};
    for (const SortEntry& entry : entries)
        for (uint32_t pass = 0; pass < kDigits; ++pass) ++ends[pass][Digit(entry.key, pass)];
    std::span<SortEntry> from = entries, to = spare.first(entries.size());
    for (uint32_t pass = 0; pass < kDigits; ++pass) {
        if (ends[pass][Digit(entries[0].key, pass)] == entries.size()) continue;
        uint32_t sum = 0;
        for (uint32_t& value : ends[pass]) sum += std::exchange(value, sum);
        for (const SortEntry& entry : from) to[ends[pass][Digit(entry.key, pass)]++] = entry;
        std::swap(from, to);
    }
    if (from.data() != entries.data()) std::ranges::copy(from, entries.begin());
}
