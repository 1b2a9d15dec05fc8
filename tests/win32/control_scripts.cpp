#include "control_scripts.h"

#include <cstdio>
#include <cstring>

namespace {

std::string* theLog = nullptr;
HWND theControl = nullptr;

template <class... Values>
void Say(const char* format, Values... values) {
    char line[256];
    std::snprintf(line, sizeof line, format, values...);
    *theLog += line;
    *theLog += '\n';
}

const char* NameOf(UINT type, int code) {
    struct Name {
        UINT type;
        int code;
        const char* name;
    };
    static const Name kNames[] = {
        {0, BN_CLICKED, "clicked"},
        {0, 5, "double clicked"},
        {1, EN_SETFOCUS, "edit focus"},
        {1, EN_KILLFOCUS, "edit loses focus"},
        {1, EN_CHANGE, "change"},
        {1, EN_UPDATE, "update"},
        {1, 0x0501, "full"},
        {2, CBN_SELCHANGE, "selection"},
        {2, CBN_SETFOCUS, "combo focus"},
        {2, CBN_KILLFOCUS, "combo loses focus"},
        {2, CBN_EDITCHANGE, "edit change"},
        {2, CBN_EDITUPDATE, "edit update"},
        {2, CBN_DROPDOWN, "drop down"},
        {2, CBN_CLOSEUP, "close up"},
        {2, CBN_SELENDOK, "end ok"},
        {2, CBN_SELENDCANCEL, "end cancel"},
        {3, SB_LINEUP, "line up"},
        {3, SB_LINEDOWN, "line down"},
        {3, SB_PAGEUP, "page up"},
        {3, SB_PAGEDOWN, "page down"},
        {3, SB_THUMBTRACK, "track"},
        {3, SB_THUMBPOSITION, "thumb"},
        {3, SB_ENDSCROLL, "end"},
    };
    for (const Name& known : kNames)
        if (known.type == type && known.code == code) return known.name;
    {
        static char number[16];
        std::snprintf(number, sizeof number, "code %d", code);
        return number;
    }
}

UINT theType = 0; // which of the names above

void SayDrawing(const DRAWITEMSTRUCT& item) {
    Say("draw type %u item %d action %u state %x", item.CtlType, static_cast<int>(item.itemID),
        item.itemAction, item.itemState);
}

void Scroll(int code, int thumb) {
    SCROLLINFO bar = {sizeof bar, SIF_ALL, 0, 0, 0, 0, 0};
    GetScrollInfo(theControl, SB_CTL, &bar);
    if (code == SB_LINEUP) --bar.nPos;
    if (code == SB_LINEDOWN) ++bar.nPos;
    if (code == SB_PAGEUP) bar.nPos -= 10;
    if (code == SB_PAGEDOWN) bar.nPos += 10;
    if (code == SB_THUMBPOSITION) bar.nPos = thumb;
    bar.fMask = SIF_POS;
    SetScrollInfo(theControl, SB_CTL, &bar, TRUE);
}

LRESULT CALLBACK ParentProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const bool isLogged = theLog != nullptr;
    if (message == WM_COMMAND && isLogged) {
        Say("%s", NameOf(theType, HIWORD(wParam)));
        return 0;
    }
    if (message == WM_VSCROLL && isLogged) {
        Say("%s %d", NameOf(3, LOWORD(wParam)), static_cast<SHORT>(HIWORD(wParam)));
        Scroll(LOWORD(wParam), HIWORD(wParam));
        return 0;
    }
    if (message == WM_DRAWITEM && isLogged) {
        SayDrawing(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    }
    if (message == WM_MEASUREITEM && isLogged) {
        auto& item = *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
        Say("measure item %d", static_cast<int>(item.itemID));
        item.itemHeight = 18;
        return TRUE;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

constexpr char kParentClass[] = "ControlScriptParent";
constexpr int kWidth = 120;

// A parent with the control at (20, 30) and a button to move the focus to.
class Scene {
public:
    Scene(const ControlPlace& place, UINT type, const char* className, DWORD style, int height,
          int width = kWidth)
        : place_(place) {
        theLog = &log_;
        theType = type;
        WNDCLASSA parentClass = {};
        parentClass.lpfnWndProc = ParentProcedure;
        parentClass.lpszClassName = kParentClass;
        RegisterClassA(&parentClass);
        parent_ = CreateWindowExA(0, kParentClass, "", WS_POPUP | WS_VISIBLE, 50, 50, 300, 300, nullptr,
                                  nullptr, nullptr, nullptr);
        char name[32];
        std::snprintf(name, sizeof name, "%s%s", place.prefix, className);
        control = CreateWindowExA(0, name, "", style | WS_CHILD | WS_VISIBLE, 20, 30, width, height, parent_,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(7)), nullptr, nullptr);
        other_ = CreateWindowExA(0, kParentClass, "", WS_CHILD | WS_VISIBLE, 200, 200, 50, 50, parent_,
                                 nullptr, nullptr, nullptr);
        theControl = control;
        SetFocus(other_);
        place_.wait(0);
    }
    ~Scene() {
        theLog = nullptr;
        DestroyWindow(parent_);
        place_.wait(0);
        UnregisterClassA(kParentClass, nullptr);
    }
    Scene(const Scene&) = delete;

    // Text in the log, and all that happens by then.
    void Step(const char* name) {
        UpdateWindow(control);
        Say("- %s", name);
    }
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageA(control, message, wParam, lParam);
    }
    LRESULT SendText(UINT message, WPARAM wParam, const char* text) {
        return SendMessageA(control, message, wParam, reinterpret_cast<LPARAM>(text));
    }

    // The pointer, from the control's left top corner: to whoever has it.
    void Pointer(UINT message, int x, int y, WPARAM keys = MK_LBUTTON) {
        POINT point = {x, y};
        ClientToScreen(control, &point);
        HWND target = GetCapture();
        if (target == nullptr) target = WindowFromPoint(point);
        ScreenToClient(target, &point);
        PostMessageA(target, message, keys, MAKELONG(point.x, point.y));
        place_.wait(0);
    }
    void Click(int x, int y) {
        Pointer(WM_LBUTTONDOWN, x, y);
        Pointer(WM_LBUTTONUP, x, y, 0);
    }
    // All of a gesture before the control sees its start, for those that wait for its end themselves.
    void PostToControl(UINT message, int x, int y) {
        PostMessageA(control, message, MK_LBUTTON, MAKELONG(x, y));
    }
    void PressAndLetGo(int x, int y) {
        PostToControl(WM_LBUTTONDOWN, x, y);
        PostToControl(WM_LBUTTONUP, x, y);
        place_.wait(0);
    }
    void Key(int key) {
        SendMessageA(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
        SendMessageA(GetFocus(), WM_KEYUP, static_cast<WPARAM>(key), 1);
    }
    void Type(const char* text) {
        for (; *text != '\0'; ++text) SendMessageA(GetFocus(), WM_CHAR, static_cast<BYTE>(*text), 1);
    }
    void With(int key, int pressed) {
        place_.holdKey(key, true);
        Key(pressed);
        place_.holdKey(key, false);
    }
    void SayText() {
        char text[80];
        GetWindowTextA(control, text, sizeof text);
        std::string shown;
        for (const char* letter = text; *letter != '\0'; ++letter)
            if (*letter != '\n') shown += *letter == '\r' ? '|' : *letter;
        Say("text \"%s\"", shown.c_str());
    }
    void SaySelection() {
        DWORD start = 0, end = 0;
        Send(EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        Say("selected %u to %u", static_cast<unsigned>(start), static_cast<unsigned>(end));
    }
    void SayCombo() {
        char text[80];
        GetWindowTextA(control, text, sizeof text);
        Say("item %d text \"%s\" dropped %d", static_cast<int>(Send(CB_GETCURSEL)), text,
            static_cast<int>(Send(CB_GETDROPPEDSTATE)));
    }
    void Leave() { SetFocus(other_); }
    void Wait(unsigned milliseconds) { place_.wait(milliseconds); }
    std::string Log() const { return log_; }

    HWND control;

private:
    const ControlPlace& place_;
    std::string log_;
    HWND parent_;
    HWND other_;
};

// Checked, pushed, focused.
void SayState(Scene& scene) {
    Say("state %x", static_cast<unsigned>(scene.Send(BM_GETSTATE)) & 0xF);
}

void PressAndWander(Scene& scene) {
    scene.Step("press and release inside");
    scene.Click(5, 5);
    scene.Step("press and release outside");
    scene.Pointer(WM_LBUTTONDOWN, 5, 5);
    scene.Pointer(WM_MOUSEMOVE, 150, 60);
    SayState(scene);
    scene.Pointer(WM_LBUTTONUP, 150, 60, 0);
    scene.Step("press, out and back, release");
    scene.Pointer(WM_LBUTTONDOWN, 5, 5);
    scene.Pointer(WM_MOUSEMOVE, 150, 60);
    scene.Pointer(WM_MOUSEMOVE, 6, 6);
    SayState(scene);
    scene.Pointer(WM_LBUTTONUP, 6, 6, 0);
    scene.Step("double click");
    scene.Pointer(WM_LBUTTONDBLCLK, 5, 5);
    scene.Pointer(WM_LBUTTONUP, 5, 5, 0);
    scene.Step("space");
    scene.Key(VK_SPACE);
    Say("check %d", static_cast<int>(scene.Send(BM_GETCHECK)));
    scene.Step("by message");
    scene.Send(BM_CLICK);
    scene.Step("leave");
    scene.Leave();
}

} // namespace

std::string ButtonScript(const ControlPlace& place) {
    std::string log;
    for (const int style : {int{BS_PUSHBUTTON}, int{BS_AUTOCHECKBOX}, int{BS_OWNERDRAW}}) {
        Scene scene(place, 0, "BUTTON", static_cast<DWORD>(style), 20);
        PressAndWander(scene);
        scene.Step("disabled");
        EnableWindow(scene.control, FALSE);
        scene.Step("end");
        log += scene.Log();
    }
    return log;
}

std::string EditScript(const ControlPlace& place) {
    Scene scene(place, 1, "EDIT", ES_AUTOHSCROLL, 20);
    scene.Step("text set");
    SetWindowTextA(scene.control, "first second third");
    scene.SaySelection();
    scene.Step("focus and keys");
    SetFocus(scene.control);
    scene.Key(VK_END);
    scene.With(VK_CONTROL, VK_LEFT);
    scene.SaySelection();
    scene.With(VK_SHIFT, VK_HOME);
    scene.SaySelection();
    scene.Key(VK_RIGHT);
    scene.SaySelection();
    scene.Key(VK_HOME);
    scene.With(VK_CONTROL, VK_RIGHT);
    scene.With(VK_SHIFT, VK_END);
    scene.SaySelection();
    scene.Step("typed over");
    scene.Type("ab");
    scene.SayText();
    scene.Step("backspace and delete");
    scene.Type("\b");
    scene.Key(VK_DELETE);
    scene.Key(VK_LEFT);
    scene.Key(VK_DELETE);
    scene.With(VK_CONTROL, VK_DELETE);
    scene.SayText();
    scene.Key(VK_HOME);
    scene.Type("\b");
    scene.With(VK_SHIFT, VK_RIGHT);
    scene.With(VK_SHIFT, VK_DELETE);
    scene.SayText();
    scene.Step("cut, paste");
    scene.Type("\x16\x16");
    scene.SayText();
    scene.Step("limit");
    scene.Send(EM_LIMITTEXT, 5);
    SetWindowTextA(scene.control, "1234");
    scene.SaySelection();
    scene.Type("xyz");
    scene.SayText();
    scene.Send(EM_SETSEL, 1, 3);
    scene.SendText(EM_REPLACESEL, FALSE, "long text");
    scene.SayText();
    scene.SaySelection();
    scene.Step("selection by number");
    scene.Send(EM_SETSEL, 0, -1);
    scene.SaySelection();
    scene.Send(EM_SETSEL, static_cast<WPARAM>(-1), 0);
    scene.SaySelection();
    scene.Send(EM_SETSEL, 4, 2);
    scene.SaySelection();
    scene.Step("pointer");
    SetWindowTextA(scene.control, "a word");
    scene.Pointer(WM_LBUTTONDOWN, 110, 8);
    scene.Pointer(WM_MOUSEMOVE, -20, 8);
    scene.Pointer(WM_LBUTTONUP, -20, 8, 0);
    scene.SaySelection();
    scene.Pointer(WM_LBUTTONDBLCLK, 4, 8);
    scene.Pointer(WM_LBUTTONUP, 4, 8, 0);
    scene.SaySelection();
    scene.Step("leave");
    scene.Leave();
    return scene.Log();
}

std::string MultilineScript(const ControlPlace& place) {
    Scene scene(place, 1, "EDIT", ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL, 60);
    scene.Step("text set");
    SetWindowTextA(scene.control, "one\r\ntwo\r\nthree");
    SetFocus(scene.control);
    scene.Step("lines");
    scene.Key(VK_DOWN);
    scene.Key(VK_END);
    scene.SaySelection();
    scene.Key(VK_RIGHT);
    scene.SaySelection();
    scene.Key(VK_UP);
    scene.Key(VK_LEFT);
    scene.SaySelection();
    scene.With(VK_CONTROL, VK_END);
    scene.SaySelection();
    scene.With(VK_CONTROL, VK_HOME);
    scene.SaySelection();
    scene.Step("typed");
    scene.Type("x\ry");
    scene.SayText();
    scene.Type("\b\b");
    scene.SayText();
    scene.Key(VK_DELETE);
    scene.Key(VK_END);
    scene.Key(VK_DELETE);
    scene.SayText();
    scene.Step("leave");
    scene.Leave();
    return scene.Log();
}

namespace {

void FillCombo(Scene& scene) {
    for (const char* text : {"alpha", "Beta", "gamma", "beta two"}) scene.SendText(CB_ADDSTRING, 0, text);
}

// Where item `item` of the list lies, under the field.
int ItemY(Scene& scene, int item) {
    RECT client = {};
    GetClientRect(scene.control, &client);
    const int height = static_cast<int>(scene.Send(CB_GETITEMHEIGHT, 0));
    return client.bottom + 1 + item * height + height / 2;
}

void UseCombo(Scene& scene, int buttonX) {
    scene.Step("choose by pointer");
    scene.Click(buttonX, 8);
    scene.SayCombo();
    scene.Pointer(WM_MOUSEMOVE, 20, ItemY(scene, 1), 0);
    scene.SayCombo();
    scene.Pointer(WM_MOUSEMOVE, 20, ItemY(scene, 2), 0);
    scene.Click(20, ItemY(scene, 2));
    scene.SayCombo();
    scene.Step("press, drag and release on an item");
    scene.Pointer(WM_LBUTTONDOWN, buttonX, 8);
    scene.Pointer(WM_MOUSEMOVE, 20, ItemY(scene, 1));
    scene.Pointer(WM_MOUSEMOVE, 20, ItemY(scene, 0));
    scene.Pointer(WM_LBUTTONUP, 20, ItemY(scene, 0), 0);
    scene.SayCombo();
    scene.Step("press outside");
    scene.Click(buttonX, 8);
    scene.Pointer(WM_MOUSEMOVE, 20, ItemY(scene, 1), 0);
    scene.Click(250, 250);
    scene.SayCombo();
    scene.Step("press the button twice");
    scene.Click(buttonX, 8);
    scene.Click(buttonX, 8);
    scene.SayCombo();
    scene.Step("arrows, closed");
    scene.Key(VK_DOWN);
    scene.Key(VK_DOWN);
    scene.Key(VK_UP);
    scene.SayCombo();
    scene.Step("F4, arrows, enter");
    scene.Key(VK_F4);
    scene.Key(VK_DOWN);
    scene.SayCombo();
    scene.Key(VK_RETURN);
    scene.Type("\r");
    scene.SayCombo();
    scene.Step("F4, arrow, escape");
    scene.Key(VK_F4);
    scene.Key(VK_UP);
    scene.Key(VK_ESCAPE);
    scene.Type("\x1B");
    scene.SayCombo();
    scene.Step("F4 twice");
    scene.Key(VK_F4);
    scene.Key(VK_F4);
    scene.Step("wheel");
    scene.Send(WM_MOUSEWHEEL, static_cast<WPARAM>(120u << 16));
    scene.SayCombo();
}

void ProgramCombo(Scene& scene) {
    scene.Step("by the program");
    Say("%d %d %d", static_cast<int>(scene.SendText(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), "BETA")),
        static_cast<int>(scene.SendText(CB_SELECTSTRING, 1, "be")),
        static_cast<int>(scene.SendText(CB_SELECTSTRING, static_cast<WPARAM>(-1), "none")));
    scene.SayCombo();
    Say("%d", static_cast<int>(scene.SendText(CB_INSERTSTRING, 0, "new")));
    scene.SayCombo();
    Say("%d", static_cast<int>(scene.Send(CB_DELETESTRING, 1)));
    scene.SayCombo();
    Say("%d %d", static_cast<int>(scene.Send(CB_SETCURSEL, 9)),
        static_cast<int>(scene.Send(CB_SETCURSEL, 1)));
    scene.SayCombo();
    Say("%d", static_cast<int>(scene.Send(CB_DELETESTRING, 1)));
    scene.SayCombo();
    scene.Send(CB_SHOWDROPDOWN, TRUE);
    scene.SayCombo();
    scene.Send(CB_SHOWDROPDOWN, FALSE);
    scene.Send(CB_RESETCONTENT);
    scene.SayCombo();
    Say("%d", static_cast<int>(scene.Send(CB_GETCOUNT)));
    scene.Step("leave, dropped");
    scene.SendText(CB_ADDSTRING, 0, "x");
    scene.Send(CB_SHOWDROPDOWN, TRUE);
    scene.Leave();
    scene.SayCombo();
}

void SayHeight(Scene& scene, bool byFont) {
    RECT all = {};
    GetWindowRect(scene.control, &all);
    TEXTMETRICA metrics = {};
    if (byFont) {
        const HDC context = GetDC(scene.control);
        GetTextMetricsA(context, &metrics);
        ReleaseDC(scene.control, context);
    }
    Say("height %d%s", static_cast<int>(all.bottom - all.top) - static_cast<int>(metrics.tmHeight),
        byFont ? " more than a line" : "");
}

} // namespace

std::string DropDownListScript(const ControlPlace& place) {
    std::string log;
    for (const int style : {0, static_cast<int>(CBS_OWNERDRAWFIXED | CBS_HASSTRINGS)}) {
        Scene scene(place, 2, "COMBOBOX", static_cast<DWORD>(CBS_DROPDOWNLIST | style), 150);
        FillCombo(scene);
        if (style == 0) SayHeight(scene, true);
        if (style != 0) {
            // Drawing is compared on its own: which items are drawn when is each system's own affair.
            scene.Send(CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), 15);
            scene.Step("item height");
            scene.Send(CB_SETCURSEL, 1);
            scene.Step("heights");
            SayHeight(scene, false);
            scene.Step("field");
            SetFocus(scene.control);
            scene.Step("focus");
            EnableWindow(scene.control, FALSE);
            scene.Step("disabled");
        } else {
            UseCombo(scene, 20);
            scene.Step("letters");
            scene.Type("bgz");
            scene.SayCombo();
            ProgramCombo(scene);
        }
        log += scene.Log();
    }
    return log;
}

