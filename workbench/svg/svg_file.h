/// SVG files on disk and in their packed form.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace workbench {

/// The bytes of a file, at most kMaxFileBytes.  False with a sentence in `*error` if it can't be read whole.
bool ReadWholeFile(const std::string& path, std::vector<uint8_t>* bytes, std::string* error);

inline bool IsPacked(std::span<const uint8_t> bytes) {
    return bytes.size() >= 2 && bytes[0] == 0x1F && bytes[1] == 0x8B;
}

/// Unpacks gzip, also of several members.  False with a sentence in `*error` for damaged bytes and for what
/// unpacks to more than kMaxFileBytes.
bool Unpack(std::span<const uint8_t> packed, std::vector<uint8_t>* bytes, std::string* error);

} // namespace workbench
