#include "workbench/render/art_renderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "workbench/render/cairo_handle.h"
#include "workbench/render/mesh_drawing.h"
#include "workbench/render/paint_source.h"
#include "workbench/render/picture_images.h"
#include "workbench/render/raster_drawing.h"
#include "workbench/render/text_drawing.h"

namespace workbench {
namespace {

/// Containers nested deeper than this are drawn without their own clip and blend: they can't be told
/// apart on a page, and the stack has an end.
constexpr int kDeepestContainer = 500;
constexpr int kDeepestPattern = 8;

cairo_operator_t OperatorOf(int32_t mode) {
    static constexpr std::array<cairo_operator_t, kBlendModeCount> operators = {
        CAIRO_OPERATOR_OVER,          CAIRO_OPERATOR_MULTIPLY,       CAIRO_OPERATOR_SCREEN,
        CAIRO_OPERATOR_OVERLAY,       CAIRO_OPERATOR_SOFT_LIGHT,     CAIRO_OPERATOR_HARD_LIGHT,
        CAIRO_OPERATOR_COLOR_DODGE,   CAIRO_OPERATOR_COLOR_BURN,     CAIRO_OPERATOR_DARKEN,
        CAIRO_OPERATOR_LIGHTEN,       CAIRO_OPERATOR_DIFFERENCE,     CAIRO_OPERATOR_EXCLUSION,
        CAIRO_OPERATOR_HSL_HUE,       CAIRO_OPERATOR_HSL_SATURATION, CAIRO_OPERATOR_HSL_COLOR,
        CAIRO_OPERATOR_HSL_LUMINOSITY};
    return mode >= 0 && mode < kBlendModeCount ? operators[static_cast<size_t>(mode)] : CAIRO_OPERATOR_OVER;
}

class Renderer {
public:
    Renderer(cairo_t* context, const Document& document, PictureImages& pictures)
        : context_(context), document_(document), pictures_(pictures) {}

    std::function<void()> beforeMember; ///< called for each member of what is drawn

    void Draw(const Art& art) {
        if (depth_ == 1 && beforeMember) beforeMember();
        if (art.hidden) return;
        if (const Art* styled = StyledArtOf(art)) {
            Renderer inner(context_, document_, pictures_, depth_ + 1, patternDepth_);
            if (depth_ < kDeepestContainer) inner.Draw(*styled);
            return;
        }
        switch (art.kind) {
            case kArtGroup:
                DrawGroup(art);
                break;
            case kArtPath:
                DrawShape(art, art);
                break;
            case kArtCompoundPath:
                DrawCompoundPath(art);
                break;
            case kArtRaster:
                DrawRaster(art);
                break;
            case kArtPlaced:
                DrawPlaced(art);
                break;
            case kArtTextFrame:
                DrawTextFrame(art);
                break;
            case kArtMesh:
                DrawMesh(art);
                break;
            case kArtPlugin:
                DrawPluginArt(art);
                break;
            default:
                break;
        }
    }

private:
    Renderer(cairo_t* context, const Document& document, PictureImages& pictures, int depth, int patternDepth)
        : context_(context),
          document_(document),
          pictures_(pictures),
          depth_(depth),
          patternDepth_(patternDepth) {}

    const Art* StyledArtOf(const Art& art) const {
        if (!art.styledArt || art.styledArt == art.handle) return nullptr;
        return document_.Find(art.styledArt);
    }

    void DrawMembers(const Art& container, const Art* except) {
        for (const Art* member = container.lastChild; member; member = member->above) {
            if (member != except) Draw(*member);
        }
    }

    void DrawGroup(const Art& group) {
        if (depth_ >= kDeepestContainer) return DrawLeaves(group);
        ++depth_;
        const bool composed =
            group.blend.opacity < 1 || group.blend.mode != kBlendNormal || group.blend.isolated != 0;
        cairo_save(context_);
        const Art* clip = ClippingPathOf(group);
        if (clip) Clip(*clip);
        if (composed) cairo_push_group(context_);
        DrawMembers(group, nullptr);
        if (composed) {
            cairo_pop_group_to_source(context_);
            cairo_set_operator(context_, OperatorOf(group.blend.mode));
            cairo_paint_with_alpha(context_, std::clamp(group.blend.opacity, 0.0, 1.0));
        }
        cairo_restore(context_);
        --depth_;
    }

