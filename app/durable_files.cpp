#include "app/durable_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "win32/system_calls.h"

namespace {

namespace fs = std::filesystem;

class OpenFile {
public:
    OpenFile(const std::string& path, int flags)
        : file_(systemCalls->open(path.c_str(), flags | O_CLOEXEC, 0666)) {}
    ~OpenFile() { Close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int get() const { return file_; }
    bool ok() const { return file_ >= 0; }
    bool Close() {
        const int file = file_;
        file_ = -1;
        return file < 0 || systemCalls->close(file) == 0;
    }

private:
    int file_;
};

bool Fail(const std::string& path, std::string* error) {
    *error = path + ": " + std::strerror(errno);
    return false;
}

bool SyncFolder(const fs::path& folder) {
    return systemCalls->flushDirectory(folder.c_str()) == 0;
}

/// Makes the folders above `path`, each of them on the disk.
bool MakeFoldersFor(const std::string& path, std::string* error) {
    const fs::path folder = fs::path(path).parent_path();
    struct stat entry;
    if (systemCalls->status(folder.c_str(), &entry) == 0 && S_ISDIR(entry.st_mode)) return true;
    if (!folder.has_relative_path()) return Fail(folder.string(), error);
    if (!MakeFoldersFor(folder.string(), error)) return false;
    if ((systemCalls->makeDirectory(folder.c_str(), 0777) != 0 && errno != EEXIST) ||
        !SyncFolder(folder.parent_path()))
        return Fail(folder.string(), error);
    return true;
}

bool CopyBytes(int from, int to) {
    std::array<char, 0x10000> buffer;
    for (;;) {
        const ssize_t count = systemCalls->read(from, buffer.data(), buffer.size());
        if (count == 0) return true;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 || !WriteAll(to, buffer.data(), static_cast<uint64_t>(count))) return false;
    }
}

bool CopyFileWhole(const std::string& from, const std::string& to) {
    const OpenFile source(from, O_RDONLY | O_NOFOLLOW);
    OpenFile target(to, O_WRONLY | O_CREAT | O_EXCL);
    struct stat entry;
    if (!source.ok() || !target.ok() || systemCalls->fileStatus(source.get(), &entry) != 0) return false;
    const std::array<timespec, 2> times = {entry.st_atim, entry.st_mtim};
    return CopyBytes(source.get(), target.get()) && systemCalls->setTimes(target.get(), times.data()) == 0 &&
           systemCalls->flush(target.get()) == 0 && target.Close();
}

/// Folders with all that is in them; links as links.
bool CopyTree(const std::string& from, const std::string& to, std::string* error) {
    struct stat entry;
    if (systemCalls->linkStatus(from.c_str(), &entry) != 0) return Fail(from, error);
    if (S_ISLNK(entry.st_mode)) {
        std::error_code trouble;
        fs::copy_symlink(from, to, trouble);
        if (trouble) *error = from + ": " + trouble.message();
        return !trouble;
    }
    if (!S_ISDIR(entry.st_mode)) return CopyFileWhole(from, to) || Fail(from, error);
    if (systemCalls->makeDirectory(to.c_str(), 0777) != 0) return Fail(to, error);
    std::error_code trouble;
    for (fs::directory_iterator inner(from, trouble); !trouble && inner != fs::directory_iterator();
         inner.increment(trouble)) {
        if (!CopyTree(inner->path().string(), to + "/" + inner->path().filename().string(), error))
            return false;
    }
    if (trouble) *error = from + ": " + trouble.message();
    return !trouble && (SyncFolder(to) || Fail(to, error));
}

bool MoveByCopy(const std::string& from, const std::string& to, std::string* error) {
    std::error_code trouble;
    if (!CopyTree(from, to, error) || !SyncFolder(fs::path(to).parent_path())) {
        fs::remove_all(to, trouble);
        return false;
    }
    fs::remove_all(from, trouble);
    if (trouble) *error = from + ": " + trouble.message();
    return !trouble;
}

} // namespace

bool WriteAll(int file, const void* bytes, uint64_t count) {
    const char* rest = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = systemCalls->write(file, rest, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        rest += written;
        count -= static_cast<uint64_t>(written);
    }
    return true;
}

bool CopyDurably(const std::string& from, const std::string& to, std::string* error) {
    if (!MakeFoldersFor(to, error)) return false;
    if (CopyFileWhole(from, to) && SyncFolder(fs::path(to).parent_path())) return true;
    const bool ours = errno != EEXIST;
    Fail(to, error);
    if (ours) systemCalls->remove(to.c_str());
    return false;
}

bool MoveDurably(const std::string& from, const std::string& to, std::string* error) {
    if (!MakeFoldersFor(to, error)) return false;
    if (systemCalls->rename(from.c_str(), to.c_str()) != 0)
        return errno == EXDEV ? MoveByCopy(from, to, error) : Fail(from, error);
    return (SyncFolder(fs::path(to).parent_path()) && SyncFolder(fs::path(from).parent_path())) ||
           Fail(from, error);
}

bool ReplaceDurably(const std::string& path, const std::string& work,
                    const std::function<bool(int file)>& write, std::string* error) {
    OpenFile file(work, O_WRONLY | O_CREAT | O_EXCL);
    if (!file.ok()) return Fail(work, error);
    const bool made = write(file.get()) && systemCalls->flush(file.get()) == 0 && file.Close() &&
                      systemCalls->replace(work.c_str(), path.c_str()) == 0;
    if (!made) {
        Fail(path, error);
        systemCalls->remove(work.c_str());
        return false;
    }
    return SyncFolder(fs::path(path).parent_path()) || Fail(path, error);
}
