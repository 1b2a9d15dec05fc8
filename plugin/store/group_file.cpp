#include "plugin/store/group_file.h"

#include <algorithm>
#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "plugin/store/swap_words.h"

namespace {

constexpr char kWorkFile[] = "\\VLQ.TMP";
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

bool GroupFile::Open(const char* path, DWORD access, DWORD sharing, DWORD disposition) {
    Close();
    // Another program that has the file is waited for, a second at most.
    for (int waits = 0;; ++waits) {
        file_ = CreateFileA(path, access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file_ != INVALID_HANDLE_VALUE) break;
        const bool busy = GetLastError() == ERROR_SHARING_VIOLATION;
        if (!busy || waits == kWaits) return StoreFails(busy ? StoreTrouble::kBusy : StoreTrouble::kDisk);
        Sleep(kWaitMilliseconds);
    }
    if (ReadFrame()) return true;
    Close();
    return StoreFails(StoreTrouble::kDisk);
}

bool GroupFile::ReadStamp(FileStamp& stamp) const {
    BY_HANDLE_FILE_INFORMATION information;
    if (!GetFileInformationByHandle(file_, &information)) return false;
    if (information.nFileSizeHigh != 0 || information.nFileSizeLow > kMostGroupBytes) return false;
    stamp = {.index = uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow,
             .written = uint64_t{information.ftLastWriteTime.dwHighDateTime} << 32 |
                        information.ftLastWriteTime.dwLowDateTime,
             .volume = information.dwVolumeSerialNumber,
             .bytes = information.nFileSizeLow};
    return true;
}

bool GroupFile::ReadFrame() {
    if (!ReadStamp(stamp_)) return false;
    length_ = stamp_.bytes;
    storedCount_ = 0;
    if (length_ < kCountBytes) return true;
    if (!Read(0, &storedCount_, kCountBytes)) return false;
    storedCount_ = SwapLong(storedCount_);
    return true;
}

bool GroupFile::OpenToRead(const char* groupName) {
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    return Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING);
}

bool GroupFile::OpenToChange(const char* groupName) {
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    return Open(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, OPEN_EXISTING);
}

bool GroupFile::OpenOrMake(const char* groupName) {
    char path[kFullPathBytes];
    GroupFilePath(groupName, path);
    return Open(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS);
}

bool GroupFile::MakeWorkFile(const char* path) {
    return DeleteIfThere(path) && Open(path, GENERIC_READ | GENERIC_WRITE, 0, CREATE_NEW);
}

void GroupFile::KeepOffsets() {
    GroupOffsets* table = offsets();
    if (table == nullptr) return;
    if (ReadStamp(stamp_))
        table->stamp = stamp_;
    else
        ForgetOffsets(*table);
}

uint32_t GroupFile::count() const {
    if (length_ < kCountBytes) return 0;
    return std::min(storedCount_, (length_ - kCountBytes) / kSmallestRecordBytes);
}

bool GroupFile::Read(uint32_t place, void* bytes, uint32_t count) {
    if (count == 0) return true;
    OVERLAPPED at{};
    at.Offset = place;
    DWORD done = 0;
    return ReadFile(file_, bytes, count, &done, &at) && done == count;
}

bool GroupFile::Write(uint32_t place, const void* bytes, uint32_t count) {
    if (uint64_t{place} + count > kMostGroupBytes) return false;
    if (count == 0) return true;
    OVERLAPPED at{};
    at.Offset = place;
    DWORD done = 0;
    if (!WriteFile(file_, bytes, count, &done, &at) || done != count) return false;
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
    return FlushFileBuffers(file_);
}

bool GroupFile::CutAt(uint32_t length) {
    const auto file = static_cast<HFILE>(reinterpret_cast<intptr_t>(file_));
    if (_llseek(file, static_cast<LONG>(length), FILE_BEGIN) < 0 || !SetEndOfFile(file_)) return false;
    length_ = length;
    return true;
}

