#include "workbench/render/paint_source.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "workbench/document/color.h"
#include "workbench/document/pattern_space.h"
#include "workbench/render/art_renderer.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

/// More tiles than this are drawn from a picture of one tile instead of one by one.
constexpr double kMostDrawnTiles = 256;
constexpr double kLargestTilePixels = 2048;

void AddStop(cairo_pattern_t* source, double offset, Light light, double alpha) {
    cairo_pattern_add_color_stop_rgba(source, std::clamp(offset, 0.0, 1.0), light.red, light.green,
                                      light.blue, std::clamp(alpha, 0.0, 1.0));
}

void AddStops(cairo_pattern_t* source, const Document& document, const Gradient& gradient) {
    for (size_t i = 0; i < gradient.stops.size(); ++i) {
        const HostGradientStop& stop = gradient.stops[i];
        const Light light = LightOf(document, stop.color);
        AddStop(source, stop.location / 100, light, stop.opacity);
        if (i + 1 == gradient.stops.size() || stop.midpoint == 50) continue;
        const HostGradientStop& next = gradient.stops[i + 1];
        const Light other = LightOf(document, next.color);
        const double middle = stop.location + (next.location - stop.location) * stop.midpoint / 100;
        AddStop(source, middle / 100,
                {(light.red + other.red) / 2, (light.green + other.green) / 2, (light.blue + other.blue) / 2},
                (stop.opacity + next.opacity) / 2);
    }
}

/// Cairo draws nothing when the focus lies on or outside the circle.
HostPoint FocusInside(const HostGradientUse& use) {
    const double share = std::clamp(use.highlightLength, -0.999, 0.999);
    return {use.origin.x + use.length * share * std::cos(use.highlightAngle * kDegree),
            use.origin.y + use.length * share * std::sin(use.highlightAngle * kDegree)};
}

bool SetGradientSource(cairo_t* context, const Document& document, const HostGradientUse& use) {
    const Gradient* gradient = document.Find(use.gradient);
    if (!gradient || gradient->stops.empty()) return false;
    cairo_matrix_t inverse = CairoMatrix(use.matrix);
    const bool flat = !(std::abs(use.length) > 0) || cairo_matrix_invert(&inverse) != CAIRO_STATUS_SUCCESS;
    if (flat) {
        const HostGradientStop& last = gradient->stops.back();
        const Light light = LightOf(document, last.color);
        cairo_set_source_rgba(context, light.red, light.green, light.blue,
                              std::clamp(last.opacity, 0.0, 1.0));
        return true;
    }
    CairoSource source;
    if (gradient->type == kGradientRadial) {
        const HostPoint focus = FocusInside(use);
        source.reset(cairo_pattern_create_radial(focus.x, focus.y, 0, use.origin.x, use.origin.y,
                                                 std::abs(use.length)));
    } else {
        source.reset(cairo_pattern_create_linear(use.origin.x, use.origin.y,
                                                 use.origin.x + use.length * std::cos(use.angle * kDegree),
                                                 use.origin.y + use.length * std::sin(use.angle * kDegree)));
    }
    AddStops(source.get(), document, *gradient);
    cairo_pattern_set_extend(source.get(), CAIRO_EXTEND_PAD);
    cairo_pattern_set_matrix(source.get(), &inverse);
    cairo_set_source(context, source.get());
    return true;
}

/// One tile of a pattern and the cells of its lattice that a paint touches.
struct Tiling {
    const Art* art = nullptr;
    HostRect tile{};
    cairo_matrix_t toArt{};
    double width = 0, height = 0;
    double firstColumn = 0, lastColumn = 0, firstRow = 0, lastRow = 0;
};

bool FindTiling(const Document& document, const HostPatternUse& use, const HostRect& extents,
                Tiling* tiling) {
    const Pattern* pattern = document.Find(use.pattern);
    if (!pattern || !pattern->art || !document.Bounds(*pattern->art, &tiling->tile)) return false;
    tiling->art = pattern->art;
    tiling->width = tiling->tile.right - tiling->tile.left;
    tiling->height = tiling->tile.top - tiling->tile.bottom;
    tiling->toArt = CairoMatrix(PatternToArt(use));
    cairo_matrix_t toPattern = tiling->toArt;
    if (!(tiling->width > 0) || !(tiling->height > 0) ||
        cairo_matrix_invert(&toPattern) != CAIRO_STATUS_SUCCESS)
        return false;
    double left = INFINITY, right = -INFINITY, low = INFINITY, high = -INFINITY;
    for (const double cornerX : {extents.left, extents.right}) {
        for (const double cornerY : {extents.top, extents.bottom}) {
            double x = cornerX, y = cornerY;
            cairo_matrix_transform_point(&toPattern, &x, &y);
            left = std::min(left, x), right = std::max(right, x), low = std::min(low, y),
            high = std::max(high, y);
        }
    }
    tiling->firstColumn = std::floor(left / tiling->width),
    tiling->lastColumn = std::floor(right / tiling->width);
    tiling->firstRow = std::floor(low / tiling->height), tiling->lastRow = std::floor(high / tiling->height);
    return std::isfinite(tiling->firstColumn) && std::isfinite(tiling->lastColumn) &&
           std::isfinite(tiling->firstRow) && std::isfinite(tiling->lastRow);
}

