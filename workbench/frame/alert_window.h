/// The host's alert boxes.
#pragma once

#include <windows.h>

#include <string>

namespace workbench {

/// kSaveChanges asks whether to save, to go on without, or to do nothing of either.
enum class AlertKind { kMessage, kError, kYesNo, kSaveChanges };

/// Answers, and the child windows of an alert that give them: yes is also OK and "Save", no also "Don't
/// Save".
constexpr int kAlertYes = 1, kAlertNo = 2, kAlertCancel = 3;
inline constexpr char kAlertClass[] = "WorkbenchAlert";

/// Shows the text, UTF-8, over a window that is disabled as long, and waits for the answer.  Escape and
/// the close box are the last of the kind's answers, which is also the one if the alert can't be shown.
int RunAlert(HWND owner, const std::string& text, AlertKind kind);

} // namespace workbench
