/// A database below a temporary folder, opened in this process, with what checks and repairs of it need.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "app/database_view.h"
#include "app/session.h"
#include "app/store_check.h"
#include "plugin/frame/globals.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/record.h"
#include "tests/support/temporary_folder.h"

inline std::string BytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void PutBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

class CheckedStore : public testing::Test {
protected:
    CheckedStore() {
        setenv("XDG_DATA_HOME", (folder.path() / "data").c_str(), 1);
        session.emplace();
        std::filesystem::create_directory(root());
        std::string error;
        EXPECT_TRUE(session->OpenDatabase(root().string(), false, &error)) << error;
    }

    std::filesystem::path root() const { return folder.path() / "db"; }

    /// Appends a record with these notes in its stream.
    static void Store(const char* group, const std::string& name,
                      const std::vector<const char*>& notes = {}) {
        FreeHandle(globals->curRecord);
        globals->curRecord = NewRecord();
        for (const char* note : notes) ASSERT_EQ(AddNote(note), 0);
        uint8_t* bytes = BlockBytes(globals->curRecord);
        name.copy(reinterpret_cast<RecordHeader*>(bytes)->name, kRecordNameBytes - 1);
        bytes[kPreviewOffset + 5] = static_cast<uint8_t>(name[0]);
        ASSERT_EQ(WriteRecord(group, -1), 0);
    }

    static std::vector<std::string> Names(const char* group) {
        uint32_t expected = 0;
        std::vector<std::string> names;
        for (const RecordSummary& record : ReadHeaders(group, &expected)) names.push_back(record.header.name);
        return names;
    }

    /// "error \place" for each finding, sorted.
    static std::vector<std::string> Lines(const std::vector<Finding>& findings) {
        std::vector<std::string> lines;
        for (const Finding& finding : findings)
            lines.push_back(NameOfSeverity(finding.severity) + std::string(" ") + finding.place);
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    std::vector<std::string> Check() { return Lines(CheckStore(root().string(), Looks::kOnce)); }

    TemporaryFolder folder;
    std::optional<Session> session;
};
