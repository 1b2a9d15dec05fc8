#include "win32/fault_calls.h"

#include <cerrno>
#include <vector>

namespace {

struct Fault {
    unsigned first, last; // calls that it hits, counted from 1
    FaultCall kind;
    int error;                    // 0: the call goes through
    std::function<void()> action; // before the call, if any
};

struct State {
    std::vector<Fault> faults;
    unsigned counts[kFaultCallKinds + 1] = {};
    unsigned cutWrite = 0, cutRead = 0;
};

State& TheState() {
    static State state;
    return state;
}

// True, with errno set, if the call is to fail.
bool Fails(FaultCall kind) {
    State& state = TheState();
    ++state.counts[kind];
    ++state.counts[kFaultAnyCall];
    int error = 0;
    for (const Fault& fault : state.faults) {
        if (fault.kind != kind && fault.kind != kFaultAnyCall) continue;
        const unsigned count = state.counts[fault.kind];
        if (count < fault.first || count > fault.last) continue;
        if (fault.action) fault.action();
        if (fault.error != 0) error = fault.error;
    }
    if (error == 0) return false;
    errno = error;
    return true;
}

// The entries that need nothing but the question whether they fail.
template <FaultCall kind, auto entry>
struct Guarded;
template <FaultCall kind, typename Result, typename... Arguments, Result (*SystemCalls::*entry)(Arguments...)>
struct Guarded<kind, entry> {
    static Result Call(Arguments... arguments) {
        if (!Fails(kind)) return (kSystemCalls.*entry)(arguments...);
        if constexpr (std::is_pointer_v<Result>)
            return nullptr;
        else
            return static_cast<Result>(-1);
    }
};

// What is left of a read's bytes; -1 if it fails.
ssize_t BytesToRead(size_t count) {
    if (Fails(kFaultRead)) return -1;
    if (TheState().counts[kFaultRead] == TheState().cutRead && count > 1) count /= 2;
    return static_cast<ssize_t>(count);
}

// The same for a write.
ssize_t BytesToWrite(size_t count) {
    if (Fails(kFaultWrite)) return -1;
    const unsigned cut = TheState().cutWrite, now = TheState().counts[kFaultWrite];
    if (cut != 0 && now > cut) {
        errno = ENOSPC;
        return -1;
    }
    return static_cast<ssize_t>(cut == now && cut != 0 ? count / 2 : count);
}

ssize_t Read(int file, void* bytes, size_t count) {
    const ssize_t left = BytesToRead(count);
    return left < 0 ? -1 : kSystemCalls.read(file, bytes, static_cast<size_t>(left));
}

ssize_t ReadAt(int file, void* bytes, size_t count, off_t offset) {
    const ssize_t left = BytesToRead(count);
    return left < 0 ? -1 : kSystemCalls.readAt(file, bytes, static_cast<size_t>(left), offset);
}

ssize_t Write(int file, const void* bytes, size_t count) {
    const ssize_t left = BytesToWrite(count);
    return left < 0 ? -1 : kSystemCalls.write(file, bytes, static_cast<size_t>(left));
}

ssize_t WriteAt(int file, const void* bytes, size_t count, off_t offset) {
    const ssize_t left = BytesToWrite(count);
    return left < 0 ? -1 : kSystemCalls.writeAt(file, bytes, static_cast<size_t>(left), offset);
}

int Close(int file) {
    const bool fails = Fails(kFaultClose);
    const int error = errno;
    const int result = kSystemCalls.close(file);
    if (!fails) return result;
    errno = error;
    return -1;
}

int CloseDirectory(DIR* directory) {
    const bool fails = Fails(kFaultCloseDirectory);
    const int error = errno;
    const int result = kSystemCalls.closeDirectory(directory);
    if (!fails) return result;
    errno = error;
    return -1;
}

constexpr SystemCalls kFaultCalls = {
    .open = Guarded<kFaultOpen, &SystemCalls::open>::Call,
    .read = Read,
    .write = Write,
    .readAt = ReadAt,
    .writeAt = WriteAt,
    .seek = Guarded<kFaultSeek, &SystemCalls::seek>::Call,
    .flush = Guarded<kFaultFlush, &SystemCalls::flush>::Call,
    .truncate = Guarded<kFaultTruncate, &SystemCalls::truncate>::Call,
    .lock = Guarded<kFaultLock, &SystemCalls::lock>::Call,
    .status = Guarded<kFaultStatus, &SystemCalls::status>::Call,
    .linkStatus = Guarded<kFaultStatus, &SystemCalls::linkStatus>::Call,
    .fileStatus = Guarded<kFaultStatus, &SystemCalls::fileStatus>::Call,
    .realPath = Guarded<kFaultStatus, &SystemCalls::realPath>::Call,
    .setTimes = Guarded<kFaultSetTimes, &SystemCalls::setTimes>::Call,
    .close = Close,
    .rename = Guarded<kFaultRename, &SystemCalls::rename>::Call,
    .replace = Guarded<kFaultReplace, &SystemCalls::replace>::Call,
    .remove = Guarded<kFaultRemove, &SystemCalls::remove>::Call,
    .makeDirectory = Guarded<kFaultMakeDirectory, &SystemCalls::makeDirectory>::Call,
    .removeDirectory = Guarded<kFaultRemoveDirectory, &SystemCalls::removeDirectory>::Call,
    .flushDirectory = Guarded<kFaultFlushDirectory, &SystemCalls::flushDirectory>::Call,
    .openDirectory = Guarded<kFaultOpenDirectory, &SystemCalls::openDirectory>::Call,
    .nextEntry = Guarded<kFaultNextEntry, &SystemCalls::nextEntry>::Call,
    .closeDirectory = CloseDirectory,
};

} // namespace

FaultCalls::FaultCalls() {
    Reset();
    systemCalls = &kFaultCalls;
}

FaultCalls::~FaultCalls() {
    systemCalls = &kSystemCalls;
    Reset();
}

void FaultCalls::FailAt(unsigned nth, int error, FaultCall kind) {
    TheState().faults.push_back({nth, nth, kind, error, nullptr});
}

void FaultCalls::FailFrom(unsigned nth, int error, FaultCall kind) {
    TheState().faults.push_back({nth, ~0u, kind, error, nullptr});
}

void FaultCalls::CutWriteAt(unsigned nth) {
    TheState().cutWrite = nth;
}

void FaultCalls::CutReadAt(unsigned nth) {
    TheState().cutRead = nth;
}

void FaultCalls::At(unsigned nth, std::function<void()> action, FaultCall kind) {
    TheState().faults.push_back({nth, nth, kind, 0, std::move(action)});
}

unsigned FaultCalls::count(FaultCall kind) const {
    return TheState().counts[kind];
}

void FaultCalls::Reset() {
    TheState() = State();
}
