/// Windows, messages, input, controls and dialogs, as <windows.h> brings them; see there for what is offered
/// and how.
///
/// One thread, one desktop, one frame buffer.  The desktop has no size, and shows nothing, before a display
/// is there (win32/display.h); windows can be made all the same.  Window procedures, notifications and the
/// moments at which they come are Windows' own; texts are cp932.  A window that is destroyed takes its
/// children, its owned windows, its timers and its messages with it.
///
/// Deviations:
///  - frames: a window with WS_CAPTION has a title of kCaptionHeight pixels and a border of one pixel
///    (win32/window_frame.h); a caption can be dragged, and closed where it has WS_SYSMENU;
///  - no window is minimised, maximised or made transparent, and there are no menus, accelerators and hooks;
///  - WM_GETMINMAXINFO, WM_NCCALCSIZE and other messages that are not listed here are never sent; frames are
///    drawn, and backgrounds erased, when a window is painted, not when it is shown;
///  - WM_CHAR comes from the letters of the input (win32/display.h), from TranslateMessage only for keys that
///    control: Backspace, Tab, Enter, Escape, and letters with Control.
#pragma once

#include "wingdi.h"

using WNDPROC = LRESULT(CALLBACK*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
using DLGPROC = INT_PTR(CALLBACK*)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
using TIMERPROC = void(CALLBACK*)(HWND window, UINT message, UINT_PTR timer, DWORD time);
using WNDENUMPROC = BOOL(CALLBACK*)(HWND window, LPARAM parameter);
using ATOM = WORD;
using HMENU = struct HMENU__*; ///< the number of a child window, in CreateWindowExA

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra; ///< 0
    int cbWndExtra; ///< bytes for SetWindowLongPtrA
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground; ///< a brush, or COLOR_... + 1, or null
    LPCSTR lpszMenuName;  ///< null
    LPCSTR lpszClassName;
};
#define CS_VREDRAW 0x0001
#define CS_HREDRAW 0x0002
#define CS_DBLCLKS 0x0008

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};

struct CREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};

/// What WM_WINDOWPOSCHANGED points to.
struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};

struct DRAWITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemAction;
    UINT itemState;
    HWND hwndItem;
    HDC hDC;
    RECT rcItem;
    UINT_PTR itemData;
};
struct MEASUREITEMSTRUCT {
    UINT CtlType;
    UINT CtlID;
    UINT itemID;
    UINT itemWidth;
    UINT itemHeight;
    UINT_PTR itemData;
};
#define ODT_COMBOBOX 3
#define ODT_BUTTON 4
#define ODT_STATIC 5
#define ODA_DRAWENTIRE 0x0001
#define ODA_SELECT 0x0002
#define ODA_FOCUS 0x0004
#define ODS_SELECTED 0x0001
#define ODS_GRAYED 0x0002
#define ODS_DISABLED 0x0004
#define ODS_CHECKED 0x0008
#define ODS_FOCUS 0x0010
#define ODS_DEFAULT 0x0020
#define ODS_COMBOBOXEDIT 0x1000

struct SCROLLINFO {
    UINT cbSize;
    UINT fMask;
    int nMin;
    int nMax;
    UINT nPage;
    int nPos;
    int nTrackPos;
};
#define SIF_RANGE 0x0001
#define SIF_PAGE 0x0002
#define SIF_POS 0x0004
#define SIF_DISABLENOSCROLL 0x0008
#define SIF_TRACKPOS 0x0010
#define SIF_ALL (SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS)
#define SB_HORZ 0
#define SB_VERT 1
#define SB_CTL 2

// ---- Styles ---------------------------------------------------------------------------------------------

