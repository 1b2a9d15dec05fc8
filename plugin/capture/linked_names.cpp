#include "plugin/capture/linked_names.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_set>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/trace.h"

namespace {

constexpr size_t kExtensionBytes = 15; // point included
constexpr size_t kBaseBytes = 63;

struct FileName {
    std::string_view base, extension;
};

FileName SplitFileName(std::string_view path) {
    size_t name = 0;
    size_t extension = std::string_view::npos;
    for (size_t i = 0; i < path.size(); ++i) {
        if (IsLeadByte(static_cast<uint8_t>(path[i]))) {
            ++i;
        } else if (path[i] == '\\') {
            name = i + 1;
            extension = std::string_view::npos;
        } else if (path[i] == '.') {
            extension = i;
        }
    }
    extension = std::min(extension, path.size());
    return {CutWhole(path.substr(name, extension - name), kBaseBytes),
            CutWhole(path.substr(extension), kExtensionBytes)};
}

std::string Candidate(const FileName& name, uint32_t attempt) {
    const std::string digits = attempt ? std::to_string(attempt) : std::string();
    const size_t limit =
        std::min<size_t>(static_cast<size_t>(std::max<int16_t>(globals->nameLimit, 0)), kLinkNameBytes - 1);
    const size_t taken = name.extension.size() + digits.size();
    std::string candidate(CutWhole(name.base, limit > taken ? limit - taken : 0));
    candidate.insert(std::min(candidate.find('.'), candidate.size()), digits);
    return candidate.append(name.extension);
}

/// ASCII letters in lower case.  A second byte of a character may look like a letter, and is none.
std::string FoldCase(std::string_view text) {
    std::string folded(text);
    for (size_t i = 0; i < folded.size(); ++i) {
        if (IsLeadByte(static_cast<uint8_t>(folded[i]))) {
            ++i;
        } else if (folded[i] >= 'A' && folded[i] <= 'Z') {
            folded[i] = static_cast<char>(folded[i] - 'A' + 'a');
        }
    }
    return folded;
}

/// The part of a stored name by which names are kept apart: names that are the same but for case agree in
/// it too.  No second byte of a character is a point.
std::string NotePart(std::string_view name) {
    return FoldCase(name.substr(0, name.find('.')));
}

const char* LinkPath(int32_t index) {
    return reinterpret_cast<const char*>(BlockBytes(globals->linkPaths)) +
           static_cast<size_t>(index) * kLinkPathBytes;
}

const char* LinkName(int32_t index) {
    return reinterpret_cast<const char*>(BlockBytes(globals->linkNames)) +
           static_cast<size_t>(index) * kLinkNameBytes;
}

/// What no further name may agree with; a file needs a name at all, so the empty text is among them.
std::unordered_set<std::string> TakenParts() {
    std::unordered_set<std::string> parts{std::string()};
    for (int32_t index = 0; index < globals->linkCount; ++index) parts.insert(NotePart(LinkName(index)));
    return parts;
}

bool GrowTables(int32_t count) {
    const MemoryHandle paths =
        ResizeHandle(globals->linkPaths, static_cast<uint64_t>(count) * kLinkPathBytes, kSmallGrain);
    if (!paths) return false;
    globals->linkPaths = paths;
    const MemoryHandle names =
        ResizeHandle(globals->linkNames, static_cast<uint64_t>(count) * kLinkNameBytes, kSmallGrain);
    if (!names) return false;
    globals->linkNames = names;
    return true;
}

void CopyText(uint8_t* target, std::string_view text) {
    std::memcpy(target, text.data(), text.size());
    target[text.size()] = 0;
}

} // namespace

void RegisterLinkedFile(char* text) {
    const TraceScope trace("RegisterLinkedFile");
    text[kLinkPathBytes - 1] = 0;
    for (int32_t index = 0; index < globals->linkCount; ++index) {
        if (std::strcmp(LinkPath(index), text) != 0) continue;
        std::memcpy(text, LinkName(index), kLinkNameBytes);
        return;
    }

    const std::string path = text;
    const FileName name = SplitFileName(path);
    const std::unordered_set<std::string> taken = TakenParts();
    uint32_t attempt = 0;
    std::string stored = Candidate(name, attempt);
    while (taken.contains(NotePart(stored))) stored = Candidate(name, ++attempt);

    if (!GrowTables(globals->linkCount + 1)) return;
    const auto row = static_cast<size_t>(globals->linkCount++);
    CopyText(BlockBytes(globals->linkPaths) + row * kLinkPathBytes, path);
    CopyText(BlockBytes(globals->linkNames) + row * kLinkNameBytes, stored);
    std::memcpy(text, stored.c_str(), stored.size() + 1);
}
