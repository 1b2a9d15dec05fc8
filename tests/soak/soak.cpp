// Tries to lose a designer's records: failing system calls, kills, power cuts, many processes, damaged bytes.
// And to make a drag snap otherwise than its rules say.
//
// soak faults N | kills N | crashes N | processes WORKERS OPERATIONS [ROOT] | bytes STRIDE [STEP] |
//      snaps N [DRAWINGS]   [--seed S]
//
// Prints one line with what was tried and ends with 1, with the seed and the step, at the first loss.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>

#include "plugin/store/interrupted_work.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_lock.h"
#include "tests/soak/crash_states.h"
#include "tests/soak/leftovers.h"
#include "tests/soak/soak_bytes.h"
#include "tests/soak/soak_processes.h"
#include "tests/soak/soak_snaps.h"
#include "tests/soak/store_model.h"
#include "tests/support/temporary_folder.h"
#include "win32/fault_calls.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned kMostCalls = 160; ///< about as many as the longest operation makes

bool IsOneOf(const std::string& state, const std::vector<std::string>& states) {
    return std::find(states.begin(), states.end(), state) != states.end();
}

[[noreturn]] void Report(const std::string& what, const Step& step, const std::string& found,
                         const std::vector<std::string>& outcomes) {
    std::printf("LOST: %s at %s\nfound:\n%s", what.c_str(), step.text().c_str(), found.c_str());
    for (const std::string& outcome : outcomes) std::printf("allowed:\n%s", outcome.c_str());
    std::fflush(stdout);
    std::_Exit(1);
}

std::string DescribeTrouble() {
    return "trouble " + std::to_string(static_cast<int>(globals->storeTrouble)) + "\n" +
           DescribeInterruptedWork();
}

/// A database on which one random step after the other is tried.
class Trial {
public:
    explicit Trial(uint64_t seed) : random(seed), store(folder.path() / "db") {}

    Step NextStep() {
        const Step step = RandomStep(model, random, nextId);
        if (step.action == Action::kAppend)
            std::ofstream(folder.path() / (step.record.id + ".png")) << step.record.file;
        return step;
    }

    // Finishes what was interrupted and takes what is found as the new state, if the step allows for it.
    void Settle(const std::string& what, const Step& step, bool succeeded) {
        std::vector<std::string> outcomes = OutcomesOf(step, model);
        if (succeeded) outcomes.resize(1);
        if (!store.Recover()) Report(what + ": not recovered", step, DescribeTrouble(), {});
        Model found = store.Read();
        if (!IsOneOf(TextOf(found), outcomes)) Report(what, step, TextOf(found), outcomes);
        model = std::move(found);
        LookForLeftovers(what, step);
        if (step.action == Action::kAppend) fs::remove(folder.path() / (step.record.id + ".png"));
    }

    // What is left stays, so that it is seen as well after a few steps.
    void LookForLeftovers(const std::string& what, const Step& step) {
        constexpr uint64_t kStepsBetween = 8;
        if (++settled % kStepsBetween != 0) return;
        const std::string unexplained = UnexplainedFindings(store.root(), model);
        if (!unexplained.empty()) Report(what + ", or a little before,", step, unexplained, {});
    }

    TemporaryFolder folder;
    std::mt19937_64 random;
    ModelStore store;
    Model model = {{"Alpha", {}}, {"Beta", {}}, {"Gamma", {}}};
    uint64_t nextId = 0;
    uint64_t settled = 0;
};

std::string Set(FaultCalls& faults, std::mt19937_64& random) {
    const int errors[] = {EIO, ENOSPC, EACCES};
    const int error = errors[random() % 3];
    const auto nth = static_cast<unsigned>(1 + random() % kMostCalls);
    const auto few = static_cast<unsigned>(1 + random() % 12);
    constexpr FaultCall kKinds[] = {kFaultRename,   kFaultReplace, kFaultFlush,
                                    kFaultTruncate, kFaultWrite,   kFaultRead,
                                    kFaultOpen,     kFaultRemove,  kFaultFlushDirectory};
    const FaultCall kind = kKinds[random() % std::size(kKinds)];
    switch (random() % 6) {
        case 0:
        case 1:
            faults.FailAt(nth, error);
            return "call " + std::to_string(nth) + " failed";
        case 2:
            faults.FailFrom(nth, error);
            return "calls from " + std::to_string(nth) + " on failed";
        case 3:
            faults.FailAt(few, error, kind);
            return "call " + std::to_string(few) + " of kind " + std::to_string(kind) + " failed";
        case 4:
            faults.CutWriteAt(few);
            return "write " + std::to_string(few) + " was short";
        default:
            faults.CutReadAt(few);
            return "read " + std::to_string(few) + " was short";
    }
}

