/// Draws art as blocks of colour: enough for previews that differ, and the same pixels on every machine.
#pragma once

#include "workbench/document/painter.h"

/// Each path, image, mesh or text fills its bounds, the lowest first.
class BlockPainter : public workbench::Painter {
public:
    std::unique_ptr<workbench::PaintSurface> NewSurface(int32_t width, int32_t height) override;
};
