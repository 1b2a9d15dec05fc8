#include "plugin/capture/art_walk.h"

#include "plugin/host/host_string.h"

static_assert(kLayerTitleBytes == kHostStringCapacity);

void ReadLayerTitle(LayerHandle layer, char* title) {
    title[0] = 0;
    const HostString text;
    if (!text.get() || LayerSuite().GetLayerTitle(layer, text.get())) return;
    HostStringBytes(text.get(), kEncodingPlatform, title);
}

bool IsSelected(ArtHandle art) {
    int32_t attributes = 0;
    return !ArtSuite().GetArtAttributes(art, kArtSelected, &attributes) && (attributes & kArtSelected);
}

bool IsGuide(ArtHandle path) {
    int32_t guide = 0;
    return !PathSuite().GetPathGuide(path, &guide) && guide;
}

bool IsClipped(ArtHandle group) {
    int32_t clipped = 0;
    return !GroupSuite().GetGroupClipped(group, &clipped) && clipped;
}

ArtHandle FirstChild(ArtHandle art) {
    ArtHandle child = nullptr;
    return ArtSuite().GetFirstChild(art, &child) ? nullptr : child;
}

ArtHandle NextSibling(ArtHandle art) {
    ArtHandle sibling = nullptr;
    return ArtSuite().GetNextSibling(art, &sibling) ? nullptr : sibling;
}
