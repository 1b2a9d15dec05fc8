#include "app/store_check.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>

#include "app/store_check_files.h"
#include "app/store_check_groups.h"
#include "app/store_listing.h"
#include "plugin/frame/globals.h"
#include "plugin/store/store_lock.h"

namespace {

/// Longer than a program that was refused waits for another, and than the pause between two steps of a
/// change.
constexpr std::chrono::milliseconds kBetweenLooks{1100};
constexpr int kMostLooks = 4;

/// The groups of the look before this one.
using KnownGroups = std::map<std::string, GroupFacts>;

std::vector<Finding> LookOver(const std::string& folder, KnownGroups* known) {
    const StoreListing listing = ListStore(folder);
    KnownGroups groups;
    std::vector<Finding> findings;
    for (const auto& [group, path] : listing.groups) {
        // Looking again at the same bytes would tell the same.
        const auto before = known->find(group);
        if (before != known->end() && before->second.state == StateOfFile(path))
            groups[group] = std::move(before->second);
        else
            groups[group] = CheckGroup(group, path);
        const auto& found = groups[group].findings;
        findings.insert(findings.end(), found.begin(), found.end());
    }
    const auto files = CheckLinkedFiles(folder, listing, groups);
    findings.insert(findings.end(), files.begin(), files.end());
    findings.insert(findings.end(), listing.findings.begin(), listing.findings.end());
    *known = std::move(groups);
    return findings;
}

std::string KeyOf(const Finding& finding) {
    return finding.place + '\n' + finding.what + '\n' + finding.state;
}

/// Those of `now` that were there before.
std::vector<Finding> SeenTwice(const std::vector<Finding>& before, const std::vector<Finding>& now) {
    std::set<std::string> keys;
    for (const Finding& finding : before) keys.insert(KeyOf(finding));
    std::vector<Finding> both;
    for (const Finding& finding : now) {
        if (keys.contains(KeyOf(finding))) both.push_back(finding);
    }
    return both;
}

/// A note of intent stands also while somebody is at work, on a slow disk for longer than all looks.  That
/// nobody is can only be known with the lock in hand.
void ForgetWorkUnderWay(std::vector<Finding>* findings) {
    const auto work = std::ranges::find(*findings, Remedy::kFinishWork, &Finding::remedy);
    if (work == findings->end()) return;
    const StoreLock lock(kStoreExclusiveAsIs);
    const bool busy = !lock.held() && globals->storeTrouble == StoreTrouble::kBusy;
    if (busy || StateOfFile(work->path) != work->state) findings->erase(work);
}

} // namespace

const char* NameOfSeverity(Severity severity) {
    switch (severity) {
        case Severity::kError:
            return "error";
        case Severity::kWarning:
            return "warning";
        default:
            return "info";
    }
}

std::vector<Finding> CheckStore(const std::string& folder, Looks looks) {
    KnownGroups known;
    std::vector<Finding> before = LookOver(folder, &known);
    if (looks == Looks::kOnce) return before;
    std::vector<Finding> sure;
    for (int look = 1; look < kMostLooks && !before.empty(); ++look) {
        std::this_thread::sleep_for(kBetweenLooks);
        std::vector<Finding> now = LookOver(folder, &known);
        sure = SeenTwice(before, now);
        if (sure.size() == now.size()) break;
        before = std::move(now);
    }
    ForgetWorkUnderWay(&sure);
    return sure;
}
