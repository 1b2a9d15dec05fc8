#include "plugin/store/renumbering.h"

#include <algorithm>
#include <cstring>

#include "plugin/store/data_directories.h"
#include "plugin/store/folder_entries.h"

namespace {

constexpr int kAsideTries = 10000;

using Numbers = std::vector<uint32_t>; ///< ascending

std::string RenumberedName(uint32_t number) {
    return std::to_string(number) + kRenumberedSuffix;
}

// The number in front of the suffix; -1 if the name has another form.
int32_t NumberOfRenumbered(const std::string& name) {
    return name.ends_with(kRenumberedSuffix)
               ? NumberOfName(name.substr(0, name.size() - std::strlen(kRenumberedSuffix)))
               : -1;
}

Numbers Expand(const NumberRanges& ranges, uint32_t above) {
    Numbers numbers;
    for (const NumberRange& range : ranges) {
        for (uint32_t number = std::max(range.first, above + 1); number <= range.last; ++number)
            numbers.push_back(number);
    }
    return numbers;
}

/// The names that take part, from the gap's number on.
struct OnDisk {
    bool gapStands = false; ///< the gap's own number is there
    Numbers plain;          ///< numbers, that of the gap among them
    Numbers renumbered;     ///< new numbers of those on their way
};

bool ReadDisk(const std::string& directory, uint32_t gap, OnDisk& disk) {
    std::vector<FolderEntry> entries;
    if (!ListFolder(directory, entries)) return false;
    for (const FolderEntry& entry : entries) {
        const int32_t plain = NumberOfName(entry.name);
        const int32_t renumbered = NumberOfRenumbered(entry.name);
        if (plain >= 0 && static_cast<uint32_t>(plain) >= gap)
            disk.plain.push_back(static_cast<uint32_t>(plain));
        if (renumbered >= 0) disk.renumbered.push_back(static_cast<uint32_t>(renumbered));
    }
    std::ranges::sort(disk.plain);
    std::ranges::sort(disk.renumbered);
    disk.gapStands = !disk.plain.empty() && disk.plain.front() == gap;
    return true;
}

enum class Stage { kLeaving, kArriving, kUnknown };

// While directories leave their old numbers, what has not left stands unchanged; while they arrive, what is
// no longer on its way stands one lower.  Both can hold only where nothing is left to do.
Stage StageOf(const OnDisk& disk, bool gapWasThere, const Numbers& behind) {
    Numbers left;
    for (const uint32_t number : disk.renumbered) left.push_back(number + 1);
    if (!std::ranges::includes(behind, left)) return Stage::kUnknown;
    Numbers rest;
    std::ranges::set_difference(behind, left, std::back_inserter(rest));
    Numbers staying = disk.plain;
    if (disk.gapStands && gapWasThere) staying.erase(staying.begin());
    if (staying == rest) return Stage::kLeaving;
    for (uint32_t& number : rest) --number;
    return disk.plain == rest ? Stage::kArriving : Stage::kUnknown;
}

bool Rename(const std::string& directory, const std::string& from, const std::string& to) {
    return MoveFileExA(JoinPath(directory, from).c_str(), JoinPath(directory, to).c_str(), 0) != FALSE;
}

bool LeaveOldNumbers(const std::string& directory, uint32_t gap, const OnDisk& disk) {
    for (const uint32_t number : disk.plain) {
        const bool done = number == gap
                              ? PutAside(directory, std::to_string(gap), kRemovedPrefix, gap)
                              : Rename(directory, std::to_string(number), RenumberedName(number - 1));
        if (!done) return false;
    }
    return true;
}

bool ArriveAtNewNumbers(const std::string& directory, const Numbers& numbers) {
    return std::ranges::all_of(numbers, [&directory](uint32_t number) {
        return Rename(directory, RenumberedName(number), std::to_string(number));
    });
}

} // namespace

int32_t NumberOfName(const std::string& name) {
    if (name.empty() || name.size() > kMostNumberDigits || (name.size() > 1 && name[0] == '0')) return -1;
    int32_t number = 0;
    for (const char digit : name) {
        if (digit < '0' || digit > '9') return -1;
        number = number * 10 + (digit - '0');
    }
    return number;
}

bool NumbersFrom(const std::string& dataDirectory, uint32_t from, NumberRanges& numbers) {
    std::vector<FolderEntry> entries;
    if (!ListFolder(dataDirectory, entries)) return false;
    Numbers found;
    for (const FolderEntry& entry : entries) {
        if (NumberOfRenumbered(entry.name) >= 0) return false;
        const auto number = static_cast<uint32_t>(NumberOfName(entry.name));
        if (NumberOfName(entry.name) < 0 || number < from) continue;
        if (entry.state == EntryState::kDirectory)
            found.push_back(number);
        else if (!PutAside(dataDirectory, entry.name, kStalePrefix, number))
            return false;
    }
    std::ranges::sort(found);
    numbers.clear();
    for (const uint32_t number : found) {
        if (!numbers.empty() && numbers.back().last + 1 == number)
            numbers.back().last = number;
        else
            numbers.push_back({number, number});
    }
    return true;
}

bool PutAside(const std::string& dataDirectory, const std::string& name, const char* prefix,
              uint32_t number) {
    const std::string path = JoinPath(dataDirectory, name);
    const std::string aside = JoinPath(dataDirectory, prefix) + std::to_string(number) + "-";
    for (int tries = 1; tries <= kAsideTries; ++tries) {
        const std::string target = aside + std::to_string(tries);
        if (MoveFileExA(path.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH)) return true;
        if (GetLastError() != ERROR_ALREADY_EXISTS) return false;
    }
    return false;
}

bool ClearPlaceOf(const std::string& dataDirectory, uint32_t number) {
    const std::string name = std::to_string(number);
    const EntryState state = StateOfEntry(JoinPath(dataDirectory, name));
    return state == EntryState::kMissing ||
           (state != EntryState::kUnknown && PutAside(dataDirectory, name, kStalePrefix, number));
}

bool CloseGap(const std::string& dataDirectory, uint32_t number, const NumberRanges& before) {
    const bool wasThere = !before.empty() && before.front().first == number;
    const Numbers behind = Expand(before, number);
    OnDisk disk;
    if (!ReadDisk(dataDirectory, number, disk)) return false;
    Numbers arriving = disk.renumbered;
    switch (StageOf(disk, wasThere, behind)) {
        case Stage::kUnknown:
            return false;
        case Stage::kLeaving:
            if (!LeaveOldNumbers(dataDirectory, number, disk)) return false;
            arriving = behind;
            for (uint32_t& next : arriving) --next;
            if (!FlushFolder(dataDirectory)) return false;
            break;
        case Stage::kArriving:
            break;
    }
    return ArriveAtNewNumbers(dataDirectory, arriving) && FlushFolder(dataDirectory);
}

void DeleteRemoved(const std::string& dataDirectory) {
    std::vector<FolderEntry> entries;
    ListFolder(dataDirectory, entries);
    for (const FolderEntry& entry : entries) {
        if (entry.state == EntryState::kDirectory && entry.name.starts_with(kRemovedPrefix))
            DeleteTree(JoinPath(dataDirectory, entry.name).c_str());
    }
}
