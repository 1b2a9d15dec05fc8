#include "tests/soak/crash_states.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <set>

#include "win32/system_calls.h"

namespace fs = std::filesystem;

namespace {

enum class Kind { kCreate, kWrite, kCut, kRename, kRemove, kMakeFolder, kRemoveFolder, kFlush, kFlushFolder };

struct Event {
    Kind kind;
    std::string path, to; ///< names within the root
    int file = 0;         ///< number of the contents
    size_t offset = 0;
    std::string bytes;
};

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

/// A disk in memory; contents have numbers, so that they follow their names.
struct Disk {
    std::set<std::string> folders;
    std::map<std::string, int> names;
    std::map<int, std::string> contents;

    static bool Below(const std::string& path, const std::string& folder) {
        return path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
               path[folder.size()] == '/';
    }

    bool Has(const std::string& path) const { return names.contains(path) || folders.contains(path); }

    void RenameFolder(const std::string& from, const std::string& to) {
        std::set<std::string> moved;
        for (const std::string& path : folders)
            moved.insert(path == from || Below(path, from) ? to + path.substr(from.size()) : path);
        std::map<std::string, int> movedNames;
        for (const auto& [path, file] : names)
            movedNames[Below(path, from) ? to + path.substr(from.size()) : path] = file;
        folders = moved;
        names = movedNames;
    }

    bool IsEmpty(const std::string& folder) const {
        for (const std::string& path : folders) {
            if (Below(path, folder)) return false;
        }
        for (const auto& [path, file] : names) {
            if (Below(path, folder)) return false;
        }
        return true;
    }

    // An event whose names are not there, because others were lost, changes nothing.
    void Apply(const Event& event) {
        switch (event.kind) {
            case Kind::kCreate:
                if (folders.contains(FolderOf(event.path)) && !Has(event.path)) {
                    names[event.path] = event.file;
                    contents.try_emplace(event.file);
                }
                break;
            case Kind::kWrite: {
                std::string& bytes = contents[event.file];
                if (bytes.size() < event.offset + event.bytes.size())
                    bytes.resize(event.offset + event.bytes.size());
                bytes.replace(event.offset, event.bytes.size(), event.bytes);
                break;
            }
            case Kind::kCut:
                contents[event.file].resize(event.offset);
                break;
            case Kind::kRename:
                if (!folders.contains(FolderOf(event.to))) break;
                if (folders.contains(event.path) && !Has(event.to)) {
                    RenameFolder(event.path, event.to);
                } else if (names.contains(event.path) && !folders.contains(event.to)) {
                    const int file = names[event.path];
                    names.erase(event.path);
                    names[event.to] = file;
                }
                break;
            case Kind::kRemove:
                names.erase(event.path);
                break;
            case Kind::kMakeFolder:
                if (folders.contains(FolderOf(event.path)) && !Has(event.path)) folders.insert(event.path);
                break;
            case Kind::kRemoveFolder:
                if (IsEmpty(event.path)) folders.erase(event.path);
                break;
            case Kind::kFlush:
            case Kind::kFlushFolder:
                break;
        }
    }
};

} // namespace

struct CrashRecorder::Log {
    fs::path root;
    Disk before;
    std::map<ino_t, int> fileOfNode;
    int files = 0;
    std::vector<Event> events;

    // The name within the root; false for what lies elsewhere.
    bool Within(const char* path, std::string& name) const {
        const std::string whole = fs::path(path).lexically_normal().string();
        const std::string& prefix = root.string();
        if (whole != prefix && whole != prefix + "/" && !Disk::Below(whole, prefix)) return false;
        name = whole.substr(prefix.size());
        while (!name.empty() && name.back() == '/') name.pop_back();
        return true;
    }

    int FileOfDescriptor(int descriptor) const {
        struct stat status;
        if (::fstat(descriptor, &status) != 0) return 0;
        const auto found = fileOfNode.find(status.st_ino);
        return found == fileOfNode.end() ? 0 : found->second;
    }
};

