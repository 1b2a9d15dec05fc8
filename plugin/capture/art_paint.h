/// What art of several kinds has besides its geometry: how it lies on what is below it, and the paint that an
/// art style gives to art without a path.
#pragma once

#include "plugin/objects/object_layout.h"
#include "suites/host_types.h"

/// Fills the header's five blend fields; one that the host doesn't tell stays as it is.
void CaptureBlend(ArtHandle art, AidbObjectHeader* header);

/// The paint of the art's style; false, with `*paint` untouched, if it has no style or the host doesn't tell.
bool ReadStylePaint(ArtHandle art, HostPathStyle* paint);

/// Stores a style's paint for a block that has no room for stops and no art of its own: gradients and
/// patterns become gray 0, custom colours enter the custom colour table.  What isn't painted loses its handle
/// alone.
void StoreStylePaint(HostPathStyle paint, AidbStyle* stored);
