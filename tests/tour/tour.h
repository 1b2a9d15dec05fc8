/// A person at the panel: hands that press, drag, type and answer, over a real database, in one language.
///
/// Hands are queued and played together; everything between two calls of Play happens in the host's message
/// loop, as it would on a screen.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "tests/support/panel_fixture.h"
#include "tests/support/posix/headless_desktop.h"

/// The parameter is `globals->language`.
class Tour : public PanelFixture, public ::testing::WithParamInterface<int32_t> {
public:
    void SetUp() override;

    HeadlessDisplay& hands() { return DisplayOf(desktop()); }
    bool japanese() const { return GetParam() == 0; }
    /// The text of the running language.
    const char* Either(const char* english, const char* japaneseText) const {
        return japanese() ? japaneseText : english;
    }

    /// Plays what is queued to its end.
    void Play();

    /// The places of controls and rows, on the screen.
    RECT ScreenRect(HWND window);
    POINT Middle(HWND window);
    POINT RowPoint(int list, int row, int x = -1);

    Tour& PointAt(std::function<POINT()> place); ///< asked when its moment has come
    Tour& ClickAt(std::function<POINT()> place);
    Tour& ClickControl(int id);
    Tour& ClickRow(int list, int row);
    Tour& DoubleClickRow(int list, int row);
    /// Opens the flyout and picks an entry.
    Tour& PickFlyout(int entry);
    /// Runs in the loop of the dialog that is open then, or of the host.
    Tour& Do(std::function<void()> action);
    /// Works in the dialog on top: text into an edit, an entry of a list, a press on a button.
    Tour& SetText(int id, const std::string& text);
    Tour& Choose(int id, const std::string& entry);
    Tour& PressButton(int id);
    /// Lets the plug-in's timer tick.
    Tour& WaitTicks();

    /// What is there now.
    std::vector<std::string> Rows(int list);
    std::vector<std::string> Records(); ///< their names, by row, from the index
    std::vector<std::string> Entries(HWND combo);
    std::string TextOf(HWND window);
    int Selected(int list) { return GetSelectedRow(control(list)); }
    int ScrollPosition(int bar);

    /// Makes a group file with records of these names through the store, each with a drawing of its own.
    void MakeGroup(const std::string& group, const std::vector<std::string>& names);
    std::set<std::string> FilesOnDisk(); ///< below the root, without the lock's file

private:
    int made_ = 0; ///< records
};

std::string Utf8(const char* cp932); ///< as the host holds texts

HWND TopDialog(); ///< the dialog that takes the input now, or null
