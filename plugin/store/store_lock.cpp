#include "plugin/store/store_lock.h"

#include <windows.h>

#include <new>

#include "plugin/frame/globals.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/store_names.h"

namespace {

constexpr char kLockFile[] = "\\VLQ.LCK";
constexpr DWORD kMostWaited = 1000; ///< milliseconds
constexpr DWORD kLongestWait = 20;
constexpr int kTries = 3; ///< of others who leave work unfinished between our two locks

// Waits longer each time, so that short work of others costs little and long work is not asked for in vain.
HANDLE OpenLockFile(StoreLockKind kind) {
    char root[kNameBytes];
    char path[kFullPathBytes];
    if (GetDatabaseRoot(root) != 0) return INVALID_HANDLE_VALUE;
    JoinRootAndPath(root, kLockFile, path);
    const DWORD access = kind == kStoreShared ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
    const DWORD sharing = kind == kStoreShared ? FILE_SHARE_READ : 0;
    DWORD wait = 1;
    for (DWORD waited = 0;; waited += wait, wait = wait * 2 < kLongestWait ? wait * 2 : kLongestWait) {
        const HANDLE file =
            CreateFileA(path, access, sharing, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) return file;
        const DWORD reason = GetLastError();
        if (reason != ERROR_SHARING_VIOLATION || waited >= kMostWaited) {
            StoreFails(reason == ERROR_SHARING_VIOLATION ? StoreTrouble::kBusy : StoreTrouble::kDisk);
            return INVALID_HANDLE_VALUE;
        }
        Sleep(wait);
    }
}

bool Take(StoreLockKind kind) {
    const HANDLE file = OpenLockFile(kind);
    if (file == INVALID_HANDLE_VALUE) return false;
    globals->storeLock = file;
    globals->storeLockKind = kind;
    globals->storeLockDepth = 1;
    return true;
}

void Release() {
    CloseHandle(globals->storeLock);
    globals->storeLock = nullptr;
    globals->storeLockDepth = 0;
}

bool TakeAndFinish() {
    if (!Take(kStoreExclusive)) return false;
    if (FinishInterruptedWork()) return true;
    Release();
    return StoreFails(StoreTrouble::kUnfinished);
}

bool TakeFirst(StoreLockKind kind) {
    if (kind == kStoreExclusiveAsIs) return Take(kStoreExclusive);
    if (kind == kStoreExclusive) return TakeAndFinish();
    for (int tries = 0; tries < kTries; ++tries) {
        if (!Take(kStoreShared)) return false;
        if (!WorkIsInterrupted()) return true;
        Release();
        if (!TakeAndFinish()) return false;
        Release();
    }
    return StoreFails(StoreTrouble::kBusy);
}

// What memory ran out in stays as it is, with its note, for whoever takes the lock next.
bool TakeWithinMemory(StoreLockKind kind) {
    try {
        return TakeFirst(kind);
    } catch (const std::bad_alloc&) {
        if (globals->storeLockDepth != 0) Release();
        return StoreFails(StoreTrouble::kMemory);
    }
}

} // namespace

bool StoreFails(StoreTrouble trouble) {
    globals->storeTrouble = trouble;
    return false;
}

StoreLock::StoreLock(StoreLockKind kind) {
    if (globals->storeLockDepth == 0) {
        globals->storeTrouble = StoreTrouble::kNone;
        held_ = TakeWithinMemory(kind);
        return;
    }
    // Others may hold it shared as well, so it can't become ours alone.
    if (kind != kStoreShared && globals->storeLockKind == kStoreShared) {
        StoreFails(StoreTrouble::kBusy);
        return;
    }
    ++globals->storeLockDepth;
    held_ = true;
}

StoreLock::~StoreLock() {
    if (!held_) return;
    if (globals->storeLockDepth == 1)
        Release();
    else
        --globals->storeLockDepth;
}
