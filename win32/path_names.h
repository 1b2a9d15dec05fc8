/// File names between the plug-in's cp932 texts and the UTF-8 names on disk.
///
/// The mapping is a bijection between byte strings and the disk names that have a cp932 form, so that a name
/// that was written comes back byte for byte.  A text is read in units: a lead byte (0x81 to 0x9F, 0xE0 to
/// 0xFC) with the byte behind it, or one byte.
///
/// | unit                                                                  | on disk              |
/// |-----------------------------------------------------------------------|----------------------|
/// | converts to Unicode and back to the same bytes, as Windows does it      | that character       |
/// | 0xF040 to 0xF9FC, user-defined                                           | U+E000 to U+E757     |
/// | a duplicate (of NEC's row 13, of NEC's and IBM's extensions) or an undefined pair XXYY | U+FXXYY |
/// | a single byte XX that is a dangling lead byte at the end of the name    | U+F00XX              |
///
/// The code points of the last two rows lie in the private plane 15, which cp932 itself never reaches.  A
/// name on disk that isn't the image of a byte string under this table has no cp932 form: it is in no list.
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// One name, without separators, as it stands on disk.  Total and injective.
std::string DiskNameOfStoreName(std::string_view cp932Name);

/// The cp932 bytes of a name on disk; nothing if it has none.
std::optional<std::string> StoreNameOfDiskName(std::string_view diskName);

/// False for a name that the file calls refuse: it consists of dots and blanks, or holds '/'.
bool IsAllowedStoreName(std::string_view cp932Name);

/// A path of the plug-in as a path on disk.  Nothing, with GetLastError set, if a rule of <windows.h> refuses
/// it or if it is empty.
std::optional<std::string> DiskPathOfStorePath(const char* cp932Path);

/// What StorePathOfUtf8 gives: the path, or the first character that has no cp932 form.
struct StorePath {
    std::string path; ///< cp932 with backslashes; empty if refused
    std::string
        offender; ///< UTF-8 of the refused character, or of the component if it is no single character
};

/// A POSIX path in UTF-8, made absolute by the working directory and freed of "." and "..", as the plug-in
/// writes it.  For the command line and the documents folder.
StorePath StorePathOfUtf8(std::string_view path);
