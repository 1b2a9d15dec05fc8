#include "plugin/store/group_file.h"

#include <algorithm>
#include <cstring>

#include "plugin/store/cp932.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/store_names.h"
#include "plugin/store/swap_words.h"

namespace {

constexpr char kWorkFile[] = "\\VLQ.TMP";
constexpr char kNewFile[] = "\\VLQ.NEW"; ///< an empty file on its way to a group's name
constexpr uint32_t kCopyBytes = 0x100000;
constexpr int kWaits = 50;
constexpr DWORD kWaitMilliseconds = 20;

// The path of a file in the folder of the file at `path`.
void PathBeside(const char* path, const char* name, char* out) {
    size_t folderBytes = 0;
    for (size_t at = 0; path[at] != '\0'; at += CharacterBytes(path + at)) {
        if (path[at] == '\\') folderBytes = at;
    }
    folderBytes = std::min<size_t>(folderBytes, kFullPathBytes - 1 - std::strlen(name));
    std::memcpy(out, path, folderBytes);
    std::strcpy(out + folderBytes, name);
}

bool DeleteIfThere(const char* path) {
    return DeleteFileA(path) || GetLastError() == ERROR_FILE_NOT_FOUND;
}

bool IsGone(const char* path) {
    return GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES && GetLastError() == ERROR_FILE_NOT_FOUND;
}

} // namespace

void GroupFilePath(const char* groupName, char* out) {
    char root[256];
    GetDatabaseRoot(root);
    uint8_t relative[kPascalPathBytes];
    MakeGroupPath(groupName, relative, false);
    out[0] = '\0';
    if (relative[0] != 0) JoinRootAndPath(root, reinterpret_cast<const char*>(relative) + 1, out);
}

bool GroupFile::Open(const char* path, int accessAndSharing) {
    Close();
    // Another program that has the file is waited for, a second at most.
    for (int waits = 0; (file_ = _lopen(path, accessAndSharing)) == HFILE_ERROR; ++waits) {
        if (GetLastError() != ERROR_SHARING_VIOLATION || waits == kWaits) return false;
        Sleep(kWaitMilliseconds);
    }
    if (ReadFrame()) return true;
    Close();
    SetLastError(ERROR_IO_DEVICE);
    return false;
}

bool GroupFile::ReadFrame() {
    const LONG length = _llseek(file_, 0, FILE_END);
    if (length < 0) return false;
    length_ = static_cast<uint32_t>(length);
    storedCount_ = 0;
    if (length_ < kCountBytes) return true;
    if (!Read(0, &storedCount_, kCountBytes)) return false;
    storedCount_ = SwapLong(storedCount_);
    return true;
}

bool GroupFile::OpenToRead(const char* groupName) {
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    return Open(path, OF_READ | OF_SHARE_DENY_NONE);
}

bool GroupFile::OpenToChange(const char* groupName) {
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    return Open(path, OF_READWRITE | OF_SHARE_DENY_WRITE);
}

bool GroupFile::OpenOrMake(const char* groupName) {
    if (OpenToChange(groupName)) return true;
    if (GetLastError() != ERROR_FILE_NOT_FOUND) return false;
    // Making a file under its own name would empty what another machine has made meanwhile; a move doesn't
    // replace anything.  Whoever moves first, the file is there then.
    char path[kFullPathBytes];
    char made[kFullPathBytes];
    GroupFilePath(groupName, path);
    PathBeside(path, kNewFile, made);
    const HFILE file = _lcreat(made, 0);
    if (file == HFILE_ERROR) return false;
    _lclose(file);
    if (!MoveFileExA(made, path, MOVEFILE_WRITE_THROUGH)) DeleteFileA(made);
    return OpenToChange(groupName);
}

bool GroupFile::MakeWorkFile(const char* path) {
    if (!DeleteIfThere(path)) return false;
    const HFILE file = _lcreat(path, 0);
    if (file == HFILE_ERROR) return false;
    _lclose(file);
    return Open(path, OF_READWRITE | OF_SHARE_EXCLUSIVE) && length_ == 0;
}

uint32_t GroupFile::count() const {
    if (length_ < kCountBytes) return 0;
    return std::min(storedCount_, (length_ - kCountBytes) / kSmallestRecordBytes);
}

bool GroupFile::Read(uint32_t place, void* bytes, uint32_t count) {
    if (count == 0) return true;
    return _llseek(file_, static_cast<LONG>(place), FILE_BEGIN) >= 0 && _lread(file_, bytes, count) == count;
}