bool GroupFile::HasLength(uint32_t length) {
    FileStamp stamp;
    return ReadStamp(stamp) && stamp.bytes == length;
}

bool GroupFile::Close() {
    if (file_ == INVALID_HANDLE_VALUE) return true;
    const bool closed = CloseHandle(file_);
    file_ = INVALID_HANDLE_VALUE;
    return closed;
}

namespace {

// Notes a record if it is the first one that the table doesn't know.
void NoteRecord(GroupOffsets* table, const RecordPlace& record) {
    if (table != nullptr && table->known == record.number) AddOffset(*table, record.place + record.bytes);
}

// The place of a known record, if it still stands there.
bool RememberedRecord(GroupFile& file, uint32_t number, RecordPlace& found) {
    GroupOffsets* table = file.offsets();
    if (table == nullptr || number >= table->known) return false;
    const uint32_t place = PlaceOf(*table, number);
    const uint32_t bytes = PlaceOf(*table, number + 1) - place;
    uint32_t size;
    if (file.Read(place + offsetof(RecordHeader, size), &size, sizeof size) && SwapLong(size) == bytes) {
        found = {number, place, bytes};
        return true;
    }
    ForgetOffsets(*table);
    return false;
}

} // namespace

void GroupWalk::StartAt(uint32_t number) {
    const GroupOffsets* table = file_.offsets();
    if (table == nullptr) return;
    const uint32_t start = std::min(number, table->known);
    RecordPlace last;
    if (start == 0 || !RememberedRecord(file_, start - 1, last)) return;
    walked_ = start;
    end_ = last.place + last.bytes;
}

// Brings the next header into the window: no more than it where records are so long that copying what lies
// between costs more than another call, many at once where they are short.
bool GroupWalk::Fill() {
    const bool areShort = end_ - kCountBytes < uint64_t{walked_} * kLongRecordBytes;
    windowPlace_ = end_;
    windowBytes_ = std::min(areShort ? kWindowBytes : kRecordHeaderBytes, file_.length() - end_);
    return file_.Read(windowPlace_, window_.data(), windowBytes_);
}

bool GroupWalk::Next() {
    if (damaged_ || walked_ == file_.storedCount()) return false;
    damaged_ = true;
    if (file_.length() - end_ < kSmallestRecordBytes) return false;
    const bool inWindow =
        windowBytes_ >= kRecordHeaderBytes && end_ - windowPlace_ <= windowBytes_ - kRecordHeaderBytes;
    if (!inWindow && !Fill()) return false;
    uint32_t size;
    std::memcpy(&size, window_.data() + (end_ - windowPlace_) + offsetof(RecordHeader, size), sizeof size);
    size = SwapLong(size);
    if (size < kSmallestRecordBytes || size > file_.length() - end_) return false;
    record_ = {walked_++, end_, size};
    end_ += size;
    damaged_ = false;
    Note();
    return true;
}

void GroupWalk::Note() {
    if (offsetsUsed_ != globals->offsetsUsed) {
        offsets_ = file_.offsets();
        offsetsUsed_ = globals->offsetsUsed;
    }
    NoteRecord(offsets_, record_);
}

bool FindRecord(GroupFile& file, uint32_t number, RecordPlace& found) {
    if (number >= file.count()) return false;
    if (RememberedRecord(file, number, found)) return true;
    GroupWalk walk(file);
    walk.StartAt(number);
    while (walk.Next()) {
        if (walk.record().number != number) continue;
        found = walk.record();
        return true;
    }
    return false;
}

