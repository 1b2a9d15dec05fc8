#include "plugin/dialogs/entry_dialog.h"

#include <array>
#include <cstdio>
#include <cstring>

#include "plugin/dialogs/dialog_texts.h"
#include "plugin/dialogs/place_controls.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/store/clock_1904.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_names.h"

namespace {

constexpr UINT kEntryDialog = 16057;

enum FurtherControl : int {
    kRegister = IDOK,
    kCancelEntry = IDCANCEL,
    kEntryFolder = 10,
    kEntrySubFolder = 12,
    kPreview = 17,
    kCreated = 18,
    kModified = 19,
};
constexpr PlaceLists kEntryLists = {kEntryFolder, kEntrySubFolder, kEntryGroup};

constexpr int kPreviewSide = 128;
constexpr int kDateBytes = 64;
constexpr int kJapanese = 0;

// Null while there is none, or none that is expanded.
RecordStart* CurrentRecord() {
    if (BlockSize(globals->curRecord) < kObjectsOffset) return nullptr;
    auto* record = reinterpret_cast<RecordStart*>(BlockBytes(globals->curRecord));
    return record->packedPreview == 0 ? record : nullptr;
}

void ShowStamp(HWND dialog, int control, const char* title, uint32_t stamp) {
    SYSTEMTIME time;
    TimeFrom1904Seconds(stamp, &time);
    char text[kDateBytes];
    std::snprintf(text, sizeof text, "%s: %2.2d/%2.2d/%2.2d %2.2d:%2.2d", title, time.wYear % 100,
                  time.wMonth, time.wDay, time.wHour, time.wMinute);
    SetDlgItemTextA(dialog, control, text);
}

void ShowRecord(HWND dialog) {
    const RecordStart* record = CurrentRecord();
    if (record == nullptr) return;
    const bool japanese = globals->language == kJapanese;
    ShowStamp(dialog, kCreated, japanese ? "作成日" : "Created", record->header.created);
    ShowStamp(dialog, kModified, japanese ? "修正日" : "Modified", record->header.modified);
    SetDlgItemTextA(dialog, kEntryName, record->header.name);
    SetDlgItemTextA(dialog, kEntryKind, record->header.kind);
    SetDlgItemTextA(dialog, kEntryComment, record->header.comment);
}

void ShowEntryPlace(HWND dialog) {
    SplitGroupName(globals->entryName, globals->selFolder, globals->selSubFolder, globals->selGroup);
    if (!FillFolderList(dialog, kEntryFolder, globals->selFolder)) {
        globals->selFolder[0] = '\0';
        globals->selSubFolder[0] = '\0';
    }
    FillSubFolderList(dialog, kEntryLists, false);
}

// The record's pixels as bytes unused, red, green, blue become those of a bitmap: blue, green, red, unused.
void PaintPreview(const DRAWITEMSTRUCT& item) {
    const RecordStart* record = CurrentRecord();
    if (record == nullptr) return;
    std::array<uint32_t, kPreviewSide * kPreviewSide> pixels;
    const uint8_t* from = BlockBytes(globals->curRecord) + kPreviewOffset;
    for (uint32_t& pixel : pixels) {
        pixel = static_cast<uint32_t>(from[1]) << 16 | static_cast<uint32_t>(from[2]) << 8 | from[3];
        from += sizeof pixel;
    }
    BITMAPINFO information{};
    BITMAPINFOHEADER& header = information.bmiHeader;
    header.biSize = sizeof header;
    header.biWidth = kPreviewSide;
    header.biHeight = -kPreviewSide; // top row first
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    SetDIBitsToDevice(item.hDC, item.rcItem.left, item.rcItem.top, kPreviewSide, kPreviewSide, 0, 0, 0,
                      kPreviewSide, pixels.data(), &information, DIB_RGB_COLORS);
}

// A field of the record keeps no bytes of its old text.
void TakeText(HWND dialog, int control, char* field, size_t fieldBytes, size_t most) {
    std::memset(field, 0, fieldBytes);
    ReadText(dialog, control, field, most);
}

void TakeAll(HWND dialog) {
    if (RecordStart* record = CurrentRecord(); record != nullptr) {
        RecordHeader& header = record->header;
        TakeText(dialog, kEntryName, header.name, sizeof header.name, kEntryNameBytes);
        TakeText(dialog, kEntryKind, header.kind, sizeof header.kind, kEntryNameBytes);
        TakeText(dialog, kEntryComment, header.comment, sizeof header.comment, kEntryCommentBytes);
    }
    char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes];
    ReadFolderOfList(dialog, kEntryFolder, folder);
    ReadFolderOfList(dialog, kEntrySubFolder, subFolder);
    ReadList(dialog, kEntryGroup, group);
    if (folder[0] == '\0') subFolder[0] = '\0';
    JoinGroupName(folder, subFolder, group, globals->entryName);
}

void OnEntryCommand(HWND dialog, int control) {
    switch (control) {
        case kRegister:
            TakeAll(dialog);
            EndDialog(dialog, kRegister);
            break;
        case kCancelEntry:
            EndDialog(dialog, kCancelEntry);
            break;
        case kEntryFolder:
            FillSubFolderList(dialog, kEntryLists, true);
            break;
        case kEntrySubFolder:
            FillGroupList(dialog, kEntryLists, true);
            break;
        case kEntryGroup: // so that it stays when the lists above are only looked at
            ReadList(dialog, kEntryGroup, globals->selGroup);
            break;
        default:
            break;
    }
}

INT_PTR CALLBACK EntryDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            CentreDialog(dialog);
            ShowRecord(dialog);
            ShowEntryPlace(dialog);
            return TRUE;
        case WM_COMMAND:
            OnEntryCommand(dialog, LOWORD(wParam));
            return TRUE;
        case WM_DRAWITEM:
            if (wParam == kPreview) PaintPreview(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        default:
            return FALSE;
    }
}

} // namespace

bool RunEntryDialog() {
    return RunDialog(kEntryDialog, DialogEntry<EntryDialogProc>) == kRegister;
}