void RunFaults(uint64_t count, uint64_t seed) {
    Trial trial(seed);
    uint64_t refused = 0;
    for (uint64_t i = 0; i < count; ++i) {
        const Step step = trial.NextStep();
        std::string what;
        bool succeeded;
        {
            FaultCalls faults;
            what = Set(faults, trial.random);
            succeeded = Run(trial.store, step);
        }
        refused += !succeeded;
        trial.Settle(what, step, succeeded);
    }
    std::printf("%llu operations with faults, %llu of them refused, nothing lost\n",
                static_cast<unsigned long long>(count), static_cast<unsigned long long>(refused));
}

void RunKills(uint64_t count, uint64_t seed) {
    constexpr int kKilled = 99;
    Trial trial(seed);
    uint64_t killed = 0;
    for (uint64_t i = 0; i < count; ++i) {
        const Step step = trial.NextStep();
        const auto nth = static_cast<unsigned>(1 + trial.random() % kMostCalls);
        const pid_t child = fork();
        if (child == 0) {
            FaultCalls faults;
            faults.At(nth, [] { _exit(kKilled); });
            _exit(Run(trial.store, step) ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (code != 0 && code != kKilled) Report("a clean run failed", step, "", {});
        killed += code == kKilled;
        trial.Settle("killed at call " + std::to_string(nth), step, code == 0);
    }
    std::printf("%llu operations, %llu of them killed, nothing lost\n",
                static_cast<unsigned long long>(count), static_cast<unsigned long long>(killed));
}

void RunCrashes(uint64_t count, uint64_t seed) {
    constexpr size_t kMostStates = 64;
    Trial trial(seed);
    uint64_t states = 0;
    for (uint64_t i = 0; i < count; ++i) {
        const Step step = trial.NextStep();
        const std::vector<std::string> outcomes = OutcomesOf(step, trial.model);
        const fs::path root = trial.store.root();
        CrashRecorder recorder(root);
        const bool succeeded = Run(trial.store, step);
        recorder.Stop();
        if (!succeeded) Report("a clean run failed", step, "", {});
        const size_t events = recorder.eventCount();
        for (size_t prefix = 0; prefix <= events; ++prefix) {
            const std::vector<std::string> allowed =
                prefix < events ? outcomes : std::vector<std::string>(outcomes.begin(), outcomes.begin() + 1);
            recorder.VisitStates(prefix, kMostStates, trial.folder.path() / "crashed", trial.random,
                                 [&](const fs::path& crashed) {
                                     trial.store.SetRoot(crashed);
                                     ++states;
                                     const std::string what = "power cut behind " + std::to_string(prefix) +
                                                              " of " + std::to_string(events) + " events";
                                     if (!trial.store.Recover())
                                         Report(what + ": not recovered", step, DescribeTrouble(), {});
                                     const Model model = trial.store.Read();
                                     const std::string found = TextOf(model);
                                     if (!IsOneOf(found, allowed)) Report(what, step, found, allowed);
                                     const std::string unexplained = UnexplainedFindings(crashed, model);
                                     if (!unexplained.empty()) Report(what, step, unexplained, {});
                                 });
        }
        trial.store.SetRoot(root);
        trial.Settle("no fault", step, true);
    }
    std::printf("%llu operations, %llu states of the disk after power cuts, nothing lost\n",
                static_cast<unsigned long long>(count), static_cast<unsigned long long>(states));
}

uint64_t NumberAt(int count, char** words, int index, uint64_t otherwise) {
    const uint64_t number = index < count ? std::strtoull(words[index], nullptr, 10) : otherwise;
    return std::max<uint64_t>(number, 1);
}

} // namespace

int main(int count, char** words) {
    uint64_t seed = 1;
    if (count > 3 && std::strcmp(words[count - 2], "--seed") == 0) {
        seed = std::strtoull(words[count - 1], nullptr, 10);
        count -= 2;
    }
    const std::string mode = count > 1 ? words[1] : "";
    const uint64_t times = NumberAt(count, words, 2, 100);
    if (mode == "faults") {
        RunFaults(times, seed);
    } else if (mode == "kills") {
        RunKills(times, seed);
    } else if (mode == "crashes") {
        RunCrashes(times, seed);
    } else if (mode == "processes") {
        return RunProcesses(static_cast<int>(times), NumberAt(count, words, 3, 100), seed,
                            count > 4 ? words[4] : "");
    } else if (mode == "bytes") {
        return RunBytes(static_cast<unsigned>(times), static_cast<unsigned>(NumberAt(count, words, 3, 1)));
    } else if (mode == "snaps") {
        return RunSnaps(times, static_cast<unsigned>(seed), count > 3 ? words[3] : "");
    } else {
        std::fprintf(stderr,
                     "soak faults N | kills N | crashes N | processes WORKERS OPERATIONS [ROOT] | bytes "
                     "STRIDE [STEP] | snaps N [DRAWINGS]  [--seed S]\n");
        return 2;
    }
    return 0;
}
