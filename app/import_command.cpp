#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/exit_code.h"
#include "app/import_plan.h"
#include "app/import_worker.h"
#include "app/worker_pool.h"

namespace {

using WorkerLine = nlohmann::json; ///< what a worker says of one file

/// Whole groups to workers, the largest first, each to the one that has the least so far.
std::vector<ImportShare> ShareOut(const ImportPlan& plan, const std::string& source,
                                  const std::string& database, int jobs) {
    std::vector<ImportShare> shares(static_cast<size_t>(jobs), ImportShare{source, database, {}});
    std::vector<size_t> loads(shares.size());
    std::vector<std::pair<std::string, std::vector<std::string>>> groups(plan.groups.begin(),
                                                                         plan.groups.end());
    std::stable_sort(groups.begin(), groups.end(),
                     [](const auto& a, const auto& b) { return a.second.size() > b.second.size(); });
    for (auto& group : groups) {
        const auto least = static_cast<size_t>(std::min_element(loads.begin(), loads.end()) - loads.begin());
        loads[least] += group.second.size();
        shares[least].groups.push_back(std::move(group));
    }
    std::erase_if(shares, [](const ImportShare& share) { return share.groups.empty(); });
    return shares;
}

std::string LineOf(const ImportOutcome& outcome) {
    return WorkerLine{{"file", outcome.file},
                      {"skipped", outcome.skipped},
                      {"refused", outcome.refused},
                      {"lost", outcome.lost}}
        .dump(-1, ' ', false, WorkerLine::error_handler_t::replace);
}

struct Totals {
    size_t stored = 0, skipped = 0, refused = 0, lost = 0;
};

void Count(const std::string& line, Totals* totals) {
    const WorkerLine outcome = WorkerLine::parse(line);
    const std::string refused = outcome["refused"], lost = outcome["lost"], file = outcome["file"];
    if (outcome["skipped"]) {
        ++totals->skipped;
    } else if (!refused.empty()) {
        ++totals->refused;
        std::cout << file << "\trefused: " << refused << "\n";
    } else {
        ++totals->stored;
        if (lost.empty()) return;
        ++totals->lost;
        std::cout << file << "\tlost: " << lost << "\n";
    }
}

int DryRun(const ImportPlan& plan) {
    for (const auto& [group, files] : plan.groups) {
        for (const std::string& file : files) std::cout << GroupForPeople(group) << "\t" << file << "\n";
    }
    Complain(std::to_string(plan.files) + " drawings would go into " + std::to_string(plan.groups.size()) +
             " groups");
    return kDone;
}

} // namespace

int RunImport(const ImportOptions& options) {
    std::string error;
    ImportPlan plan;
    if (!PlanImport(options.folder, options.into, &plan, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    if (options.dryRun) return DryRun(plan);
    std::error_code trouble;
    const std::string source = std::filesystem::canonical(options.folder, trouble).string();
    std::filesystem::create_directories(options.database, trouble);
    const std::string database = std::filesystem::canonical(options.database, trouble).string();
    if (trouble) {
        Complain(options.database + ": " + trouble.message());
        return kFileTrouble;
    }
    const std::vector<ImportShare> shares = ShareOut(plan, source, database, options.jobs);
    Totals totals;
    int result;
    {
        Progress progress(plan.files);
        result = RunWorkers(
            static_cast<int>(shares.size()),
            [&](int i, const auto& send) {
                std::string why;
                const bool good = ImportShareOfFiles(
                    shares[static_cast<size_t>(i)],
                    [&](const ImportOutcome& outcome) { send(LineOf(outcome)); }, &why);
                if (!good) Complain(why);
                return good ? static_cast<int>(kDone) : static_cast<int>(kFileTrouble);
            },
            [&](const std::string& line) {
                Count(line, &totals);
                progress.Step();
            });
    }
    Complain(std::to_string(totals.stored) + " stored, " + std::to_string(totals.skipped) +
             " taken before, " + std::to_string(totals.refused) + " refused; " + std::to_string(totals.lost) +
             " lost something");
    return std::max<int>(result, totals.refused ? kRefusedOrDiffers : kDone);
}
