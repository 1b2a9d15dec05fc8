/// Work shared out to processes.
///
/// The plug-in and its host live once in a process, so what runs side by side runs in processes.  A worker
/// hands lines to the parent through a pipe.
#pragma once

#include <functional>
#include <string>

/// Runs work(i, send) for each i below `count`, each in a process of its own if `count` is above 1; lines
/// given to `send` arrive in the parent at `receive`, in order for one worker.  The work returns an exit
/// code; the greatest of them is the result, kFileTrouble for a worker that died.
int RunWorkers(int count,
               const std::function<int(int, const std::function<void(const std::string&)>& send)>& work,
               const std::function<void(const std::string&)>& receive);

/// A line of progress on a terminal's standard error; nothing elsewhere.
class Progress {
public:
    explicit Progress(size_t total);
    ~Progress();
    void Step();

private:
    size_t total_, done_ = 0;
    long long lastShown_ = 0;
    bool terminal_;
};
