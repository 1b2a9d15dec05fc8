#include "plugin/panel/delete_record.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/store_messages.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_layout.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/record_moves.h"
#include "plugin/store/store_lock.h"

namespace {

constexpr char kQuestion[] = "Do you want to delete this object completely?\r\nREC_ID = [%d]";
constexpr char kJapaneseQuestion[] = "このオブジェクトを完全に削除しますか？\r\nREC_ID = [%d]";

bool AskToDelete(int32_t row) {
    char question[256];
    std::snprintf(question, sizeof question, globals->language != 0 ? kQuestion : kJapaneseQuestion, row + 1);
    return AskYesNo(question);
}

/// What the list shows of a row; false if it has none.
bool ItemOfRow(int32_t row, RihItem& item) {
    int32_t number = 0;
    if (GetRecordOfRow(row, nullptr, &number) == 0) return false;
    item = *RihItemOfRow(globals->rihList, row);
    return true;
}

bool SameField(const char (&a)[kRecordNameBytes], const char (&b)[kRecordNameBytes]) {
    return std::strncmp(a, b, kRecordNameBytes - 1) == 0;
}

/// Whether the record at the item's place in the file is the one that the item was made from.
bool IsRecordOfItem(const RihItem& item) {
    HandleOwner record;
    AidbReadRecord(item.groupPath, static_cast<int32_t>(item.recNo), &record.get(), kReadHeader, true);
    if (!record.get()) return false;
    const auto* header = reinterpret_cast<const RecordHeader*>(record.bytes());
    return header->size != 0 && SameField(header->name, item.name) && SameField(header->kind, item.kind) &&
           header->created == item.created;
}

enum class Deletion { kDone, kRefused, kAnotherRecord };

/// The lock keeps the place in the file from meaning another record between the look and the deed.
Deletion DeleteIfSame(const RihItem& item) {
    const StoreLock lock(kStoreExclusive);
    if (!lock.held()) return Deletion::kRefused;
    if (!IsRecordOfItem(item)) return Deletion::kAnotherRecord;
    const int32_t number = static_cast<int32_t>(item.recNo);
    return DeleteRecordAndData(item.groupPath, number) == 0 ? Deletion::kDone : Deletion::kRefused;
}

void TakeRowOut(HWND panel, int32_t row) {
    const HWND list = GetDlgItem(panel, kRecordList);
    DeleteListRow(list, row);
    SelectListRow(list, std::min(row, GetRowCount(list) - 1));
    InvalidateRect(list, nullptr, TRUE);
    UpdateScrollRange(panel, kRecordList, false);
}

} // namespace

void AskAndDeleteRecord(HWND panel, int32_t row) {
    RihItem item;
    const bool known = ItemOfRow(row, item);
    if (!AskToDelete(row) || !known) return;
    switch (DeleteIfSame(item)) {
        case Deletion::kDone:
            TakeRowOut(panel, row);
            break;
        case Deletion::kAnotherRecord:
            TellRecordIsAnother();
            ListRecordsAnew(panel);
            break;
        case Deletion::kRefused:
            TellStoreTrouble();
            // The record may be gone and its directories still have to follow.
            if (globals->storeTrouble == StoreTrouble::kUnfinished) ListRecordsAnew(panel);
            break;
    }
}
