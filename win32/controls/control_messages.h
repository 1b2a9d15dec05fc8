/// Numbers of Windows that controls and dialogs say to each other, and no one else: <windows.h> doesn't list
/// them.  The names differ from Windows' macros, so that this compiles against the real header too.
#pragma once

#include <windows.h>

constexpr UINT kNextDialogControl = 0x0028; ///< WM_NEXTDLGCTL: wParam window or direction, lParam 1: window
constexpr UINT kCut = 0x0300, kCopy = 0x0301, kPaste = 0x0302, kClear = 0x0303;

constexpr UINT kButtonSetState = 0x00F3; ///< BM_SETSTATE: wParam whether it looks pressed
constexpr UINT kButtonSetStyle = 0x00F4; ///< BM_SETSTYLE: wParam BS_..., lParam whether to repaint
constexpr WPARAM kButtonPushed = 0x0004, kButtonFocus = 0x0008; ///< in BM_GETSTATE
constexpr int kButtonDoubleClicked = 5;                         ///< BN_DOUBLECLICKED

constexpr int kStaticEnabled = 2, kStaticDisabled = 3; ///< STN_ENABLE, STN_DISABLE

constexpr int kEditTextFull = 0x0501;  ///< EN_MAXTEXT
constexpr int kComboTextFull = 0xFFFF; ///< CBN_ERRSPACE

constexpr UINT kGetDefaultId = WM_USER, kSetDefaultId = WM_USER + 1; ///< DM_GETDEFID, DM_SETDEFID
constexpr WORD kHasDefaultId = 0x534B;

constexpr DWORD kButtonTypeMask = 0x000F, kStaticTypeMask = 0x001F;
constexpr DWORD kStaticNoPrefix = 0x0080;
