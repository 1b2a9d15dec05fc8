#include <cstring>
#include <iostream>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/open_database.h"
#include "app/record_texts.h"
#include "app/store_words.h"
#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_lock.h"

namespace {

/// What to write into the header, cp932; nothing leaves a field as it is.
struct NewTexts {
    std::optional<std::string> name, kind, comment;

    bool any() const { return name || kind || comment; }
};

/// False, with a complaint, if a text that was asked for can't be stored.
bool StoreTexts(const EditOptions& options, NewTexts* texts) {
    const auto take = [](const char* what, const std::optional<std::string>& asked, size_t capacity,
                         std::optional<std::string>* stored) {
        if (!asked) return true;
        *stored = StoredText(what, *asked, capacity);
        return stored->has_value();
    };
    return take("--name", options.name, kRecordNameBytes, &texts->name) &&
           take("--kind", options.kind, kRecordNameBytes, &texts->kind) &&
           take("--comment", options.comment, kRecordCommentBytes, &texts->comment);
}

template <size_t kBytes>
void Replace(const std::optional<std::string>& text, char (&field)[kBytes]) {
    if (!text) return;
    std::memset(field, 0, kBytes);
    text->copy(field, kBytes - 1);
}

bool Rewrite(const std::string& group, int32_t number, const NewTexts& texts) {
    AidbReadRecord(group.c_str(), number, nullptr, kReadHeader, true);
    if (!globals->curRecord) return StoreFails(StoreTrouble::kRefused);
    auto* header = reinterpret_cast<RecordHeader*>(BlockBytes(globals->curRecord));
    Replace(texts.name, header->name);
    Replace(texts.kind, header->kind);
    Replace(texts.comment, header->comment);
    return WriteRecord(group.c_str(), number) == 0;
}

int RefuseEdit(const std::string& what) {
    Complain(what + ": " + WordsOfStoreTrouble());
    return globals->storeTrouble == StoreTrouble::kDisk ? kFileTrouble : kRefusedOrDiffers;
}

/// Moves first: if that is refused nothing has changed.
int Edit(Session& session, const EditOptions& options, std::string group, const NewTexts& texts) {
    // Between the steps the number must not come to mean another record.
    const StoreLock lock(kStoreExclusive);
    if (!lock.held()) return RefuseEdit(options.group);
    int32_t number = options.number;
    if (!options.to.empty()) {
        std::string error;
        const auto target = GroupNameOfUtf8(options.to, &error);
        if (!target) {
            Complain(options.to + ": " + error);
            return kRefusedOrDiffers;
        }
        RecordHeader header;
        if (!ReadHeader(group, number, &header)) {
            StoreFails(StoreTrouble::kRefused);
            return RefuseEdit(options.group + ", record " + std::to_string(number));
        }
        if (!session.MakeFolders(*target, &error)) {
            Complain(options.to + ": " + error);
            return kFileTrouble;
        }
        if (MoveRecordToGroup(group.c_str(), number, target->c_str(), &number) != 0)
            return RefuseEdit(options.group + ", record " + std::to_string(options.number));
        group = *target;
    }
    if (texts.any() && !Rewrite(group, number, texts))
        return RefuseEdit(GroupForPeople(group) + ", record " + std::to_string(number));
    std::cout << GroupForPeople(group) << "\t" << number << "\n";
    return kDone;
}

} // namespace

int RunEdit(const EditOptions& options) {
    if (!options.name && !options.kind && !options.comment && options.to.empty()) {
        Complain("nothing to change: give --name, --kind, --comment or --to");
        return kUsage;
    }
    NewTexts texts;
    if (!StoreTexts(options, &texts)) return kRefusedOrDiffers;
    OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    return database.Ended(Edit(database.session(), options, database.group(), texts));
}
