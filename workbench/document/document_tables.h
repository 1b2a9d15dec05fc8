/// What stands behind a document's handles; for this room alone.
#pragma once

#include <map>
#include <string>

#include "workbench/document/document.h"
#include "workbench/document/handle_table.h"

namespace workbench {

/// Art, gradients, patterns, custom colours and styles are owned by their handle; layers and swatches by
/// the document's lists.
struct Document::Tables {
    HandleTable handles;
    std::map<std::string, CustomColor*, std::less<>> customColors;

    template <typename Handle, typename Object>
    void Add(HandleType type, Object& object) {
        object.handle = reinterpret_cast<Handle>(handles.Add(type, &object));
    }
    template <typename Object, typename Handle>
    Object* Find(HandleType type, Handle handle) const {
        return static_cast<Object*>(handles.Find(type, reinterpret_cast<uintptr_t>(handle)));
    }
};

} // namespace workbench
