// Names in the store and on disk: any bytes.  A name on disk leads back to the bytes that it was made of, no
// path leaves its folder, names are split and joined within their fields, and rows are ordered consistently.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/search.h"
#include "plugin/store/store_names.h"
#include "win32/path_names.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

int Sign(int value) {
    return (value > 0) - (value < 0);
}

void TryDiskNames(const std::string& name) {
    const std::string disk = DiskNameOfStoreName(name);
    // A name with a backslash of its own is a path, never a name.
    if (!name.empty() && FindPart(name.c_str(), "\\") == nullptr) Require(StoreNameOfDiskName(disk) == name);
    if (const auto store = StoreNameOfDiskName(name)) Require(DiskNameOfStoreName(*store) == name);
}

void TryPaths(const std::string& path) {
    const auto disk = DiskPathOfStorePath(path.c_str());
    if (!disk) return;
    Require(!disk->empty());
    for (std::string_view rest = *disk; !rest.empty();) {
        const std::string_view part = rest.substr(0, rest.find('/'));
        Require(part != "." && part != "..");
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    }
}

void TryGroupNames(const std::string& name) {
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes], joined[kNameBytes];
    SplitGroupName(name.c_str(), folder, subFolder, group);
    JoinGroupName(folder, subFolder, group, joined);
    Require(strnlen(joined, sizeof joined) < sizeof joined);
    for (const bool data : {false, true}) {
        uint8_t path[kPascalPathBytes];
        MakeGroupPath(name.c_str(), path, data);
        Require(std::strlen(reinterpret_cast<const char*>(path) + 1) == path[0]);
    }
}

void TryTwo(const char* a, const char* b) {
    Require(Sign(CompareStoreNames(a, b)) == -Sign(CompareStoreNames(b, a)));
    Require(CompareStoreNames(a, a) == 0);
    for (int16_t flags = 0; flags < 8; ++flags) {
        const auto caseFlag = static_cast<int16_t>(flags & 1);
        const auto widthFlag = static_cast<int16_t>(flags >> 1 & 1);
        const int32_t found = FindInText(a, b, caseFlag, widthFlag, static_cast<int16_t>(flags >> 2));
        Require(found >= -1 && found <= static_cast<int32_t>(std::strlen(a)));
        if (found < 0) continue;
        auto used = static_cast<int32_t>(std::strlen(b));
        Require(MatchHere(a + found, b, &used, caseFlag, widthFlag) == 0);
        Require(found + used <= static_cast<int32_t>(std::strlen(a)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto block = std::make_unique<Globals>();
    globals = block.get();
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string first = text.c_str();
    const std::string second = first.size() < text.size() ? text.substr(first.size() + 1).c_str() : "";
    for (const std::string& name : {first, second}) {
        TryDiskNames(name);
        TryPaths(name);
        TryGroupNames(name);
    }
    TryTwo(first.c_str(), second.c_str());
    TryTwo(second.c_str(), first.c_str());
    return 0;
}