std::string DropDownScript(const ControlPlace& place) {
    Scene scene(place, 2, "COMBOBOX", CBS_DROPDOWN | CBS_AUTOHSCROLL, 150);
    FillCombo(scene);
    UseCombo(scene, kWidth - 8);
    scene.Step("typed");
    SendMessageA(GetFocus(), EM_SETSEL, 0, -1);
    scene.Type("bx");
    scene.SayCombo();
    SetWindowTextA(scene.control, "set");
    scene.SayCombo();
    scene.Send(CB_LIMITTEXT, 4);
    scene.Type("12");
    scene.SayCombo();
    ProgramCombo(scene);
    return scene.Log();
}

std::string ScrollBarScript(const ControlPlace& place) {
    Scene scene(place, 3, "SCROLLBAR", SBS_VERT, 200, 16);
    const auto set = [&](UINT mask, int minimum, int maximum, UINT page, int position) {
        SCROLLINFO bar = {sizeof bar, mask, minimum, maximum, page, position, 0};
        const int now = SetScrollInfo(scene.control, SB_CTL, &bar, TRUE);
        bar.fMask = SIF_ALL;
        GetScrollInfo(scene.control, SB_CTL, &bar);
        Say("%d: %d to %d, page %u, at %d", now, bar.nMin, bar.nMax, bar.nPage, bar.nPos);
    };
    scene.Step("clamped");
    set(SIF_RANGE | SIF_PAGE | SIF_POS, 0, 100, 1, 120);
    set(SIF_RANGE | SIF_PAGE | SIF_POS, 0, 100, 30, 90);
    set(SIF_PAGE, 0, 0, 200, 0);
    set(SIF_POS, 0, 0, 0, 50);
    set(SIF_RANGE | SIF_PAGE, 10, 5, 3, 0);
    set(SIF_RANGE | SIF_PAGE | SIF_POS, -5, 5, 0, -9);
    set(SIF_RANGE | SIF_PAGE | SIF_POS, 0, 100, 1, 50);
    scene.Step("arrow, held");
    SetTimer(scene.control, 99, 225, [](HWND window, UINT, UINT_PTR timer, DWORD) {
        KillTimer(window, timer);
        PostMessageA(window, WM_LBUTTONUP, 0, MAKELONG(8, 5));
    });
    scene.PostToControl(WM_LBUTTONDOWN, 8, 5);
    scene.Wait(400);
    scene.Step("other arrow");
    scene.PressAndLetGo(8, 195);
    scene.Step("pages");
    scene.PressAndLetGo(8, 30);
    scene.PressAndLetGo(8, 170);
    scene.Step("thumb");
    scene.PostToControl(WM_LBUTTONDOWN, 8, 100);
    scene.PostToControl(WM_MOUSEMOVE, 8, 400);
    scene.PostToControl(WM_MOUSEMOVE, 8, 190);
    scene.PostToControl(WM_LBUTTONUP, 8, 190);
    scene.Wait(0);
    scene.Step("nothing to scroll");
    set(SIF_RANGE | SIF_POS, 0, 0, 0, 0);
    scene.PressAndLetGo(8, 5);
    set(SIF_RANGE | SIF_PAGE | SIF_DISABLENOSCROLL, 0, 10, 20, 0);
    return scene.Log();
}
