#include "plugin/capture/linked_names.h"

#include <algorithm>
#include <cstring>
#include <new>
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

/// Other systems have names that a stored one can't be.
std::string PlainComponentOf(std::string name) {
    for (size_t at = 0; at < name.size(); ++at) {
        if (!IsPlainComponent(std::string{'_', name[at]})) name[at] = '_';
        if (IsLeadByte(static_cast<uint8_t>(name[at]))) ++at;
    }
    return name;
}

/// A number stands where the note's name, which is cut shorter than the file's, has it too.
std::string Candidate(const FileName& name, uint32_t attempt) {
    const std::string digits = attempt ? std::to_string(attempt) : std::string();
    const size_t limit =
        std::min<size_t>(static_cast<size_t>(std::max<int16_t>(globals->nameLimit, 0)), kLinkNameBytes - 1);
    const size_t ending =
        attempt ? std::max(name.extension.size(), sizeof kNoteSuffix - 1) : name.extension.size();
    const size_t taken = ending + digits.size();
    std::string candidate(CutWhole(name.base, limit > taken ? limit - taken : 0));
    candidate.insert(std::min(candidate.find('.'), candidate.size()), digits);
    return PlainComponentOf(candidate.append(name.extension));
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

/// The name of its note, by which a stored name is kept apart from others: names that are the same but for
/// case agree in it too.
std::string NotePart(std::string_view name) {
    return FoldCase(NameOfLinkNote(name));
}

const char* LinkPath(int32_t index) {
    return reinterpret_cast<const char*>(BlockBytes(globals->linkPaths)) +
           static_cast<size_t>(index) * kLinkPathBytes;
}

const char* LinkName(int32_t index) {
    return reinterpret_cast<const char*>(BlockBytes(globals->linkNames)) +
           static_cast<size_t>(index) * kLinkNameBytes;
}

/// What no further name may agree with; a file needs a name at all, so the note of none is among them.
std::unordered_set<std::string> TakenParts() {
    std::unordered_set<std::string> parts{NotePart({})};
    for (int32_t index = 0; index < globals->linkCount; ++index) parts.insert(NotePart(LinkName(index)));
    return parts;
}

void GrowTables(int32_t count) {
    const MemoryHandle paths =
        ResizeHandle(globals->linkPaths, static_cast<uint64_t>(count) * kLinkPathBytes, kSmallGrain);
    if (!paths) throw std::bad_alloc();
    globals->linkPaths = paths;
    const MemoryHandle names =
        ResizeHandle(globals->linkNames, static_cast<uint64_t>(count) * kLinkNameBytes, kSmallGrain);
    if (!names) throw std::bad_alloc();
    globals->linkNames = names;
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
    // Where `nameLimit` leaves no room for numbers, so many tries have shown that there is no other name.
    while (taken.contains(NotePart(stored)) && attempt <= taken.size()) stored = Candidate(name, ++attempt);

    GrowTables(globals->linkCount + 1);
    const auto row = static_cast<size_t>(globals->linkCount++);
    CopyText(BlockBytes(globals->linkPaths) + row * kLinkPathBytes, path);
    CopyText(BlockBytes(globals->linkNames) + row * kLinkNameBytes, stored);
    std::memcpy(text, stored.c_str(), stored.size() + 1);
}