/// In pattern space: the tile's art with its lower left corner at (0, 0).
void DrawTile(cairo_t* context, const Tiling& tiling, const DrawMember& drawMember) {
    cairo_save(context);
    cairo_translate(context, -tiling.tile.left, -tiling.tile.bottom);
    drawMember(context, *tiling.art);
    cairo_restore(context);
}

void DrawTilesOneByOne(cairo_t* context, const Tiling& tiling, const HostRect& extents,
                       const DrawMember& drawMember) {
    cairo_save(context);
    cairo_new_path(context);
    cairo_rectangle(context, extents.left, std::min(extents.top, extents.bottom),
                    extents.right - extents.left, std::abs(extents.top - extents.bottom));
    cairo_clip(context);
    cairo_push_group(context);
    cairo_transform(context, &tiling.toArt);
    for (double row = tiling.firstRow; row <= tiling.lastRow; ++row) {
        for (double column = tiling.firstColumn; column <= tiling.lastColumn; ++column) {
            cairo_save(context);
            cairo_translate(context, column * tiling.width, row * tiling.height);
            DrawTile(context, tiling, drawMember);
            cairo_restore(context);
        }
    }
    const CairoSource source(cairo_pop_group(context));
    cairo_restore(context);
    cairo_set_source(context, source.get());
}

/// A picture of one tile at the size that it has on the target, repeated.
bool SetTilePicture(cairo_t* context, const Tiling& tiling, const DrawMember& drawMember) {
    cairo_matrix_t device;
    cairo_get_matrix(context, &device);
    cairo_matrix_multiply(&device, &tiling.toArt, &device);
    const auto pixels = [](double length, double x, double y) {
        return std::clamp(std::ceil(length * std::hypot(x, y)), 1.0, kLargestTilePixels);
    };
    const double columns = pixels(tiling.width, device.xx, device.yx);
    const double rows = pixels(tiling.height, device.xy, device.yy);
    const CairoSurface picture(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(columns), static_cast<int>(rows)));
    {
        const CairoContext tile(cairo_create(picture.get()));
        cairo_scale(tile.get(), columns / tiling.width, rows / tiling.height);
        DrawTile(tile.get(), tiling, drawMember);
    }
    const CairoSource source(cairo_pattern_create_for_surface(picture.get()));
    cairo_pattern_set_extend(source.get(), CAIRO_EXTEND_REPEAT);
    cairo_matrix_t toPicture = tiling.toArt;
    if (cairo_matrix_invert(&toPicture) != CAIRO_STATUS_SUCCESS) return false;
    cairo_matrix_t scale;
    cairo_matrix_init_scale(&scale, columns / tiling.width, rows / tiling.height);
    cairo_matrix_multiply(&toPicture, &toPicture, &scale);
    cairo_pattern_set_matrix(source.get(), &toPicture);
    cairo_set_source(context, source.get());
    return true;
}

} // namespace

bool SetPaintSource(cairo_t* context, const Document& document, const HostColor& color,
                    const HostRect& extents, const DrawMember& drawMember) {
    if (color.kind == kColorGradient) return SetGradientSource(context, document, color.u.gradient);
    if (color.kind == kColorPattern) {
        Tiling tiling;
        if (!FindTiling(document, color.u.pattern, extents, &tiling)) return false;
        const double tiles =
            (tiling.lastColumn - tiling.firstColumn + 1) * (tiling.lastRow - tiling.firstRow + 1);
        if (tiles > kMostDrawnTiles) return SetTilePicture(context, tiling, drawMember);
        DrawTilesOneByOne(context, tiling, extents, drawMember);
        return true;
    }
    const Light light = LightOf(document, color);
    cairo_set_source_rgb(context, light.red, light.green, light.blue);
    return true;
}

} // namespace workbench
