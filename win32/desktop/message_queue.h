/// What waits for the program's next call of GetMessageA.
#pragma once

#include <windows.h>

/// Posted messages of a window that is gone.
void ForgetMessagesOf(HWND window);
/// All messages, WM_QUIT included.
void ForgetMessages();
