#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "app/store_check.h"

int RunCheck(const CheckOptions& options) {
    const OpenedDatabase database(options.database);
    if (database.trouble() != kDone) return database.trouble();
    const auto findings = CheckStore(options.database, Looks::kUntilSure);
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Finding& finding : findings) {
        if (options.json)
            list.push_back({{"severity", NameOfSeverity(finding.severity)},
                            {"place", finding.place},
                            {"what", finding.what}});
        else
            std::cout << NameOfSeverity(finding.severity) << "\t" << finding.place << "\t" << finding.what
                      << "\n";
    }
    if (options.json) PrintJson({{"schema", 1}, {"findings", std::move(list)}});
    return database.Ended(findings.empty() ? kDone : kRefusedOrDiffers);
}
