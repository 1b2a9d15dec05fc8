/// The faces of the group combo, the origin control and the icon buttons.
#pragma once

#include <windows.h>

void PaintComboItem(const DRAWITEMSTRUCT& item);
void PaintOriginControl(const DRAWITEMSTRUCT& item);
void PaintIconButton(const DRAWITEMSTRUCT& item);
