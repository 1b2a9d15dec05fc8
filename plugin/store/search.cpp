#include "plugin/store/search.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

#include "plugin/frame/globals.h"
#include "plugin/store/cp932.h"
#include "plugin/store/header_walk.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"
#include "plugin/store/trace.h"
#include "plugin/store/width_table.h"

namespace {

/// A character as it is compared.
struct Character {
    uint8_t first, second; ///< `second` is 0 for a single byte

    int32_t Minus(Character other) const {
        return first != other.first ? first - other.first : second - other.second;
    }
};

bool IsWordByte(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

// Folds the character at `text`, which has `bytes` bytes.
Character Fold(const char* text, size_t bytes, int16_t caseFlag, int16_t widthFlag) {
    Character character{static_cast<uint8_t>(text[0]), 0};
    if (bytes == 2) {
        const auto trail = static_cast<uint8_t>(text[1]);
        const uint8_t half = widthFlag == 0 ? HalfWidthOf(character.first, trail) : uint8_t{0};
        if (half == 0) return {character.first, trail};
        character.first = half;
    }
    if (caseFlag == 0 && character.first >= 'A' && character.first <= 'Z') character.first += 'a' - 'A';
    return character;
}

// Steps over the character at `at`, and with `wordFlag` over the rest of the word that it begins.
const char* NextStart(const char* at, int16_t wordFlag) {
    const bool word = wordFlag != 0 && IsWordByte(*at);
    at += CharacterBytes(at);
    while (word && IsWordByte(*at)) ++at;
    return at;
}

} // namespace

int32_t MatchHere(const char* text, const char* key, int32_t* length, int16_t caseFlag, int16_t widthFlag) {
    const char* at = text;
    const char* keyAt = key;
    const char* keyEnd = key + *length;
    int32_t result = 0;
    while (keyAt < keyEnd && result == 0) {
        const size_t bytes = CharacterBytes(at);
        const size_t keyBytes = CharacterBytes(keyAt);
        if (bytes == 0 || keyBytes == 0) {
            result = bytes != 0 ? 1 : keyBytes != 0 ? -1 : 0;
            break;
        }
        result = Fold(at, bytes, caseFlag, widthFlag).Minus(Fold(keyAt, keyBytes, caseFlag, widthFlag));
        at += bytes;
        keyAt += keyBytes;
    }
    *length = static_cast<int32_t>(at - text);
    return result;
}

int32_t FindInText(const char* text, const char* key, int16_t caseFlag, int16_t widthFlag, int16_t wordFlag) {
    if (text == nullptr || key == nullptr) return -1;
    const auto keyBytes = static_cast<int32_t>(std::strlen(key));
    const Character first = Fold(key, CharacterBytes(key), caseFlag, widthFlag);
    for (const char* at = text; *at != '\0'; at = NextStart(at, wordFlag)) {
        // Most places fail at the first character.
        if (keyBytes != 0 && Fold(at, CharacterBytes(at), caseFlag, widthFlag).Minus(first) != 0) continue;
        int32_t used = keyBytes;
        if (MatchHere(at, key, &used, caseFlag, widthFlag) != 0) continue;
        if (wordFlag == 0 || !IsWordByte(at[used])) return static_cast<int32_t>(at - text);
    }
    return -1;
}

namespace {

enum SearchField : int16_t { kSearchName = 0, kSearchKind = 1, kSearchComment = 2 };

/// The settings of one search: the field's place in a header, and as much of the text as is looked for.
class RecordSearch {
public:
    RecordSearch() {
        size_t most = kNameSearchBytes;
        if (globals->flCnvFnMode == kSearchKind) {
            place_ = offsetof(RecordHeader, kind);
        } else if (globals->flCnvFnMode == kSearchComment) {
            place_ = offsetof(RecordHeader, comment);
            bytes_ = kRecordCommentBytes;
            most = kCommentSearchBytes;
        }
        TakeKey(most);
    }

    // An empty text is in every field.
    bool Hits(const RecordHeader& header) const {
        if (key_[0] == '\0') return true;
        std::array<char, kRecordCommentBytes + 1> text;
        const char* field = reinterpret_cast<const char*>(&header) + place_;
        const size_t length = strnlen(field, bytes_);
        std::memcpy(text.data(), field, length);
        text[length] = '\0';
        return FindInText(text.data(), key_.data(), globals->flCnvCase, globals->flCnvKanji,
                          globals->flCnvWord) >= 0;
    }

private:
    // Whole characters: half of one would be found nowhere.
    void TakeKey(size_t most) {
        size_t length = 0;
        for (const char* at = globals->flCnvFnStr; *at != '\0'; at = globals->flCnvFnStr + length) {
            if (length + CharacterBytes(at) > most) break;
            length += CharacterBytes(at);
        }
        std::memcpy(key_.data(), globals->flCnvFnStr, length);
    }

