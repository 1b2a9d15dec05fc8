#include "plugin/store/record_order.h"

#include <array>
#include <utility>

namespace {

// From the lowest digit up.  Digits that all keys have in common, such as the zeros behind short texts, are
// passed over.
template <uint32_t kDigitBits>
void SortByDigitsOf(std::span<SortEntry> entries, std::span<SortEntry> spare) {
    constexpr uint32_t kDigits = (64 + kDigitBits - 1) / kDigitBits;
    constexpr uint32_t kDigitValues = 1u << kDigitBits;
    const auto digit = [](uint64_t key, uint32_t pass) {
        return key >> (kDigitBits * pass) & (kDigitValues - 1);
    };
    std::array<std::array<uint32_t, kDigitValues>, kDigits> ends{};
    for (const SortEntry& entry : entries)
        for (uint32_t pass = 0; pass < kDigits; ++pass) ++ends[pass][digit(entry.key, pass)];
    std::span<SortEntry> from = entries, to = spare.first(entries.size());
    for (uint32_t pass = 0; pass < kDigits; ++pass) {
        if (ends[pass][digit(entries[0].key, pass)] == entries.size()) continue;
        uint32_t sum = 0;
        for (uint32_t& value : ends[pass]) sum += std::exchange(value, sum);
        for (const SortEntry& entry : from) to[ends[pass][digit(entry.key, pass)]++] = entry;
        std::swap(from, to);
    }
    if (from.data() != entries.data()) std::ranges::copy(from, entries.begin());
}

} // namespace

// Fewer digits are worth it where there are more entries than a digit has values.
void SortByDigits(std::span<SortEntry> entries, std::span<SortEntry> spare) {
    constexpr size_t kMany = 4096;
    if (entries.size() < kMany) {
        SortByDigitsOf<8>(entries, spare);
    } else {
        SortByDigitsOf<11>(entries, spare);
    }
}
