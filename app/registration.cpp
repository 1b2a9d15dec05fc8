#include "app/registration.h"

#include <algorithm>
#include <array>

#include "app/store_words.h"
#include "app/texts.h"
#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/rebuild/placed_rebuild.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/store_names.h"
#include "plugin/store/swap_words.h"

namespace {

template <size_t kBytes>
void CopyText(const std::string& text, char (&field)[kBytes]) {
    std::fill(field, field + kBytes, '\0');
    text.copy(field, kBytes - 1);
}

RecordHeader* CurrentHeader() {
    return reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
}

/// The entries of the link list that aren't beside the record.
std::vector<std::string> LostLinks(const std::string& groupName, int32_t number) {
    std::vector<std::string> lost;
    const RecordSource source = {groupName.c_str(), number, LinkedFileUse::kLook};
    for (size_t row = 0; row < static_cast<size_t>(globals->linkCount); ++row) {
        const auto* name =
            reinterpret_cast<const char*>(BlockBytes(globals->linkNames)) + row * kLinkNameBytes;
        const auto* path =
            reinterpret_cast<const char*>(BlockBytes(globals->linkPaths)) + row * kLinkPathBytes;
        std::array<char, kFullPathBytes> stored{};
        if (FindPlacedFile(source, name, stored.data()) != 0 || !PlacedFileExists(stored.data()))
            lost.push_back(Utf8OfCp932(path));
    }
    return lost;
}

} // namespace

bool RegisterFrontDocument(Session& session, const std::string& groupName, const RecordTexts& texts,
                           Registered* registered, std::string* error) {
    const SuitesHeld held(session.host());
    // The number must not come to mean another record before its files lie beside it.
    const StoreLock lock(kStoreShared);
    if (!lock.held()) {
        *error = WordsOfStoreTrouble();
        return false;
    }
    SelectGroup(groupName.c_str());
    AidbPostArt();
    RecordHeader* header = globals->curRecord ? CurrentHeader() : nullptr;
    if (!header) {
        *error = "memory ran out";
        return false;
    }
    if (header->objectCount == 0) {
        *error = "nothing in it can be stored";
        return false;
    }
    registered->objects = header->objectCount;
    CopyText(texts.name, header->name);
    CopyText(texts.kind, header->kind);
    CopyText(texts.comment, header->comment);
    if (WriteRecord(groupName.c_str(), -1) != 0) {
        *error = WordsOfStoreTrouble();
        return false;
    }
    registered->number = globals->curRecordNo;
    registered->bytes = SwapLong(CurrentHeader()->size);
    if (CopyLinkedFiles(groupName.c_str(), registered->number) != 0)
        registered->lostPictures = LostLinks(groupName, registered->number);
    return true;
}

void CopyFilesOfFrontDocument(Session& session, const std::string& groupName, int32_t number) {
    const SuitesHeld held(session.host());
    const StoreLock lock(kStoreShared);
    if (!lock.held()) return;
    SelectGroup(groupName.c_str());
    AidbPostArt();
    CopyLinkedFiles(groupName.c_str(), number);
}
