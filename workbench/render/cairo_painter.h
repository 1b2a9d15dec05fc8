/// The suites' off-screen ports, drawn by Cairo.
#pragma once

#include "workbench/document/painter.h"

namespace workbench {

class CairoPainter : public Painter {
public:
    std::unique_ptr<PaintSurface> NewSurface(int32_t width, int32_t height) override;
};

} // namespace workbench
