/// What a person does at the plug-in's panel and in its dialogs, and what there is to see.
///
/// Hands are queued and played together; everything between two calls of Play happens in the host's message
/// loop, as it would on a screen.  Texts are cp932.
#pragma once

#include <string>
#include <vector>

#include "plugin/frame/globals.h"
#include "plugin/panel/panel_controls.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/hands.h"

class PanelHands {
public:
    virtual ~PanelHands() = default;

    // What they work at.
    virtual Hands& hand() = 0;
    virtual workbench::PanelFrame& frame() = 0;
    virtual const Globals& state() = 0; ///< the plug-in's

    HWND panel() { return frame().body(); } ///< the panel's window, with its controls
    HWND control(int id) { return GetDlgItem(panel(), id); }

    /// Plays what is queued to its end.
    void Play() { hand().Play(); }

    PanelHands& PointAt(std::function<POINT()> place); ///< asked when its moment has come
    PanelHands& ClickAt(std::function<POINT()> place);
    PanelHands& ClickControl(int id);
    PanelHands& ClickRow(int list, int row);
    PanelHands& DoubleClickRow(int list, int row);
    /// Opens the flyout and picks an entry.
    PanelHands& PickFlyout(int entry);
    /// Runs in the loop of the dialog that is open then, or of the host.
    PanelHands& Do(std::function<void()> action);
    /// Works in the dialog on top: text into an edit, an entry of a list, a press on a button.
    PanelHands& SetText(int id, const std::string& text);
    PanelHands& Choose(int id, const std::string& entry);
    PanelHands& PressButton(int id);
    PanelHands& Key(int virtualKey); ///< down and up
    PanelHands& KeyWith(int modifier, int virtualKey);
    /// Clicks into an edit of the dialog on top and types over what is there.
    PanelHands& TypeOver(int id, const std::string& text);
    /// Lets the plug-in's timer tick.
    PanelHands& WaitTicks();
    /// So long that the next press is no second one of a double click.
    PanelHands& LetClicksPass();

    /// The places of controls and rows, on the screen.
    RECT ScreenRect(HWND window);
    POINT Middle(HWND window);
    POINT RowPoint(int list, int row, int x = -1);
    /// Of a point of the document in front, in the window that shows it.
    static POINT PixelOfArt(const workbench::View& view, HWND canvas, HostPoint point);

    /// What is there now.
    std::vector<std::string> Rows(int list);
    std::vector<std::string> Records(); ///< their names, by row, from the index
    int Selected(int list);             ///< -1: none
    int ScrollPosition(int bar);

private:
    const ListEntry* EntryOf(int list);
};

HWND TopDialog(); ///< the dialog that takes the input now, or null
