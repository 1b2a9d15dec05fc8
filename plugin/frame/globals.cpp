#include "plugin/frame/globals.h"

#include <cstring>

Globals* globals = nullptr;
const HostBasic* moduleBasic = nullptr;
int16_t suiteUseCount = 0;

namespace {

constexpr double kFiveMillimetres = 14.17323; // in points, as precise as the preferences keep it
constexpr int16_t kLongestFileName = 63;

void SetBrowserDefaults() {
    globals->toolMode = 1;
    globals->expandedCount = -1;
    globals->browseMode = 1;
    globals->browseWidth = 0.3f;
    std::strcpy(globals->product, "Velquorne");
    std::strcpy(globals->version, "2.0.4.0");
    globals->lastHasFolders = kNotKnown;
    globals->hasFolders = kNotKnown;
}

void SetPlacementDefaults() {
    globals->fixedAspect = 1;
    globals->placePoint = {kNoPlacePoint, kNoPlacePoint};
    globals->snapKind = -1;
    globals->flUseGrid = 1;
    globals->flUseFcur = 1;
    globals->flUseFcrs = 1;
    globals->flUseFops = 1;
    globals->flGrWidth = kFiveMillimetres;
    globals->flGrHeight = kFiveMillimetres;
}

void SetStoreDefaults() {
    globals->curRecordNo = -1;
    globals->nameLimit = kLongestFileName;
    globals->swapBytes = 1;
}

} // namespace

void SetDefaults(PluginHandle self) {
    std::memset(globals, 0, sizeof *globals);
    globals->pluginRef = self;
    SetBrowserDefaults();
    SetPlacementDefaults();
    SetStoreDefaults();
}
