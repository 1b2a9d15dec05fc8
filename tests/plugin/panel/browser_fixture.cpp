#include "tests/plugin/panel/browser_fixture.h"

#include <cstring>

#include "plugin/panel/list_table.h"
#include "plugin/store/cp932.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/store_names.h"

void BrowserFixture::SetUp() {
    PanelFixture::SetUp();
    globals->language = 1;
}

void BrowserFixture::MakeFolder(const std::string& folder) {
    for (size_t end = folder.find('\\', 1);; end = folder.find('\\', end + 1)) {
        CreateDirectoryA((std::string(globals->aidbfpath) + folder.substr(0, end)).c_str(), nullptr);
        if (end == std::string::npos) return;
    }
}

void BrowserFixture::MakeRecords(const std::string& group, std::initializer_list<const char*> names) {
    if (const size_t end = group.rfind('\\'); end != std::string::npos && end > 0) {
        MakeFolder(group.substr(0, end));
    }
    for (const char* name : names) {
        FreeHandle(globals->curRecord);
        globals->curRecord = NewRecord();
        globals->curRecordNo = -1;
        uint8_t* bytes = BlockBytes(globals->curRecord);
        auto* header = reinterpret_cast<RecordHeader*>(bytes);
        CopyText(header->name, sizeof header->name, name);
        CopyText(header->kind, sizeof header->kind, "kind");
        CopyText(header->comment, sizeof header->comment, "comment");
        header->created = 3786912000u + static_cast<uint8_t>(name[0]); // 2024-01-01 00:00, and seconds
        header->modified = header->created;
        const uint32_t color = ColorOfName(name);
        for (size_t at = kPreviewOffset; at < kObjectsOffset; at += 4) {
            bytes[at + 1] = static_cast<uint8_t>(color >> 16);
            bytes[at + 2] = static_cast<uint8_t>(color >> 8);
            bytes[at + 3] = static_cast<uint8_t>(color);
        }
        ASSERT_EQ(WriteRecord(group.c_str(), -1), 0) << group;
    }
    FreeHandle(globals->curRecord);
    FreeHandle(globals->rihList);
    globals->curRecordNo = -1;
}

void BrowserFixture::MakeEmptyGroup(const std::string& group) {
    if (const size_t end = group.rfind('\\'); end != std::string::npos && end > 0) {
        MakeFolder(group.substr(0, end));
    }
    const std::string path = std::string(globals->aidbfpath) + "\\" + group + ".AID";
    const HFILE file = _lcreat(path.c_str(), 0);
    ASSERT_NE(file, HFILE_ERROR) << path;
    _lwrite(file, "\0\0\0\0", 4);
    _lclose(file);
}

void BrowserFixture::Browse(const std::string& current) {
    SelectGroup(current.c_str());
    BuildThePanel();
}

Names BrowserFixture::FolderRows() {
    Names rows;
    for (int32_t row = 0; row < GetRowCount(folderList()); ++row) {
        char text[kNameBytes];
        GetListRowText(folderList(), row, text, sizeof text);
        rows.push_back(text);
    }
    return rows;
}

Names BrowserFixture::ComboEntries() {
    Names entries;
    const LRESULT count = SendMessageA(control(4), CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        char text[kNameBytes] = "";
        SendMessageA(control(4), CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        entries.push_back(text);
    }
    return entries;
}

std::string BrowserFixture::SelectedFolderRow() {
    char text[kNameBytes];
    GetListRowText(folderList(), GetSelectedRow(folderList()), text, sizeof text);
    return text;
}

int32_t BrowserFixture::selectedRecord() {
    return GetSelectedRow(recordList());
}

SCROLLINFO BrowserFixture::Bar(int id) {
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_RANGE | SIF_POS;
    GetScrollInfo(control(id), SB_CTL, &state);
    return state;
}

void BrowserFixture::PointAt(HWND window, int x, int y) {
    POINT point = {x, y};
    ClientToScreen(window, &point);
    SetCursorPos(point.x, point.y);
}

uint32_t ColorOfName(const std::string& name) {
    uint32_t color = 0;
    for (const char byte : name) color = color * 131 + static_cast<uint8_t>(byte);
    return color & 0x7F7F7F;
}

namespace {

uint32_t RgbOf(COLORREF color) {
    return static_cast<uint32_t>(GetRValue(color)) << 16 | static_cast<uint32_t>(GetGValue(color)) << 8 |
           GetBValue(color);
}

} // namespace

Canvas::Canvas(int width, int height) {
    const HDC screen = GetDC(nullptr);
    context_ = CreateCompatibleDC(screen);
    bitmap_ = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    old_ = SelectObject(context_, bitmap_);
    const HBRUSH brush = CreateSolidBrush(RGB(0x12, 0x34, 0x56));
    const RECT all = {0, 0, width, height};
    FillRect(context_, &all, brush);
    DeleteObject(brush);
}

Canvas::~Canvas() {
    SelectObject(context_, old_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
}

uint32_t Canvas::At(int x, int y) const {
    return RgbOf(GetPixel(context_, x, y));
}

uint32_t Canvas::All(const RECT& rectangle) const {
    const uint32_t first = At(rectangle.left, rectangle.top);
    for (int y = rectangle.top; y < rectangle.bottom; ++y) {
        for (int x = rectangle.left; x < rectangle.right; ++x) {
            if (At(x, y) != first) return kMixed;
        }
    }
    return first;
}

uint32_t SystemColor(int index) {
    return RgbOf(GetSysColor(index));
}