namespace {

// Where the records end; false if the walk ends before the count.
bool FindEnd(GroupFile& file, uint32_t& end) {
    GroupWalk walk(file);
    walk.StartAt(file.storedCount());
    while (walk.Next()) {
    }
    end = walk.end();
    return walk.reachedCount();
}

bool WriteRecordBytes(GroupFile& file, uint32_t end, const void* record, uint32_t bytes) {
    return file.Write(end, record, bytes) && file.HasLength(file.length()) && file.Flush();
}

// Writes the record, and the count when it is on the disk; puts back what was there if that fails.
bool WriteAppended(GroupFile& file, uint32_t end, const void* record, uint32_t bytes) {
    const uint32_t length = file.length();
    const uint32_t count = file.storedCount();
    const bool started = length >= kCountBytes || file.WriteCount(0);
    const bool written = started && WriteRecordBytes(file, end, record, bytes);
    // The count goes last: until it is on the disk the new record does not exist for any reader.
    if (written && file.WriteCount(count + 1) && file.Flush()) return true;
    // If the old count can't be put back the record has to stay behind the new one.
    if (!written || file.WriteCount(count)) file.CutAt(length);
    file.Flush();
    return false;
}

} // namespace

bool AppendToGroup(const char* groupName, const void* record, uint32_t bytes, uint32_t* number) {
    const StoreLock lock(kStoreShared);
    GroupFile file;
    if (!lock.held() || !file.OpenOrMake(groupName)) return false;
    uint32_t end;
    if (!FindEnd(file, end)) return StoreFails(StoreTrouble::kDamaged);
    if (uint64_t{end} + bytes > kMostGroupBytes) return StoreFails(StoreTrouble::kRefused);
    const uint32_t count = file.storedCount();
    if (!WriteAppended(file, end, record, bytes)) return StoreFails(StoreTrouble::kDisk);
    // What an append that was cut short has left may be longer than this record.
    if (file.length() > end + bytes) file.CutAt(end + bytes);
    file.KeepOffsets();
    NoteRecord(file.offsets(), {count, end, bytes});
    *number = count;
    return true;
}

bool ReplaceHeader(GroupFile& file, const RecordPlace& record, const RecordHeader& old,
                   const RecordHeader& header) {
    if (file.Write(record.place, &header, sizeof header) && file.Flush()) {
        file.KeepOffsets();
        return true;
    }
    if (file.Write(record.place, &old, sizeof old)) file.Flush();
    return StoreFails(StoreTrouble::kDisk);
}

namespace {

// The bytes of a group file that a delete leaves out.
struct CutOut {
    uint32_t begin;
    uint32_t end;
    uint32_t fileEnd; ///< where the records end
};

bool PlanCut(GroupFile& file, uint32_t number, CutOut& cut) {
    RecordPlace record;
    if (!FindEnd(file, cut.fileEnd)) return StoreFails(StoreTrouble::kDamaged);
    if (!FindRecord(file, number, record)) return StoreFails(StoreTrouble::kRefused);
    cut.begin = record.place;
    cut.end = record.place + record.bytes;
    return true;
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

bool WriteWithout(GroupFile& group, const CutOut& cut, const char* workPath, FileStamp& stamp) {
    GroupFile work;
    return work.MakeWorkFile(workPath) && work.WriteCount(group.storedCount() - 1) &&
           CopyRange(group, kCountBytes, cut.begin, work, kCountBytes) &&
           CopyRange(group, cut.end, cut.fileEnd, work, cut.begin) &&
           work.HasLength(cut.fileEnd - (cut.end - cut.begin)) && work.Flush() && work.ReadStamp(stamp) &&
           work.Close();
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
    const HANDLE file = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool flushed = FlushFileBuffers(file);
    return CloseHandle(file) && flushed;
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
    const StoreLock lock(kStoreExclusive);
    GroupFile group;
    CutOut cut;
    if (!lock.held() || !group.OpenToChange(groupName) || !PlanCut(group, number, cut)) return false;
    FileStamp stamp;
    const bool written = WriteWithout(group, cut, workPath, stamp);
    GroupOffsets* offsets = group.offsets();
    // An open file can't be replaced; the database's lock keeps other writers out meanwhile.
    group.Close();
    const bool replaced = written && ReplaceGroup(workPath, groupPath);
    DeleteFileA(workPath);
    if (!replaced) return StoreFails(StoreTrouble::kDisk);
    if (offsets != nullptr) CutOffset(*offsets, number, stamp);
    return true;
}
