#include "app/import_journal.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace {

/// FNV-1a (Fowler, Noll, Vo), 64 bits.
uint64_t HashOf(std::string_view text) {
    uint64_t hash = 0xCBF29CE484222325;
    for (const char character : text) {
        hash ^= static_cast<unsigned char>(character);
        hash *= 0x100000001B3;
    }
    return hash;
}

std::string FileNameOf(const std::string& source, const std::string& group) {
    std::string name(16, '0');
    char digits[16];
    const auto end = std::to_chars(digits, digits + 16, HashOf(source + '\n' + group), 16).ptr;
    std::copy(digits, end, name.end() - (end - digits));
    return name;
}

} // namespace

ImportJournal::ImportJournal(const std::string& database, const std::string& source,
                             const std::string& group) {
    const std::filesystem::path folder = std::filesystem::path(database) / ".velquorne-import";
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const std::string path = (folder / FileNameOf(source, group)).string();
    std::ifstream lines(path);
    uint64_t wholeBytes = 0;
    for (std::string line; std::getline(lines, line);) {
        // A line without its end was cut off by a crash; its record is found by number and name.
        if (lines.eof()) break;
        wholeBytes += line.size() + 1;
        int32_t number = -1;
        const auto end = std::from_chars(line.data(), line.data() + line.size(), number);
        if (end.ec != std::errc() || end.ptr == line.data() + line.size() || *end.ptr != '\t') continue;
        taken_[std::string(end.ptr + 1)] = number;
        lastNumber_ = std::max(lastNumber_, number);
    }
    lines.close();
    if (std::filesystem::exists(path, ignored)) std::filesystem::resize_file(path, wholeBytes, ignored);
    file_ = std::fopen(path.c_str(), "ab");
}

ImportJournal::~ImportJournal() {
    if (file_) std::fclose(file_);
}

bool ImportJournal::Add(const std::string& relative, int32_t number) {
    taken_[relative] = number;
    lastNumber_ = std::max(lastNumber_, number);
    return std::fprintf(file_, "%d\t%s\n", number, relative.c_str()) > 0 && std::fflush(file_) == 0;
}
