/// Meshes of two documents side by side.
#pragma once

#include <functional>
#include <string>

#include "app/difference_list.h"
#include "workbench/document/mesh_data.h"

/// How the nets lie in the two documents.
struct MeshFrame {
    HostPoint origin{}; ///< the art point that is (0, 0) in the record
    HostPoint offset{}; ///< what a load adds; within a pattern too, whose own origin isn't on the page
};

/// Compares nets, places, tangents and flags; colours by `compareColors`, with their place.
void CompareMeshes(
    const workbench::MeshData& expected, const workbench::MeshData& actual, const MeshFrame& frame,
    const std::string& place, DifferenceList* differences,
    const std::function<void(const HostColor&, const HostColor&, const std::string&)>& compareColors);
