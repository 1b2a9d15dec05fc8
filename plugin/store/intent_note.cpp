#include "plugin/store/intent_note.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <new>
#include <vector>

#include "plugin/frame/line_grammar.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/store_lock.h"

namespace {

constexpr LineGrammar kIntentGrammar = {'\n', "\r", 0x1000, '\''};
constexpr const char* kKinds[] = {"delete", "move", "renumber", "pool", "move_group"}; // by IntentKind
constexpr size_t kIntentTokens = 4;
constexpr uint32_t kMostNumber = 99999999;

constexpr char kKind[] = "intent";
constexpr char kGroup[] = "group";
constexpr char kNumber[] = "number";
constexpr char kCount[] = "count";
constexpr char kNewGroup[] = "new_group";
constexpr char kNewCount[] = "new_count";
constexpr char kDirectory[] = "directory";
constexpr char kDirectories[] = "directories";
constexpr char kStoredName[] = "stored_name";
constexpr char kPooledName[] = "pooled_name";
constexpr char kHasData[] = "has_data";
constexpr char kWhole[] = "whole";

void AddNumber(std::string& text, const char* key, uint32_t value) {
    text.append(key).append(" = ").append(std::to_string(value)).append("\r\n");
}

// No second byte of a character is below 0x40, so bytes can be taken one by one.
void AddText(std::string& text, const char* key, std::string_view value) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    text.append(key).append(" = \"");
    for (const char byte : value) {
        const auto code = static_cast<uint8_t>(byte);
        if (code >= 0x20 && byte != '"' && byte != '%') {
            text.push_back(byte);
        } else {
            text.push_back('%');
            text.push_back(kDigits[code >> 4]);
            text.push_back(kDigits[code & 15]);
        }
    }
    text.append("\"\r\n");
}

