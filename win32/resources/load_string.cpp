// Texts of a module, by number.
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "win32/codepage_932.h"
#include "win32/resources/byte_reader.h"

namespace {

std::span<const uint8_t> BlockOf(HINSTANCE instance, UINT number) {
    const HRSRC resource = FindResourceA(instance, MAKEINTRESOURCEA(number), RT_STRING);
    if (resource == nullptr) return {};
    return {static_cast<const uint8_t*>(LockResource(LoadResource(instance, resource))),
            SizeofResource(instance, resource)};
}

} // namespace

int LoadStringA(HINSTANCE instance, UINT id, LPSTR text, int size) {
    if (text == nullptr || size <= 0) return 0;
    text[0] = '\0';
    // Sixteen texts to a block: their lengths and letters, one behind the other.
    constexpr UINT kTextsOfBlock = 16;
    if (id > 0xFFFF) return 0;
    ByteReader reader(BlockOf(instance, id / kTextsOfBlock + 1));
    std::u16string wide;
    for (UINT i = 0; i <= id % kTextsOfBlock; ++i) {
        const size_t letters = reader.Word();
        wide.clear();
        for (size_t at = 0; at < letters && !reader.Failed(); ++at)
            wide += static_cast<char16_t>(reader.Word());
    }
    if (reader.Failed() || wide.empty()) return 0;
    const auto letters = static_cast<int>(wide.size());
    std::string bytes(wide.size() * 2, '\0');
    const int converted = WideCharToMultiByte(CP_ACP, 0, wide.data(), letters, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, nullptr);
    // Cut at a whole character.
    size_t fitting = 0;
    const std::string_view all(bytes.data(), static_cast<size_t>(std::max(converted, 0)));
    while (fitting < all.size()) {
        const size_t next = fitting + Cp932UnitBytes(all.substr(fitting));
        if (next >= static_cast<size_t>(size)) break;
        fitting = next;
    }
    std::memcpy(text, all.data(), fitting);
    text[fitting] = '\0';
    return static_cast<int>(fitting);
}
