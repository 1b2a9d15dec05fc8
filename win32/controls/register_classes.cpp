#include "win32/controls/control_classes.h"
#include "win32/desktop/system_classes.h"

void RegisterControlClasses() {
    for (const ControlClass& known : kControlClasses) {
        WNDCLASSA windowClass = {};
        windowClass.style = known.style;
        windowClass.lpfnWndProc = known.procedure;
        windowClass.cbWndExtra = known.extraBytes;
        windowClass.hCursor = LoadCursorA(nullptr, known.cursor);
        windowClass.lpszClassName = known.name;
        RegisterSystemClass(windowClass);
    }
}