#define WS_OVERLAPPED 0x00000000u
#define WS_POPUP 0x80000000u
#define WS_CHILD 0x40000000u
#define WS_VISIBLE 0x10000000u
#define WS_DISABLED 0x08000000u
#define WS_CLIPSIBLINGS 0x04000000u
#define WS_CLIPCHILDREN 0x02000000u
#define WS_CAPTION 0x00C00000u
#define WS_BORDER 0x00800000u
#define WS_DLGFRAME 0x00400000u
#define WS_VSCROLL 0x00200000u
#define WS_SYSMENU 0x00080000u
#define WS_THICKFRAME 0x00040000u
#define WS_GROUP 0x00020000u
#define WS_TABSTOP 0x00010000u
#define WS_EX_TOPMOST 0x00000008u
#define WS_EX_TOOLWINDOW 0x00000080u
#define WS_EX_CLIENTEDGE 0x00000200u
#define WS_EX_NOACTIVATE 0x08000000u
#define CW_USEDEFAULT ((int)0x80000000)

#define SS_LEFT 0x0000
#define SS_CENTER 0x0001
#define SS_RIGHT 0x0002
#define SS_ICON 0x0003
#define SS_BLACKFRAME 0x0007
#define SS_OWNERDRAW 0x000D
#define SS_NOTIFY 0x0100
#define BS_PUSHBUTTON 0x0000
#define BS_DEFPUSHBUTTON 0x0001
#define BS_CHECKBOX 0x0002
#define BS_AUTOCHECKBOX 0x0003
#define BS_OWNERDRAW 0x000B
#define ES_LEFT 0x0000
#define ES_MULTILINE 0x0004
#define ES_AUTOVSCROLL 0x0040
#define ES_AUTOHSCROLL 0x0080
#define ES_WANTRETURN 0x1000
#define CBS_DROPDOWN 0x0002
#define CBS_DROPDOWNLIST 0x0003
#define CBS_OWNERDRAWFIXED 0x0010
#define CBS_AUTOHSCROLL 0x0040
#define CBS_HASSTRINGS 0x0200
#define SBS_HORZ 0x0000
#define SBS_VERT 0x0001
#define DS_SETFONT 0x0040
#define DS_MODALFRAME 0x0080
#define DS_CENTER 0x0800

// ---- Messages -------------------------------------------------------------------------------------------

#define WM_NULL 0x0000
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_MOVE 0x0003
#define WM_SIZE 0x0005
#define WM_ACTIVATE 0x0006
#define WM_SETFOCUS 0x0007
#define WM_KILLFOCUS 0x0008
#define WM_ENABLE 0x000A
#define WM_SETTEXT 0x000C
#define WM_GETTEXT 0x000D
#define WM_GETTEXTLENGTH 0x000E
#define WM_PAINT 0x000F
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_ERASEBKGND 0x0014
#define WM_SHOWWINDOW 0x0018
#define WM_SETCURSOR 0x0020
#define WM_MOUSEACTIVATE 0x0021
#define WM_DRAWITEM 0x002B
#define WM_MEASUREITEM 0x002C
#define WM_SETFONT 0x0030
#define WM_GETFONT 0x0031
#define WM_WINDOWPOSCHANGED 0x0047
#define WM_NCCREATE 0x0081
#define WM_NCDESTROY 0x0082
#define WM_DISPLAYCHANGE 0x007E ///< to all top-level windows
#define WM_NCHITTEST 0x0084
#define WM_NCPAINT 0x0085
#define WM_GETDLGCODE 0x0087
#define WM_NCMOUSEMOVE 0x00A0
#define WM_NCLBUTTONDOWN 0x00A1
#define WM_NCLBUTTONUP 0x00A2
#define WM_NCLBUTTONDBLCLK 0x00A3
#define WM_NCRBUTTONDOWN 0x00A4
#define WM_NCRBUTTONUP 0x00A5
#define WM_KEYDOWN 0x0100
#define WM_KEYUP 0x0101
#define WM_CHAR 0x0102       ///< a byte of cp932: two of them for a double-byte character
#define WM_SYSKEYDOWN 0x0104 ///< with Alt down, or without a focus
#define WM_SYSKEYUP 0x0105
#define WM_SYSCHAR 0x0106 ///< by TranslateMessage: letters and digits with Alt
#define WM_INITDIALOG 0x0110
#define WM_COMMAND 0x0111
#define WM_TIMER 0x0113
#define WM_HSCROLL 0x0114
#define WM_VSCROLL 0x0115
#define WM_CTLCOLOREDIT 0x0133
#define WM_CTLCOLORLISTBOX 0x0134
#define WM_CTLCOLORBTN 0x0135
#define WM_CTLCOLORDLG 0x0136
#define WM_CTLCOLORSCROLLBAR 0x0137
#define WM_CTLCOLORSTATIC 0x0138
#define WM_MOUSEMOVE 0x0200
#define WM_LBUTTONDOWN 0x0201
#define WM_LBUTTONUP 0x0202
#define WM_LBUTTONDBLCLK 0x0203
#define WM_RBUTTONDOWN 0x0204
#define WM_RBUTTONUP 0x0205
#define WM_MOUSEWHEEL 0x020A
#define WM_CAPTURECHANGED 0x0215
#define WM_USER 0x0400
#define WM_APP 0x8000

