#include "plugin/host/host_string.h"

#include "plugin/host/suites.h"

HostString::HostString() {
    if (UnicodeStringSuite().NewEmpty(&string_) != kHostNoError) string_ = nullptr;
}

HostString::HostString(const char* bytes, size_t length, int32_t encoding) {
    if (UnicodeStringSuite().New(bytes, length, encoding, &string_) != kHostNoError) string_ = nullptr;
}

HostString::~HostString() {
    if (string_) UnicodeStringSuite().Dispose(string_);
}

HostFilePath::HostFilePath(UnicodeStringHandle text) {
    if (FilePathSuite().New(text, &path_) != kHostNoError) path_ = nullptr;
}

HostFilePath::~HostFilePath() {
    if (path_) FilePathSuite().Dispose(path_);
}

size_t HostStringBytes(UnicodeStringHandle string, int32_t encoding, char* buffer256) {
    constexpr uint64_t room = kHostStringCapacity - 1;
    uint64_t length = 0;
    if (UnicodeStringSuite().GetBytes(string, encoding, buffer256, room, &length) != kHostNoError) length = 0;
    const size_t count = static_cast<size_t>(length < room ? length : room);
    buffer256[count] = '\0';
    return count;
}

HostError AssignHostString(UnicodeStringHandle target, UnicodeStringHandle source) {
    return UnicodeStringSuite().Assign(target, source);
}
