#include <gtest/gtest.h>
#include <stdlib.h>

#include "tests/support/temporary_folder.h"
#include "win32/path_names.h"
#include "win32/shell_folder.h"

std::string StorePathOf(const std::filesystem::path& path) {
    StorePath store = StorePathOfUtf8(path.string());
    EXPECT_EQ(store.offender, "") << path;
    return store.path;
}

void RedirectDocumentsOfModules(const std::filesystem::path& folder) {
    std::filesystem::create_directory(folder / "Documents");
    setenv("HOME", folder.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
}

void RedirectDocuments(const std::filesystem::path& folder) {
    SetDocumentsFolder(folder.string().c_str());
}
