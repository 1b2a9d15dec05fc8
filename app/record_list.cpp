#include "app/record_list.h"

#include <cmath>
#include <iomanip>
#include <iostream>

nlohmann::ordered_json RecordListJson(const std::string& group, const RecordSummary& record) {
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

void PrintRecordLine(const std::string& group, const RecordSummary& record, bool withGroup) {
    const RecordHeader& header = record.header;
    if (withGroup) std::cout << GroupForPeople(group) << "  ";
    std::cout << std::setw(6) << record.number << "  " << std::setw(9) << header.size << " bytes  "
              << std::setw(6) << header.objectCount << " objects  " << std::setw(5)
              << std::lround(WidthOf(header)) << " x " << std::setw(4) << std::left
              << std::lround(HeightOf(header)) << std::right << "  "
              << FieldText(header.name, sizeof header.name);
    const std::string kind = FieldText(header.kind, sizeof header.kind);
    if (!kind.empty()) std::cout << "  [" << kind << "]";
    std::cout << "\n";
}
