/// The double-byte characters of cp932 that a search takes for a single-byte one: the full-width forms of
/// digits, letters and signs, and the katakana middle dot.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

/// Characters with codes that follow each other, on both sides.
struct WidthRow {
    uint16_t fullWidth; ///< of the first one: lead byte, trail byte
    uint8_t halfWidth;
    uint8_t count;
};

// clang-format off
inline constexpr WidthRow kWidthTable[] = {
    {0x824F, '0', 10}, {0x8260, 'A', 26}, {0x8281, 'a', 26},
    {0x8149, '!', 1}, {0x8168, '"', 1}, {0x8194, '#', 1}, {0x8190, '$', 1}, {0x8193, '%', 1},
    {0x8195, '&', 1}, {0x8166, '\'', 1}, {0x8169, '(', 1}, {0x816A, ')', 1}, {0x8181, '=', 1},
    {0x8160, '~', 1}, {0x8162, '|', 1}, {0x818F, '\\', 1}, {0x816D, '[', 1}, {0x816E, ']', 1},
    {0x816F, '{', 1}, {0x8170, '}', 1}, {0x8183, '<', 1}, {0x8184, '>', 1}, {0x8197, '@', 1},
    {0x8196, '*', 1}, {0x817B, '+', 1}, {0x817C, '-', 1}, {0x8151, '_', 1}, {0x8143, ',', 1},
    {0x8144, '.', 1}, {0x814F, '^', 1}, {0x8147, ';', 1}, {0x8146, ':', 1},
    {0x8145, 0xA5, 1}, // the middle dot, in half-width katakana
};
// clang-format on

namespace width_table {

/// The half-width bytes of the trail bytes behind the table's two lead bytes; 0: none.
struct HalfWidths {
    uint8_t of[2][256];
};

constexpr uint8_t kFirstLead = 0x81;

constexpr HalfWidths MakeHalfWidths() {
    HalfWidths halves{};
    for (const WidthRow& row : kWidthTable) {
        for (size_t i = 0; i < row.count; ++i) {
            const size_t code = row.fullWidth + i;
            halves.of[(code >> 8) - kFirstLead][code & 0xFF] = static_cast<uint8_t>(row.halfWidth + i);
        }
    }
    return halves;
}

constexpr size_t CountPairs() {
    const HalfWidths halves = MakeHalfWidths();
    size_t pairs = 0;
    for (const auto& row : halves.of) {
        for (const uint8_t half : row) pairs += half != 0;
    }
    return pairs;
}
static_assert(CountPairs() == 92);

inline constexpr HalfWidths kHalfWidths = MakeHalfWidths();

} // namespace width_table

/// The half-width byte of a double-byte character, 0 if it has none.
constexpr uint8_t HalfWidthOf(uint8_t lead, uint8_t trail) {
    const int row = lead - width_table::kFirstLead;
    return row == 0 || row == 1 ? width_table::kHalfWidths.of[row][trail] : uint8_t{0};
}
