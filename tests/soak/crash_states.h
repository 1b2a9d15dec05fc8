/// What a disk may hold after the power fails: everything that was flushed, and any part of what was not.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Records what system calls do to a folder, from the construction to Stop.
class CrashRecorder {
public:
    explicit CrashRecorder(const std::filesystem::path& root);
    ~CrashRecorder();
    CrashRecorder(const CrashRecorder&) = delete;
    CrashRecorder& operator=(const CrashRecorder&) = delete;

    void Stop();

    size_t eventCount() const;

    /// Calls `visit` with folders as they may be found after a crash behind the first `prefix` events: up to
    /// `most` subsets of the events that no flush has made safe, all of them if there are so few.
    void VisitStates(size_t prefix, size_t most, const std::filesystem::path& workFolder,
                     std::mt19937_64& random,
                     const std::function<void(const std::filesystem::path&)>& visit) const;

    struct Log;

private:
    std::unique_ptr<Log> log_;
};
