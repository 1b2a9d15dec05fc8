#include "tests/tour/tour.h"

#include <cstring>

#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "workbench/suites/text_encoding.h"

namespace fs = std::filesystem;

std::string Utf8(const char* cp932) {
    return workbench::DecodeText(cp932, kEncodingCp932).value_or("");
}

void Tour::SetUp() {
    PanelFixture::SetUp();
    hand_ = std::make_unique<Hands>(desktop(), windows());
    globals->language = GetParam();
    ReleaseSuites(); // the panel's callbacks hold them by themselves
}

std::vector<std::string> Tour::Records() {
    std::vector<std::string> names;
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row)
        names.emplace_back(RihItemOfRow(globals->rihList, row)->name);
    return names;
}

void Tour::MakeGroup(const std::string& group, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        globals->curRecord = NewRecord();
        ASSERT_NE(globals->curRecord, nullptr);
        uint8_t* record = BlockBytes(globals->curRecord);
        auto* header = reinterpret_cast<RecordHeader*>(record);
        std::strncpy(header->name, name.c_str(), sizeof header->name - 1);
        std::strncpy(header->kind, ("kind " + name).c_str(), sizeof header->kind - 1);
        header->boundsTop = header->boundsRight = 100 * 65536;
        header->created = header->modified = 3000000000u + static_cast<uint32_t>(made_++);
        // A preview of one colour for each record.
        for (uint32_t pixel = 0; pixel < kPreviewBytes; pixel += 4) {
            record[kPreviewOffset + pixel + 1] = static_cast<uint8_t>(40 * made_);
            record[kPreviewOffset + pixel + 2] = 0x80;
            record[kPreviewOffset + pixel + 3] = static_cast<uint8_t>(255 - 40 * made_);
        }
        ASSERT_EQ(WriteRecord(group.c_str(), -1), 0);
        FreeHandle(globals->curRecord);
    }
}

std::set<std::string> Tour::FilesOnDisk() {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(rootOnDisk()))
        files.insert(fs::relative(entry.path(), rootOnDisk()).string());
    files.erase("VLQ.LCK");
    return files;
}
