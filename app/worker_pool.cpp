#include "app/worker_pool.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <vector>

#include "app/exit_code.h"

namespace {

struct Worker {
    pid_t process = -1;
    int pipe = -1;
    std::string rest; ///< of a line that hasn't ended yet
};

void SendLine(int pipe, const std::string& line) {
    const std::string whole = line + "\n";
    for (size_t sent = 0; sent < whole.size();) {
        const ssize_t count = write(pipe, whole.data() + sent, whole.size() - sent);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) _exit(kFileTrouble);
        sent += static_cast<size_t>(count);
    }
}

/// False at the end of the pipe.
bool ReceiveLines(Worker& worker, const std::function<void(const std::string&)>& receive) {
    char buffer[65536];
    const ssize_t count = read(worker.pipe, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) return true;
    if (count <= 0) return false;
    worker.rest.append(buffer, static_cast<size_t>(count));
    size_t start = 0;
    for (size_t end; (end = worker.rest.find('\n', start)) != std::string::npos; start = end + 1) {
        receive(worker.rest.substr(start, end - start));
    }
    worker.rest.erase(0, start);
    return true;
}

void ReceiveAll(std::vector<Worker>& workers, const std::function<void(const std::string&)>& receive) {
    for (;;) {
        std::vector<pollfd> polled;
        std::vector<Worker*> open;
        for (Worker& worker : workers) {
            if (worker.pipe < 0) continue;
            polled.push_back({worker.pipe, POLLIN, 0});
            open.push_back(&worker);
        }
        if (polled.empty()) return;
        if (poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) return;
        for (size_t i = 0; i < polled.size(); ++i) {
            if (!polled[i].revents || ReceiveLines(*open[i], receive)) continue;
            close(open[i]->pipe);
            open[i]->pipe = -1;
        }
    }
}

int ResultOf(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    std::fprintf(stderr, "velquorne: a worker process ended by signal %d\n", WTERMSIG(status));
    return kFileTrouble;
}

} // namespace

int RunWorkers(int count,
               const std::function<int(int, const std::function<void(const std::string&)>& send)>& work,
               const std::function<void(const std::string&)>& receive) {
    if (count <= 1) return count == 1 ? work(0, receive) : static_cast<int>(kDone);
    std::vector<Worker> workers(static_cast<size_t>(count));
    std::cout.flush();
    for (int i = 0; i < count; ++i) {
        int ends[2];
        if (pipe(ends) != 0) return kFileTrouble;
        const pid_t process = fork();
        if (process < 0) return kFileTrouble;
        if (process == 0) {
            close(ends[0]);
            const int result = work(i, [&](const std::string& line) { SendLine(ends[1], line); });
            std::cout.flush();
            _exit(result);
        }
        close(ends[1]);
        workers[static_cast<size_t>(i)] = {process, ends[0], {}};
    }
    ReceiveAll(workers, receive);
    int worst = kDone;
    for (const Worker& worker : workers) worst = std::max(worst, ResultOf(worker.process));
    return worst;
}

Progress::Progress(size_t total) : total_(total), terminal_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
    if (terminal_ && done_ > 0) std::fprintf(stderr, "\r\033[K");
}

void Progress::Step() {
    ++done_;
    if (!terminal_) return;
    using namespace std::chrono;
    const long long now = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    if (now - lastShown_ < 100 && done_ != total_) return;
    lastShown_ = now;
    constexpr size_t kWidth = 30;
    const size_t filled = total_ ? done_ * kWidth / total_ : kWidth;
    std::fprintf(stderr, "\r[%s%s] %zu of %zu", std::string(filled, '#').c_str(),
                 std::string(kWidth - filled, '.').c_str(), done_, total_);
    std::fflush(stderr);
}
