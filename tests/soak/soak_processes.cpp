#include "tests/soak/soak_processes.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_lock.h"
#include "tests/soak/leftovers.h"
#include "tests/soak/store_model.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

/// What a worker has said of its records.  A line is written before an operation and another behind it, so
/// of a killed one it is known what it was about.
struct Said {
    std::set<std::string> added, maybeAdded, deleted, maybeDeleted;
    uint64_t begun = 0;
};

Said ReadJournal(const fs::path& path) {
    Said said;
    std::ifstream lines(path);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string moment, action, id;
        words >> moment >> action >> id;
        const bool done = moment == "done";
        said.begun += !done;
        if (action == "append") (done ? said.added : said.maybeAdded).insert(id);
        if (action == "delete") (done ? said.deleted : said.maybeDeleted).insert(id);
    }
    return said;
}

class Worker {
public:
    Worker(const fs::path& root, const fs::path& journal, int number, uint64_t seed)
        : store_(root), number_(number), random_(seed), said_(ReadJournal(journal)) {
        journal_ = open(journal.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    }

    ~Worker() { close(journal_); }

    void Work(uint64_t operations) {
        while (!DropUnfinished()) {
        }
        while (said_.begun < operations) {
            if (random_() % 3 == 0) {
                Append();
                continue;
            }
            // Numbers change under the feet of whoever doesn't hold the lock from the look to the deed.
            const StoreLock lock(kStoreExclusive);
            if (lock.held()) ChangeOwn();
        }
    }

private:
    void Say(const char* moment, const Step& step) {
        const std::string line = std::string(moment) + " " + step.text().substr(0, step.text().find(' ')) +
                                 " " + step.record.id + "\n";
        if (write(journal_, line.data(), line.size()) < 0) _exit(3);
    }

    void Do(const Step& step) {
        ++said_.begun;
        Say("begin", step);
        if (Run(store_, step)) Say("done", step);
    }

    void Append() {
        Step step;
        step.action = Action::kAppend;
        step.group = random_() % 2 ? "Alpha" : "Beta";
        step.record.id = "w" + std::to_string(number_) + "." + std::to_string(said_.begun);
        step.record.edition = "first";
        step.record.file = random_() % 2 ? "file of " + step.record.id : "";
        std::ofstream(store_.root().parent_path() / (step.record.id + ".png")) << step.record.file;
        Do(step);
        fs::remove(store_.root().parent_path() / (step.record.id + ".png"));
    }

    // The first record of the step's group, from `start` on, whose name is accepted.
    template <typename Accepts>
    static bool FindFrom(Step& step, int32_t start, Accepts accepts) {
        HandleOwner record(NewRecord());
        const auto count = static_cast<int32_t>(CountRecords(step.group.c_str()));
        for (step.number = start; step.number < count; ++step.number) {
            AidbReadRecord(step.group.c_str(), step.number, &record.get(), kReadHeader, true);
            const auto* header = reinterpret_cast<const RecordHeader*>(record.bytes());
            if (!accepts(std::string_view(header->name))) continue;
            step.record.id = header->name;
            step.record.edition = header->kind;
            return true;
        }
        return false;
    }

    // A record that was being registered when the process was killed may lack its file, and nobody was told
    // that it is there: it is taken out.  False if others had the store too long.
    bool DropUnfinished() {
        std::vector<std::string> unfinished;
        for (const std::string& id : said_.maybeAdded) {
            if (!said_.added.contains(id) && !said_.deleted.contains(id)) unfinished.push_back(id);
        }
        if (unfinished.empty()) return true;
        const StoreLock lock(kStoreExclusive);
        if (!lock.held()) return false;
        for (const std::string& id : unfinished) DropOne(id);
        return true;
    }

    void DropOne(const std::string& id) {
        Step step;
        step.action = Action::kDelete;
        for (const char* group : {"Alpha", "Beta"}) {
            step.group = group;
            if (FindFrom(step, 0, [&](std::string_view name) { return name == id; })) return Do(step);
        }
        step.record.id = id;
        Say("done", step); // as it was never stored
    }

    // A record of this worker, wherever it is now.
    std::optional<Step> Find(const std::string& prefix) {
        Step step;
        step.group = random_() % 2 ? "Alpha" : "Beta";
        step.newGroup = step.group == "Alpha" ? "Beta" : "Alpha";
        const uint64_t count = CountRecords(step.group.c_str());
        const int32_t start = count > 0 ? static_cast<int32_t>(random_() % count) : 0;
        const auto isOwn = [&](std::string_view name) { return name.starts_with(prefix); };
        return FindFrom(step, start, isOwn) ? std::optional(step) : std::nullopt;
    }

    void ChangeOwn() {
        std::optional<Step> step = Find("w" + std::to_string(number_) + ".");
        if (!step) return;
        const Action actions[] = {Action::kRewrite, Action::kDelete, Action::kMove, Action::kMove,
                                  Action::kPool};
        step->action = actions[random_() % 5];
        if (step->action == Action::kRewrite) step->record.edition = "e" + std::to_string(random_() % 1000);
        Do(*step);
    }

    ModelStore store_;
    int number_;
    std::mt19937_64 random_;
    Said said_;
    int journal_;
};

bool Verify(ModelStore& store, const Said& said) {
    std::map<std::string, int> found;
    const Model model = store.Read();
    const std::string unexplained = UnexplainedFindings(store.root(), model);
    if (!unexplained.empty()) std::printf("LOST: %s", unexplained.c_str());
    bool good = unexplained.empty();
    for (const auto& [group, records] : model) {
        for (const ModelRecord& record : records) {
            ++found[record.id];
            const std::string file = record.linked ? "file of " + record.id : "";
            if (record.edition != "damaged" && record.file == file) continue;
            std::printf("LOST: %s is %s with [%s]\n", record.id.c_str(), record.edition.c_str(),
                        record.file.c_str());
            good = false;
        }
    }
    const auto expect = [&](const std::string& id, int least, int most) {
        const int times = found.contains(id) ? found[id] : 0;
        if (times >= least && times <= most) return;
        std::printf("LOST: %s is there %d times\n", id.c_str(), times);
        good = false;
    };
    for (const std::string& id : said.maybeAdded) {
        const int least = said.added.contains(id) && !said.maybeDeleted.contains(id) ? 1 : 0;
        expect(id, least, said.deleted.contains(id) ? 0 : 1);
    }
    for (const auto& [id, times] : found) {
        if (said.maybeAdded.contains(id)) continue;
        std::printf("LOST: nobody has added %s\n", id.c_str());
        good = false;
    }
    return good;
}

} // namespace