#define MK_LBUTTON 0x0001
#define MK_RBUTTON 0x0002
#define MK_SHIFT 0x0004
#define MK_CONTROL 0x0008
#define SIZE_RESTORED 0
#define WA_INACTIVE 0
#define WA_ACTIVE 1
#define WA_CLICKACTIVE 2
#define MA_ACTIVATE 1
#define MA_ACTIVATEANDEAT 2
#define MA_NOACTIVATE 3
#define MA_NOACTIVATEANDEAT 4
#define HTERROR (-2)
#define HTTRANSPARENT (-1)
#define HTNOWHERE 0
#define HTCLIENT 1
#define HTCAPTION 2
#define HTBORDER 18
#define HTCLOSE 20
#define WHEEL_DELTA 120
#define DLGC_WANTARROWS 0x0001
#define DLGC_WANTTAB 0x0002
#define DLGC_WANTALLKEYS 0x0004
#define DLGC_HASSETSEL 0x0008
#define DLGC_DEFPUSHBUTTON 0x0010
#define DLGC_UNDEFPUSHBUTTON 0x0020
#define DLGC_WANTCHARS 0x0080
#define DLGC_STATIC 0x0100
#define DLGC_BUTTON 0x2000

#define BM_GETCHECK 0x00F0
#define BM_SETCHECK 0x00F1
#define BM_GETSTATE 0x00F2
#define BM_CLICK 0x00F5
#define BST_UNCHECKED 0
#define BST_CHECKED 1
#define BN_CLICKED 0
#define STN_CLICKED 0
#define STN_DBLCLK 1
#define STM_SETICON 0x0170
#define EM_GETSEL 0x00B0
#define EM_SETSEL 0x00B1
#define EM_REPLACESEL 0x00C2
#define EM_LIMITTEXT 0x00C5
#define EN_SETFOCUS 0x0100
#define EN_KILLFOCUS 0x0200
#define EN_CHANGE 0x0300
#define EN_UPDATE 0x0400
#define CB_LIMITTEXT 0x0141
#define CB_ADDSTRING 0x0143
#define CB_DELETESTRING 0x0144
#define CB_GETCOUNT 0x0146
#define CB_GETCURSEL 0x0147
#define CB_GETLBTEXT 0x0148
#define CB_GETLBTEXTLEN 0x0149
#define CB_INSERTSTRING 0x014A
#define CB_RESETCONTENT 0x014B
#define CB_SELECTSTRING 0x014D
#define CB_SETCURSEL 0x014E
#define CB_SHOWDROPDOWN 0x014F
#define CB_SETITEMHEIGHT 0x0153
#define CB_GETITEMHEIGHT 0x0154
#define CB_GETDROPPEDSTATE 0x0157
#define CB_FINDSTRINGEXACT 0x0158
#define CB_ERR ((LRESULT)-1)
#define CBN_SELCHANGE 1
#define CBN_SETFOCUS 3
#define CBN_KILLFOCUS 4
#define CBN_EDITCHANGE 5
#define CBN_EDITUPDATE 6
#define CBN_DROPDOWN 7
#define CBN_CLOSEUP 8
#define CBN_SELENDOK 9
#define CBN_SELENDCANCEL 10
#define SB_LINEUP 0
#define SB_LINEDOWN 1
#define SB_PAGEUP 2
#define SB_PAGEDOWN 3
#define SB_THUMBPOSITION 4
#define SB_THUMBTRACK 5
#define SB_TOP 6
#define SB_BOTTOM 7
#define SB_ENDSCROLL 8