    size_t place_ = offsetof(RecordHeader, name);
    size_t bytes_ = kRecordNameBytes;
    std::array<char, kCommentSearchBytes + 1> key_{};
};

// Selecting an entry that is current already changes nothing, whatever `findMode` says.
void SelectSearchResult() {
    SelectGroup(kSearchResult);
    globals->findMode = kFindSearchResult;
}

} // namespace

int32_t RunSearch() {
    const TraceScope trace("RunSearch");
    const RecordSearch search;
    SelectSearchResult();
    FreeHandle(globals->rihList);
    LoadRihList(globals->aidbfname);
    char root[kNameBytes];
    GetDatabaseRoot(root);
    HandleOwner rows(ListGroups(root, nullptr, nullptr));
    GatheredItems items;
    uint32_t hits = 0;
    const auto add = [&](const char* group, uint32_t number, const RecordHeader& header) {
        if (!search.Hits(header)) return;
        ++hits;
        GatherItem(items, group, number, header);
    };
    const int32_t broken = ForEachHeaderOfGroups(rows.get(), add);
    TakeGathered(items);
    const bool whole = rows.get() != nullptr && hits == static_cast<uint32_t>(RihCount(globals->rihList));
    return whole ? broken : broken + 1;
}

namespace {

// The rows of a list, those of one group together and in the order of its records.
void OrderByPlace(std::span<int32_t> rows, MemoryHandle list) {
    for (size_t row = 0; row < rows.size(); ++row) rows[row] = static_cast<int32_t>(row);
    std::ranges::sort(rows, [list](int32_t a, int32_t b) {
        const RihItem* first = RihItemOfRow(list, a);
        const RihItem* second = RihItemOfRow(list, b);
        const int groups = std::strcmp(first->groupPath, second->groupPath);
        if (groups != 0) return groups < 0;
        return first->recNo != second->recNo ? first->recNo < second->recNo : a < b;
    });
}

} // namespace

namespace {

// Marks those of a group's items whose records match, and takes over what the headers say now.  `rows` are
// in the order of the records.  Returns how many records weren't reached.
int32_t LimitGroup(const RecordSearch& search, MemoryHandle list, std::span<const int32_t> rows,
                   uint8_t* keep) {
    size_t done = 0;
    ForEachHeader(RihItemOfRow(list, rows[0])->groupPath, [&](uint32_t number, const RecordHeader& header) {
        for (; done < rows.size() && RihItemOfRow(list, rows[done])->recNo == number; ++done) {
            if (!search.Hits(header)) continue;
            RefreshRihItem(RihItemOfRow(list, rows[done]), header);
            keep[rows[done]] = 1;
        }
    });
    return static_cast<int32_t>(rows.size() - done);
}

int32_t LimitList(const RecordSearch& search, MemoryHandle list) {
    const auto count = static_cast<size_t>(RihCount(list));
    HandleOwner order(NewHandle(count * sizeof(int32_t), kSmallGrain));
    HandleOwner keep(NewHandle(count, kSmallGrain));
    if (order.bytes() == nullptr || keep.bytes() == nullptr) return static_cast<int32_t>(count);
    std::span rows(reinterpret_cast<int32_t*>(order.bytes()), count);
    OrderByPlace(rows, list);
    int32_t unread = 0;
    while (!rows.empty()) {
        const char* group = RihItemOfRow(list, rows[0])->groupPath;
        const auto end = std::ranges::find_if(rows, [list, group](int32_t row) {
            return std::strcmp(RihItemOfRow(list, row)->groupPath, group) != 0;
        });
        const auto ofGroup = rows.first(static_cast<size_t>(end - rows.begin()));
        unread += LimitGroup(search, list, ofGroup, keep.bytes());
        rows = rows.subspan(ofGroup.size());
    }
    KeepRihItems(list, keep.bytes());
    SortRihList(list);
    return unread;
}

} // namespace

int32_t RunLimit() {
    const TraceScope trace("RunLimit");
    const RecordSearch search;
    MemoryHandle ofFolder = nullptr;
    if (globals->findMode == kFindFolder) std::swap(ofFolder, globals->rihList);
    SelectSearchResult();
    if (ofFolder != nullptr) {
        FreeHandle(globals->rihList);
        globals->rihList = ofFolder;
    }
    if (globals->rihList == nullptr) LoadRihList(globals->aidbfname);
    const int32_t count = RihCount(globals->rihList);
    if (count == 0) return 0;
    const RihItem last = *RihItemOfRow(globals->rihList, count - 1);
    const int32_t unread = LimitList(search, globals->rihList);
    // As reading the items' records one by one leaves it.
    AidbReadRecord(last.groupPath, static_cast<int32_t>(last.recNo), nullptr, kReadHeader, true);
    return unread;
}
