#include <cmath>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "plugin/store/record.h"

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

Json RecordJson(const std::string& group, const RecordSummary& record) {
    const RecordHeader& header = record.header;
    return {{"group", GroupForPeople(group)},
            {"number", record.number},
            {"name", FieldText(header.name, sizeof header.name)},
            {"kind", FieldText(header.kind, sizeof header.kind)},
            {"comment", FieldText(header.comment, sizeof header.comment)},
            {"created", header.created},
            {"modified", header.modified},
            {"width", WidthOf(header)},
            {"height", HeightOf(header)},
            {"objects", header.objectCount},
            {"bytes", header.size}};
}

int ListRecords(const std::string& group, bool json) {
    uint32_t expected = 0;
    Json records = Json::array();
    const auto headers = ReadHeaders(group, &expected);
    for (const RecordSummary& record : headers) {
        if (json) {
            records.push_back(RecordJson(group, record));
            continue;
        }
        std::cout << std::setw(6) << record.number << "  " << std::setw(9) << record.header.size << " bytes  "
                  << std::setw(6) << record.header.objectCount << " objects  " << std::setw(5)
                  << std::lround(WidthOf(record.header)) << " x " << std::setw(4) << std::left
                  << std::lround(HeightOf(record.header)) << std::right << "  "
                  << FieldText(record.header.name, sizeof record.header.name);
        const std::string kind = FieldText(record.header.kind, sizeof record.header.kind);
        if (!kind.empty()) std::cout << "  [" << kind << "]";
        std::cout << "\n";
    }
    if (json) PrintJson({{"schema", 1}, {"records", std::move(records)}});
    if (headers.size() == expected) return kDone;
    Complain(GroupForPeople(group) + ": damaged: " + std::to_string(headers.size()) + " of " +
             std::to_string(expected) + " records can be read");
    return kRefusedOrDiffers;
}

} // namespace

int RunList(const ListOptions& options) {
    const OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    return options.group.empty() ? ListGroupsOf(options.json) : ListRecords(database.group(), options.json);
}