bool GroupFile::Write(uint32_t place, const void* bytes, uint32_t count) {
    if (count == 0) return true; // writing nothing would cut the file
    if (uint64_t{place} + count > kMostGroupBytes) return false;
    if (_llseek(file_, static_cast<LONG>(place), FILE_BEGIN) < 0) return false;
    if (_lwrite(file_, static_cast<const char*>(bytes), count) != count) return false;
    length_ = std::max(length_, place + count);
    return true;
}

bool GroupFile::WriteCount(uint32_t count) {
    const uint32_t stored = SwapLong(count);
    if (!Write(0, &stored, kCountBytes)) return false;
    storedCount_ = count;
    return true;
}

bool GroupFile::Flush() {
    return FlushFileBuffers(reinterpret_cast<HANDLE>(static_cast<intptr_t>(file_)));
}

bool GroupFile::CutAt(uint32_t length) {
    if (_llseek(file_, static_cast<LONG>(length), FILE_BEGIN) < 0) return false;
    if (!SetEndOfFile(reinterpret_cast<HANDLE>(static_cast<intptr_t>(file_)))) return false;
    length_ = length;
    return true;
}

bool GroupFile::HasLength(uint32_t length) {
    const LONG onDisk = _llseek(file_, 0, FILE_END);
    return onDisk >= 0 && static_cast<uint32_t>(onDisk) == length;
}

bool GroupFile::Close() {
    if (file_ == HFILE_ERROR) return true;
    const bool closed = _lclose(file_) != HFILE_ERROR;
    file_ = HFILE_ERROR;
    return closed;
}

// Brings the next header into the window.  The window grows where records are so small that several share
// one, and shrinks where it holds but one header each time.
bool GroupWalk::Fill() {
    windowSize_ =
        usedAgain_ ? std::min(windowSize_ * 2, kLargestWindow) : std::max(windowSize_ / 2, kSmallestWindow);
    usedAgain_ = false;
    windowPlace_ = end_;
    windowBytes_ = std::min(windowSize_, file_.length() - end_);
    return file_.Read(windowPlace_, window_.data(), windowBytes_);
}

bool GroupWalk::Next() {
    if (damaged_ || walked_ == file_.storedCount()) return false;
    damaged_ = true;
    if (file_.length() - end_ < kSmallestRecordBytes) return false;
    const bool inWindow =
        windowBytes_ >= kRecordHeaderBytes && end_ - windowPlace_ <= windowBytes_ - kRecordHeaderBytes;
    if (inWindow) {
        usedAgain_ = true;
    } else if (!Fill()) {
        return false;
    }
    uint32_t size;
    std::memcpy(&size, window_.data() + (end_ - windowPlace_) + offsetof(RecordHeader, size), sizeof size);
    size = SwapLong(size);
    if (size < kSmallestRecordBytes || size > file_.length() - end_) return false;
    record_ = {walked_++, end_, size};
    end_ += size;
    damaged_ = false;
    return true;
}

bool FindRecord(GroupFile& file, uint32_t number, RecordPlace& found) {
    if (number >= file.count()) return false;
    GroupWalk walk(file);
    while (walk.Next()) {
        if (walk.record().number != number) continue;
        found = walk.record();
        return true;
    }
    return false;
}

namespace {

// Where the records end; nothing if the walk ends before the count.
bool FindEnd(GroupFile& file, uint32_t& end) {
    GroupWalk walk(file);
    while (walk.Next()) {
    }
    end = walk.end();
    return walk.reachedCount();
}

bool WriteRecordBytes(GroupFile& file, uint32_t end, const void* record, uint32_t bytes) {
    return file.Write(end, record, bytes) && file.HasLength(file.length()) && file.Flush();
}

} // namespace

bool AppendToGroup(const char* groupName, const void* record, uint32_t bytes, uint32_t* number) {
    GroupFile file;
    if (!file.OpenOrMake(groupName)) return false;
    uint32_t end;
    if (!FindEnd(file, end)) return false;
    if (uint64_t{end} + bytes > kMostGroupBytes) return false;
    const uint32_t length = file.length();
    const uint32_t count = file.storedCount();
    const bool started = length >= kCountBytes || file.WriteCount(0);
    const bool written = started && WriteRecordBytes(file, end, record, bytes);
    // The count goes last: until it is on the disk the new record does not exist for any reader.
    if (!written || !file.WriteCount(count + 1) || !file.Flush()) {
        // If the old count can't be put back the record has to stay behind the new one.
        if (!written || file.WriteCount(count)) file.CutAt(length);
        file.Flush();
        return false;
    }
    // What an append that was cut short has left may be longer than this record.
    if (file.length() > end + bytes) file.CutAt(end + bytes);
    *number = count;
    return true;
}

