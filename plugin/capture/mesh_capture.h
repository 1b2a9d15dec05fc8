/// From a gradient mesh to a mesh object.
#pragma once

#include "plugin/store/memory_handle.h"
#include "suites/host_types.h"

/// Makes the mesh object of `mesh`, which the caller frees, with the vertices of its net by i, then j.
///
/// A node that the host doesn't give, and a vertex without edges, leave no trace, so the vertices need not
/// fill the net; an edge that can't be had whole ends the edges of its vertex.  A vertex colour of another
/// kind than gray, four, three or custom becomes gray 0; custom colours enter the custom colour table.
/// Positions and points are stored relative to `origin`, tangents as they come; all points go to the second
/// list of their edge.
/// @param object  out, null unless kHostNoError or a node's code is returned
/// @return kHostOutOfMemory, with no object; the host's code if type or size of the net can't be had,
///         likewise; else the code of the last node or edge read
HostError PostArtMeshProcess(ArtHandle mesh, MemoryHandle& object, const HostPoint& origin);
