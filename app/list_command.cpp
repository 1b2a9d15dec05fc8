#include <algorithm>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "app/record_list.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"

namespace {

using Json = nlohmann::ordered_json;

int ListGroupsOf(bool json) {
    Json groups = Json::array();
    for (const std::string& group : AllGroups()) {
        const uint32_t count = CountRecords(group.c_str());
        if (json) {
            groups.push_back({{"group", GroupForPeople(group)}, {"count", count}});
        } else {
            std::cout << std::setw(7) << count << "  " << GroupForPeople(group) << "\n";
        }
    }
    if (json) PrintJson({{"schema", 1}, {"groups", std::move(groups)}});
    return kDone;
}

int16_t SortModeOf(const std::string& word) {
    return word == "kind" ? kByKind : word == "date" ? kByDate : kByName;
}

/// Brings a group's records, given in file order, into the order of the browser's rows.
std::vector<RecordSummary> InOrderOfRows(const std::string& group, const std::string& sort,
                                         const std::vector<RecordSummary>& records) {
    globals->sortMode = SortModeOf(sort);
    SelectGroup(group.c_str());
    globals->findMode = kFindGroup; // the name may have been current in another way
    LoadRihList(group.c_str());
    std::vector<RecordSummary> sorted;
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row) {
        int32_t number = 0;
        if (GetRecordOfRow(row, nullptr, &number) == 0) break;
        // Another program may have added a record since.
        if (static_cast<size_t>(number) < records.size())
            sorted.push_back(records[static_cast<size_t>(number)]);
    }
    return sorted;
}

int ListRecords(const std::string& group, const ListOptions& options) {
    uint32_t expected = 0;
    Json records = Json::array();
    auto headers = ReadHeaders(group, &expected);
    if (!options.sort.empty()) headers = InOrderOfRows(group, options.sort, headers);
    for (const RecordSummary& record : headers) {
        if (options.json) {
            records.push_back(RecordListJson(group, record));
        } else {
            PrintRecordLine(group, record, false);
        }
    }
    if (options.json) PrintJson({{"schema", 1}, {"records", std::move(records)}});
    if (headers.size() == expected) return kDone;
    Complain(GroupForPeople(group) + ": damaged: " + std::to_string(headers.size()) + " of " +
             std::to_string(expected) + " records can be read");
    return kRefusedOrDiffers;
}

} // namespace

int RunList(const ListOptions& options) {
    const OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    return options.group.empty() ? ListGroupsOf(options.json) : ListRecords(database.group(), options);
}
