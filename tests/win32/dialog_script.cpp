#include "dialog_script.h"

#include <cstdio>

namespace {

/// Writes a template word by word.
class TemplateWriter {
public:
    void Word(unsigned value) {
        bytes.push_back(static_cast<uint8_t>(value));
        bytes.push_back(static_cast<uint8_t>(value >> 8));
    }
    void Long(unsigned long value) {
        Word(static_cast<unsigned>(value & 0xFFFF));
        Word(static_cast<unsigned>(value >> 16 & 0xFFFF));
    }
    void Text(const char* text) {
        for (; *text != '\0'; ++text) Word(static_cast<unsigned char>(*text));
        Word(0);
    }
    void Align() {
        while (bytes.size() % 4 != 0) bytes.push_back(0);
    }
    void Place(int x, int y, int width, int height) {
        for (const int value : {x, y, width, height}) Word(static_cast<unsigned>(value));
    }
    void Item(unsigned id, unsigned windowClass, const char* title, unsigned long style, int y) {
        Align();
        Long(0); // help
        Long(0); // extended style
        Long(style | WS_CHILD | WS_VISIBLE);
        Place(10, y, 80, 12);
        Long(id);
        Word(0xFFFF);
        Word(windowClass);
        Text(title);
        Word(0);
    }
    std::vector<uint8_t> bytes;
};

constexpr unsigned kButton = 0x80, kEdit = 0x81, kStatic = 0x82, kCombo = 0x85;
constexpr unsigned long kTab = WS_TABSTOP, kGroup = WS_GROUP;
constexpr int kMany = 6, kCheck = 7, kOne = 5;
constexpr UINT kQuestion = WM_USER + 50;

struct Step {
    UINT message; // to the focus, or to the dialog for WM_CLOSE
    WPARAM wParam;
    int held; // a key, or 0
    const char* name;
};

constexpr Step kSteps[] = {
    {WM_KEYDOWN, VK_TAB, 0, "tab"},
    {WM_KEYDOWN, VK_TAB, 0, "tab, from lines"},
    {WM_KEYDOWN, VK_TAB, 0, "tab"},
    {WM_KEYDOWN, VK_TAB, 0, "tab"},
    {WM_KEYDOWN, VK_TAB, 0, "tab"},
    {WM_KEYDOWN, VK_RETURN, 0, "enter on Cancel"},
    {WM_KEYDOWN, VK_TAB, 0, "tab, round"},
    {WM_KEYDOWN, VK_RETURN, 0, "enter in an edit"},
    {WM_KEYDOWN, VK_TAB, VK_SHIFT, "tab back"},
    {WM_KEYDOWN, VK_TAB, VK_SHIFT, "tab back"},
    {WM_KEYDOWN, VK_TAB, VK_SHIFT, "tab back"},
    {WM_KEYDOWN, VK_DOWN, 0, "down in the group"},
    {WM_KEYDOWN, VK_RIGHT, 0, "right in the group"},
    {WM_KEYDOWN, VK_DOWN, 0, "down, round"},
    {WM_KEYDOWN, VK_LEFT, 0, "left, round"},
    {WM_KEYDOWN, VK_RETURN, 0, "enter on a button"},
    {WM_SYSCHAR, 'n', 0, "a label's letter"},
    {WM_SYSCHAR, 'k', 0, "a check box's letter"},
    {WM_CHAR, 'k', 0, "the same without Alt"},
    {WM_SYSCHAR, 'q', 0, "nobody's letter"},
    {WM_SYSCHAR, 'l', 0, "to the lines"},
    {WM_KEYDOWN, VK_RETURN, 0, "enter in the lines"},
    {WM_SYSCHAR, 'l', 0, "to the lines"},
    {WM_KEYDOWN, VK_ESCAPE, 0, "escape in the lines"},
    {WM_KEYDOWN, VK_TAB, 0, "tab"},
    {WM_KEYDOWN, VK_ESCAPE, 0, "escape"},
    {WM_CLOSE, 0, 0, "close"},
};

struct Script {
    const DialogPlace* place;
    HWND owner;
    std::string log;
    size_t next;
    int held;
};
Script* theScript = nullptr;

template <class... Values>
void SayLine(const char* format, Values... values) {
    char line[160];
    std::snprintf(line, sizeof line, format, values...);
    theScript->log += line;
    theScript->log += '\n';
}

int DefaultButton(HWND dialog) {
    for (const int id : {1, 2, 8, 9, 12})
        if ((SendMessageA(GetDlgItem(dialog, id), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0) return id;
    return 0;
}

void SayState(HWND dialog) {
    DWORD start = 0, end = 0;
    const HWND focus = GetFocus();
    if (SendMessageA(focus, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL)
        SendMessageA(focus, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    SayLine("  focus %d default %d selected %d to %d checked %u", focus != nullptr ? GetDlgCtrlID(focus) : -1,
            DefaultButton(dialog), static_cast<int>(start), static_cast<int>(end),
            IsDlgButtonChecked(dialog, kCheck));
}

void SayPlaces(HWND dialog) {
    RECT client = {}, item = {}, units = {0, 0, 200, 150}, place = {10, 20, 80, 12};
    GetClientRect(dialog, &client);
    MapDialogRect(dialog, &units);
    MapDialogRect(dialog, &place); // left and top, width and height
    GetWindowRect(GetDlgItem(dialog, kOne), &item);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&item), 2);
    SayLine("client as units %d, item's place %d",
            client.right == units.right && client.bottom == units.bottom,
            item.left == place.left && item.top == place.top && item.right - item.left == place.right &&
                item.bottom - item.top == place.bottom);
}

// One step at each tick; the key that a step holds goes up at the next.
void TakeStep(HWND dialog) {
    Script& script = *theScript;
    if (script.held != 0) {
        script.place->controls.holdKey(script.held, false);
        script.held = 0;
    }
    if (script.next > 0) SayState(dialog);
    if (script.next == sizeof kSteps / sizeof kSteps[0]) {
        KillTimer(dialog, 1);
        EndDialog(dialog, 42);
        SayLine("ended: owner enabled %d", IsWindowEnabled(script.owner));
        return;
    }
    const Step& step = kSteps[script.next++];
    SayLine("- %s", step.name);
    script.held = step.held;
    if (step.held != 0) script.place->controls.holdKey(step.held, true);
    PostMessageA(step.message == WM_CLOSE ? dialog : GetFocus(), step.message, step.wParam, 1);
}

INT_PTR CALLBACK ScriptDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            SayLine("start: first %d parameter %d owner enabled %d",
                    GetDlgCtrlID(reinterpret_cast<HWND>(wParam)), static_cast<int>(lParam),
                    IsWindowEnabled(theScript->owner));
            SayPlaces(dialog);
            SetDlgItemTextA(dialog, kOne, "text");
            SetDlgItemTextA(dialog, kMany, "lines");
            SayLine("question %d", static_cast<int>(SendMessageA(dialog, kQuestion, 0, 0)));
            SetTimer(dialog, 1, 20, nullptr);
            return TRUE;
        case kQuestion:
            SetWindowLongPtrA(dialog, DWLP_MSGRESULT, 77);
            return TRUE;
        case WM_TIMER:
            TakeStep(dialog);
            return TRUE;
        case WM_COMMAND:
            // An edit's own notifications are another script's.
            if (HIWORD(wParam) == BN_CLICKED)
                SayLine("  command %d from %d", LOWORD(wParam),
                        lParam != 0 ? GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) : 0);
            return TRUE;
        default:
            return FALSE;
    }
}

} // namespace