    /// The paths of a tree that is too deep to enter, lowest first, without recursion.
    void DrawLeaves(const Art& top) {
        const Art* art = &top;
        while (art->lastChild) art = art->lastChild;
        while (art != &top) {
            if (!art->firstChild) Draw(*art);
            if (art->above) {
                art = art->above;
                while (art->lastChild) art = art->lastChild;
            } else {
                art = art->parent;
            }
        }
    }

    static const Art* ClippingPathOf(const Art& group) {
        const GroupData* data = group.group();
        if (!data || !data->clipped) return nullptr;
        const Art* top = group.firstChild;
        return top && (top->kind == kArtPath || top->kind == kArtCompoundPath) ? top : nullptr;
    }

    void Clip(const Art& shape) {
        cairo_new_path(context_);
        AddShape(shape);
        const PathData* style = StyleOf(shape);
        cairo_set_fill_rule(
            context_, style && style->style.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
        cairo_clip(context_);
    }

    void DrawPluginArt(const Art& art) {
        const auto* plugin = std::get_if<PluginArtData>(&art.data);
        const Art* result = plugin && plugin->result ? document_.Find(plugin->result) : nullptr;
        if (result && depth_ < kDeepestContainer) {
            ++depth_;
            Draw(*result);
            --depth_;
        }
    }

    /// The path whose style paints a shape.
    static const PathData* StyleOf(const Art& shape) {
        const Art* art = shape.kind == kArtCompoundPath ? shape.firstChild : &shape;
        return art ? art->path() : nullptr;
    }

    void DrawCompoundPath(const Art& compound) {
        if (compound.firstChild) DrawShape(compound, *compound.firstChild);
    }

    void AddShape(const Art& shape) {
        if (shape.kind == kArtPath) return AddPath(shape);
        for (const Art* member = shape.firstChild; member; member = member->below) {
            if (member->kind == kArtPath) AddPath(*member);
        }
    }

    void AddPath(const Art& art) {
        const PathData* path = art.path();
        if (!path || path->guide || path->segments.empty()) return;
        const auto& segments = path->segments;
        cairo_move_to(context_, segments[0].anchor.x, segments[0].anchor.y);
        for (size_t i = 1; i < segments.size(); ++i) AddPiece(segments[i - 1], segments[i]);
        if (path->closed) {
            if (segments.size() > 1) AddPiece(segments.back(), segments.front());
            cairo_close_path(context_);
        }
    }

    void AddPiece(const HostPathSegment& from, const HostPathSegment& to) {
        const bool straight = from.out.x == from.anchor.x && from.out.y == from.anchor.y &&
                              to.in.x == to.anchor.x && to.in.y == to.anchor.y;
        if (straight) {
            cairo_line_to(context_, to.anchor.x, to.anchor.y);
        } else {
            cairo_curve_to(context_, from.out.x, from.out.y, to.in.x, to.in.y, to.anchor.x, to.anchor.y);
        }
    }

    void SetLine(const HostPathStyle& style) {
        cairo_set_line_width(context_, std::max(style.lineWidth, 0.0));
        cairo_set_line_cap(context_, style.lineCap == 1   ? CAIRO_LINE_CAP_ROUND
                                     : style.lineCap == 2 ? CAIRO_LINE_CAP_SQUARE
                                                          : CAIRO_LINE_CAP_BUTT);
        cairo_set_line_join(context_, style.lineJoin == 1   ? CAIRO_LINE_JOIN_ROUND
                                      : style.lineJoin == 2 ? CAIRO_LINE_JOIN_BEVEL
                                                            : CAIRO_LINE_JOIN_MITER);
        cairo_set_miter_limit(context_, std::max(style.miterLimit, 1.0));
        const int count = std::clamp(style.dash.count, 0, 6);
        double sum = 0;
        for (int i = 0; i < count; ++i) sum += style.dash.lengths[i];
        const bool usable = sum > 0 && std::all_of(style.dash.lengths, style.dash.lengths + count,
                                                   [](double length) { return length >= 0; });
        cairo_set_dash(context_, style.dash.lengths, usable ? count : 0, style.dash.offset);
    }

    /// `painted` gives style and blend: the shape itself, or the topmost member of a compound path.
    void DrawShape(const Art& shape, const Art& painted) {
        const PathData* path = painted.path();
        if (!path) return;
        const HostPathStyle& style = path->style;
        if (!style.fillPaint && !style.strokePaint) return;
        const double opacity = std::clamp(painted.blend.opacity, 0.0, 1.0);
        cairo_save(context_);
        cairo_set_fill_rule(context_, style.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
        SetLine(style);
        cairo_new_path(context_);
        AddShape(shape);
        const bool composed = opacity < 1 || painted.blend.mode != kBlendNormal;
        if (composed) {
            PushGroupOver(style);
            AddShape(shape);
        }
        if (style.fillPaint) Fill(style.fill);
        if (style.strokePaint) Stroke(style.stroke);
        if (composed) {
            cairo_pop_group_to_source(context_);
            cairo_set_operator(context_, OperatorOf(painted.blend.mode));
            cairo_paint_with_alpha(context_, opacity);
        }
        cairo_restore(context_);
    }

    /// A group over no more than the current path's paint; the path is consumed.
    void PushGroupOver(const HostPathStyle& style) {
        const HostRect extents = PaintExtents(style.strokePaint != 0);
        cairo_new_path(context_);
        cairo_rectangle(context_, extents.left, extents.bottom, extents.right - extents.left,
                        extents.top - extents.bottom);
        cairo_clip(context_);
        cairo_push_group(context_);
    }

    /// Of the current path, with a little room for antialiasing.
    HostRect PaintExtents(bool stroke) {
        double left, low, right, high;
        cairo_fill_extents(context_, &left, &low, &right, &high);
        if (stroke) {
            double strokeLeft, strokeLow, strokeRight, strokeHigh;
            cairo_stroke_extents(context_, &strokeLeft, &strokeLow, &strokeRight, &strokeHigh);
            const bool noFill = left == right && low == high;
            left = noFill ? strokeLeft : std::min(left, strokeLeft);
            low = noFill ? strokeLow : std::min(low, strokeLow);
            right = noFill ? strokeRight : std::max(right, strokeRight);
            high = noFill ? strokeHigh : std::max(high, strokeHigh);
        }
        double roomX = 2, roomY = 2;
        cairo_device_to_user_distance(context_, &roomX, &roomY);
        const double room = std::max(std::abs(roomX), std::abs(roomY));
        return {left - room, high + room, right + room, low - room};
    }

    bool SetSource(const HostColor& color, bool stroke) {
        if (color.kind != kColorPattern) return SetPaintSource(context_, document_, color, {}, {});
        if (patternDepth_ >= kDeepestPattern) return false;
        HostRect extents = PaintExtents(stroke);
        double left, low, right, high;
        cairo_clip_extents(context_, &left, &low, &right, &high);
        extents = {std::max(extents.left, left), std::min(extents.top, high), std::min(extents.right, right),
                   std::max(extents.bottom, low)};
        if (!(extents.left < extents.right) || !(extents.bottom < extents.top)) return false;
        cairo_path_t* shape = cairo_copy_path(context_);
        const bool set =
            SetPaintSource(context_, document_, color, extents, [this](cairo_t* target, const Art& art) {
                Renderer inner(target, document_, pictures_, depth_ + 1, patternDepth_ + 1);
                if (depth_ < kDeepestContainer) inner.Draw(art);
            });
        cairo_new_path(context_);
        cairo_append_path(context_, shape);
        cairo_path_destroy(shape);
        return set;
    }

    void Fill(const HostColor& color) {
        if (SetSource(color, false)) cairo_fill_preserve(context_);
    }

    void Stroke(const HostColor& color) {
        if (SetSource(color, true)) cairo_stroke_preserve(context_);
    }

    void DrawRaster(const Art& art) {
        const auto* raster = std::get_if<RasterData>(&art.data);
        if (!raster || raster->Width() <= 0 || raster->Height() <= 0) return;
        const cairo_matrix_t matrix = CairoMatrix(raster->matrix);
        if (!IsInvertible(matrix)) return;
        cairo_save(context_);
        cairo_new_path(context_); // a shape that was painted before leaves its own
        cairo_transform(context_, &matrix);
        cairo_translate(context_, raster->record.left, -raster->record.bottom);
        const bool linked = !raster->file.empty();
        if (linked || !IsShownSpace(raster->record.colorSpace)) {
            PlacedData box;
            box.width = static_cast<double>(raster->Width());
            box.height = static_cast<double>(raster->Height());
            if (linked)
                DrawPicture(pictures_.Load(raster->file), box);
            else
                DrawCrossedBox(box);
        } else {
            DrawRasterPixels(context_, document_, art, OperatorOf(art.blend.mode),
                             std::clamp(art.blend.opacity, 0.0, 1.0));
        }
        cairo_restore(context_);
    }

    void DrawTextFrame(const Art& art) {
        const bool composed = art.blend.opacity < 1 || art.blend.mode != kBlendNormal;
        cairo_save(context_);
        if (composed) cairo_push_group(context_);
        DrawLetters(context_, document_, art, [this](const HostPathStyle& style) {
            SetLine(style);
            if (style.fillPaint) Fill(style.fill);
            if (style.strokePaint) Stroke(style.stroke);
        });
        if (composed) {
            cairo_pop_group_to_source(context_);
            cairo_set_operator(context_, OperatorOf(art.blend.mode));
            cairo_paint_with_alpha(context_, std::clamp(art.blend.opacity, 0.0, 1.0));
        }
        cairo_restore(context_);
    }

    void DrawMesh(const Art& art) {
        HostRect box{};
        const CairoSource source = MeshSource(document_, std::get<MeshData>(art.data));
        if (!source || !document_.Bounds(art, &box)) return;
        cairo_save(context_);
        cairo_new_path(context_);
        cairo_rectangle(context_, box.left, box.bottom, box.right - box.left, box.top - box.bottom);
        cairo_clip(context_);
        cairo_set_source(context_, source.get());
        cairo_set_operator(context_, OperatorOf(art.blend.mode));
        cairo_paint_with_alpha(context_, std::clamp(art.blend.opacity, 0.0, 1.0));
        cairo_restore(context_);
    }

    void DrawPlaced(const Art& art) {
        const auto* placed = std::get_if<PlacedData>(&art.data);
        if (!placed || !IsDrawableSide(placed->width) || !IsDrawableSide(placed->height)) return;
        const cairo_matrix_t matrix = CairoMatrix(placed->matrix);
        if (!IsInvertible(matrix)) return;
        const PictureImage& picture = pictures_.Load(placed->file);
        const bool composed = art.blend.opacity < 1 || art.blend.mode != kBlendNormal;
        cairo_save(context_);
        cairo_new_path(context_);
        if (composed) cairo_push_group(context_);
        cairo_save(context_);
        cairo_transform(context_, &matrix);
        DrawPicture(picture, *placed);
        cairo_restore(context_);
        if (composed) {
            cairo_pop_group_to_source(context_);
            cairo_set_operator(context_, OperatorOf(art.blend.mode));
            cairo_paint_with_alpha(context_, std::clamp(art.blend.opacity, 0.0, 1.0));
        }
        cairo_restore(context_);
    }

    /// Others flatten what is drawn to nothing, and would end all drawing in the context.
    static bool IsInvertible(const cairo_matrix_t& m) {
        const double determinant = m.xx * m.yy - m.xy * m.yx;
        return determinant != 0 && std::isfinite(determinant);
    }

    static bool IsDrawableSide(double length) { return length > 1e-6 && length < 1e9; }

    void DrawPicture(const PictureImage& picture, const PlacedData& placed) {
        if (picture.pixels) {
            cairo_rectangle(context_, 0, 0, placed.width, placed.height);
            cairo_clip(context_);
            DrawPixels(picture.pixels.get(), placed);
        } else if (picture.drawing && depth_ < kDeepestContainer) {
            cairo_rectangle(context_, 0, 0, placed.width, placed.height);
            cairo_clip(context_);
            DrawDrawing(*picture.drawing, placed);
        } else {
            DrawCrossedBox(placed);
        }
    }

    void DrawPixels(cairo_surface_t* pixels, const PlacedData& placed) {
        const double columns = cairo_image_surface_get_width(pixels);
        const double rows = cairo_image_surface_get_height(pixels);
        cairo_translate(context_, 0, placed.height);
        cairo_scale(context_, placed.width / columns, -placed.height / rows);
        cairo_set_source_surface(context_, pixels, 0, 0);
        cairo_pattern_set_extend(cairo_get_source(context_), CAIRO_EXTEND_PAD); // no soft edge
        cairo_paint(context_);
    }

    void DrawDrawing(const Document& drawing, const PlacedData& placed) {
        const HostRect& page = drawing.page;
        const double width = page.right - page.left, height = page.top - page.bottom;
        if (!(width > 0) || !(height > 0)) return;
        cairo_scale(context_, placed.width / width, placed.height / height);
        cairo_translate(context_, -page.left, -page.bottom);
        // Pictures may hold no pictures, so this goes one level down and no further.
        Renderer inner(context_, drawing, pictures_, depth_ + 1, patternDepth_);
        for (size_t i = drawing.LayerCount(); i-- > 0;) {
            const Layer& layer = drawing.LayerAt(i);
            if (layer.visible && layer.root) inner.Draw(*layer.root);
        }
    }

    /// What stands for a picture that can't be shown: a box with its diagonals, of a hair's width.
    void DrawCrossedBox(const PlacedData& placed) {
        cairo_rectangle(context_, 0, 0, placed.width, placed.height);
        cairo_move_to(context_, 0, 0);
        cairo_line_to(context_, placed.width, placed.height);
        cairo_move_to(context_, 0, placed.height);
        cairo_line_to(context_, placed.width, 0);
        cairo_identity_matrix(context_);
        cairo_set_source_rgb(context_, 0.5, 0.5, 0.5);
        cairo_set_line_width(context_, 1);
        cairo_set_dash(context_, nullptr, 0, 0);
        cairo_stroke(context_);
    }

    cairo_t* context_;
    const Document& document_;
    PictureImages& pictures_;
    int depth_ = 0;
    int patternDepth_ = 0;
};

} // namespace

cairo_matrix_t CairoMatrix(const HostMatrix& matrix) {
    cairo_matrix_t result;
    cairo_matrix_init(&result, matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty);
    for (const double value : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        if (!std::isfinite(value)) cairo_matrix_init(&result, 0, 0, 0, 0, 0, 0);
    }
    return result;
}

void DrawArt(cairo_t* context, const Document& document, const Art& art) {
    PictureImages pictures;
    Renderer(context, document, pictures).Draw(art);
}

void DrawDocument(cairo_t* context, const Document& document) {
    DrawDocument(context, document, nullptr);
}

void DrawDocument(cairo_t* context, const Document& document,
                  const std::function<void(size_t done, size_t of)>& progress) {
    PictureImages pictures;
    size_t done = 0, all = 0;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        const Layer& layer = document.LayerAt(i);
        if (layer.visible && layer.root) all += layer.root->childCount;
    }
    for (size_t i = document.LayerCount(); i-- > 0;) {
        const Layer& layer = document.LayerAt(i);
        if (!layer.visible || !layer.root) continue;
        Renderer renderer(context, document, pictures);
        if (progress) renderer.beforeMember = [&] { progress(done++, all); };
        renderer.Draw(*layer.root);
    }
}

} // namespace workbench
