#include "tests/tour/tour.h"

#include <cstring>

#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_layout.h"
#include "workbench/frame/popup_menu.h"
#include "workbench/suites/text_encoding.h"

namespace fs = std::filesystem;

HWND TopDialog() {
    return GetActiveWindow();
}

std::string Utf8(const char* cp932) {
    return workbench::DecodeText(cp932, kEncodingCp932).value_or("");
}

void Tour::SetUp() {
    PanelFixture::SetUp();
    globals->language = GetParam();
    ReleaseSuites(); // the panel's callbacks hold them by themselves
}

void Tour::Play() {
    hands().Do([this] { windows().Quit(); });
    windows().Run();
    ASSERT_EQ(hands().StepsLeft(), 0u);
    // What hands have invalidated is painted, as it would be in the next moment.
    windows().RunWaiting();
}

RECT Tour::ScreenRect(HWND window) {
    RECT rectangle{};
    GetWindowRect(window, &rectangle);
    return rectangle;
}

POINT Tour::Middle(HWND window) {
    const RECT place = ScreenRect(window);
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

POINT Tour::RowPoint(int list, int row, int x) {
    RECT place{};
    GetRowRect(control(list), row, &place);
    POINT point{x < 0 ? (place.left + place.right) / 2 : place.left + x, (place.top + place.bottom) / 2};
    ClientToScreen(control(list), &point);
    return point;
}

Tour& Tour::PointAt(std::function<POINT()> place) {
    return Do([place = std::move(place)] {
        const POINT at = place();
        InputPointer(at.x, at.y);
    });
}

Tour& Tour::ClickAt(std::function<POINT()> place) {
    PointAt(std::move(place));
    hands().Press().Release();
    return *this;
}

Tour& Tour::ClickControl(int id) {
    return ClickAt([this, id] { return Middle(control(id)); });
}

Tour& Tour::ClickRow(int list, int row) {
    return ClickAt([this, list, row] { return RowPoint(list, row); });
}

Tour& Tour::DoubleClickRow(int list, int row) {
    ClickRow(list, row);
    // Behind the time of a double click with what came before; then two presses that are one.
    hands().Pause(600);
    ClickRow(list, row);
    hands().Press().Release();
    return *this;
}

Tour& Tour::PickFlyout(int entry) {
    ClickAt([this] {
        const RECT button = frame().FlyoutButton();
        POINT at{(button.left + button.right) / 2, (button.top + button.bottom) / 2};
        ClientToScreen(frame().window(), &at);
        return at;
    });
    return ClickAt([entry] {
        const RECT item = workbench::PopupItemRect(entry);
        EXPECT_LT(item.left, item.right) << "no entry " << entry << " in an open flyout";
        return POINT{(item.left + item.right) / 2, (item.top + item.bottom) / 2};
    });
}

Tour& Tour::Do(std::function<void()> action) {
    hands().Do(std::move(action));
    return *this;
}

Tour& Tour::SetText(int id, const std::string& text) {
    return Do([id, text] { EXPECT_TRUE(SetDlgItemTextA(TopDialog(), id, text.c_str())); });
}

Tour& Tour::Choose(int id, const std::string& entry) {
    return Do([id, entry] {
        const HWND list = GetDlgItem(TopDialog(), id);
        const auto text = reinterpret_cast<LPARAM>(entry.c_str());
        const LRESULT index =
            SendMessageA(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(static_cast<INT_PTR>(-1)), text);
        ASSERT_NE(index, CB_ERR) << entry;
        SendMessageA(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        SendMessageA(TopDialog(), WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, CBN_SELCHANGE)),
                     reinterpret_cast<LPARAM>(list));
    });
}

Tour& Tour::PressButton(int id) {
    return ClickAt([this, id] {
        const HWND button = GetDlgItem(TopDialog(), id);
        EXPECT_NE(button, nullptr) << "no button " << id << " in the window on top";
        return Middle(button);
    });
}

Tour& Tour::WaitTicks() {
    hands().Pause(450);
    return *this;
}

std::vector<std::string> Tour::Rows(int list) {
    std::vector<std::string> rows;
    for (int32_t row = 0; row < GetRowCount(control(list)); ++row) {
        char text[kNameBytes];
        GetListRowText(control(list), row, text, sizeof text);
        rows.emplace_back(text);
    }
    return rows;
}

std::vector<std::string> Tour::Records() {
    std::vector<std::string> names;
    for (int32_t row = 0; row < RihCount(globals->rihList); ++row)
        names.emplace_back(RihItemOfRow(globals->rihList, row)->name);
    return names;
}

std::vector<std::string> Tour::Entries(HWND combo) {
    std::vector<std::string> entries;
    const LRESULT count = SendMessageA(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        char text[kNameBytes]{};
        SendMessageA(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        entries.emplace_back(text);
    }
    return entries;
}

std::string Tour::TextOf(HWND window) {
    char text[1024]{};
    GetWindowTextA(window, text, sizeof text);
    return text;
}

int Tour::ScrollPosition(int bar) {
    SCROLLINFO state{};
    state.cbSize = sizeof state;
    state.fMask = SIF_ALL;
    GetScrollInfo(control(bar), SB_CTL, &state);
    return state.nPos;
}

void Tour::MakeGroup(const std::string& group, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        globals->curRecord = NewRecord();
        ASSERT_NE(globals->curRecord, nullptr);
        uint8_t* record = BlockBytes(globals->curRecord);
        auto* header = reinterpret_cast<RecordHeader*>(record);
        std::strncpy(header->name, name.c_str(), sizeof header->name - 1);
        std::strncpy(header->kind, ("kind " + name).c_str(), sizeof header->kind - 1);
        header->boundsTop = header->boundsRight = 100 * 65536;
        header->created = header->modified = 3000000000u + static_cast<uint32_t>(made_++);
        // A preview of one colour for each record.
        for (uint32_t pixel = 0; pixel < kPreviewBytes; pixel += 4) {
            record[kPreviewOffset + pixel + 1] = static_cast<uint8_t>(40 * made_);
            record[kPreviewOffset + pixel + 2] = 0x80;
            record[kPreviewOffset + pixel + 3] = static_cast<uint8_t>(255 - 40 * made_);
        }
        ASSERT_EQ(WriteRecord(group.c_str(), -1), 0);
        FreeHandle(globals->curRecord);
    }
}

std::set<std::string> Tour::FilesOnDisk() {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(rootOnDisk()))
        files.insert(fs::relative(entry.path(), rootOnDisk()).string());
    files.erase("VLQ.LCK");
    return files;
}
