/// The host's alert boxes.
#pragma once

#include <windows.h>

#include <string>

namespace workbench {

enum class AlertKind { kMessage, kError, kYesNo };

/// Child windows of an alert, for scripts of hands: OK and yes are 1, no is 2.
constexpr int kAlertYes = 1, kAlertNo = 2;
inline constexpr char kAlertClass[] = "WorkbenchAlert";

/// Shows the text, UTF-8, over a window that is disabled as long, and waits for the answer: true for OK and
/// yes.  Escape and the close box are no.
bool RunAlert(HWND owner, const std::string& text, AlertKind kind);

} // namespace workbench
