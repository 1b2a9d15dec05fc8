/// Bytes within a drawing's own text.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

std::string Base64Text(std::span<const uint8_t> bytes);

/// Blanks count for nothing, percent signs are decoded, padding may be missing.  False for other signs, with
/// `*bytes` as far as they came.
bool BytesOfBase64(std::string_view text, std::vector<uint8_t>* bytes);

inline bool IsDataUri(std::string_view href) {
    return href.starts_with("data:");
}

/// The bytes of a data: address, in base64 or as percent signs; false if it has a fault.
bool BytesOfDataUri(std::string_view href, std::vector<uint8_t>* bytes);

std::string PngDataUri(std::span<const uint8_t> file);

/// Bytes packed by deflate, as base64.
std::string PackedText(std::span<const uint8_t> bytes);

/// False for damage and for more than `most` bytes.
bool BytesOfPackedText(std::string_view text, size_t most, std::vector<uint8_t>* bytes);

} // namespace workbench
