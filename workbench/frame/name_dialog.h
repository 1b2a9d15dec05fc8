/// A dialog of the host that asks for one line: a file's name.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace workbench {

/// Child windows, for scripts of hands.
constexpr int kNameDialogOk = 1, kNameDialogCancel = 2, kNameDialogEdit = 3;

/// Texts are UTF-8.  Nothing if the user gave up or left the line empty.  A line that the user didn't touch
/// comes back as it was, also where the edit control can't hold all of its characters.
std::optional<std::string> AskName(HWND owner, const std::string& title, const std::string& proposal);

} // namespace workbench
