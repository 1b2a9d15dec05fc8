#include "plugin/placement/visible_paths.h"

#include "plugin/host/suites.h"

namespace {

/// The root of the next visible layer, or none behind the last.
HostError EnterLayer(VisiblePaths& walk) {
    if (walk.nextLayer == 0) {
        if (const HostError error = LayerSuite().CountLayers(&walk.layerCount)) return error;
    }
    while (walk.nextLayer < walk.layerCount) {
        LayerHandle layer = nullptr;
        int32_t visible = 0;
        if (const HostError error = LayerSuite().GetNthLayer(walk.nextLayer, &layer)) return error;
        ++walk.nextLayer;
        if (const HostError error = LayerSuite().GetLayerVisible(layer, &visible)) return error;
        if (!visible) continue;
        if (const HostError error = ArtSuite().GetFirstArtOfLayer(layer, &walk.root)) return error;
        walk.art = walk.root;
        return kHostNoError;
    }
    return kHostNoError;
}

/// The art behind the current one and its members, or none behind the last of the layer.
HostError LeaveArt(VisiblePaths& walk) {
    while (walk.art != walk.root) {
        ArtHandle sibling = nullptr;
        if (const HostError error = ArtSuite().GetNextSibling(walk.art, &sibling)) return error;
        if (sibling) {
            walk.art = sibling;
            return kHostNoError;
        }
        if (const HostError error = ArtSuite().GetParent(walk.art, &walk.art)) return error;
    }
    walk.root = walk.art = nullptr;
    return kHostNoError;
}

HostError Advance(VisiblePaths& walk) {
    if (walk.art) {
        ArtHandle child = nullptr;
        if (walk.kind == kArtGroup || walk.kind == kArtCompoundPath) {
            if (const HostError error = ArtSuite().GetFirstChild(walk.art, &child)) return error;
        }
        if (child) {
            walk.art = child;
        } else if (const HostError error = LeaveArt(walk)) {
            return error;
        }
    }
    return walk.art ? kHostNoError : EnterLayer(walk);
}

} // namespace

HostError NextVisiblePath(VisiblePaths& walk, ArtHandle& path) {
    path = nullptr;
    for (;;) {
        if (const HostError error = Advance(walk)) return error;
        if (!walk.art) return kHostNoError;
        if (const HostError error = ArtSuite().GetArtKind(walk.art, &walk.kind)) return error;
        if (walk.kind == kArtPath) {
            path = walk.art;
            return kHostNoError;
        }
    }
}
