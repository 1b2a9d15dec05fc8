#include "tests/support/temporary_folder.h"

std::string StorePathOf(const std::filesystem::path& path) {
    std::filesystem::path native = path;
    return native.make_preferred().string();
}

void RedirectDocuments(const std::filesystem::path&) {}
void RedirectDocumentsOfModules(const std::filesystem::path&) {}
