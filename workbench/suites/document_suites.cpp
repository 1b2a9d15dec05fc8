// The tables of suites/document.h over the front document.

#include "suites/document.h"

#include "workbench/document/undo_history.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

namespace {

// AI Layer Suite

HostError CountLayers(SuiteCall& call, int32_t& count) {
    if (const HostError error = NeedDocument(call)) return error;
    count = static_cast<int32_t>(call.document().LayerCount());
    return kHostNoError;
}

HostError GetNthLayer(SuiteCall& call, int32_t index, LayerHandle& layer) {
    if (const HostError error = NeedDocument(call)) return error;
    if (index < 0 || static_cast<size_t>(index) >= call.document().LayerCount()) {
        return call.FaultUnlessRefused(kHostBadParameter, "no layer of this number");
    }
    layer = call.document().LayerAt(static_cast<size_t>(index)).handle;
    return kHostNoError;
}

HostError GetCurrentLayer(SuiteCall& call, LayerHandle& layer) {
    if (const HostError error = NeedDocument(call)) return error;
    layer = call.document().CurrentLayer().handle;
    return kHostNoError;
}

HostError GetLayerTitle(SuiteCall&, Layer& layer, HostText& title) {
    title.utf8 = layer.title;
    return kHostNoError;
}

HostError SetLayerTitle(SuiteCall&, Layer& layer, HostText& title) {
    layer.title = title.utf8;
    return kHostNoError;
}

HostError GetLayerVisible(SuiteCall&, Layer& layer, int32_t& visible) {
    visible = layer.visible ? 1 : 0;
    return kHostNoError;
}

HostError GetLayerEditable(SuiteCall&, Layer& layer, int32_t& editable) {
    editable = layer.locked ? 0 : 1;
    return kHostNoError;
}

HostError InsertLayer(SuiteCall& call, Layer* reference, int32_t paintOrder, LayerHandle& layer) {
    if (const HostError error = NeedDocument(call)) return error;
    Document& document = call.document();
    size_t index = 0;
    if (paintOrder == kPlaceAboveAll) {
        if (reference) return call.Fault(kHostBadParameter, "a reference where none belongs");
    } else if (paintOrder == kPlaceAbove || paintOrder == kPlaceBelow) {
        if (!reference) return call.FaultUnlessRefused(kHostBadHandle, "no reference");
        while (&document.LayerAt(index) != reference) ++index;
        if (paintOrder == kPlaceBelow) ++index;
    } else {
        return call.Fault(kHostBadParameter, "no such paint order for layers");
    }
    layer = document.InsertLayer(index, "Layer " + std::to_string(document.LayerCount() + 1)).handle;
    return kHostNoError;
}

// AI Document View Suite

HostError GetCurrentView(SuiteCall& call, ViewHandle& view) {
    view = call.host().document ? call.document().view().handle : nullptr;
    return kHostNoError;
}

HostError GetViewBounds(SuiteCall&, View& view, HostRect& bounds) {
    bounds = view.bounds;
    return kHostNoError;
}

HostError GetViewZoom(SuiteCall&, View& view, double& zoom) {
    zoom = view.zoom;
    return kHostNoError;
}

// AI Undo Suite

HostError BeginStep(SuiteCall& call) {
    if (const HostError error = NeedDocument(call)) return error;
    if (UndoHistory* history = call.document().history()) history->Begin({}, {});
    return kHostNoError;
}

HostError SetUndoTexts(SuiteCall& call, HostText& undo, HostText& redo) {
    if (const HostError error = NeedDocument(call)) return error;
    call.document().undoText = undo.utf8;
    call.document().redoText = redo.utf8;
    if (UndoHistory* history = call.document().history()) history->NameStep(undo.utf8, redo.utf8);
    return kHostNoError;
}

// AI Hard Soft Suite

HostError HardenPoint(SuiteCall& call, HostPoint& point) {
    if (const HostError error = NeedDocument(call)) return error;
    point.x += call.document().hardOrigin.x;
    point.y += call.document().hardOrigin.y;
    return kHostNoError;
}

} // namespace

const void* LayerSuiteTable() {
    static constexpr AILayerSuite table{
        Entry<"AI Layer Suite", "CountLayers", CountLayers>::Run,
        Entry<"AI Layer Suite", "GetNthLayer", GetNthLayer>::Run,
        Entry<"AI Layer Suite", "GetCurrentLayer", GetCurrentLayer>::Run,
        Entry<"AI Layer Suite", "GetLayerTitle", GetLayerTitle>::Run,
        Entry<"AI Layer Suite", "SetLayerTitle", SetLayerTitle>::Run,
        Entry<"AI Layer Suite", "GetLayerVisible", GetLayerVisible>::Run,
        Entry<"AI Layer Suite", "GetLayerEditable", GetLayerEditable>::Run,
        Entry<"AI Layer Suite", "InsertLayer", InsertLayer>::Run,
    };
    return &table;
}

const void* DocumentViewSuiteTable() {
    static constexpr AIDocumentViewSuite table{
        Entry<"AI Document View Suite", "GetCurrentView", GetCurrentView>::Run,
        Entry<"AI Document View Suite", "GetViewBounds", GetViewBounds>::Run,
        Entry<"AI Document View Suite", "GetViewZoom", GetViewZoom>::Run,
    };
    return &table;
}

const void* UndoSuiteTable() {
    static constexpr AIUndoSuite table{
        Entry<"AI Undo Suite", "BeginStep", BeginStep, EntryKind::kDisposal>::Run,
        Entry<"AI Undo Suite", "SetUndoTexts", SetUndoTexts>::Run,
    };
    return &table;
}

const void* HardSoftSuiteTable() {
    static constexpr AIHardSoftSuite table{Entry<"AI Hard Soft Suite", "HardenPoint", HardenPoint>::Run};
    return &table;
}

} // namespace workbench