bool TakeNumber(std::string_view text, uint32_t& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool TakeText(std::string_view text, std::string& value) {
    value.clear();
    for (size_t at = 0; at < text.size(); ++at) {
        if (static_cast<uint8_t>(text[at]) < 0x20) return false; // AddText writes none
        if (text[at] != '%') {
            value.push_back(text[at]);
            continue;
        }
        uint8_t code = 0;
        if (text.size() - at < 3) return false;
        const char* digits = text.data() + at + 1;
        const auto result = std::from_chars(digits, digits + 2, code, 16);
        if (result.ec != std::errc() || result.ptr != digits + 2 || code == 0) return false;
        value.push_back(static_cast<char>(code));
        at += 2;
    }
    return true;
}

bool TakeRange(std::string_view first, std::string_view last, NumberRanges& ranges) {
    NumberRange range{};
    if (!TakeNumber(first, range.first) || !TakeNumber(last, range.last)) return false;
    if (range.first > range.last || range.last > kMostNumber) return false;
    if (!ranges.empty() && range.first <= ranges.back().last) return false;
    ranges.push_back(range);
    return true;
}

bool TakeKind(std::string_view name, IntentKind& kind) {
    const auto* found = std::find(std::begin(kKinds), std::end(kKinds), name);
    if (found == std::end(kKinds)) return false;
    kind = static_cast<IntentKind>(found - std::begin(kKinds));
    return true;
}

bool TakeFlag(std::string_view text, bool& flag) {
    flag = text == "1";
    return flag || text == "0";
}

bool TakeRecordNumber(std::string_view text, int32_t& number) {
    uint32_t value = 0;
    if (!TakeNumber(text, value) || value > kMostNumber) return false;
    number = static_cast<int32_t>(value);
    return true;
}

bool TakeLine(std::string_view key, std::string_view first, std::string_view second, Intent& intent) {
    if (key == kKind) return TakeKind(first, intent.kind);
    if (key == kGroup) return TakeText(first, intent.group);
    if (key == kNumber) return TakeRecordNumber(first, intent.number);
    if (key == kCount) return TakeNumber(first, intent.count);
    if (key == kNewGroup) return TakeText(first, intent.newGroup);
    if (key == kNewCount) return TakeNumber(first, intent.newCount);
    if (key == kDirectory) return TakeText(first, intent.directory);
    if (key == kDirectories) return TakeRange(first, second, intent.directories);
    if (key == kStoredName) return TakeText(first, intent.storedName);
    if (key == kPooledName) return TakeText(first, intent.pooledName);
    if (key == kHasData) return TakeFlag(first, intent.hasData);
    return false;
}

bool HasWhatItNeeds(const Intent& intent) {
    const auto number = static_cast<uint32_t>(intent.number);
    if (!intent.directories.empty() && intent.directories.front().first < number) return false;
    switch (intent.kind) {
        case IntentKind::kDelete:
            return !intent.group.empty() && number < intent.count;
        case IntentKind::kMove:
            return !intent.group.empty() && number < intent.count && !intent.newGroup.empty() &&
                   intent.newCount <= kMostNumber;
        case IntentKind::kRenumber:
            return intent.directory.starts_with('\\');
        case IntentKind::kPool:
            return !intent.group.empty() && !intent.storedName.empty() && !intent.pooledName.empty();
        case IntentKind::kMoveGroup:
            return !intent.group.empty() && !intent.newGroup.empty();
    }
    return false;
}

/// Where the note stands and where it is written; all that needs memory, before anything is done.
struct NotePaths {
    std::string note = PathInRoot(kIntentFile);
    std::string work = PathInRoot(kIntentWorkFile);
};

bool MoveNote(const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

// A deletion alone could be forgotten by a crash, and the note come back when other work has been done.
void DropNote(const NotePaths& paths) {
    MoveNote(paths.note, paths.work);
    DeleteFileA(paths.work.c_str());
}

} // namespace

std::string FormatIntent(const Intent& intent) {
    std::string text;
    AddText(text, kKind, kKinds[static_cast<size_t>(intent.kind)]);
    AddText(text, kGroup, intent.group);
    AddNumber(text, kNumber, static_cast<uint32_t>(intent.number));
    AddNumber(text, kCount, intent.count);
    AddText(text, kNewGroup, intent.newGroup);
    AddNumber(text, kNewCount, intent.newCount);
    AddText(text, kDirectory, intent.directory);
    for (const NumberRange& range : intent.directories) {
        text.append(kDirectories).append(" = ").append(std::to_string(range.first));
        text.append(", ").append(std::to_string(range.last)).append("\r\n");
    }
    AddText(text, kStoredName, intent.storedName);
    AddText(text, kPooledName, intent.pooledName);
    AddNumber(text, kHasData, intent.hasData ? 1 : 0);
    AddNumber(text, kWhole, 1);
    return text;
}

bool ParseIntent(std::string_view text, Intent& intent) {
    intent = {};
    LineReader reader(text, kIntentGrammar);
    std::string line;
    bool whole = false;
    while (reader.Next(line)) {
        if (whole) return false; // it says so in its last line
        const std::vector<std::string> tokens = SplitTokens(line, kIntentTokens);
        const std::string_view key = TokenAt(tokens, 0);
        whole = key == kWhole && TokenAt(tokens, 1) == "1";
        if (!whole && !TakeLine(key, TokenAt(tokens, 1), TokenAt(tokens, 2), intent)) return false;
    }
    return whole && HasWhatItNeeds(intent);
}

bool WriteIntent(const Intent& intent) {
    const std::string text = FormatIntent(intent);
    const NotePaths paths;
    if (text.size() > kMostIntentBytes || !WriteWholeFile(paths.work, text))
        return StoreFails(StoreTrouble::kDisk);
    if (MoveNote(paths.work, paths.note)) return true;
    // It may be there, and only not for certain on the disk; if it stays, the next who finds it goes by it.
    DropNote(paths);
    const bool gone = StateOfEntry(paths.note) == EntryState::kMissing;
    return StoreFails(gone ? StoreTrouble::kDisk : StoreTrouble::kUnfinished);
}

bool ReadIntent(Intent& intent) {
    std::string text;
    return ReadWholeFile(PathInRoot(kIntentFile), kMostIntentBytes, text) && ParseIntent(text, intent);
}

void DropIntent() {
    try {
        DropNote({});
    } catch (const std::bad_alloc&) { // it stays, and who finds it sees that the work is done
    }
}
