#include <windows.h>

#include <cstring>

#include "plugin/dialogs/entry_dialog.h"
#include "plugin/dialogs/store_messages.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/cp932.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_names.h"

namespace {

struct Edit {
    char group[kNameBytes];
    int32_t number;
    RecordHeader stored; ///< as it was when the dialog opened, in file order
};

enum class StoreResult { kStored, kAnother, kTrouble };

bool ReadStoredHeader(const char* group, int32_t number, RecordHeader& header) {
    HandleOwner record(NewRecord());
    if (record.get() == nullptr) return false;
    AidbReadRecord(group, number, &record.get(), kReadHeader, false);
    if (record.get() == nullptr) return false;
    std::memcpy(&header, record.bytes(), sizeof header);
    return header.size != 0;
}

bool ReadForEdit(const char* groupName, int32_t recordNumber, Edit& edit) {
    CopyText(edit.group, sizeof edit.group, groupName);
    edit.number = recordNumber;
    if (!ReadStoredHeader(edit.group, recordNumber, edit.stored)) return false;
    AidbReadRecord(edit.group, recordNumber, nullptr, kReadWhole, true);
    return globals->curRecord != nullptr;
}

void TellUnreadable(const Edit& edit) {
    const bool counted = edit.number >= 0 && static_cast<uint32_t>(edit.number) < CountRecords(edit.group);
    if (!counted) return TellRecordIsAnother();
    StoreFails(StoreTrouble::kDamaged);
    TellStoreTrouble();
}

// Others may have changed the group while the dialog stood, so the number may mean another record.
StoreResult Store(const Edit& edit, int32_t* newNumber) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held()) return StoreResult::kTrouble;
    if (globals->curRecord == nullptr) return StoreResult::kAnother;
    RecordHeader now;
    if (!ReadStoredHeader(edit.group, edit.number, now) || std::memcmp(&now, &edit.stored, sizeof now) != 0)
        return StoreResult::kAnother;
    int32_t result;
    if (std::strcmp(globals->entryName, edit.group) == 0) {
        result = WriteRecord(edit.group, edit.number);
    } else {
        RecordHeader texts;
        std::memcpy(&texts, BlockBytes(globals->curRecord), sizeof texts);
        result = MoveRecordToGroup(edit.group, edit.number, globals->entryName, newNumber, &texts);
    }
    return result == 0 ? StoreResult::kStored : StoreResult::kTrouble;
}

void ShowMoved(HWND panel, int32_t number) {
    const int32_t row = FindRihItem(globals->entryName, static_cast<uint32_t>(number));
    if (globals->findMode == kFindGroup) {
        SplitCurrentName();
        RebuildFolderList(panel);
        RebuildGroupCombo(panel);
        RebuildRecordList(panel, true);
    }
    SelectRecordRow(panel, row);
}

} // namespace

int32_t EditRecord(HWND panel, const char* groupName, int32_t recordNumber) {
    Edit edit;
    if (!ReadForEdit(groupName, recordNumber, edit)) {
        TellUnreadable(edit);
        ListRecordsAnew(panel);
        return 0;
    }
    const int32_t row = FindRihItem(edit.group, static_cast<uint32_t>(edit.number));
    CopyText(globals->entryName, sizeof globals->entryName, edit.group);
    if (!RunEntryDialog()) return 0;
    int32_t number = edit.number;
    const StoreResult result = Store(edit, &number);
    if (result == StoreResult::kAnother) TellRecordIsAnother();
    if (result == StoreResult::kTrouble) TellStoreTrouble();
    // Work that waits for its end may have moved the record already.
    const bool unfinished =
        result == StoreResult::kTrouble && globals->storeTrouble == StoreTrouble::kUnfinished;
    if (result == StoreResult::kAnother || unfinished) ListRecordsAnew(panel);
    if (result == StoreResult::kStored) {
        const bool moved = std::strcmp(globals->entryName, edit.group) != 0;
        const int32_t newRow = moved ? -1 : FindRihItem(edit.group, static_cast<uint32_t>(edit.number));
        if (moved) ShowMoved(panel, number);
        if (!moved && newRow != row) SelectRecordRow(panel, newRow);
    }
    InvalidateRect(GetDlgItem(panel, kRecordList), nullptr, FALSE);
    return 0;
}
