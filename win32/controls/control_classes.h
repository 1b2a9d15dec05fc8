/// The window classes of the five controls, of the combo box's drop list and of dialogs.
#pragma once

#include <windows.h>

LRESULT CALLBACK StaticProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ButtonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK EditProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ComboProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ScrollBarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// All of the above with their names, for whoever registers them.
struct ControlClass {
    const char* name;
    WNDPROC procedure;
    UINT style;
    int extraBytes;
    const char* cursor; ///< IDC_...
};
extern const ControlClass kControlClasses[7];

constexpr char kStaticClass[] = "STATIC";
constexpr char kButtonClass[] = "BUTTON";
constexpr char kEditClass[] = "EDIT";
constexpr char kComboClass[] = "COMBOBOX";
constexpr char kListClass[] = "ComboLBox";
constexpr char kScrollBarClass[] = "SCROLLBAR";
constexpr char kDialogClass[] = "#32770";
