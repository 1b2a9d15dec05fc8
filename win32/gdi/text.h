/// Drawing of one line of text, for the calls that take texts.
#pragma once

#include <string_view>

#include "win32/gdi/context.h"

/// Pixels that a text takes in the context's font.
int TextWidth(Context& context, std::string_view text);

/// Draws a text with the left top of its box at (x, y) of the context, as far as it lies within `limit` as
/// well (in the context's coordinates; null: everywhere).  The number of the byte that is underlined, or -1.
void DrawTextLine(Context& context, int x, int y, std::string_view text, const RECT* limit = nullptr,
                  int underlined = -1);
