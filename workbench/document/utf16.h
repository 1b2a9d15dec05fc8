/// Stories are UTF-16, all other texts UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// What is no character becomes U+FFFD, in both directions.
std::u16string Utf16Of(std::string_view text);
std::string Utf8Of(std::u16string_view text);

} // namespace workbench
