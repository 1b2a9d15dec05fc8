/// From a mesh object to a gradient mesh.
#pragma once

#include <span>

#include "plugin/rebuild/load_state.h"

/// Builds the mesh in the innermost open container; within a pattern too it is moved by the offset.
///
/// The stored vertices are used in the order of the net's nodes, by i, then j, until they end.  A node that
/// the host doesn't give ends its row, and the next row goes on with the same vertex.  A segment that it
/// doesn't give ends the edges of its vertex.  Vertices and edges that reach beyond the object end it.
/// @return kStop, without a sound, for a mesh of another type than 0 and 1
LoadStep LoadArtMeshProcess(LoadState& load, std::span<uint8_t> object);
