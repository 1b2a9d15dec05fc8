#include "win32/path_names.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "win32/codepage_932.h"
#include "win32/system_calls.h"
#include "win32/utf8.h"

namespace {

constexpr char32_t kPrivatePlane = 0xF0000;

// A character that cp932 itself gives never lies in plane 15, so the two halves of the table can't meet.
char32_t DiskCharacterOfUnit(uint16_t unit) {
    const char16_t wide = UnicodeOfCp932(unit);
    return wide != 0 && Cp932OfUnicode(wide) == unit ? char32_t{wide} : kPrivatePlane + unit;
}

// 0 if the character has no unit.  The caller's comparison settles whether it is the right one.
uint16_t UnitOfDiskCharacter(char32_t character) {
    if (character < 0x10000) return Cp932OfUnicode(static_cast<char16_t>(character));
    if (character < kPrivatePlane || character > kPrivatePlane + 0xFFFF) return 0;
    return static_cast<uint16_t>(character - kPrivatePlane);
}

void AppendUnit(std::string& text, uint16_t unit) {
    if (unit > 0xFF) text.push_back(static_cast<char>(unit >> 8));
    text.push_back(static_cast<char>(unit));
}

// ASCII but NUL is the same in cp932 and on disk, and each byte of it is a unit.  Most names are nothing
// else.
bool IsAscii(std::string_view text) {
    bool others = false;
    for (const char byte : text) others |= static_cast<unsigned char>(byte - 1) >= 0x7F;
    return !others;
}

bool HasDrive(std::string_view path) {
    if (path.size() < 2 || path[1] != ':') return false;
    const char letter = path[0];
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

// Takes the text up to the next backslash, and that backslash, off `rest`.
std::string_view TakeComponent(std::string_view& rest) {
    size_t end = std::min(rest.find('\\'), rest.size());
    if (!IsAscii(rest.substr(0, end))) {
        end = 0;
        while (end < rest.size() && rest[end] != '\\') end += Cp932UnitBytes(rest.substr(end));
    }
    const std::string_view component = rest.substr(0, end);
    rest.remove_prefix(end < rest.size() ? end + 1 : end);
    return component;
}

// The first character of a name without a cp932 form; the whole name if each character has one.
std::string OffenderIn(std::string_view diskName) {
    for (std::string_view rest = diskName; !rest.empty();) {
        const std::string_view before = rest;
        TakeUtf8(rest);
        const std::string_view character = before.substr(0, before.size() - rest.size());
        if (!StoreNameOfDiskName(character)) return std::string(character);
    }
    return std::string(diskName);
}

} // namespace

// A name of nothing but dots and blanks is, or is on Windows taken for, the folder itself or the one above.
bool IsAllowedStoreName(std::string_view name) {
    if (name.find_first_not_of(". ") == std::string_view::npos) return false;
    if (name.find('/') == std::string_view::npos) return true;
    for (std::string_view rest = name; !rest.empty(); rest.remove_prefix(Cp932UnitBytes(rest))) {
        if (rest[0] == '/') return false;
    }
    return true;
}

std::string DiskNameOfStoreName(std::string_view name) {
    if (IsAscii(name)) return std::string(name);
    std::string diskName;
    while (!name.empty()) {
        const size_t bytes = Cp932UnitBytes(name);
        AppendUtf8(diskName, DiskCharacterOfUnit(Cp932UnitCode(name.substr(0, bytes))));
        name.remove_prefix(bytes);
    }
    return diskName;
}

std::optional<std::string> StoreNameOfDiskName(std::string_view diskName) {
    std::string name;
    for (std::string_view rest = diskName; !rest.empty();) {
        const char32_t character = TakeUtf8(rest);
        const uint16_t unit = character == kInvalidUtf8 ? uint16_t{0} : UnitOfDiskCharacter(character);
        if (unit == 0 || unit == '\\') return std::nullopt;
        AppendUnit(name, unit);
    }
    // Lone lead bytes may join with what follows, and a private character may stand for bytes that have a
    // character of their own: then no name is written like this.
    if (DiskNameOfStoreName(name) != diskName) return std::nullopt;
    return name;
}

std::optional<std::string> DiskPathOfStorePath(const char* path) {
    const auto refuse = [](DWORD code) {
        SetLastError(code);
        return std::nullopt;
    };
    std::string_view rest = path != nullptr ? path : "";
    if (rest.empty()) return refuse(ERROR_PATH_NOT_FOUND);
    if (HasDrive(rest)) return refuse(ERROR_INVALID_DRIVE);
    const bool absolute = rest[0] == '\\';
    std::string diskPath;
    diskPath.reserve(rest.size());
    while (!rest.empty()) {
        const std::string_view component = TakeComponent(rest);
        if (component.empty()) continue;
        if (!IsAllowedStoreName(component)) return refuse(ERROR_INVALID_NAME);
        if (absolute || !diskPath.empty()) diskPath.push_back('/');
        diskPath += DiskNameOfStoreName(component);
    }
    if (diskPath.empty()) diskPath = "/";
    return diskPath;
}

namespace {

// As much of a path as exists is freed of its links; what follows goes by its text.
std::filesystem::path WithoutLinks(const std::filesystem::path& path) {
    std::filesystem::path existing = path, rest;
    while (existing != existing.root_path()) {
        const std::unique_ptr<char, void (*)(void*)> real(systemCalls->realPath(existing.c_str()), std::free);
        if (real != nullptr) return (real.get() / rest).lexically_normal();
        rest = rest.empty() ? existing.filename() : existing.filename() / rest;
        existing = existing.parent_path();
    }
    return path.lexically_normal();
}

} // namespace

StorePath StorePathOfUtf8(std::string_view path) {
    std::error_code error;
    std::filesystem::path full = std::filesystem::absolute(std::filesystem::path(path), error);
    // ".." behind a link leads to another place than the text suggests, so the links are followed.
    if (path.find("..") != std::string_view::npos) full = WithoutLinks(full);
    StorePath result;
    for (const std::filesystem::path& part : full.relative_path()) {
        const std::string& diskName = part.native();
        if (diskName.empty() || diskName == ".") continue;
        const auto name = StoreNameOfDiskName(diskName);
        if (!name) return {"", OffenderIn(diskName)};
        if (!IsAllowedStoreName(*name)) return {"", diskName};
        result.path += '\\' + *name;
    }
    if (result.path.empty()) result.path = "\\";
    return result;
}
