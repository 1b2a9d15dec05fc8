#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "win32/path_names.h"
#include "win32/shell_folder.h"

std::string StorePathOf(const std::filesystem::path& path) {
    StorePath store = StorePathOfUtf8(path.string());
    EXPECT_EQ(store.offender, "") << path;
    return store.path;
}

void RedirectDocuments(const std::filesystem::path& folder) {
    SetDocumentsFolder(folder.string().c_str());
}
