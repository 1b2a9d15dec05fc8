#include <algorithm>
#include <vector>

#include "workbench/document/document.h"
#include "workbench/document/text_layout.h"

namespace workbench {

namespace {

/// A box that grows by the points it is given.
class Box {
public:
    void Add(const HostPoint& point) {
        if (!any_) rect_ = {point.x, point.y, point.x, point.y};
        any_ = true;
        rect_.left = std::min(rect_.left, point.x);
        rect_.right = std::max(rect_.right, point.x);
        rect_.bottom = std::min(rect_.bottom, point.y);
        rect_.top = std::max(rect_.top, point.y);
    }
    void AddCorners(const HostMatrix& m, double width, double height) {
        if (width == 0 && height == 0) return;
        for (const double x : {0.0, width}) {
            for (const double y : {0.0, height}) {
                Add({m.a * x + m.c * y + m.tx, m.b * x + m.d * y + m.ty});
            }
        }
    }
    void AddPath(const PathData& path) {
        const auto& segments = path.segments;
        for (size_t i = 0; i < segments.size(); ++i) {
            Add(segments[i].anchor);
            if (i > 0 || path.closed) Add(segments[i].in);
            if (i + 1 < segments.size() || path.closed) Add(segments[i].out);
        }
    }
    bool any() const { return any_; }
    const HostRect& rect() const { return rect_; }

private:
    HostRect rect_{};
    bool any_ = false;
};

/// What stands for the whole of a container; null: all its members.
const Art* StandIn(const Document& document, const Art& art) {
    if (const auto* plugin = std::get_if<PluginArtData>(&art.data)) {
        const Art* result = document.Find(plugin->result);
        return result && result->parent == &art ? result : nullptr;
    }
    const GroupData* group = art.group();
    if (!group || !group->clipped) return nullptr;
    const Art* child = art.firstChild;
    while (child && child->kind != kArtPath && child->kind != kArtCompoundPath) child = child->below;
    return child;
}

/// Point text is its lines; text in an area is the area, whatever it holds; text on a path is both.
void AddText(const Document& document, const Art& art, const TextFrameData& text, Box* box) {
    if (const Art* path = document.Find(text.path); path && path->path()) box->AddPath(*path->path());
    if (text.frameKind == kAreaText) return;
    HostRect lines{};
    TextLayout* layout = CurrentTextLayout();
    const bool any =
        layout ? layout->LineBounds(document, art, &lines) : EstimateLineBounds(document, art, &lines);
    if (any) {
        box->Add({lines.left, lines.top});
        box->Add({lines.right, lines.bottom});
    } else if (text.frameKind == kPointText) {
        box->Add({text.matrix.tx, text.matrix.ty});
    }
}

void AddRaster(const RasterData& raster, Box* box) {
    const HostRasterRecord& pixels = raster.record;
    const HostMatrix& m = raster.matrix;
    if (raster.Width() == 0 && raster.Height() == 0) return;
    for (const int32_t column : {pixels.left, pixels.right}) {
        for (const int32_t row : {pixels.top, pixels.bottom}) {
            const double x = column, y = -static_cast<double>(row);
            box->Add({m.a * x + m.c * y + m.tx, m.b * x + m.d * y + m.ty});
        }
    }
}

void AddOwn(const Document& document, const Art& art, Box* box) {
    if (const PathData* path = art.path()) {
        box->AddPath(*path);
    } else if (const auto* placed = std::get_if<PlacedData>(&art.data)) {
        box->AddCorners(placed->matrix, placed->width, placed->height);
    } else if (const auto* raster = std::get_if<RasterData>(&art.data)) {
        AddRaster(*raster, box);
    } else if (const auto* mesh = std::get_if<MeshData>(&art.data)) {
        ForEachMeshPoint(*mesh, [box](const HostPoint& point) { box->Add(point); });
    } else if (const auto* text = std::get_if<TextFrameData>(&art.data)) {
        AddText(document, art, *text, box);
    }
}

} // namespace

bool Document::Bounds(const Art& art, HostRect* bounds) const {
    Box box;
    std::vector<const Art*> waiting{&art};
    while (!waiting.empty()) {
        const Art* each = waiting.back();
        waiting.pop_back();
        if (const Art* standIn = StandIn(*this, *each)) {
            waiting.push_back(standIn);
            continue;
        }
        AddOwn(*this, *each, &box);
        for (const Art* child = each->firstChild; child; child = child->below) waiting.push_back(child);
    }
    if (!box.any()) return false;
    *bounds = box.rect();
    return true;
}

} // namespace workbench
