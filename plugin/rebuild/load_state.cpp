#include "plugin/rebuild/load_state.h"

#include <algorithm>

#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"

void ResetContainers(ContainerStack& stack, ArtHandle base) {
    stack.artStack[0] = base;
    stack.depth = 0;
}

ArtHandle InnermostContainer(const ContainerStack& stack) {
    return stack.artStack[std::min(stack.depth, kContainerLimit - 1)];
}

HostError NewLoadedArt(LoadState& load, int32_t kind, ArtHandle* art) {
    *art = nullptr;
    const ArtHandle prep = InnermostContainer(OpenContainers(load));
    load.lastResult = ArtSuite().NewArt(kind, prep ? kPlaceInsideOnTop : kPlaceAboveAll, prep, art);
    return load.lastResult;
}

HostPoint PlacementOffset(const LoadState& load) {
    return {globals->placePoint.x + load.originDx, globals->placePoint.y + load.originDy};
}

void SetOriginOffset(LoadState& load, const HostRect& bounds) {
    // Three columns from left to right, in each three rows from top to bottom; the art's own zero is its
    // lower left corner.
    constexpr double kAcross[3] = {0, -0.5, -1};
    constexpr double kUp[3] = {-1, -0.5, 0};
    const int mode = globals->originMode >= 0 && globals->originMode <= 8 ? globals->originMode : 0;
    load.originDx = (bounds.right - bounds.left) * kAcross[mode / 3];
    load.originDy = (bounds.top - bounds.bottom) * kUp[mode % 3];
}

void Beep() {
    MessageBeep(static_cast<UINT>(-1));
}

LoadGuard::LoadGuard(LoadState& load, const RecordSource& source) : load_(load) {
    load = LoadState{};
    load.source = source;
    load.gradientSpot = {kNoGradientSpot, kNoGradientSpot};

    globals->customCount = 0;
    std::fill(std::begin(globals->customHandles), std::end(globals->customHandles), nullptr);
    globals->linkCount = 0;
    FreeHandle(globals->linkPaths);
    FreeHandle(globals->linkNames);
    globals->pendingTagCount = 0;
    FreeHandle(globals->pendingTags);
}

LoadGuard::~LoadGuard() {
    DisposePatternHolders(load_);
    DisposeScratchGroup(load_);
}

/// Clears the handle unless the host keeps the art: the end of the load then tries once more.
static void Dispose(ArtHandle& art) {
    if (art && ArtSuite().DisposeArt(art) == kHostNoError) art = nullptr;
}

void DisposePatternHolders(LoadState& load) {
    for (ArtHandle& holder : load.patternHolders) Dispose(holder);
    for (ArtHandle& holder : load.replacedHolders) Dispose(holder);
}

void DisposeScratchGroup(LoadState& load) {
    Dispose(load.scratchGroup);
}
