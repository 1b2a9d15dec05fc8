/// A temporary folder as the file calls see it, and files in it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <set>
#include <string>

#include "tests/support/temporary_folder.h"

class StoreFolderTest : public ::testing::Test {
protected:
    /// `name` in the folder, as the plug-in writes it.
    std::string Path(const std::string& name) const { return folder_.storePath() + "\\" + name; }
    std::filesystem::path OnDisk(const std::string& utf8Name) const { return folder_.path() / utf8Name; }

    void WriteOnDisk(const std::string& utf8Name, const std::string& bytes) const {
        std::ofstream(OnDisk(utf8Name), std::ios::binary) << bytes;
    }
    std::string ReadOnDisk(const std::string& utf8Name) const {
        std::ifstream file(OnDisk(utf8Name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool ExistsOnDisk(const std::string& utf8Name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(OnDisk(utf8Name)));
    }

    /// What a listing of `pattern` gives, less "." and "..".
    static std::multiset<std::string> Listed(const std::string& pattern) {
        std::multiset<std::string> names;
        WIN32_FIND_DATAA entry;
        const HANDLE search = FindFirstFileA(pattern.c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE) return names;
        do {
            names.insert(entry.cFileName);
        } while (FindNextFileA(search, &entry));
        EXPECT_EQ(GetLastError(), ERROR_NO_MORE_FILES);
        FindClose(search);
        names.erase(".");
        names.erase("..");
        return names;
    }

    const TemporaryFolder folder_;
};

using NameSet = std::multiset<std::string>;

inline std::string Utf8(const char8_t* text) {
    return reinterpret_cast<const char*>(text);
}
