#include <iostream>

#include "app/commands.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "app/store_repair.h"
#include "app/store_words.h"
#include "plugin/frame/globals.h"
#include "plugin/store/store_lock.h"

namespace {

int DryRun(const std::string& folder) {
    const auto findings = CheckStore(folder, Looks::kUntilSure);
    for (const Finding& finding : findings) {
        const std::string remedy = WordsOfRemedy(finding);
        std::cout << (remedy.empty() ? "would stay" : "would mend") << "\t" << finding.place << "\t"
                  << finding.what << (remedy.empty() ? "" : ": " + remedy) << "\n";
    }
    return findings.empty() ? kDone : kRefusedOrDiffers;
}

int RepairFolder(const std::string& folder, bool giveUp) {
    const StoreLock lock(kStoreExclusiveAsIs);
    if (!lock.held()) {
        Complain(folder + ": " + WordsOfStoreTrouble());
        return globals->storeTrouble == StoreTrouble::kDisk ? kFileTrouble : kRefusedOrDiffers;
    }
    const RepairReport report =
        RepairStore(folder, giveUp ? UnfinishedWork::kIsGivenUp : UnfinishedWork::kStays);
    for (const std::string& line : report.done) std::cout << "mended\t" << line << "\n";
    for (const std::string& line : report.failed) std::cout << "failed\t" << line << "\n";
    for (const Finding& finding : report.left)
        std::cout << "stays\t" << finding.place << "\t" << finding.what << "\n";
    if (!report.copies.empty()) Complain("what was changed or taken out is kept in " + report.copies);
    if (!report.failed.empty()) return kFileTrouble;
    return report.left.empty() ? kDone : kRefusedOrDiffers;
}

} // namespace

int RunRepair(const RepairOptions& options) {
    const OpenedDatabase database(options.database);
    if (database.trouble() != kDone) return database.trouble();
    return database.Ended(options.dryRun ? DryRun(options.database)
                                         : RepairFolder(options.database, options.giveUp));
}
