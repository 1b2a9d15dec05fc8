/// What the walks over the document's art share: which layers count, what is selected, the order.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "plugin/host/suites.h"
#include "suites/host_types.h"

/// A layer of this title holds what other tools draw for their own use: it is never measured, drawn or
/// captured.
constexpr char kHiddenLayerTitle[] = "<<Sorvenna Preview>>";

constexpr size_t kLayerTitleBytes = 256; ///< with the NUL

/// Reads a layer's title in the platform's encoding, cut at 255 bytes; empty if it can't be read.
/// @param title  out, kLayerTitleBytes bytes
void ReadLayerTitle(LayerHandle layer, char* title);

bool IsSelected(ArtHandle art); ///< false if the host doesn't say
bool IsGuide(ArtHandle path);   ///< false if the host doesn't say
bool IsClipped(ArtHandle group);

/// The first member of a container, or the sibling behind a member; null at the end and on a host error.
ArtHandle FirstChild(ArtHandle art);
ArtHandle NextSibling(ArtHandle art);

/// Calls `visit(root)` for the root group of each layer that counts, topmost layer first.  A layer that the
/// host doesn't give ends the loop, a root group that it doesn't give only skips that layer.
/// @return the code of the last layer: of `visit`, or the host's own
template <typename Visit>
HostError ForEachLayerRoot(Visit&& visit) {
    int32_t count = 0;
    HostError error = LayerSuite().CountLayers(&count);
    for (int32_t index = 0; index < count; ++index) {
        LayerHandle layer = nullptr;
        if (const HostError missing = LayerSuite().GetNthLayer(index, &layer)) return missing;
        char title[kLayerTitleBytes];
        ReadLayerTitle(layer, title);
        if (std::strcmp(title, kHiddenLayerTitle) == 0) continue;
        ArtHandle root = nullptr;
        error = ArtSuite().GetFirstArtOfLayer(layer, &root);
        if (!error) error = visit(root);
    }
    return error;
}

/// Calls `visit(art, kind, depth)` for `root` and, wherever that returns true, for the members, parents
/// before members and topmost first.  Nesting costs no stack.  Art whose kind the host doesn't tell is
/// passed over.
/// @return the host's code for the kind of `root`
template <typename Visit>
HostError WalkArt(ArtHandle root, int32_t depth, Visit&& visit) {
    int32_t kind = 0;
    const HostError error = ArtSuite().GetArtKind(root, &kind);
    if (error || !visit(root, kind, depth)) return error;

    std::vector<ArtHandle> next{FirstChild(root)}; // for each open container, the member to visit next
    while (!next.empty()) {
        const ArtHandle art = next.back();
        if (!art) {
            next.pop_back();
            continue;
        }
        next.back() = NextSibling(art);
        if (ArtSuite().GetArtKind(art, &kind)) continue;
        if (visit(art, kind, depth + static_cast<int32_t>(next.size()))) next.push_back(FirstChild(art));
    }
    return error;
}
