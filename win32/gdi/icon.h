/// The pictures behind the handles of icons and cursors.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

struct IconPicture {
    int width = 0, height = 0;
    POINT hotSpot = {};
    /// Top row first.  With `hasAlpha` 0xAARRGGBB, not multiplied; else 0x00RRGGBB.
    std::vector<uint32_t> pixels;
    bool hasAlpha = false;
    /// Without alpha: 1 where what is below stays, inverted by the bits of the pixel; 0 where the pixel hides
    /// it.
    std::vector<uint8_t> keepsBelow;
};

/// Makes an icon or a cursor, which isn't counted; null if there is no room.
HICON AddIcon(IconPicture picture);
void RemoveIcon(HICON icon);

/// Null if it is no icon or cursor.  Valid until the icon is removed.
const IconPicture* PictureOfIcon(HICON icon);
