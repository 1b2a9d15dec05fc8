#include "win32/controls/control_classes.h"

#include "win32/controls/dialog.h"

// Every control keeps a pointer; a dialog has Windows' three words and a pointer behind them.
const ControlClass kControlClasses[7] = {
    {kStaticClass, StaticProcedure, CS_DBLCLKS, sizeof(void*), IDC_ARROW},
    {kButtonClass, ButtonProcedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, sizeof(void*), IDC_ARROW},
    {kEditClass, EditProcedure, CS_DBLCLKS, sizeof(void*), IDC_IBEAM},
    {kComboClass, ComboProcedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, sizeof(void*), IDC_ARROW},
    {kListClass, ListProcedure, CS_DBLCLKS, sizeof(void*), IDC_ARROW},
    {kScrollBarClass, ScrollBarProcedure, CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, sizeof(void*), IDC_ARROW},
    {kDialogClass, DialogProcedure, CS_DBLCLKS, 4 * sizeof(void*), IDC_ARROW},
};
