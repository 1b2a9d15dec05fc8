/// The texts of a record as people give them, and as they are stored.
#pragma once

#include <optional>
#include <string>

/// The stored form of a text that was asked for, cp932.  Nothing, and a complaint that begins with `what`, if
/// a character has none or the text doesn't fit: a cut could change what it says.
/// @param capacity  bytes of the field, its NUL included
std::optional<std::string> StoredText(const std::string& what, const std::string& utf8, size_t capacity);
