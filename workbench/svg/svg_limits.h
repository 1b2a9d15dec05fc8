/// How much one SVG file may ask for.  Real drawings stay far below; what exceeds one of these is refused,
/// or, where that is said, cut off and counted.
#pragma once

#include <cstddef>

namespace workbench {

inline constexpr size_t kMaxFileBytes = size_t{128} << 20;  ///< packed or unpacked
inline constexpr size_t kMaxMarkupSigns = 4'000'000;        ///< "<" in a file: bounds the parsed tree
inline constexpr size_t kMaxAttributeSigns = 16'000'000;    ///< "=" in a file
inline constexpr size_t kMaxEntityGrowth = size_t{8} << 20; ///< bytes that entities may add
inline constexpr int kMaxEntityDepth = 8;
inline constexpr int kMaxElementDepth =
    1100; ///< deeper elements are left out and counted, also through `use`
inline constexpr size_t kMaxRepeatedElements = 300'000; ///< visits beyond one for each element
inline constexpr size_t kMaxArt = 1'000'000;
inline constexpr size_t kMaxSegments = 10'000'000;
inline constexpr size_t kMaxTextUnits = 2'000'000;          ///< UTF-16 units of all text that is drawn
inline constexpr size_t kMaxImageBytes = size_t{256} << 20; ///< unpacked pixels of all images in a file
inline constexpr size_t kMaxReferenceDepth = 64;            ///< references drawn within references
inline constexpr int kMaxReferenceChain = 64; ///< href after href; a longer one counts as broken
inline constexpr size_t kMaxSelectorSteps =
    20'000'000; ///< of the style sheet's matching; then it is left out
inline constexpr size_t kMaxSelectorParts = 32;
inline constexpr double kLargestNumber = 1e38; ///< numbers in a file saturate here

} // namespace workbench
