#include "workbench/svg/clip_paths.h"

#include <algorithm>

#include "workbench/svg/element_reader.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/shapes.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

/// One shape of a clip path, in art coordinates.
struct Piece {
    Subpaths subpaths;
    pugi::xml_node element;
    Surroundings here;
};

struct Contents {
    std::vector<Piece> pieces;
    bool text = false; ///< has text, which would clip as well
};

void AddPiece(ReadContext& context, pugi::xml_node element, const Surroundings& around, Contents* contents);

void AddUsed(ReadContext& context, pugi::xml_node use, const Surroundings& here, Contents* contents) {
    const pugi::xml_node target = context.Target(use);
    const Reference reference(context, target);
    if (!target || !reference) {
        context.Lose("reference");
        return;
    }
    Surroundings inside = here;
    inside.instance = true;
    const double x = LengthAttribute(use, "x", here.style.fontSize, here.viewWidth, 0);
    const double y = LengthAttribute(use, "y", here.style.fontSize, here.viewHeight, 0);
    inside.toArt = Concat(here.toArt, {1, 0, 0, 1, x, y});
    AddPiece(context, target, inside, contents);
}

/// Only shapes clip, directly or through `use`; what else stands in a clip path counts for nothing.
void AddPiece(ReadContext& context, pugi::xml_node element, const Surroundings& around, Contents* contents) {
    const ElementKind kind = context.KindOf(element);
    if (kind == ElementKind::kText) {
        context.Lose("text");
        contents->text = true;
    }
    if (!IsShape(kind) && kind != ElementKind::kUse) return;
    const Visit visit(context);
    if (!visit) return;
    const Surroundings here = Enter(context, element, around);
    if (!here.style.displayed || !here.style.visible) return;
    if (!here.style.clipPath.empty()) context.Lose("clip of a clip path's shape");
    if (kind == ElementKind::kUse) return AddUsed(context, element, here, contents);
    Piece piece{ShapeGeometry(context, element, kind, here), element, here};
    if (!piece.subpaths.empty() && ToArt(context, here.toArt, &piece.subpaths))
        contents->pieces.push_back(std::move(piece));
}

/// Several shapes clip to all that lies in any of them.  Under the non-zero rule one path does the same if
/// all of them run the same way round.
Subpaths Union(ReadContext& context, std::vector<Piece>& pieces) {
    Subpaths all;
    for (Piece& piece : pieces) {
        double area = 0;
        for (const Subpath& subpath : piece.subpaths) area += SignedArea(subpath);
        if (piece.here.style.clipEvenOdd && piece.subpaths.size() > 1) context.Lose("clip rule");
        if (area < 0) std::ranges::for_each(piece.subpaths, Reverse);
        std::ranges::move(piece.subpaths, std::back_inserter(all));
    }
    return all;
}

Art* MakeClip(ReadContext& context, std::vector<Piece>& pieces, Art* group) {
    if (pieces.size() > 1)
        return MakePathArt(context, Union(context, pieces), ClippingStyle(false), {}, group);
    Piece& piece = pieces.front();
    HostPathStyle style = ClippingStyle(piece.here.style.clipEvenOdd);
    Blend blend;
    if (context.Own(piece.element, kOwnPainted) == "true") {
        double fillOpacity = 1, strokeOpacity = 1;
        style = ReadPathStyle(context, piece.element, piece.here, {}, &fillOpacity, &strokeOpacity);
        style.evenOdd = piece.here.style.clipEvenOdd;
        style.clip = 1;
        blend = ReadBlend(context, piece.element, piece.here.style);
    }
    const bool compound = context.Own(piece.element, kOwnCompound) == "true";
    Art* art = MakePathArt(context, std::move(piece.subpaths), style, blend, group, compound);
    if (art) SetNature(context, piece.element, piece.here, *art);
    return art;
}

} // namespace

void AddExtentOf(const Art& art, const HostMatrix& matrix, Box* box) {
    const PathData* path = art.path();
    if (path && !path->style.clip) AddExtent(path->segments, path->closed, matrix, box);
    if (const auto* placed = std::get_if<PlacedData>(&art.data)) {
        const HostMatrix whole = Concat(matrix, placed->matrix);
        for (const double x : {0.0, placed->width})
            for (const double y : {0.0, placed->height}) box->Add(Apply(whole, {x, y}));
    }
    if (const auto* raster = std::get_if<RasterData>(&art.data)) {
        const HostMatrix whole = Concat(matrix, raster->matrix);
        for (const double x : {1.0 * raster->record.left, 1.0 * raster->record.right})
            for (const double y : {1.0 * raster->record.top, 1.0 * raster->record.bottom})
                box->Add(Apply(whole, {x, -y}));
    }
    if (const auto* mesh = std::get_if<MeshData>(&art.data))
        ForEachMeshPoint(*mesh, [&](const HostPoint& point) { box->Add(Apply(matrix, point)); });
    for (const Art* child = art.firstChild; child; child = child->below) AddExtentOf(*child, matrix, box);
}

std::vector<pugi::xml_node> ClipLinks(ReadContext& context, std::string_view id) {
    std::vector<pugi::xml_node> links;
    for (pugi::xml_node clip = context.Find(id); clip;) {
        if (context.KindOf(clip) != ElementKind::kClipPath) {
            context.Lose("reference");
            break;
        }
        if (std::ranges::find(links, clip) != links.end() || links.size() == 16) {
            context.Lose("reference");
            return links;
        }
        links.push_back(clip);
        const ComputedStyle style = ComputeStyle(clip, {}, context.sheet);
        clip = style.clipPath.empty() ? pugi::xml_node{} : context.Find(style.clipPath);
    }
    return links;
}

void AddClip(ReadContext& context, pugi::xml_node clip, const Surroundings& here, Art* group) {
    Surroundings around = here;
    around.style = StyleInPlace(context, clip);
    if (std::string_view(clip.attribute("clipPathUnits").value()) == "objectBoundingBox") {
        Box box;
        HostMatrix toUser;
        if (Invert(here.toArt, &toUser)) AddExtentOf(*group, toUser, &box);
        around.toArt = Concat(around.toArt, {box.width(), 0, 0, box.height(), box.left, box.top});
    }
    around.toArt = Concat(around.toArt, OwnTransform(clip, around.style));
    Contents contents;
    for (const pugi::xml_node child : clip.children())
        if (child.type() == pugi::node_element) AddPiece(context, child, around, &contents);
    if (!contents.pieces.empty()) {
        if (MakeClip(context, contents.pieces, group)) group->group()->clipped = true;
    } else if (!contents.text) {
        group->hidden = true;
    }
}

} // namespace workbench
