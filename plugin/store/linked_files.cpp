#include "plugin/store/linked_files.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/frame/line_grammar.h"
#include "plugin/store/cp932.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/folder_entries.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "plugin/store/trace.h"

namespace {

constexpr LineGrammar kLinkNoteGrammar = kPreferencesGrammar;
constexpr char kStoredKey[] = "orgn_fname";
constexpr char kPooledKey[] = "copy_fname";
constexpr size_t kNoteTokens = 3; ///< of a line; those behind are dropped
constexpr int kMostCounter = 999;
constexpr int kPooledAsideTries = 100;
constexpr size_t kNoteSuffixBytes = sizeof kNoteSuffix - 1;

size_t NameLimit() {
    return static_cast<size_t>(std::clamp<int>(globals->nameLimit, 0, kLinkNameBytes - 1));
}

std::string_view BaseOf(std::string_view name) {
    return name.substr(0, name.find('.'));
}

// The name with a counter behind its base, which gives way; as it is for 0.  What stands behind the first
// point can be too long for that, and then the last one counts: notes hold no longer name.
std::string PooledCandidate(std::string_view storedName, int counter) {
    if (counter == 0) return std::string(storedName);
    const std::string digits = "_" + std::to_string(counter);
    std::string_view base = BaseOf(storedName);
    if (storedName.size() - base.size() + digits.size() > NameLimit())
        base = storedName.substr(0, storedName.rfind('.'));
    const std::string_view extension = storedName.substr(base.size());
    const size_t taken = extension.size() + digits.size();
    const size_t room = NameLimit() > taken ? NameLimit() - taken : 0;
    return std::string(CutWhole(base, room)).append(digits).append(extension);
}

int32_t AnswerFromNote(const std::string& notePath, std::string_view name, std::string& answer) {
    LinkNote note;
    if (!ReadLinkNote(notePath.c_str(), &note) || !note.storedName.starts_with(name)) return -1;
    if (!IsPlainComponent(note.pooledName)) return -1;
    answer = JoinPath(ImageFolderPath(), note.pooledName);
    return 0;
}

struct StoredFile {
    const char* group;
    int32_t number;
    std::string name;
    std::string path;
    std::string notePath;
};

// Moves the file under a name that nobody has.  Another's file that came under it between the look and the
// move is no loss, since the move replaces nothing: then the next name is tried.
int32_t PoolAs(const StoredFile& file, const std::string& pooledName, bool& taken) {
    const std::string pooled = JoinPath(ImageFolderPath(), pooledName);
    const EntryState there = StateOfEntry(pooled);
    taken = there != EntryState::kMissing && there != EntryState::kUnknown;
    if (there == EntryState::kUnknown) StoreFails(StoreTrouble::kDisk);
    if (there != EntryState::kMissing) return -1;
    Intent intent;
    intent.kind = IntentKind::kPool;
    intent.group = file.group;
    intent.number = file.number;
    intent.storedName = file.name;
    intent.pooledName = pooledName;
    if (!WriteIntent(intent)) return -1;
    if (!MoveFileExA(file.path.c_str(), pooled.c_str(), MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH)) {
        const DWORD reason = GetLastError();
        taken = reason == ERROR_ALREADY_EXISTS || reason == ERROR_FILE_EXISTS;
        // A move that could not be brought to the disk is one all the same, and is taken back.
        if (StateOfEntry(file.path) == EntryState::kMissing)
            MoveFileExA(pooled.c_str(), file.path.c_str(), MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH);
        if (FinishWork(intent) != WorkEnd::kStuck) StoreFails(StoreTrouble::kDisk);
        return static_cast<int32_t>(reason);
    }
    return FinishWork(intent) == WorkEnd::kDone ? 0 : -1;
}

int32_t PoolFile(const StoredFile& file, std::string& answer) {
    switch (StateOfEntry(file.path)) {
        case EntryState::kFile:
            break;
        case EntryState::kMissing:
            return ERROR_FILE_NOT_FOUND;
        default:
            return -1;
    }
    MakeFolder(ImageFolderPath());
    for (int counter = 0; counter <= kMostCounter; ++counter) {
        const std::string pooledName = PooledCandidate(file.name, counter);
        bool taken = false;
        answer = JoinPath(ImageFolderPath(), pooledName); // before the move, which it could fail behind
        const int32_t result = PoolAs(file, pooledName, taken);
        if (!taken) return result;
    }
    return -1;
}

int32_t Resolve(const char* groupName, int32_t number, const std::string& name, std::string& answer) {
    const std::string directory = RecordDirectoryOf(groupName, number);
    if (directory.empty() || number < 0 || !IsPlainComponent(name) || name.size() > NameLimit()) return -1;
    const StoredFile file = {groupName, number, name, JoinPath(directory, name),
                             JoinPath(directory, NameOfLinkNote(name))};
    {
        // While others renumber, the number means another record.  A database that only lets itself be read
        // can't be locked, and nobody renumbers there.
        const StoreLock lock(kStoreShared);
        if (!lock.held() && globals->storeTrouble != StoreTrouble::kDisk) return -1;
        if (StateOfEntry(file.notePath) != EntryState::kMissing)
            return AnswerFromNote(file.notePath, name, answer);
    }
    const StoreLock lock(kStoreExclusive);
    if (!lock.held() || !FinishInterruptedWork()) return -1;
    if (StateOfEntry(file.notePath) != EntryState::kMissing)
        return AnswerFromNote(file.notePath, name, answer);
    return PoolFile(file, answer);
}

// A note of an earlier record would stand for the new one's file.
bool PutNoteAside(const std::string& directory, const std::string& noteName) {
    const std::string path = JoinPath(directory, noteName);
    if (StateOfEntry(path) == EntryState::kMissing) return true;
    for (int tries = 1; tries <= kPooledAsideTries; ++tries) {
        const std::string aside = kStalePrefix + std::to_string(tries) + "-" + noteName;
        if (MoveFileExA(path.c_str(), JoinPath(directory, aside).c_str(), MOVEFILE_WRITE_THROUGH))
            return true;
        if (GetLastError() != ERROR_ALREADY_EXISTS) return false;
    }
    return false;
}

bool CopyLinkedFile(const std::string& directory, const char* path, const char* name) {
    return IsPlainComponent(name) && PutNoteAside(directory, NameOfLinkNote(name)) &&
           CopyFileA(path, JoinPath(directory, name).c_str(), FALSE);
}

int32_t CopyAll(const char* groupName, int32_t number) {
    const int32_t count = std::max(globals->linkCount, 0);
    const std::string data = DataDirectoryOf(groupName);
    const StoreLock lock(kStoreShared);
    if (!lock.held()) return std::max(count, 1);
    if (data.empty() || number < 0 || !MakeFolder(data) ||
        !MakeFolder(RecordDirectoryOf(groupName, number))) {
        StoreFails(StoreTrouble::kDisk);
        return std::max(count, 1);
    }
    int32_t failed = 0;
    for (int32_t row = 0; row < count; ++row) {
        const auto* path = reinterpret_cast<const char*>(BlockBytes(globals->linkPaths)) +
                           static_cast<size_t>(row) * kLinkPathBytes;
        const auto* name = reinterpret_cast<const char*>(BlockBytes(globals->linkNames)) +
                           static_cast<size_t>(row) * kLinkNameBytes;
        if (!CopyLinkedFile(RecordDirectoryOf(groupName, number), path, name)) ++failed;
    }
    if (failed > 0) StoreFails(StoreTrouble::kDisk);
    return failed;
}

} // namespace

