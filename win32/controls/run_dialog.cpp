#include <algorithm>

#include "win32/controls/control_classes.h"
#include "win32/controls/control_support.h"
#include "win32/controls/dialog.h"

namespace {

HFONT FontOfTemplate(const DialogTemplate& dialog) {
    if (dialog.pointSize == 0) return nullptr;
    const HDC screen = GetDC(nullptr);
    const int height = -MulDiv(dialog.pointSize, GetDeviceCaps(screen, LOGPIXELSY), 72);
    ReleaseDC(nullptr, screen);
    return CreateFontA(height, 0, 0, 0, dialog.weight, dialog.isItalic, FALSE, FALSE, dialog.charset, 0, 0, 0,
                       0, dialog.face.c_str());
}

// A dialog unit is a quarter of the letters' mean width and an eighth of a line.
SIZE UnitsOfFont(HFONT font) {
    constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr int kCount = sizeof kLetters - 1;
    const HDC screen = GetDC(nullptr);
    SIZE size = {};
    TEXTMETRICA metrics = {};
    {
        const Selected selected(screen, font != nullptr ? font : GetStockObject(SYSTEM_FONT));
        GetTextExtentPoint32A(screen, kLetters, kCount, &size);
        GetTextMetricsA(screen, &metrics);
    }
    ReleaseDC(nullptr, screen);
    return {std::max<LONG>((size.cx / (kCount / 2) + 1) / 2, 1), std::max<LONG>(metrics.tmHeight, 1)};
}

POINT PlaceOfDialog(const DialogData& data, const DialogTemplate& dialog, HWND owner, SIZE size) {
    const int right = GetSystemMetrics(SM_CXSCREEN), bottom = GetSystemMetrics(SM_CYSCREEN);
    POINT place = {(right - size.cx) / 2, (bottom - size.cy) / 2};
    if ((dialog.style & DS_CENTER) == 0) {
        place = {MulDiv(dialog.x, data.units.cx, 4), MulDiv(dialog.y, data.units.cy, 8)};
        if (owner != nullptr) ClientToScreen(owner, &place);
    }
    place.x = std::max<LONG>(std::min<LONG>(place.x, right - size.cx), 0);
    place.y = std::max<LONG>(std::min<LONG>(place.y, bottom - size.cy), 0);
    return place;
}

// The template tells the client area's size; what the frame adds shows when the window is there.
void PlaceDialog(const DialogData& data, const DialogTemplate& dialog, HWND owner) {
    RECT outer = {};
    GetWindowRect(data.window, &outer);
    const RECT client = ClientRectangle(data.window);
    const SIZE size = {MulDiv(dialog.width, data.units.cx, 4) + (outer.right - outer.left) - client.right,
                       MulDiv(dialog.height, data.units.cy, 8) + (outer.bottom - outer.top) - client.bottom};
    const POINT place = PlaceOfDialog(data, dialog, owner, size);
    SetWindowPos(data.window, nullptr, place.x, place.y, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

bool CreateControl(DialogData& data, const DialogItem& item, HINSTANCE instance) {
    RECT place = {item.x, item.y, item.x + item.width, item.y + item.height};
    const SIZE units = data.units;
    const int width = MulDiv(item.width, units.cx, 4), height = MulDiv(item.height, units.cy, 8);
    MapDialogRect(data.window, &place);
    const HWND control = CreateWindowExA(
        item.extendedStyle, item.className.c_str(), item.title.c_str(), (item.style | WS_CHILD) & ~WS_POPUP,
        place.left, place.top, width, height, data.window,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(item.id)), instance, nullptr);
    if (control == nullptr) return false;
    if (data.font != nullptr) SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(data.font), TRUE);
    if (item.titleNumber != 0)
        SendMessageA(control, STM_SETICON,
                     reinterpret_cast<WPARAM>(LoadIconA(instance, MAKEINTRESOURCEA(item.titleNumber))), 0);
    const LRESULT code = SendMessageA(control, WM_GETDLGCODE, 0, 0);
    if ((code & DLGC_DEFPUSHBUTTON) != 0) data.defaultId = item.id;
    return true;
}

bool CreateDialogWindow(DialogData& data, const DialogTemplate& dialog, HINSTANCE instance, HWND owner,
                        DLGPROC procedure) {
    data.font = FontOfTemplate(dialog);
    data.units = UnitsOfFont(data.font);
    // Windows adds these to every dialog that is no child.
    const DWORD style = (dialog.style | WS_POPUP | WS_CLIPSIBLINGS) & ~(WS_VISIBLE | WS_CHILD);
    const HWND window = CreateWindowExA(dialog.extendedStyle, kDialogClass, dialog.title.c_str(), style, 0, 0,
                                        200, 100, owner, nullptr, instance, &data);
    if (window == nullptr) return false;
    PlaceDialog(data, dialog, owner);
    SetWindowLongPtrA(window, DWLP_DLGPROC, reinterpret_cast<INT_PTR>(procedure));
    if (data.font != nullptr) SendMessageA(window, WM_SETFONT, reinterpret_cast<WPARAM>(data.font), 0);
    for (const DialogItem& item : dialog.items)
        if (!CreateControl(data, item, instance)) return false;
    return true;
}

void StartDialog(DialogData& data, LPARAM parameter) {
    const HWND first = NextTabControl(data.window, nullptr, false);
    const LRESULT wantsFocus =
        SendMessageA(data.window, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), parameter);
    if (data.window == nullptr || data.hasEnded) return;
    // The order may have changed since.
    if (wantsFocus != 0) {
        data.focus = NextTabControl(data.window, nullptr, false);
        FocusControl(data.focus);
    } else {
        data.focus = ControlOf(data.window, GetFocus());
    }
    if (data.window == nullptr) return;
    ShowWindow(data.window, SW_SHOWNORMAL);
    if (data.window != nullptr) UpdateDefaultButton(data);
}

