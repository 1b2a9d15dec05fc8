/// Suites over the front document as a whole: layers, views, undo, hard coordinates.
///
/// The rules of suites/art.h on handles and out values hold here too.  Without an open document every
/// operation gives kHostNotFound.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* AI Layer Suite, version 13.  Layer 0 is the topmost. */
typedef struct AILayerSuite {
    HostError (*CountLayers)(int32_t* count);
    HostError (*GetNthLayer)(int32_t index, LayerHandle* layer);
    HostError (*GetCurrentLayer)(LayerHandle* layer);
    HostError (*GetLayerTitle)(LayerHandle layer, UnicodeStringHandle title);
    HostError (*SetLayerTitle)(LayerHandle layer, UnicodeStringHandle title);
    HostError (*GetLayerVisible)(LayerHandle layer, int32_t* visible);
    HostError (*GetLayerEditable)(LayerHandle layer, int32_t* editable);

    /* With no reference and kPlaceAboveAll a new layer above all others.  The current layer stays. */
    HostError (*InsertLayer)(LayerHandle reference, int32_t paintOrder, LayerHandle* layer);
} AILayerSuite;

/* AI Document View Suite, version 12. */
typedef struct AIDocumentViewSuite {
    /* The view of the front document; none if there is no document, which is no error. */
    HostError (*GetCurrentView)(ViewHandle* view);
    HostError (*GetViewBounds)(ViewHandle view, HostRect* bounds);
    HostError (*GetViewZoom)(ViewHandle view, double* zoom); /* screen pixels for each point */
} AIDocumentViewSuite;

/* AI Undo Suite, version 7.  The host keeps its own snapshots; a plug-in only names what it did. */
typedef struct AIUndoSuite {
    /* Begins a step of its own for what this call of the plug-in changes. */
    HostError (*BeginStep)(void);

    /* The texts of the Edit menu. */
    HostError (*SetUndoTexts)(UnicodeStringHandle undo, UnicodeStringHandle redo);
} AIUndoSuite;

/* AI Hard Soft Suite, version 5. */
typedef struct AIHardSoftSuite {
    /* Page coordinates to the coordinates of the document's memory, in place. */
    HostError (*HardenPoint)(HostPoint* point);
} AIHardSoftSuite;

} /* extern "C" */
