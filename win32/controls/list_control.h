/// A list of texts to choose from: the drop list of a combo box, and a list in a dialog.
///
/// The window is a popup or a child of class kListClass.  It tells its owner what the user does by WM_COMMAND
/// with one of the codes below; what a program does to it by the calls here is told to nobody.  Selections
/// may be -1: none.  Calls with a window that is no list (any more) do nothing.
#pragma once

#include <windows.h>

#include <deque>
#include <string>

constexpr int kListSelected = 1;      ///< LBN_SELCHANGE: by a click or a key
constexpr int kListDoubleClicked = 2; ///< LBN_DBLCLK
constexpr int kListCancelled = 3;     ///< LBN_SELCANCEL: a press outside of a popup
constexpr int kListLeft = 6;          ///< the left arrow, in a dialog; the right one is a double click

/// Asks the owner's control to draw an item; wParam ListItemDraw*.
constexpr UINT kDrawListItem = WM_USER + 1;
struct ListItemDraw {
    HDC context;
    RECT place;
    int item;
    bool selected;
};

struct ListData {
    HWND owner = nullptr; ///< gets WM_COMMAND, WM_CTLCOLORLISTBOX and, if ownerDrawn, kDrawListItem
    HWND scrollBar = nullptr;
    HFONT font = nullptr;
    std::deque<std::string> items; ///< cp932; programs empty a list from its front
    int selected = -1;
    int top = 0; ///< the first item that is shown
    int itemHeight = 16;
    bool ownerDrawn = false;
    bool isPopup = false;
    bool isFocused = false;
    bool isPressed = false;  ///< the button is down since a press on this window
    bool hasEntered = false; ///< the pointer has been over an item since the popup opened
    bool usesBar = false;    ///< the scroll bar has the pointer
};

/// Creates it hidden, as a popup or a child, with `owner` in its data.
HWND NewList(HWND owner, HWND parent, bool popup, int id);

/// Its items are the owner's to draw, by kDrawListItem.
void DrawListByOwner(HWND list);

void SetListItems(HWND list, std::deque<std::string> items); ///< none is selected then
void InsertListItem(HWND list, int at, const char* text);
void DeleteListItem(HWND list, int at);
void SelectListItem(HWND list, int item); ///< and scrolls to it
void SetListItemHeight(HWND list, int height);

/// The next item behind `after` that begins with `text`, or is it, without case; goes round at the end.
int FindListItem(const ListData& list, int after, const std::string& text, bool exact);

/// Where a key takes the selection; -1 for an empty list or any other key.
int ItemOfKey(HWND list, WPARAM key);

/// Shows the popup over `place` (screen), holding the pointer until HideList.
void ShowList(HWND list, const RECT& place);
void HideList(HWND list);
