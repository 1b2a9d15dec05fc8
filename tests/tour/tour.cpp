#include "tests/tour/tour.h"

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

std::set<std::string> Tour::FilesOnDisk() {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(rootOnDisk()))
        files.insert(fs::relative(entry.path(), rootOnDisk()).string());
    files.erase("VLQ.LCK");
    return files;
}
