/// From stored paints to gradients and patterns of the document.
#pragma once

#include "plugin/objects/object_layout.h"
#include "plugin/rebuild/load_state.h"
#include "suites/host_types.h"

/// Makes the paints of a style, as PathStyleFromRecord gives it, into paints that the host takes: gradient
/// fills and patterns become objects of the document, and what can't be rebuilt becomes gray 0: gradient
/// strokes, custom colours that nothing resolves, unknown kinds, and patterns and gradients of a fill or
/// stroke that isn't painted.
void RebuildPaints(LoadState& load, HostPathStyle* style, const AidbGradientBlock& block);

/// Gives the fill, a gradient, a new unnamed gradient with the block's stops, all of opacity 1, and moves its
/// origin by the placement offset as seen through its own matrix.
void RebuildGradient(LoadState& load, HostPathStyle* style, const AidbGradientBlock& block);

/// Gives the colour, a pattern, a new pattern with a copy of the art in the holder of the stored number;
/// clears
/// `*paintFlag` if there is no such holder.
void LinkPattern(LoadState& load, HostColor* color, int32_t* paintFlag);
