/// Work beside the caller's.
#pragma once

#include <exception>
#include <thread>

/// Runs work on a second thread; if there is none to be had, on this one, when it is waited for.  The work
/// must not throw, and must not call the system or the host: neither expects a second thread.
template <typename Work>
class SecondThread {
public:
    explicit SecondThread(Work work) : work_(work) {
        try {
            thread_ = std::thread([this] { work_(); });
        } catch (const std::exception&) {
            waits_ = true;
        }
    }
    ~SecondThread() { Wait(); }
    SecondThread(const SecondThread&) = delete;
    SecondThread& operator=(const SecondThread&) = delete;

    /// Returns when the work is done.
    void Wait() {
        if (thread_.joinable()) thread_.join();
        if (waits_) work_();
        waits_ = false;
    }

private:
    Work work_;
    bool waits_ = false;
    std::thread thread_;
};
