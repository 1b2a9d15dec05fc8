/// Texts of the host: held as UTF-8, given and taken in the encodings of the contract.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// UTF-8 from bytes in kEncodingPlatform (cp932 here), kEncodingUtf8 or kEncodingCp932.  Each byte that
/// means nothing becomes U+FFFD.  None for another encoding.
std::optional<std::string> DecodeText(std::string_view bytes, int32_t encoding);

/// Bytes in one of these encodings from UTF-8.  A character that the encoding doesn't hold becomes '?'.
std::optional<std::string> EncodeText(std::string_view utf8, int32_t encoding);

} // namespace workbench
