#include "app/registration.h"

#include <algorithm>

#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
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

} // namespace

bool RegisterFrontDocument(Session& session, const std::string& groupName, const RecordTexts& texts,
                           Registered* registered, std::string* error) {
    const SuitesHeld held(session.host());
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
        *error = "the group file can't be written, or is damaged, or would grow too large";
        return false;
    }
    registered->number = globals->curRecordNo;
    registered->bytes = SwapLong(CurrentHeader()->size);
    return true;
}
