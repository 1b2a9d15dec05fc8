/// Suites over gradient meshes: the net, its vertices, the segments between them.
///
/// The rules of suites/art.h on handles and out values hold here too.  Vertices and segments are references
/// that the host gives out and takes back by itself, the plug-in disposes of neither: a vertex is good until
/// the next GetNode of any mesh, a segment until the next GetSegment of any vertex, and both only as long as
/// their mesh is there and keeps its net.  Later use is a fault and gives kHostBadHandle.
#pragma once

#include "suites/host_types.h"

extern "C" {

typedef struct HostMeshVertexTag* MeshVertexHandle;
typedef struct HostMeshSegmentTag* MeshSegmentHandle;

/* AI Mesh Suite, version 6. */
typedef struct AIMeshSuite {
    /* 0: a grid; 1: a ring, whose node (i, b) is node (0, b) once more. */
    HostError (*GetMeshType)(ArtHandle mesh, int32_t* type);

    /* Patches in each direction; 0 and 0 for a mesh that has no net yet. */
    HostError (*GetGridSize)(ArtHandle mesh, int32_t* i, int32_t* j);

    /* Begin the net of a grid or a ring anew, all of it white and at (0, 0).  kHostBadParameter if a size is
       below 1 or the net too large. */
    HostError (*InitGridType0)(ArtHandle mesh, int32_t i, int32_t j);
    HostError (*InitGridType1)(ArtHandle mesh, int32_t i, int32_t j);

    /* From (0, 0) to (i, j) inclusive.  kHostNotFound if there is no such node. */
    HostError (*GetNode)(ArtHandle mesh, int32_t i, int32_t j, MeshVertexHandle* vertex);
} AIMeshSuite;

/* AI Mesh Vertex Suite, version 4.  Edges are counted from 0; kHostBadParameter for one that isn't there. */
typedef struct AIMeshVertexSuite {
    HostError (*GetEdgeCount)(MeshVertexHandle vertex, int32_t* count);

    /* Gray, four, three or custom colours. */
    HostError (*GetColor)(MeshVertexHandle vertex, HostColor* color);
    HostError (*SetColor)(MeshVertexHandle vertex, const HostColor* color);
    HostError (*GetPoint)(MeshVertexHandle vertex, HostPoint* point);
    HostError (*SetPoint)(MeshVertexHandle vertex, const HostPoint* point);

    /* The way from the vertex in which the edge leaves it, not a place on the page. */
    HostError (*GetTangent)(MeshVertexHandle vertex, int32_t edge, HostPoint* tangent);
    HostError (*SetTangent)(MeshVertexHandle vertex, int32_t edge, const HostPoint* tangent);
    HostError (*GetSmooth)(MeshVertexHandle vertex, int32_t edge, int32_t* smooth);
    HostError (*SetSmooth)(MeshVertexHandle vertex, int32_t edge, int32_t smooth);

    /* What joins the vertex to its neighbour at this edge.  Both share it. */
    HostError (*GetSegment)(MeshVertexHandle vertex, int32_t edge, MeshSegmentHandle* segment);
} AIMeshVertexSuite;

/* AI Mesh Segment Suite, version 3: the control points between two vertices, in order from the vertex that
   the segment was asked of. */
typedef struct AIMeshSegmentSuite {
    HostError (*GetPointCount)(MeshSegmentHandle segment, int32_t* count);
    HostError (*GetPoint)(MeshSegmentHandle segment, int32_t index, HostPoint* point);

    /* Replaces or, at the end, adds; `index` may be at most the count. */
    HostError (*SetPoint)(MeshSegmentHandle segment, int32_t index, const HostPoint* point);
} AIMeshSegmentSuite;

} /* extern "C" */
