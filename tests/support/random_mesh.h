/// Random meshes for round trips.
#pragma once

#include <functional>
#include <random>

#include "workbench/document/mesh_data.h"

/// Makes a net of either type, of a few patches in each direction, whose points, tangents, flags and colours
/// are as they come.
/// @param recordable  edges of two points, as a fresh net has them; else of any number
void MakeRandomMesh(workbench::MeshData& mesh, bool recordable, std::mt19937& random,
                    const std::function<HostPoint()>& point, const std::function<HostColor()>& color);