#define VK_LBUTTON 0x01
#define VK_RBUTTON 0x02
#define VK_BACK 0x08
#define VK_TAB 0x09
#define VK_RETURN 0x0D
#define VK_SHIFT 0x10
#define VK_CONTROL 0x11
#define VK_MENU 0x12
#define VK_ESCAPE 0x1B
#define VK_SPACE 0x20
#define VK_PRIOR 0x21
#define VK_NEXT 0x22
#define VK_END 0x23
#define VK_HOME 0x24
#define VK_LEFT 0x25
#define VK_UP 0x26
#define VK_RIGHT 0x27
#define VK_DOWN 0x28
#define VK_DELETE 0x2E
#define VK_F4 0x73

extern "C" {

// ---- Windows --------------------------------------------------------------------------------------------

#define HWND_TOP ((HWND)0)
#define HWND_BOTTOM ((HWND)(intptr_t)1)
#define HWND_TOPMOST ((HWND)(intptr_t)-1)
#define HWND_NOTOPMOST ((HWND)(intptr_t)-2)
#define SWP_NOSIZE 0x0001
#define SWP_NOMOVE 0x0002
#define SWP_NOZORDER 0x0004
#define SWP_NOREDRAW 0x0008
#define SWP_NOACTIVATE 0x0010
#define SWP_FRAMECHANGED 0x0020 ///< the frame follows the style at once here
#define SWP_SHOWWINDOW 0x0040
#define SWP_HIDEWINDOW 0x0080
#define SW_HIDE 0
#define SW_SHOWNORMAL 1
#define SW_SHOWNOACTIVATE 4
#define SW_SHOW 5
#define SW_SHOWNA 8
#define GW_HWNDFIRST 0
#define GW_HWNDLAST 1
#define GW_HWNDNEXT 2
#define GW_HWNDPREV 3
#define GW_OWNER 4
#define GW_CHILD 5
#define GWLP_WNDPROC (-4)
#define GWLP_HINSTANCE (-6)
#define GWLP_HWNDPARENT (-8) ///< read alone
#define GWLP_ID (-12)
#define GWL_STYLE (-16)
#define GWL_EXSTYLE (-20)
#define GWLP_USERDATA (-21)
#define DWLP_MSGRESULT 0
#define DWLP_DLGPROC 8
#define DWLP_USER 16

ATOM RegisterClassA(const WNDCLASSA* windowClass);
BOOL UnregisterClassA(LPCSTR name, HINSTANCE instance); ///< fails while a window of it is there
/// A class that was registered, or "STATIC", "BUTTON", "EDIT", "COMBOBOX", "SCROLLBAR", in any case.
HWND CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR title, DWORD style, int x, int y,
                     int width, int height, HWND parent, HMENU menuOrId, HINSTANCE instance,
                     LPVOID parameter);
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR SetWindowLongPtrA(HWND window, int index, INT_PTR value);
INT_PTR GetWindowLongPtrA(HWND window, int index);
BOOL GetWindowRect(HWND window, RECT* rectangle); ///< on the screen
BOOL GetClientRect(HWND window, RECT* rectangle); ///< left and top are 0
BOOL SetWindowPos(HWND window, HWND behind, int x, int y, int width, int height, UINT flags);
BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL ShowWindow(HWND window, int command);   ///< whether it was visible
BOOL IsWindowVisible(HWND window);           ///< it and all its parents
BOOL EnableWindow(HWND window, BOOL enable); ///< whether it was disabled
BOOL IsWindowEnabled(HWND window);
BOOL SetWindowTextA(HWND window, LPCSTR text);
int GetWindowTextA(HWND window, LPSTR text, int size); ///< cut at whole characters; bytes without the NUL
int GetWindowTextLengthA(HWND window);
int GetClassNameA(HWND window, LPSTR name, int size);
HWND GetParent(HWND window); ///< of a child the parent, of a popup the owner
HWND GetWindow(HWND window, UINT relation);
HWND GetTopWindow(HWND window);
HWND GetDesktopWindow(void);
BOOL EnumChildWindows(HWND parent, WNDENUMPROC each, LPARAM parameter); ///< all descendants, depth first
HWND GetDlgItem(HWND parent, int id);
int GetDlgCtrlID(HWND window);
BOOL ScreenToClient(HWND window, POINT* point);
BOOL ClientToScreen(HWND window, POINT* point);
int MapWindowPoints(HWND from, HWND to, POINT* points, UINT count); ///< null: the screen
HWND WindowFromPoint(POINT point);
HWND GetForegroundWindow(void);
BOOL SetForegroundWindow(HWND window);
HWND GetActiveWindow(void);
HWND SetActiveWindow(HWND window);

