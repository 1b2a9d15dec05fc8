/// Owners of Pango's objects.
#pragma once

#include <pango/pango.h>

#include <memory>

namespace workbench {

/// Everything is shaped at this size and then scaled: without hinting that is exact, and there is one font
/// and one outline for all sizes.
inline constexpr double kShapedEm = 1000;

struct PangoRelease {
    void operator()(PangoContext* context) const { g_object_unref(context); }
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
    void operator()(PangoFontDescription* description) const { pango_font_description_free(description); }
    void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
    void operator()(GList* items) const {
        g_list_free_full(items, [](void* item) { pango_item_free(static_cast<PangoItem*>(item)); });
    }
};
using ContextPointer = std::unique_ptr<PangoContext, PangoRelease>;
using AttributesPointer = std::unique_ptr<PangoAttrList, PangoRelease>;
using DescriptionPointer = std::unique_ptr<PangoFontDescription, PangoRelease>;
using GlyphsPointer = std::unique_ptr<PangoGlyphString, PangoRelease>;
using ItemsPointer = std::unique_ptr<GList, PangoRelease>;

} // namespace workbench
