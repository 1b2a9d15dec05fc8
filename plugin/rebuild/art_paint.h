/// What art of several kinds gets back besides its geometry: how it lies on what is below it, and the paint
/// of an art style.
#pragma once

#include "plugin/objects/object_layout.h"
#include "suites/host_types.h"

/// Makes gray 0 of a colour that names what the host doesn't have: a stored number in place of a handle, a
/// custom colour that nothing resolves, an unknown kind.
void KeepPlainColor(HostColor* color);

/// Sets blending mode, opacity, isolation, knockout and alpha-is-shape.  What the host refuses stays as it
/// was.
void SetBlend(ArtHandle art, const AidbObjectHeader& header);

/// Makes an art style of a stored block's paint and gives it to the art.  What the record can't name becomes
/// gray 0: such a block has no stops and no art of its own.
void SetStylePaint(ArtHandle art, const AidbStyle& stored);
