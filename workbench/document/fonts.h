/// What tells the host about fonts.  The suites are given a list, so that they need no font library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace workbench {

struct FontEntry {
    std::string name; ///< stable, ASCII, at most 255 bytes, "Family-Style" without blanks; unique in the list
    /// The host's record of a font, word 1 first.  Words 3 to 14 are its class numbers; words 3 to 5 are
    /// equal for fonts that may stand in for each other.
    std::array<int32_t, 16> words{};
};

/// The fonts of this machine in an order that stays the same while the machine's fonts do.
class FontList {
public:
    virtual ~FontList() = default;
    virtual size_t Count() = 0;
    virtual const FontEntry& At(size_t index) = 0;
};

} // namespace workbench