LinkNote ParseLinkNote(std::string_view text) {
    LinkNote note;
    LineReader reader(text, kLinkNoteGrammar);
    std::string line;
    while (reader.Next(line)) {
        const std::vector<std::string> tokens = SplitTokens(line, kNoteTokens);
        if (TokenAt(tokens, 0) == kStoredKey) note.storedName = TokenAt(tokens, 1, NameLimit());
        if (TokenAt(tokens, 0) == kPooledKey) note.pooledName = TokenAt(tokens, 1, NameLimit());
    }
    return note;
}

bool ReadLinkNote(const char* path, LinkNote* note) {
    std::string text;
    if (!ReadWholeFile(path, kMostNoteBytes, text)) return false;
    *note = ParseLinkNote(text);
    return true;
}

bool WriteLinkNote(const std::string& path, const LinkNote& note) {
    std::string text;
    text.append(kStoredKey).append(" = \"").append(note.storedName).append("\"\r\n");
    text.append(kPooledKey).append(" = \"").append(note.pooledName).append("\"\r\n");
    const std::string work = PathInRoot(kNoteWorkFile);
    if (!WriteWholeFile(work, text)) return false;
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH;
    if (MoveFileExA(work.c_str(), path.c_str(), kFlags)) return true;
    DeleteFileA(work.c_str());
    return false;
}

std::string NameOfLinkNote(std::string_view storedName) {
    const size_t room = std::max(NameLimit(), kNoteSuffixBytes) - kNoteSuffixBytes;
    return std::string(CutWhole(BaseOf(storedName), room)).append(kNoteSuffix);
}

bool IsPlainComponent(std::string_view name) {
    if (name.find_first_not_of(". ") == std::string_view::npos) return false;
    for (size_t at = 0; at < name.size(); ++at) {
        const auto byte = static_cast<uint8_t>(name[at]);
        if (byte < 0x20 || byte == '"' || byte == '/' || byte == ':' || byte == '\\') return false;
        if (IsLeadByte(byte)) ++at;
    }
    return true;
}

int32_t CopyLinkedFiles(const char* groupName, int32_t number) {
    const TraceScope trace("CopyLinkedFiles");
    const int32_t failed = WithinMemory([=] { return CopyAll(groupName, number); });
    return failed >= 0 ? failed : std::max(globals->linkCount, 1);
}

int32_t ResolveLinkedFile(const char* groupName, int32_t number, const uint8_t* pascalName, char* outPath) {
    const TraceScope trace("ResolveLinkedFile");
    outPath[0] = '\0';
    return WithinMemory([=] {
        const std::string name(reinterpret_cast<const char*>(pascalName) + 1, pascalName[0]);
        std::string answer;
        const int32_t result = Resolve(groupName, number, name, answer);
        if (result != 0) return result;
        if (answer.size() >= kFullPathBytes) return int32_t{-1};
        CopyText(outPath, kFullPathBytes, answer.c_str());
        return int32_t{0};
    });
}
