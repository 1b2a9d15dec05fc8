#include "tests/plugin/panel/browser_fixture.h"

#include "plugin/panel/list_table.h"
#include "plugin/store/store_names.h"

void BrowserFixture::SetUp() {
    PanelFixture::SetUp();
    globals->language = 1;
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
