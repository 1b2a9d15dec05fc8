/// From a stored raster object to an image of the document.
#pragma once

#include <cstdint>
#include <span>

#include "plugin/rebuild/load_state.h"

/// Makes an image in the innermost open container: form, matrix, box, blend, tiles, and the paint of its
/// style. The matrix is moved by the placement offset unless the image belongs to a pattern.  Pending tags go
/// on to the next art.
///
/// Only tiles that the object really holds are handed to the host: where its bytes or its count end before
/// the stored bounds do, the rest of the image stays as the host made it, and bounds of any size cost
/// nothing. Tiles beyond those that the bounds ask for are passed over.  An object too short for a raster is
/// none.
/// @param object  in host order, the header included
/// @return always kGoOn; `lastResult` holds what ended the object early: a refused creation, form, matrix or
///         box leaves the art as far as it got, a refused tile the tiles before it, and then still its paint
LoadStep LoadArtRasterProcess(LoadState& load, std::span<uint8_t> object);
