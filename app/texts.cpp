#include "app/texts.h"

#include <windows.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/store_names.h"

namespace {

constexpr UINT kCp932 = 932;

/// The next character's bytes at the start of `utf8`; damaged bytes stand alone.
size_t CharacterLength(std::string_view utf8) {
    const auto first = static_cast<uint8_t>(utf8[0]);
    const size_t length = first < 0x80 ? 1 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
    if (length > utf8.size()) return 1;
    for (size_t i = 1; i < length; ++i) {
        if ((static_cast<uint8_t>(utf8[i]) & 0xC0) != 0x80) return 1;
    }
    return length;
}

std::optional<std::string> Cp932OfCharacter(std::string_view character) {
    std::array<WCHAR, 4> wide;
    const int units = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, character.data(),
                                          static_cast<int>(character.size()), wide.data(), 4);
    if (units <= 0) return std::nullopt;
    std::array<char, 8> bytes;
    BOOL replaced = FALSE;
    const int count = WideCharToMultiByte(kCp932, WC_NO_BEST_FIT_CHARS, wide.data(), units, bytes.data(), 8,
                                          nullptr, &replaced);
    if (count <= 0 || replaced) return std::nullopt;
    return std::string(bytes.data(), static_cast<size_t>(count));
}

uint32_t CodePointOf(std::string_view character) {
    const auto byte = [&](size_t i) { return static_cast<uint32_t>(static_cast<uint8_t>(character[i])); };
    switch (character.size()) {
        case 2:
            return (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
        case 3:
            return (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
        case 4:
            return (byte(0) & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
        default:
            return byte(0);
    }
}

std::string NameOfCharacter(std::string_view character) {
    std::array<char, 32> code;
    std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(CodePointOf(character)));
    return "'" + std::string(character) + "' (" + code.data() + ")";
}

std::vector<std::string> SplitParts(std::string_view utf8) {
    if (!utf8.empty() && (utf8[0] == '/' || utf8[0] == '\\')) utf8.remove_prefix(1);
    std::vector<std::string> parts(1);
    for (const char character : utf8) {
        if (character == '/' || character == '\\') {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

} // namespace

std::optional<std::string> Cp932OfUtf8(std::string_view utf8, std::string* error) {
    std::string result;
    while (!utf8.empty()) {
        const std::string_view character = utf8.substr(0, CharacterLength(utf8));
        const auto bytes = Cp932OfCharacter(character);
        if (!bytes || character[0] == '\0') {
            *error = "the character " + NameOfCharacter(character) + " can't be stored in a database";
            return std::nullopt;
        }
        result += *bytes;
        utf8.remove_prefix(character.size());
    }
    return result;
}

std::string Cp932OfUtf8OrMark(std::string_view utf8, size_t* replaced) {
    std::string result;
    while (!utf8.empty()) {
        const std::string_view character = utf8.substr(0, CharacterLength(utf8));
        const auto bytes = Cp932OfCharacter(character);
        const bool usable = bytes && character[0] != '\0';
        if (!usable && replaced) ++*replaced;
        result += usable ? *bytes : "?";
        utf8.remove_prefix(character.size());
    }
    return result;
}

std::string Utf8OfCp932(std::string_view cp932) {
    if (cp932.empty()) return {};
    std::vector<WCHAR> wide(cp932.size() + 1);
    const int units = MultiByteToWideChar(kCp932, 0, cp932.data(), static_cast<int>(cp932.size()),
                                          wide.data(), static_cast<int>(wide.size()));
    std::string utf8(static_cast<size_t>(units > 0 ? units : 0) * 4, '\0');
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(),
                                          static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<size_t>(bytes > 0 ? bytes : 0));
    return utf8;
}

std::string CutCp932(std::string_view cp932, size_t bytes) {
    const std::string text(cp932);
    size_t end = 0;
    while (end < text.size()) {
        const size_t next = end + CharacterBytes(text.c_str() + end);
        if (next > bytes) break;
        end = next;
    }
    return text.substr(0, end);
}

std::string NameTrouble(std::string_view cp932, bool isGroup) {
    const std::string name(cp932);
    if (name.empty()) return "a part of the name is empty";
    if (name.size() > kPartBytes - 1) return "a part of the name is longer than 79 bytes";
    if (name.find_first_not_of(". ") == std::string::npos) return "a name needs more than dots and blanks";
    if (name.find('/') != std::string::npos) return "a name can't hold a slash";
    if (name == "None") return "\"None\" stands for no folder";
    if (!isGroup) {
        if (IsHiddenFolderName(name.c_str())) return "folders of that name are hidden";
        return {};
    }
    if (name.find(".AID") != std::string::npos) return "a group's name can't hold \".AID\"";
    if (name == "Search Result" || name == "A Folder is Selected")
        return "the database uses that name for itself";
    return {};
}

std::optional<std::string> GroupNameOfUtf8(std::string_view utf8, std::string* error) {
    const std::vector<std::string> parts = SplitParts(utf8);
    if (parts.size() > 3) {
        *error = "a group lies at most two folders deep: Folder/Sub/Group";
        return std::nullopt;
    }
    std::array<std::array<char, kPartBytes>, 3> stored{};
    for (size_t i = 0; i < parts.size(); ++i) {
        const auto part = Cp932OfUtf8(parts[i], error);
        if (!part) return std::nullopt;
        *error = NameTrouble(*part, i + 1 == parts.size());
        if (!error->empty()) return std::nullopt;
        part->copy(stored[i].data(), kPartBytes - 1);
    }
    std::array<char, kNameBytes> name{};
    char none[kPartBytes] = "";
    char alsoNone[kPartBytes] = "";
    switch (parts.size()) {
        case 1:
            JoinGroupName(none, alsoNone, stored[0].data(), name.data());
            break;
        case 2:
            JoinGroupName(stored[0].data(), none, stored[1].data(), name.data());
            break;
        default:
            JoinGroupName(stored[0].data(), stored[1].data(), stored[2].data(), name.data());
    }
    return std::string(name.data());
}
