/// Finding the host's document window on the desktop.
#pragma once

#include <windows.h>

/// The innermost window over the point one third across and one third down of the first top-level window
/// whose title has the form of a document's, "name @ zoom"; null if there is none.
HWND FindDocumentWindow();
