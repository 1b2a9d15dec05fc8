#include "workbench/text/glyph_outlines.h"

#include <pango/pangocairo.h>

#include <map>
#include <memory>
#include <utility>

#include "workbench/text/pango_handle.h"

namespace workbench {

namespace {

constexpr size_t kMostKept = 20'000;

struct PathRelease {
    void operator()(cairo_path_t* path) const { cairo_path_destroy(path); }
};
struct Outline {
    PangoFont* font; ///< held, so that no other font can come to have its address
    std::unique_ptr<cairo_path_t, PathRelease> path;
    Outline(PangoFont* heldFont, cairo_path_t* ownPath)
        : font(static_cast<PangoFont*>(g_object_ref(heldFont))), path(ownPath) {}
    ~Outline() { g_object_unref(font); }
    Outline(const Outline&) = delete;
    Outline& operator=(const Outline&) = delete;
};

cairo_path_t* ReadOutline(PangoFont* font, PangoGlyph glyph) {
    const GlyphsPointer glyphs(pango_glyph_string_new());
    pango_glyph_string_set_size(glyphs.get(), 1);
    glyphs->glyphs[0] = {};
    glyphs->glyphs[0].glyph = glyph;
    // Only boxes for missing letters need the width.
    PangoRectangle logical;
    pango_font_get_glyph_extents(font, glyph, nullptr, &logical);
    glyphs->glyphs[0].geometry.width = logical.width;
    cairo_surface_t* surface = cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr);
    cairo_t* context = cairo_create(surface);
    pango_cairo_glyph_string_path(context, font, glyphs.get());
    cairo_path_t* path = cairo_copy_path(context);
    cairo_destroy(context);
    cairo_surface_destroy(surface);
    return path;
}

const cairo_path_t& OutlineOf(PangoFont* font, PangoGlyph glyph) {
    static std::map<std::pair<PangoFont*, PangoGlyph>, Outline> kept;
    const auto found = kept.find({font, glyph});
    if (found != kept.end()) return *found->second.path;
    if (kept.size() >= kMostKept) kept.clear();
    return *kept.try_emplace({font, glyph}, font, ReadOutline(font, glyph)).first->second.path;
}

} // namespace

void AppendGlyph(cairo_t* context, PangoFont* font, PangoGlyph glyph, const HostMatrix& m) {
    const cairo_path_t& path = OutlineOf(font, glyph);
    const auto x = [&](const cairo_path_data_t& p) {
        return m.a * p.point.x / kShapedEm - m.c * p.point.y / kShapedEm + m.tx;
    };
    const auto y = [&](const cairo_path_data_t& p) {
        return m.b * p.point.x / kShapedEm - m.d * p.point.y / kShapedEm + m.ty;
    };
    for (int i = 0; i < path.num_data; i += path.data[i].header.length) {
        const cairo_path_data_t* data = path.data + i;
        switch (data->header.type) {
            case CAIRO_PATH_MOVE_TO:
                cairo_move_to(context, x(data[1]), y(data[1]));
                break;
            case CAIRO_PATH_LINE_TO:
                cairo_line_to(context, x(data[1]), y(data[1]));
                break;
            case CAIRO_PATH_CURVE_TO:
                cairo_curve_to(context, x(data[1]), y(data[1]), x(data[2]), y(data[2]), x(data[3]),
                               y(data[3]));
                break;
            case CAIRO_PATH_CLOSE_PATH:
                cairo_close_path(context);
                break;
        }
    }
}

} // namespace workbench
