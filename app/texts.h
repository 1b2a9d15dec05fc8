/// Texts on the command line's border: UTF-8 outside, cp932 inside.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The cp932 form of a UTF-8 text; nothing, and a sentence that names the character in *error, if it has
/// none.
std::optional<std::string> Cp932OfUtf8(std::string_view utf8, std::string* error);

/// The same with '?' for what has no form.  *replaced, if given, counts the replaced characters.
std::string Cp932OfUtf8OrMark(std::string_view utf8, size_t* replaced = nullptr);

std::string Utf8OfCp932(std::string_view cp932);

/// At most `bytes` bytes of a cp932 text, whole characters.
std::string CutCp932(std::string_view cp932, size_t bytes);

/// A group as people write it, `Folder/Sub/Group`, with slashes or backslashes and one in front or not, as
/// the plug-in names it.  Nothing, and a sentence in *error, if it has more than three parts, or a part is
/// empty, too long, has no cp932 form or is a word that means something else in a database.
std::optional<std::string> GroupNameOfUtf8(std::string_view utf8, std::string* error);

/// Why a folder or group can't have that name (cp932); empty if it can.
std::string NameTrouble(std::string_view cp932, bool isGroup);