bool ReplaceHeader(GroupFile& file, const RecordPlace& record, const RecordHeader& old,
                   const RecordHeader& header) {
    if (file.Write(record.place, &header, sizeof header) && file.Flush()) return true;
    if (file.Write(record.place, &old, sizeof old)) file.Flush();
    return false;
}

namespace {

// The bytes of a group file that a delete leaves out.
struct CutOut {
    uint32_t begin;
    uint32_t end;
    uint32_t fileEnd; ///< where the records end
};

bool PlanCut(GroupFile& file, uint32_t number, CutOut& cut) {
    bool found = false;
    GroupWalk walk(file);
    while (walk.Next()) {
        if (walk.record().number != number) continue;
        cut.begin = walk.record().place;
        cut.end = walk.end();
        found = true;
    }
    cut.fileEnd = walk.end();
    return found && walk.reachedCount();
}

bool CopyRange(GroupFile& from, uint32_t begin, uint32_t end, GroupFile& to, uint32_t place) {
    HandleOwner buffer(NewHandle(kCopyBytes, kSmallGrain));
    if (buffer.bytes() == nullptr) return false;
    while (begin < end) {
        const uint32_t bytes = std::min(kCopyBytes, end - begin);
        if (!from.Read(begin, buffer.bytes(), bytes) || !to.Write(place, buffer.bytes(), bytes)) return false;
        begin += bytes;
        place += bytes;
    }
    return true;
}

bool WriteWithout(GroupFile& group, const CutOut& cut, const char* workPath) {
    GroupFile work;
    return work.MakeWorkFile(workPath) && work.WriteCount(group.storedCount() - 1) &&
           CopyRange(group, kCountBytes, cut.begin, work, kCountBytes) &&
           CopyRange(group, cut.end, cut.fileEnd, work, cut.begin) &&
           work.HasLength(cut.fileEnd - (cut.end - cut.begin)) && work.Flush() && work.Close();
}

// Puts a complete file in the place of another in one step; false with the reason in GetLastError.
bool TakePlaceOf(const char* from, const char* to) {
    for (int waits = 0;; ++waits) {
        if (MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return true;
        const DWORD reason = GetLastError();
        // A move that took place and only could not be flushed has taken place.
        if (reason != ERROR_FILE_NOT_FOUND && IsGone(from)) return true;
        SetLastError(reason);
        // A reader that has the target open makes the move fail with this very reason.
        if (reason != ERROR_ACCESS_DENIED || waits == kWaits) return false;
        Sleep(kWaitMilliseconds);
    }
}

bool FlushFileAt(const char* path) {
    const HFILE file = _lopen(path, OF_READWRITE | OF_SHARE_EXCLUSIVE);
    if (file == HFILE_ERROR) return false;
    const bool flushed = FlushFileBuffers(reinterpret_cast<HANDLE>(static_cast<intptr_t>(file)));
    return _lclose(file) != HFILE_ERROR && flushed;
}

// A folder of the root can lie on another file system, where only a copy can reach the group's name.
bool ReplaceGroup(const char* workPath, const char* groupPath) {
    if (TakePlaceOf(workPath, groupPath)) return true;
    if (GetLastError() != ERROR_NOT_SAME_DEVICE) return false;
    char beside[kFullPathBytes];
    PathBeside(groupPath, kWorkFile, beside);
    if (std::strcmp(beside, workPath) == 0 || !DeleteIfThere(beside)) return false;
    if (CopyFileA(workPath, beside, TRUE) && FlushFileAt(beside) && TakePlaceOf(beside, groupPath))
        return true;
    DeleteFileA(beside);
    return false;
}

} // namespace

bool RemoveFromGroup(const char* groupName, uint32_t number) {
    char groupPath[kFullPathBytes];
    char workPath[kFullPathBytes];
    char root[256];
    GroupFilePath(groupName, groupPath);
    GetDatabaseRoot(root);
    JoinRootAndPath(root, kWorkFile, workPath);
    GroupFile group;
    CutOut cut;
    if (!group.OpenToChange(groupName) || !PlanCut(group, number, cut)) return false;
    const bool written = WriteWithout(group, cut, workPath);
    // An open file can't be replaced, so for a moment nothing keeps another writer out.
    group.Close();
    const bool replaced = written && ReplaceGroup(workPath, groupPath);
    DeleteFileA(workPath);
    return replaced;
}
