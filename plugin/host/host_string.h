/// Owners and helpers for the host's texts and file paths.
///
/// All of it may be used only between `AcquireHostSuites` and `ReleaseHostSuites`.  Encodings are those of
/// suites/host_types.h; literals and stored names of the plug-in are kEncodingCp932.
#pragma once

#include <cstddef>
#include <cstdint>

#include "suites/host_types.h"

constexpr size_t kHostStringCapacity = 256; ///< of a buffer for HostStringBytes, with the NUL

/// A Unicode string of the host, given back at the end of the scope.
class HostString {
public:
    HostString();
    HostString(const char* bytes, size_t length, int32_t encoding);
    ~HostString();
    HostString(const HostString&) = delete;
    HostString& operator=(const HostString&) = delete;

    /// Null if the host could not make the string; the host's operations refuse that as a bad handle.
    UnicodeStringHandle get() const { return string_; }

private:
    UnicodeStringHandle string_ = nullptr;
};

/// A file path of the host, given back at the end of the scope.
class HostFilePath {
public:
    explicit HostFilePath(UnicodeStringHandle text);
    ~HostFilePath();
    HostFilePath(const HostFilePath&) = delete;
    HostFilePath& operator=(const HostFilePath&) = delete;

    FilePathHandle get() const { return path_; } ///< null if the host could not make the path

private:
    FilePathHandle path_ = nullptr;
};

/// Writes the string in `encoding` and a NUL into `buffer256`, kHostStringCapacity bytes, and returns the
/// count without the NUL.  A longer text is cut at 255 bytes, which may halve a double-byte character, and
/// the cut is no error.  A failure gives an empty text.
size_t HostStringBytes(UnicodeStringHandle string, int32_t encoding, char* buffer256);

/// Makes `target` equal to `source`.
HostError AssignHostString(UnicodeStringHandle target, UnicodeStringHandle source);
