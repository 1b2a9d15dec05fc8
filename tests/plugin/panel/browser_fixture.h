/// A panel over a database that a test fills before it is built.
#pragma once

#include <string>
#include <vector>

#include "tests/support/dialog_answers.h"
#include "tests/support/panel_fixture.h"

/// Texts of groups and folders; they compare as bytes.
using Names = std::vector<std::string>;

class BrowserFixture : public PanelFixture {
protected:
    void SetUp() override;

    /// Builds the panel with a name current.
    void Browse(const std::string& current);

    HWND recordList() { return control(1001); }
    HWND folderList() { return control(1003); }
    Names FolderRows();
    Names ComboEntries() { return EntriesOf(panel(), 4); }
    std::string SelectedFolderRow();
    int32_t selectedRecord();
    SCROLLINFO Bar(int id);

    /// Presses or picks a control: its notification.
    void Command(int id) { SendMessageA(panel(), WM_COMMAND, static_cast<WPARAM>(id), 0); }
    /// Puts the pointer at a point of a control.
    void PointAt(HWND window, int x, int y);
};

/// A picture in memory that painters draw into, all of one strange colour before.
class Canvas {
public:
    Canvas(int width, int height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC context() const { return context_; }
    uint32_t At(int x, int y) const;           ///< 0x00RRGGBB
    uint32_t All(const RECT& rectangle) const; ///< the colour of all its pixels, or kMixed
    static constexpr uint32_t kMixed = 0xFFFFFFFF;
    static constexpr uint32_t kUntouched = 0x123456;

private:
    HDC context_;
    HBITMAP bitmap_;
    HGDIOBJ old_;
};

/// The system's colour as 0x00RRGGBB.
uint32_t SystemColor(int index);
