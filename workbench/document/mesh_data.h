/// Gradient meshes in the art tree.
#pragma once

#include "suites/host_types.h"

namespace workbench {

struct MeshData {
    HostRect bounds{};
};

} // namespace workbench
