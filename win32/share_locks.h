/// Windows' sharing rules among programs that use these calls, by locks of the file system.
///
/// Four bytes far beyond the end of any file stand for "someone reads", "someone writes", "someone denies
/// reading" and "someone denies writing".  Whoever opens a file holds a shared lock on the bytes that are
/// true of it and looks whether anyone holds the bytes that speak against it.  Whoever takes the file away
/// from its name needs all four for itself.  Locks end with the file's descriptor, also when its process is
/// killed.
#pragma once

/// What an opening does, or what it denies to others.
struct FileAccess {
    bool reads = false;
    bool writes = false;
};

/// Takes the locks of an opening on a descriptor that is open for reading at least.  0, or an errno: EAGAIN
/// if another opening speaks against it, ENOTSUP if something is denied and the file system has no locks.
int LockForOpening(int file, FileAccess access, FileAccess denied);

/// Holds a file for as long as it is deleted, moved or replaced, so that nobody opens it meanwhile.
class RemovalLock {
public:
    /// Links, directories and names without a file need no lock and are granted.
    explicit RemovalLock(const char* diskPath);
    ~RemovalLock();
    RemovalLock(const RemovalLock&) = delete;
    RemovalLock& operator=(const RemovalLock&) = delete;

    /// False if the file is open somewhere.
    bool granted() const { return granted_; }

private:
    int file_ = -1;
    bool granted_ = true;
};
