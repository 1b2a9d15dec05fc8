#include "plugin/rebuild/undo_texts.h"

#include <cstring>

#include "plugin/frame/globals.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"

void SetPlacementUndoTexts() {
    const bool japanese = globals->language == 0;
    const char* undo = japanese ? "配置の取り消し" : "Undo Placement";
    const char* redo = japanese ? "配置のやり直し" : "Redo Placement";

    UndoSuite().BeginStep();
    const HostString undoText(undo, std::strlen(undo), kEncodingCp932);
    const HostString redoText(redo, std::strlen(redo), kEncodingCp932);
    if (undoText.get() && redoText.get()) UndoSuite().SetUndoTexts(undoText.get(), redoText.get());
}
