#include "tests/support/panel_hands.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "plugin/panel/list_grid.h"
#include "plugin/store/record_index.h"
#include "workbench/frame/popup_menu.h"

namespace {

constexpr unsigned kTicksPass = 450, kClicksPass = 600; // milliseconds

} // namespace

HWND TopDialog() {
    return GetActiveWindow();
}

PanelHands& PanelHands::PointAt(std::function<POINT()> place) {
    hand().MoveTo(std::move(place));
    return *this;
}

PanelHands& PanelHands::ClickAt(std::function<POINT()> place) {
    PointAt(std::move(place));
    hand().Press();
    hand().Release();
    return *this;
}

PanelHands& PanelHands::ClickControl(int id) {
    return ClickAt([this, id] { return Middle(control(id)); });
}

PanelHands& PanelHands::ClickRow(int list, int row) {
    return ClickAt([this, list, row] { return RowPoint(list, row); });
}

PanelHands& PanelHands::DoubleClickRow(int list, int row) {
    // Behind the time of a double click with what came before; then two presses that are one.
    ClickRow(list, row).LetClicksPass().ClickRow(list, row);
    hand().Press();
    hand().Release();
    return *this;
}

PanelHands& PanelHands::PickFlyout(int entry) {
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

PanelHands& PanelHands::Do(std::function<void()> action) {
    hand().Do(std::move(action));
    return *this;
}

PanelHands& PanelHands::SetText(int id, const std::string& text) {
    return Do([id, text] { EXPECT_TRUE(SetDlgItemTextA(TopDialog(), id, text.c_str())); });
}

PanelHands& PanelHands::Choose(int id, const std::string& entry) {
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

PanelHands& PanelHands::PressButton(int id) {
    return ClickAt([this, id] {
        const HWND button = GetDlgItem(TopDialog(), id);
        EXPECT_NE(button, nullptr) << "no button " << id << " in the window on top";
        return Middle(button);
    });
}

PanelHands& PanelHands::Key(int virtualKey) {
    hand().KeyDown(virtualKey);
    hand().KeyUp(virtualKey);
    return *this;
}

PanelHands& PanelHands::KeyWith(int modifier, int virtualKey) {
    hand().KeyDown(modifier);
    Key(virtualKey);
    hand().KeyUp(modifier);
    return *this;
}

PanelHands& PanelHands::TypeOver(int id, const std::string& text) {
    ClickAt([this, id] { return Middle(GetDlgItem(TopDialog(), id)); });
    Key(VK_HOME).KeyWith(VK_SHIFT, VK_END);
    hand().Type(text);
    return *this;
}

PanelHands& PanelHands::WaitTicks() {
    hand().Pause(kTicksPass);
    // Where the clock is the machine's own: what was due by then has come.
    return Do([] {});
}

PanelHands& PanelHands::LetClicksPass() {
    hand().Pause(kClicksPass);
    return *this;
}

RECT PanelHands::ScreenRect(HWND window) {
    RECT rectangle{};
    GetWindowRect(window, &rectangle);
    return rectangle;
}

POINT PanelHands::Middle(HWND window) {
    const RECT place = ScreenRect(window);
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

POINT PanelHands::RowPoint(int list, int row, int x) {
    RECT client{};
    GetClientRect(control(list), &client);
    const RECT place =
        CellRect(MakeListGrid(client, state().toolMode, list == kRecordList, ScrollPosition(list + 1)), row);
    POINT point{x < 0 ? (place.left + place.right) / 2 : place.left + x, (place.top + place.bottom) / 2};
    ClientToScreen(control(list), &point);
    return point;
}

const ListEntry* PanelHands::EntryOf(int list) {
    for (int32_t i = 0; i < state().listCount; ++i) {
        if (state().lists[i].window == control(list)) return &state().lists[i];
    }
    return nullptr;
}

std::vector<std::string> PanelHands::Rows(int list) {
    std::vector<std::string> rows;
    const ListEntry* entry = EntryOf(list);
    for (int32_t row = 0; entry && row < entry->rowCount; ++row)
        rows.emplace_back(reinterpret_cast<const char*>(BlockBytes(entry->rows)) + row * kNameBytes);
    return rows;
}

std::vector<std::string> PanelHands::Records() {
    std::vector<std::string> names;
    const uint8_t* list = BlockBytes(state().rihList);
    if (!list) return names;
    int32_t count = 0;
    std::memcpy(&count, list, sizeof count);
    for (int32_t row = 0; row < count; ++row) {
        RihItem item;
        std::memcpy(&item, list + sizeof count + static_cast<size_t>(row) * sizeof item, sizeof item);
        names.emplace_back(item.name);
    }
    return names;
}

POINT PanelHands::PixelOfArt(const workbench::View& view, HWND canvas, HostPoint point) {
    POINT pixel{static_cast<LONG>(std::lround((point.x - view.bounds.left) * view.zoom)),
                static_cast<LONG>(std::lround((view.bounds.top - point.y) * view.zoom))};
    ClientToScreen(canvas, &pixel);
    return pixel;
}

int PanelHands::Selected(int list) {
    const ListEntry* entry = EntryOf(list);
    return entry ? entry->selected : -1;
}

int PanelHands::ScrollPosition(int bar) {
    SCROLLINFO state{sizeof state, SIF_POS, 0, 0, 0, 0, 0};
    GetScrollInfo(control(bar), SB_CTL, &state);
    return state.nPos;
}
