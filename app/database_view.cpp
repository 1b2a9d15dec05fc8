#include "app/database_view.h"

#include <array>
#include <cstring>

#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"

std::vector<std::string> AllGroups() {
    std::array<char, kNameBytes> root{};
    GetDatabaseRoot(root.data());
    HandleOwner rows(ListGroups(root.data(), nullptr, nullptr));
    std::vector<std::string> groups;
    for (int32_t row = 0; row < RowCount(rows.get()); ++row) groups.emplace_back(RowText(rows.get(), row));
    return groups;
}

std::string GroupForPeople(const std::string& groupName) {
    const std::string name = Utf8OfCp932(groupName);
    return !name.empty() && name[0] == '\\' ? name : "\\" + name;
}

std::vector<RecordSummary> ReadHeaders(const std::string& groupName, uint32_t* expected) {
    std::vector<RecordSummary> headers;
    *expected = CountRecords(groupName.c_str());
    HandleOwner record;
    for (uint32_t number = 0; number < *expected; ++number) {
        AidbReadRecord(groupName.c_str(), static_cast<int32_t>(number), &record.get(), kReadHeader, true);
        if (!record.bytes()) break;
        RecordSummary summary;
        summary.number = static_cast<int32_t>(number);
        std::memcpy(&summary.header, record.bytes(), sizeof summary.header);
        if (summary.header.size == 0) break;
        headers.push_back(summary);
    }
    return headers;
}

std::vector<uint8_t> ReadPreview(const std::string& groupName, int32_t number) {
    HandleOwner record(NewRecord());
    if (!record.bytes()) return {};
    AidbReadRecord(groupName.c_str(), number, &record.get(), kReadPreview, true);
    RecordHeader header;
    std::memcpy(&header, record.bytes(), sizeof header);
    if (header.size == 0) return {};
    const uint8_t* pixels = record.bytes() + kPreviewOffset;
    return {pixels, pixels + kPreviewBytes};
}

double WidthOf(const RecordHeader& header) {
    return header.boundsRight / 65536.0;
}

double HeightOf(const RecordHeader& header) {
    return header.boundsTop / 65536.0;
}

std::string FieldText(const char* field, size_t capacity) {
    return Utf8OfCp932(std::string_view(field, strnlen(field, capacity)));
}
