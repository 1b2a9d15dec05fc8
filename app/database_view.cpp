#include "app/database_view.h"

#include <array>
#include <cstring>

#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/header_walk.h"
#include "plugin/store/record.h"
#include "plugin/store/store_names.h"
#include "plugin/store/store_tree.h"
#include "plugin/store/swap_words.h"

std::vector<std::string> AllGroups() {
    std::array<char, kNameBytes> root{};
    GetDatabaseRoot(root.data());
    HandleOwner rows(ListGroups(root.data(), nullptr, nullptr));
    std::vector<std::string> groups;
    groups.reserve(static_cast<size_t>(RowCount(rows.get())));
    for (int32_t row = 0; row < RowCount(rows.get()); ++row) groups.emplace_back(RowText(rows.get(), row));
    return groups;
}

std::string GroupForPeople(const std::string& groupName) {
    const std::string name = Utf8OfCp932(groupName);
    return !name.empty() && name[0] == '\\' ? name : "\\" + name;
}

namespace {

// A header in file order as the plug-in has it in memory.
RecordHeader InHostOrder(RecordHeader header) {
    const auto swapped = [](int32_t bound) {
        return static_cast<int32_t>(SwapLong(static_cast<uint32_t>(bound)));
    };
    header.objectCount = SwapLong(header.objectCount);
    header.size = SwapLong(header.size);
    header.boundsLeft = swapped(header.boundsLeft);
    header.boundsTop = swapped(header.boundsTop);
    header.boundsRight = swapped(header.boundsRight);
    header.boundsBottom = swapped(header.boundsBottom);
    header.created = SwapLong(header.created);
    header.modified = SwapLong(header.modified);
    return header;
}

} // namespace

std::vector<RecordSummary> ReadHeaders(const std::string& groupName, uint32_t* expected) {
    std::vector<RecordSummary> headers;
    const HeaderReach reach =
        ForEachHeader(groupName.c_str(), [&headers](uint32_t number, const RecordHeader& header) {
            headers.push_back({static_cast<int32_t>(number), InHostOrder(header)});
        });
    *expected = reach.count;
    return headers;
}

bool ReadHeader(const std::string& groupName, int32_t number, RecordHeader* header) {
    HandleOwner record;
    AidbReadRecord(groupName.c_str(), number, &record.get(), kReadHeader, true);
    if (!record.bytes()) return false;
    std::memcpy(header, record.bytes(), sizeof *header);
    return header->size != 0;
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
