/// Thumbnails of packed previews, each unpacked and scaled once.
///
/// A picture is known by its packed bytes alone, which come fresh from the store at every paint: what is
/// remembered here is arithmetic, never what the store said, so nothing of it can be out of date.
#pragma once

#include <cstdint>
#include <span>

constexpr int kMostThumbnails = 1024; ///< that are remembered; the oldest goes first

/// The picture of a packed preview, `side` by `side` pixels as ScalePreview gives them, `side` at most
/// kLargestThumbnail.  Valid until the next call; null if memory ran out.  A preview whose packed form is too
/// short ends with black.  Another size than the last one forgets all.
const uint32_t* ThumbnailOf(std::span<const uint8_t> packed, int side);
