#include "win32/shell_folder.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <cstdlib>

#include "tests/win32/store_folder.h"

namespace {

class ShellFolderTest : public StoreFolderTest {
protected:
    void SetUp() override {
        SetDocumentsFolder(nullptr);
        setenv("HOME", folder_.path().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        std::filesystem::create_directory(OnDisk(".config"));
    }
    void TearDown() override {
        setenv("HOME", home_.c_str(), 1);
        if (!configuration_.empty()) setenv("XDG_CONFIG_HOME", configuration_.c_str(), 1);
        SetDocumentsFolder(nullptr);
    }
    // What the plug-in asks.
    static std::string PathFromShell() {
        LPITEMIDLIST list = nullptr;
        char path[MAX_PATH] = "";
        if (FAILED(SHGetSpecialFolderLocation(nullptr, CSIDL_PERSONAL, &list))) return "failed";
        const BOOL found = SHGetPathFromIDListA(list, path);
        CoTaskMemFree(list);
        return found ? path : "none";
    }
    static std::string Environment(const char* name) {
        const char* value = std::getenv(name);
        return value != nullptr ? value : "";
    }

private:
    const std::string home_ = Environment("HOME");
    const std::string configuration_ = Environment("XDG_CONFIG_HOME");
};

TEST_F(ShellFolderTest, TheDesktopsFolderIsTakenAndMade) {
    WriteOnDisk(".config/user-dirs.dirs",
                "# XDG_DOCUMENTS_DIR=\"$HOME/no\"\nXDG_MUSIC_DIR=\"$HOME/Music\"\n" +
                    ("XDG_DOCUMENTS_DIR=\"$HOME/" + Utf8(u8"書類") + " \\\"1\\\"\"\n"));
    EXPECT_EQ(PathFromShell(), Path("書類 \"1\""));
    EXPECT_TRUE(std::filesystem::is_directory(OnDisk(Utf8(u8"書類 \"1\""))));
}

TEST_F(ShellFolderTest, WithoutALineItIsDocuments) {
    EXPECT_EQ(PathFromShell(), Path("Documents"));
    WriteOnDisk(".config/user-dirs.dirs",
                "XDG_DOCUMENTS_DIR=\"relative\"\nXDG_DOCUMENTS_DIR=\"/unfinished\n");
    EXPECT_EQ(PathFromShell(), Path("Documents"));
}

TEST_F(ShellFolderTest, AFolderWithoutAFormIsRefusedNotGuessed) {
    SetDocumentsFolder(OnDisk(Utf8(u8"caf\u00E9")).c_str());
    EXPECT_EQ(PathFromShell(), "none");
    SetDocumentsFolder(OnDisk(std::string(250, 'x')).c_str());
    EXPECT_EQ(PathFromShell(), "none");
    SetDocumentsFolder(OnDisk("chosen").c_str());
    EXPECT_EQ(PathFromShell(), Path("chosen"));
    LPITEMIDLIST list;
    EXPECT_TRUE(FAILED(SHGetSpecialFolderLocation(nullptr, 0, &list)));
}

} // namespace
