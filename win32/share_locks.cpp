#include "win32/share_locks.h"

#include <array>
#include <cerrno>

#include "win32/system_calls.h"

namespace {

// In this order what one opening holds is one range, and so is what speaks against it, in all but odd cases.
constexpr off_t kReads = off_t{1} << 62;
constexpr off_t kAllBytes = 4; // reads, denies writes, writes, denies reads

/// Some of the four bytes, from kReads on.
using LockBytes = std::array<bool, kAllBytes>;

struct flock RangeOf(short type, off_t start, off_t length) {
    struct flock range = {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = start;
    range.l_len = length;
    return range;
}

bool MeansNoLocks(int error) {
    return error == EINVAL || error == ENOLCK || error == ENOSYS || error == ENOTSUP;
}

// Calls `work` with each range of bytes that are set, until one gives an error.
int ForRanges(const LockBytes& bytes, int (*work)(int file, off_t start, off_t length), int file) {
    for (size_t first = 0; first < bytes.size(); ++first) {
        size_t end = first;
        while (end < bytes.size() && bytes[end]) ++end;
        if (end == first) continue;
        const int error = work(file, kReads + static_cast<off_t>(first), static_cast<off_t>(end - first));
        if (error != 0) return error;
        first = end;
    }
    return 0;
}

int Hold(int file, off_t start, off_t length) {
    struct flock range = RangeOf(F_RDLCK, start, length);
    if (systemCalls->lock(file, F_OFD_SETLK, &range) == 0) return 0;
    return errno == EACCES ? EAGAIN : errno;
}

// 0 if no other opening holds one of the bytes.
int CheckUnheld(int file, off_t start, off_t length) {
    struct flock range = RangeOf(F_WRLCK, start, length);
    if (systemCalls->lock(file, F_OFD_GETLK, &range) != 0) return errno;
    return range.l_type == F_UNLCK ? 0 : EAGAIN;
}

} // namespace

int LockForOpening(int file, FileAccess access, FileAccess denied) {
    // Own bytes first, then the look at the others': of two openings at the same time that speak against each
    // other at most one comes through.
    const LockBytes own = {access.reads, denied.writes, access.writes, denied.reads};
    const LockBytes others = {denied.reads, access.writes, denied.writes, access.reads};
    int error = ForRanges(own, Hold, file);
    if (error == 0) error = ForRanges(others, CheckUnheld, file);
    if (!MeansNoLocks(error)) return error;
    return denied.reads || denied.writes ? ENOTSUP : 0;
}

RemovalLock::RemovalLock(const char* diskPath) {
    constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    file_ = systemCalls->open(diskPath, O_RDWR | kFlags, 0);
    if (file_ >= 0) {
        struct flock range = RangeOf(F_WRLCK, kReads, kAllBytes);
        const int error = systemCalls->lock(file_, F_OFD_SETLK, &range) == 0 ? 0 : errno;
        granted_ = error == 0 || MeansNoLocks(error);
        return;
    }
    // A file that may not be written can't be held, only looked at.
    if (errno != EACCES && errno != EROFS) return;
    file_ = systemCalls->open(diskPath, O_RDONLY | kFlags, 0);
    if (file_ < 0) return;
    const int error = CheckUnheld(file_, kReads, kAllBytes);
    granted_ = error == 0 || MeansNoLocks(error);
}

RemovalLock::~RemovalLock() {
    const int error = errno;
    if (file_ >= 0) systemCalls->close(file_);
    errno = error;
}