// ---- Painting -------------------------------------------------------------------------------------------

HDC GetDC(HWND window); ///< of its client area; null: the screen, over all windows
HDC GetWindowDC(HWND window);
int ReleaseDC(HWND window, HDC context);
HDC BeginPaint(HWND window, PAINTSTRUCT* paint);
BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
BOOL InvalidateRect(HWND window, const RECT* rectangle, BOOL erase); ///< null: all of the client area
BOOL ValidateRect(HWND window, const RECT* rectangle);
BOOL UpdateWindow(HWND window);

// ---- Messages and timers --------------------------------------------------------------------------------

#define PM_NOREMOVE 0
#define PM_REMOVE 1

LRESULT SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void PostQuitMessage(int code);
BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last); ///< window null, first and last 0
BOOL PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageA(const MSG* message);
UINT_PTR SetTimer(HWND window, UINT_PTR timer, UINT milliseconds, TIMERPROC procedure);
BOOL KillTimer(HWND window, UINT_PTR timer);
#define USER_TIMER_MINIMUM 10

// ---- Input ----------------------------------------------------------------------------------------------

/// As the hands are now, not as they were when the message at work was posted; each call gives input a chance
/// to come in (win32/display.h).  Bit 15: down; bit 0: pressed since the last question.
SHORT GetAsyncKeyState(int key);
/// As of the last input message taken.  Deviation: in a loop that asks GetAsyncKeyState and takes no
/// messages, as the hands are now, so that a key that goes down in the midst of a drag counts.
SHORT GetKeyState(int key);
BOOL GetCursorPos(POINT* point);
BOOL SetCursorPos(int x, int y);
HCURSOR SetCursor(HCURSOR cursor);
HWND SetFocus(HWND window);
HWND GetFocus(void);
HWND SetCapture(HWND window);
BOOL ReleaseCapture(void);
HWND GetCapture(void);
UINT GetDoubleClickTime(void); ///< 500

// ---- Rectangles and simple drawing ----------------------------------------------------------------------

#define DT_LEFT 0x0000
#define DT_CENTER 0x0001
#define DT_RIGHT 0x0002
#define DT_VCENTER 0x0004
#define DT_WORDBREAK 0x0010
#define DT_SINGLELINE 0x0020
#define DT_CALCRECT 0x0400
#define DT_NOPREFIX 0x0800
#define DI_NORMAL 0x0003

