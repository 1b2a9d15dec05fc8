/// Icons and cursors out of resources.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>

#include "win32/gdi/icon.h"

/// The number of the picture in a group of icons or cursors that is nearest to 32 by 32 with most colours;
/// nothing for a damaged group.
std::optional<uint16_t> ChooseFromGroup(std::span<const uint8_t> group);

/// The picture of an icon (a bitmap of 1, 4, 8, 24 or 32 bits with its mask below) or of a cursor (the same
/// behind the place of its hot spot).  Nothing for a damaged or another one.
std::optional<IconPicture> ReadIconPicture(std::span<const uint8_t> bytes, bool cursor);

/// One of the system's own cursors; null if there is none of this number.
HCURSOR SystemCursor(uint16_t number);

/// Removes the icons and cursors that were loaded for a module.
void ForgetModuleImages(HMODULE module);
