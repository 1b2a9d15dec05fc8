#include "workbench/suites/art_places.h"

namespace workbench {

HostError Placed(SuiteCall& call, HostError error, int32_t paintOrder, const Art* prep) {
    if (error != kHostBadPlace) return error;
    const Layer* layer = &call.document().CurrentLayer();
    if (paintOrder != kPlaceAboveAll) layer = call.document().LayerOf(*prep);
    if (layer && !Document::CanChange(layer)) return error;
    return call.Fault(error, "a wrong place for art");
}

HostError CheckPaintOrder(SuiteCall& call, int32_t paintOrder, const Art* prep) {
    if (paintOrder < kPlaceAbove || paintOrder > kPlaceAboveAll) {
        return call.Fault(kHostBadParameter, "no such paint order");
    }
    if (paintOrder != kPlaceAboveAll && !prep) return call.FaultUnlessRefused(kHostBadHandle, "no prep art");
    if (paintOrder == kPlaceAboveAll && prep) {
        return call.Fault(kHostBadParameter, "prep art where none belongs");
    }
    return kHostNoError;
}

} // namespace workbench