BOOL SetRect(RECT* rectangle, int left, int top, int right, int bottom);
BOOL SetRectEmpty(RECT* rectangle);
BOOL InflateRect(RECT* rectangle, int dx, int dy);
BOOL OffsetRect(RECT* rectangle, int dx, int dy);
BOOL PtInRect(const RECT* rectangle, POINT point);
BOOL IntersectRect(RECT* result, const RECT* first, const RECT* second);
BOOL IsRectEmpty(const RECT* rectangle);
int FillRect(HDC context, const RECT* rectangle, HBRUSH brush); ///< also COLOR_... + 1
int FrameRect(HDC context, const RECT* rectangle, HBRUSH brush);
BOOL InvertRect(HDC context, const RECT* rectangle);
BOOL DrawFocusRect(HDC context, const RECT* rectangle);
int DrawTextA(HDC context, LPCSTR text, int bytes, RECT* rectangle, UINT format);
BOOL DrawIcon(HDC context, int x, int y, HICON icon); ///< at the system's size, 32 by 32
BOOL DrawIconEx(HDC context, int x, int y, HICON icon, int width, int height, UINT step, HBRUSH background,
                UINT flags); ///< DI_NORMAL, no step, no background

// ---- The system's looks ---------------------------------------------------------------------------------

#define COLOR_SCROLLBAR 0
#define COLOR_BACKGROUND 1
#define COLOR_ACTIVECAPTION 2
#define COLOR_INACTIVECAPTION 3
#define COLOR_MENU 4
#define COLOR_WINDOW 5
#define COLOR_WINDOWFRAME 6
#define COLOR_MENUTEXT 7
#define COLOR_WINDOWTEXT 8
#define COLOR_CAPTIONTEXT 9
#define COLOR_HIGHLIGHT 13
#define COLOR_HIGHLIGHTTEXT 14
#define COLOR_BTNFACE 15
#define COLOR_BTNSHADOW 16
#define COLOR_GRAYTEXT 17
#define COLOR_BTNTEXT 18
#define COLOR_BTNHIGHLIGHT 20
#define SM_CXSCREEN 0
#define SM_CYSCREEN 1
#define SM_CXVSCROLL 2
#define SM_CYHSCROLL 3
#define SM_CYCAPTION 4
#define SM_CXICON 11
#define SM_CYICON 12
#define SM_CXDOUBLECLK 36
#define SM_CYDOUBLECLK 37

DWORD GetSysColor(int index);
HBRUSH GetSysColorBrush(int index); ///< the system's: never deleted
int GetSystemMetrics(int index);

// ---- Scroll bars ----------------------------------------------------------------------------------------

int SetScrollInfo(HWND window, int bar, const SCROLLINFO* information, BOOL redraw); ///< SB_CTL alone
BOOL GetScrollInfo(HWND window, int bar, SCROLLINFO* information);

// ---- Dialogs --------------------------------------------------------------------------------------------

#define IDOK 1
#define IDCANCEL 2

/// Templates of the plain and the extended form, fonts and texts in UTF-16.  -1 if there is no such template.
INT_PTR DialogBoxParamA(HINSTANCE instance, LPCSTR name, HWND owner, DLGPROC procedure, LPARAM parameter);
BOOL EndDialog(HWND dialog, INT_PTR result);
BOOL SetDlgItemTextA(HWND dialog, int id, LPCSTR text);
UINT GetDlgItemTextA(HWND dialog, int id, LPSTR text, int size);
LRESULT SendDlgItemMessageA(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
BOOL CheckDlgButton(HWND dialog, int id, UINT check);
UINT IsDlgButtonChecked(HWND dialog, int id);
BOOL MapDialogRect(HWND dialog, RECT* rectangle); ///< dialog units to pixels

// ---- Resources ------------------------------------------------------------------------------------------

#define IDC_ARROW MAKEINTRESOURCEA(32512)
#define IDC_IBEAM MAKEINTRESOURCEA(32513)
#define IDC_SIZEWE MAKEINTRESOURCEA(32644)

/// By number, of a module; with null the system's own cursors.  They stay until their module is gone.
HICON LoadIconA(HINSTANCE instance, LPCSTR name);
HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name);
/// Bytes without the NUL; 0 and an empty text if there is no such string.  cp932.
int LoadStringA(HINSTANCE instance, UINT id, LPSTR text, int size);

/// Counted, and silent: see win32/beep.h.
BOOL MessageBeep(UINT type);

} // extern "C"