std::vector<uint8_t> ScriptDialogTemplate() {
    TemplateWriter writer;
    writer.Long(0xFFFF0001);
    writer.Long(0);
    writer.Long(0);
    writer.Long(WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_SETFONT | DS_MODALFRAME | DS_CENTER);
    writer.Word(13);
    writer.Place(0, 0, 200, 150);
    writer.Word(0); // menu
    writer.Word(0); // class
    writer.Text("Title");
    writer.Word(9);
    writer.Word(FW_NORMAL);
    writer.Word(SHIFTJIS_CHARSET << 8);
    writer.Text("MS UI Gothic");
    writer.Item(20, kStatic, "&Name:", SS_LEFT, 4);
    writer.Item(kOne, kEdit, "", kTab | ES_AUTOHSCROLL, 20);
    writer.Item(21, kStatic, "&Lines:", SS_LEFT, 34);
    writer.Item(kMany, kEdit, "", kTab | ES_MULTILINE, 48);
    writer.Item(kCheck, kButton, "Chec&k", kTab | BS_AUTOCHECKBOX, 62);
    writer.Item(8, kButton, "A", kTab | kGroup | BS_PUSHBUTTON, 76);
    writer.Item(9, kButton, "B", BS_PUSHBUTTON, 90);
    writer.Item(11, kButton, "off", BS_PUSHBUTTON | WS_DISABLED, 100);
    writer.Item(12, kButton, "C", BS_PUSHBUTTON, 104);
    writer.Item(10, kCombo, "", kTab | kGroup | CBS_DROPDOWNLIST, 110);
    writer.Item(13, kButton, "hidden", kTab | WS_DISABLED, 116);
    writer.Item(1, kButton, "OK", kGroup | BS_DEFPUSHBUTTON, 120);
    writer.Item(2, kButton, "Cancel", kTab | BS_PUSHBUTTON, 134);
    return writer.bytes;
}

std::string DialogScript(const DialogPlace& place) {
    const HWND owner = CreateWindowExA(0, "STATIC", "owner", WS_POPUP | WS_VISIBLE, 10, 10, 400, 300, nullptr,
                                       nullptr, nullptr, nullptr);
    SetActiveWindow(owner);
    Script script = {&place, owner, "", 0, 0};
    theScript = &script;
    const INT_PTR result = place.runDialog(ScriptDialogTemplate(), owner, ScriptDialogProc, 5);
    SayLine("result %d, owner enabled %d, active %d", static_cast<int>(result), IsWindowEnabled(owner),
            GetActiveWindow() == owner);
    theScript = nullptr;
    DestroyWindow(owner);
    return script.log;
}
