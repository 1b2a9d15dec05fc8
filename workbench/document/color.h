/// Document colours as light.
#pragma once

#include "workbench/document/document.h"

namespace workbench {

/// 0 to 1 each, sRGB.
struct Light {
    double red = 0, green = 0, blue = 0;
};

/// What a gray, four-colour, three-colour or custom colour looks like.  Values outside 0 to 1 are clamped;
/// patterns, gradients and custom colours that the document doesn't have show as black.
Light LightOf(const Document& document, const HostColor& color);

} // namespace workbench