namespace {

CrashRecorder::Log* recording = nullptr;

void Note(Event event) {
    recording->events.push_back(std::move(event));
}

void NoteName(Kind kind, const char* path) {
    std::string name;
    if (recording->Within(path, name)) Note({kind, name, "", 0, 0, ""});
}

int Open(const char* path, int flags, mode_t mode) {
    const bool existed = ::access(path, F_OK) == 0;
    const int descriptor = kSystemCalls.open(path, flags, mode);
    std::string name;
    if (descriptor < 0 || existed || !recording->Within(path, name)) return descriptor;
    struct stat status;
    ::fstat(descriptor, &status);
    recording->fileOfNode[status.st_ino] = ++recording->files;
    Note({Kind::kCreate, name, "", recording->files, 0, ""});
    return descriptor;
}

ssize_t WriteAt(int descriptor, const void* bytes, size_t count, off_t offset) {
    const ssize_t written = kSystemCalls.writeAt(descriptor, bytes, count, offset);
    const int file = recording->FileOfDescriptor(descriptor);
    if (written > 0 && file != 0)
        Note({Kind::kWrite, "", "", file, static_cast<size_t>(offset),
              std::string(static_cast<const char*>(bytes), static_cast<size_t>(written))});
    return written;
}

ssize_t Write(int descriptor, const void* bytes, size_t count) {
    const off_t offset = ::lseek(descriptor, 0, SEEK_CUR);
    const ssize_t written = WriteAt(descriptor, bytes, count, offset);
    if (written > 0) ::lseek(descriptor, offset + written, SEEK_SET);
    return written;
}

int Truncate(int descriptor, off_t length) {
    const int result = kSystemCalls.truncate(descriptor, length);
    const int file = recording->FileOfDescriptor(descriptor);
    if (result == 0 && file != 0) Note({Kind::kCut, "", "", file, static_cast<size_t>(length), ""});
    return result;
}

int Flush(int descriptor) {
    const int file = recording->FileOfDescriptor(descriptor);
    if (file != 0) Note({Kind::kFlush, "", "", file, 0, ""});
    return 0; // the recorder is what is flushed to
}

template <auto entry>
int Rename(const char* from, const char* to) {
    const int result = (kSystemCalls.*entry)(from, to);
    std::string name, newName;
    if (result == 0 && recording->Within(from, name) && recording->Within(to, newName))
        Note({Kind::kRename, name, newName, 0, 0, ""});
    return result;
}

int Remove(const char* path) {
    const int result = kSystemCalls.remove(path);
    if (result == 0) NoteName(Kind::kRemove, path);
    return result;
}

int MakeDirectory(const char* path, mode_t mode) {
    const int result = kSystemCalls.makeDirectory(path, mode);
    if (result == 0) NoteName(Kind::kMakeFolder, path);
    return result;
}

int RemoveDirectory(const char* path) {
    const int result = kSystemCalls.removeDirectory(path);
    if (result == 0) NoteName(Kind::kRemoveFolder, path);
    return result;
}

int FlushDirectory(const char* path) {
    NoteName(Kind::kFlushFolder, path);
    return 0;
}

SystemCalls RecordingCalls() {
    SystemCalls calls = kSystemCalls;
    calls.open = Open;
    calls.write = Write;
    calls.writeAt = WriteAt;
    calls.truncate = Truncate;
    calls.flush = Flush;
    calls.rename = Rename<&SystemCalls::rename>;
    calls.replace = Rename<&SystemCalls::replace>;
    calls.remove = Remove;
    calls.makeDirectory = MakeDirectory;
    calls.removeDirectory = RemoveDirectory;
    calls.flushDirectory = FlushDirectory;
    return calls;
}

const SystemCalls kRecordingCalls = RecordingCalls();

bool IsFlush(const Event& event) {
    return event.kind == Kind::kFlush || event.kind == Kind::kFlushFolder;
}

bool MakesSafe(const Event& flush, const Event& event) {
    const bool onContents = event.kind == Kind::kWrite || event.kind == Kind::kCut;
    if (flush.kind == Kind::kFlush) return onContents && event.file == flush.file;
    return !onContents && FolderOf(event.kind == Kind::kRename ? event.to : event.path) == flush.path;
}

void Materialise(const Disk& disk, const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const std::string& path : disk.folders) fs::create_directories(folder.string() + path);
    for (const auto& [path, file] : disk.names) {
        const std::string& bytes = disk.contents.at(file);
        std::ofstream(folder.string() + path, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
}

} // namespace

CrashRecorder::CrashRecorder(const fs::path& root) : log_(std::make_unique<Log>()) {
    log_->root = root;
    log_->before.folders.insert("");
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().string().substr(root.string().size());
        if (entry.is_directory()) {
            log_->before.folders.insert(name);
            continue;
        }
        struct stat status;
        ::stat(entry.path().c_str(), &status);
        log_->fileOfNode[status.st_ino] = ++log_->files;
        log_->before.names[name] = log_->files;
        std::ifstream file(entry.path(), std::ios::binary);
        log_->before.contents[log_->files] = {std::istreambuf_iterator<char>(file), {}};
    }
    recording = log_.get();
    systemCalls = &kRecordingCalls;
}

CrashRecorder::~CrashRecorder() {
    Stop();
}

void CrashRecorder::Stop() {
    systemCalls = &kSystemCalls;
    recording = nullptr;
}

size_t CrashRecorder::eventCount() const {
    return log_->events.size();
}

void CrashRecorder::VisitStates(size_t prefix, size_t most, const fs::path& workFolder,
                                std::mt19937_64& random,
                                const std::function<void(const fs::path&)>& visit) const {
    const std::vector<Event>& events = log_->events;
    std::vector<size_t> unsafe;
    for (size_t i = 0; i < prefix; ++i) {
        bool safe = IsFlush(events[i]);
        for (size_t j = i + 1; j < prefix && !safe; ++j) safe = MakesSafe(events[j], events[i]);
        if (!safe) unsafe.push_back(i);
    }
    const bool all = unsafe.size() < 16 && (size_t{1} << unsafe.size()) <= most;
    const size_t states = all ? size_t{1} << unsafe.size() : most;
    for (size_t state = 0; state < states; ++state) {
        // The first two lose all and nothing.
        const uint64_t kept = all ? state : state == 0 ? 0 : state == 1 ? ~uint64_t{0} : random();
        std::set<size_t> lost;
        for (size_t i = 0; i < unsafe.size(); ++i) {
            if ((kept >> (i % 64) & 1) == 0) lost.insert(unsafe[i]);
        }
        Disk disk = log_->before;
        for (size_t i = 0; i < prefix; ++i) {
            if (!lost.contains(i)) disk.Apply(events[i]);
        }
        Materialise(disk, workFolder);
        visit(workFolder);
    }
}
