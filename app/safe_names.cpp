#include "app/safe_names.h"

#include <windows.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kDevices[] = {"con", "prn", "aux", "nul", "conin$", "conout$"};

std::vector<WCHAR> WideOf(const std::string& utf8) {
    std::vector<WCHAR> wide(utf8.size() + 1);
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                          static_cast<int>(wide.size()));
    wide.resize(static_cast<size_t>(std::max(units, 0)));
    return wide;
}

/// Lower case of the letters that cp932 has: Latin, Greek, Cyrillic, their full-width forms, Roman numerals.
WCHAR Folded(WCHAR unit) {
    const auto within = [unit](unsigned first, unsigned last) { return unit >= first && unit <= last; };
    if (within('A', 'Z') || within(0x391, 0x3A9) || within(0x410, 0x42F) || within(0xFF21, 0xFF3A))
        return static_cast<WCHAR>(unit + 0x20);
    if (unit == 0x401) return 0x451;
    if (within(0x2160, 0x216F)) return static_cast<WCHAR>(unit + 0x10);
    return unit;
}

std::string FoldedKey(const std::string& utf8) {
    std::string key;
    for (const WCHAR unit : WideOf(utf8)) {
        const WCHAR folded = Folded(unit);
        key += static_cast<char>(folded & 0xFF);
        key += static_cast<char>(folded >> 8);
    }
    return key;
}

/// Such a name opens a device on some systems, whatever extension it has.
bool IsDevice(const std::string& name) {
    std::string stem = name.substr(0, name.find('.'));
    while (!stem.empty() && stem.back() == ' ') stem.pop_back();
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; });
    if (std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices)) return true;
    return stem.size() == 4 && (stem.starts_with("com") || stem.starts_with("lpt")) && stem[3] >= '0' &&
           stem[3] <= '9';
}

/// Cut between characters.
std::string CutUtf8(const std::string& utf8, size_t bytes) {
    if (utf8.size() <= bytes) return utf8;
    while (bytes > 0 && (static_cast<unsigned char>(utf8[bytes]) & 0xC0) == 0x80) --bytes;
    return utf8.substr(0, bytes);
}

} // namespace

std::string SafeFileName(const std::string& utf8) {
    std::string name = CutUtf8(utf8, kSafeNameBytes);
    for (char& character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F ||
            std::string_view("\\/:*?\"<>|").find(character) != std::string_view::npos)
            character = '_';
    }
    while (!name.empty() && (name.back() == ' ' || name.back() == '.')) name.pop_back();
    if (name.empty()) return "untitled";
    if (name[0] == '.' || name[0] == '-' || name[0] == ' ') name[0] = '_';
    return IsDevice(name) ? "_" + name : name;
}

std::string NamesInFolders::Take(const std::string& folder, const std::string& stem,
                                 const std::string& extension) {
    auto& taken = taken_[folder];
    std::string name = stem + extension;
    for (int i = 2; !taken.insert(FoldedKey(name)).second; ++i)
        name = stem + "-" + std::to_string(i) + extension;
    return name;
}
