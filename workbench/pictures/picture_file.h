/// Picture files as bytes: reading them from disk without trust, and what kind and size they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "workbench/document/pictures.h"

namespace workbench {

inline constexpr size_t kMaxPictureBytes = size_t{64} << 20; ///< of a PNG or JPEG file
inline constexpr size_t kMaxDrawingBytes = size_t{16}
                                           << 20; ///< of an SVG that is a picture in another drawing
inline constexpr int64_t kMaxPicturePixels = int64_t{1} << 26; ///< 256 MiB once it is unpacked
inline constexpr int32_t kMaxPictureSide = 32767;              ///< the drawing library's limit

enum class PictureKind { kNone, kPng, kJpeg, kDrawing };

enum class PictureFileState {
    kRead,
    kMissing, ///< nothing there, or it can't be opened
    kRefused  ///< no regular file, or larger than any picture may be
};

/// Reads a whole regular file of at most kMaxPictureBytes.  Devices, pipes and folders are never read, and
/// opening one never waits.
/// @param path  UTF-8
PictureFileState ReadPictureFile(const std::string& path, std::vector<uint8_t>* bytes);

/// By content, never by name.  kDrawing is only a guess: bytes that begin like XML or like a packed file.
PictureKind KindOfPicture(std::span<const uint8_t> bytes);

/// Pixels of a PNG or JPEG as its header tells them.  Nothing for other bytes, a header that is cut off, no
/// extent, or a size beyond the limits above: such a file is refused before anything is unpacked.
std::optional<PictureSize> SizeOfPixels(std::span<const uint8_t> bytes);

} // namespace workbench