void LoopDialog(DialogData& data) {
    while (data.window != nullptr && !data.hasEnded) {
        MSG message = {};
        const BOOL got = GetMessageA(&message, nullptr, 0, 0);
        if (got <= 0) {
            // The end of the whole program: the loop outside of this one is to see it too.
            if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (!TakeDialogKey(data.window, message)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        if (data.window != nullptr && !data.hasEnded) UpdateDefaultButton(data);
    }
}

void EnableOwner(DialogData& data) {
    if (data.disabledOwner != nullptr) EnableWindow(data.disabledOwner, TRUE);
    data.disabledOwner = nullptr;
}

} // namespace

INT_PTR RunDialog(HINSTANCE instance, const DialogTemplate& dialog, HWND owner, DLGPROC procedure,
                  LPARAM parameter) {
    if (owner != nullptr && !IsWindow(owner)) return 0;
    owner = TopLevelOf(owner);
    DialogData data;
    if (owner != nullptr && IsWindowEnabled(owner)) {
        data.disabledOwner = owner;
        EnableWindow(owner, FALSE);
    }
    const bool isMade = CreateDialogWindow(data, dialog, instance, owner, procedure);
    if (isMade) {
        StartDialog(data, parameter);
        LoopDialog(data);
    }
    const INT_PTR result = !isMade ? -1 : data.hasEnded ? data.result : 0;
    EnableOwner(data);
    if (data.window != nullptr) DestroyWindow(data.window);
    if (data.font != nullptr) DeleteObject(data.font);
    return result;
}

BOOL EndDialog(HWND dialog, INT_PTR result) {
    DialogData* data = DialogDataOf(dialog);
    if (data == nullptr) return FALSE;
    data->hasEnded = true;
    data->result = result;
    EnableOwner(*data);
    // Hidden, so that the owner is the active window already while the rest of the procedure runs.
    ShowWindow(dialog, SW_HIDE);
    // Wakes its loop, where this call came from outside of it.
    PostMessageA(dialog, WM_NULL, 0, 0);
    return TRUE;
}

INT_PTR DialogBoxParamA(HINSTANCE instance, LPCSTR name, HWND owner, DLGPROC procedure, LPARAM parameter) {
    const HRSRC resource = FindResourceA(instance, name, RT_DIALOG);
    if (resource == nullptr) return -1;
    const void* bytes = LockResource(LoadResource(instance, resource));
    DialogTemplate dialog;
    if (bytes == nullptr || !ReadDialogTemplate(bytes, SizeofResource(instance, resource), dialog)) return -1;
    return RunDialog(instance, dialog, owner, procedure, parameter);
}
