/// A part of a page as a window shows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "workbench/document/document.h"

namespace workbench {

/// Fills width times height pixels, 0x00RRGGBB, top row first, with what the view shows: the page white with
/// a line around it, the room beside it grey, the art over both.  The pixels stay as they were if memory ran
/// out.
/// @param progress  may be empty; else as DrawDocument has it
void DrawView(const Document& document, const View& view, int width, int height, uint32_t* pixels,
              const std::function<void(size_t done, size_t of)>& progress);

/// Whether art paints anything within a square of `reach` art units around a point.
bool PaintsWithin(const Document& document, const Art& art, const HostPoint& point, double reach);

} // namespace workbench
