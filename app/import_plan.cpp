#include "app/import_plan.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>

#include "app/texts.h"
#include "plugin/frame/globals.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kLongestName = kPartBytes - 1;

/// A name that both a database and every file system can hold, in UTF-8.
std::string SafeName(const std::string& utf8) {
    std::string name = Utf8OfCp932(CutCp932(Cp932OfUtf8OrMark(utf8), kLongestName));
    for (char& character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || std::string_view("\\/:*?\"<>|").find(character) != std::string_view::npos)
            character = '_';
    }
    for (const char* word : {".AID", ".DAT", ".aid", ".dat"}) {
        for (size_t at = name.find(word); at != std::string::npos; at = name.find(word)) name[at] = '_';
    }
    if (name.empty() || name[0] == '.') name.insert(0, "_");
    while (name.back() == ' ' || name.back() == '.') name.back() = '_';
    std::string stored = CutCp932(Cp932OfUtf8OrMark(name), kLongestName);
    if (!NameTrouble(stored, true).empty() || !NameTrouble(stored, false).empty())
        stored = CutCp932("_" + stored, kLongestName);
    return Utf8OfCp932(stored);
}

bool IsDrawing(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".svg" || extension == ".svgz";
}

/// The names from the top folder down, cut to three by joining what is deeper.
std::string GroupOf(const fs::path& relative, const std::string& into, const std::string& folderName) {
    std::vector<std::string> parts;
    if (!into.empty()) parts.push_back(into);
    for (const fs::path& part : relative.parent_path()) parts.push_back(part.string());
    if (parts.size() == (into.empty() ? 0U : 1U)) parts.push_back(folderName);
    while (parts.size() > 3) {
        const std::string last = parts.back();
        parts.pop_back();
        parts.back() += " - " + last;
    }
    std::string joined;
    for (const std::string& part : parts) joined += "/" + SafeName(part);
    std::string error;
    return GroupNameOfUtf8(joined, &error).value_or("UNTITLED");
}

} // namespace

bool PlanImport(const std::string& folder, const std::string& into, ImportPlan* plan, std::string* error) {
    std::error_code trouble;
    if (!fs::is_directory(folder, trouble)) {
        *error = folder + ": there is no such folder";
        return false;
    }
    if (!into.empty()) {
        const auto stored = Cp932OfUtf8(into, error);
        if (!stored) return false;
        *error = into.find_first_of("/\\") != std::string::npos ? "--into names one folder"
                                                                : NameTrouble(*stored, false);
        if (!error->empty()) return false;
    }
    const fs::path top = fs::canonical(folder, trouble);
    const std::string folderName = top.filename().empty() ? "UNTITLED" : top.filename().string();
    // Links are not followed: a link to a folder above would never end, and what a link names is stored
    // where it lies.
    fs::recursive_directory_iterator entries(top, fs::directory_options::skip_permission_denied, trouble);
    for (; !trouble && entries != fs::recursive_directory_iterator(); entries.increment(trouble)) {
        std::error_code ignored;
        if (!IsDrawing(entries->path()) || !fs::is_regular_file(entries->symlink_status(ignored))) continue;
        const fs::path relative = entries->path().lexically_relative(top);
        plan->groups[GroupOf(relative, into, folderName)].push_back(relative.string());
        ++plan->files;
    }
    if (trouble) {
        *error = folder + ": " + trouble.message();
        return false;
    }
    for (auto& [group, files] : plan->groups) std::sort(files.begin(), files.end());
    return true;
}
