/// The about dialog.
#pragma once

#include <windows.h>

/// Shows it and returns when the user has seen it; the dialog's result, -1 if it can't be shown.  Needs the
/// host's suites.
INT_PTR ShowAboutDialog();
