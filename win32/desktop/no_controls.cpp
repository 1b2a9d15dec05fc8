#include "win32/desktop/system_classes.h"

// Stands in until the controls are there.
__attribute__((weak)) void RegisterControlClasses() {}
