/// Choosing the database.
#pragma once

#include <windows.h>

#include <cstdint>

/// Lets the user choose the root, and shows its first entry; 0, or -1 if the user doesn't.
int32_t ChooseDatabasePath(HWND panel);

/// Puts `aidbfpath` in front of the recent roots, once.
void NoteRecentRoot();