int RunProcesses(int workers, uint64_t operations, uint64_t seed, const std::string& givenRoot) {
    const TemporaryFolder folder;
    const fs::path root = givenRoot.empty() ? folder.path() / "db" : fs::path(givenRoot);
    const auto journalOf = [&](int worker) { return folder.path() / ("journal" + std::to_string(worker)); };
    std::mt19937_64 random(seed);
    std::map<pid_t, int> running;
    const auto start = [&](int worker) {
        const uint64_t workerSeed = random();
        const pid_t child = fork();
        if (child == 0) {
            { Worker(root, journalOf(worker), worker, workerSeed).Work(operations); }
            _exit(0);
        }
        running[child] = worker;
    };
    for (int worker = 0; worker < workers; ++worker) start(worker);
    uint64_t kills = 0;
    bool good = true;
    while (!running.empty()) {
        usleep(static_cast<useconds_t>(1000 + random() % 30000));
        // One in four rounds a process is killed, whatever it is doing.
        if (random() % 4 == 0) {
            auto victim = running.begin();
            std::advance(victim, static_cast<long>(random() % running.size()));
            kill(victim->first, SIGKILL);
            ++kills;
        }
        int status = 0;
        for (pid_t ended; (ended = waitpid(-1, &status, WNOHANG)) > 0;) {
            const int worker = running[ended];
            running.erase(ended);
            if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
                start(worker);
            else
                good = good && WIFEXITED(status) && WEXITSTATUS(status) == 0;
        }
    }
    Said all;
    for (int worker = 0; worker < workers; ++worker) {
        Said said = ReadJournal(journalOf(worker));
        all.added.merge(said.added);
        all.maybeAdded.merge(said.maybeAdded);
        all.deleted.merge(said.deleted);
        all.maybeDeleted.merge(said.maybeDeleted);
    }
    ModelStore store(root);
    good = store.Recover() && Verify(store, all) && good;
    std::printf(
        "%d processes with %llu operations each, %llu kills; %zu records acknowledged, %zu deletions: %s\n",
        workers, static_cast<unsigned long long>(operations), static_cast<unsigned long long>(kills),
        all.added.size(), all.deleted.size(), good ? "nothing lost" : "LOST");
    return good ? 0 : 1;
}
