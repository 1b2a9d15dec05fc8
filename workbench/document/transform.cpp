#include <map>
#include <memory>

#include "workbench/document/document.h"
#include "workbench/document/matrix.h"
#include "workbench/document/story.h"

namespace workbench {

namespace {

void TransformPaint(HostColor& color, const HostMatrix& matrix) {
    if (color.kind == kColorGradient)
        color.u.gradient.matrix = Concat(matrix, color.u.gradient.matrix);
    else if (color.kind == kColorPattern)
        color.u.pattern.matrix = Concat(matrix, color.u.pattern.matrix);
}

void TransformPath(PathData& path, const HostMatrix& matrix, double lineScale, bool withPaint) {
    for (HostPathSegment& segment : path.segments) {
        for (HostPoint* point : {&segment.anchor, &segment.in, &segment.out}) *point = Apply(matrix, *point);
    }
    if (withPaint) TransformPaint(path.style.fill, matrix);
    if (withPaint) TransformPaint(path.style.stroke, matrix);
    path.style.lineWidth *= lineScale;
    path.style.dash.offset *= lineScale;
    for (double& length : path.style.dash.lengths) length *= lineScale;
}

bool MovesWithArt(const CharacterAttributes& style) {
    const auto moves = [](const HostColor& color) {
        return color.kind == kColorGradient || color.kind == kColorPattern;
    };
    return moves(style.fillColor) || moves(style.strokeColor);
}

/// Neighbours that share their attributes share the changed ones too.
void TransformCharacters(Story& story, StoryRange range, const HostMatrix& matrix, double lineScale,
                         bool withPaint) {
    using Attributes = std::shared_ptr<const CharacterAttributes>;
    std::map<Attributes, Attributes> changed;
    for (size_t at = range.first; at < range.end; ++at) {
        Attributes& style = story.styles[at].character;
        if (!style) continue;
        if (lineScale == 1 && !(withPaint && MovesWithArt(*style))) continue;
        Attributes& mapped = changed[style];
        if (!mapped) {
            auto attributes = std::make_shared<CharacterAttributes>(*style);
            if (withPaint) TransformPaint(attributes->fillColor, matrix);
            if (withPaint) TransformPaint(attributes->strokeColor, matrix);
            attributes->lineWidth *= lineScale;
            attributes->dashOffset *= lineScale;
            for (double& length : attributes->dashes) length *= lineScale;
            mapped = std::move(attributes);
        }
        style = mapped;
    }
}

/// The frame's path comes with it; only point text has a place of its own.
void TransformText(Document& document, const Art& art, TextFrameData& text, const HostMatrix& matrix,
                   double lineScale, bool withPaint) {
    const StoryRange range = ShownRange(document, art);
    text.matrix = Concat(matrix, text.matrix);
    if (text.frameKind != kPointText) text.matrix.tx = text.matrix.ty = 0;
    Art* path = document.Find(text.path);
    if (path && path->path()) TransformPath(*path->path(), matrix, lineScale, withPaint);
    if (text.story) TransformCharacters(*text.story, range, matrix, lineScale, withPaint);
}

/// Tangents are ways and not places.
void TransformMesh(MeshData& mesh, const HostMatrix& matrix) {
    ForEachMeshPoint(mesh, [&](HostPoint& point) { point = Apply(matrix, point); });
    const HostMatrix turned{matrix.a, matrix.b, matrix.c, matrix.d, 0, 0};
    for (MeshVertex& vertex : mesh.vertices) {
        for (MeshSpoke& spoke : vertex.spokes) spoke.tangent = Apply(turned, spoke.tangent);
    }
}

} // namespace

void Document::Transform(Art& art, const HostMatrix& matrix, double lineScale, bool withPaint) {
    ForEachArt(art, [&](const Art& each) {
        Art& member = const_cast<Art&>(each);
        if (PathData* path = member.path())
            TransformPath(*path, matrix, lineScale, withPaint);
        else if (auto* placed = std::get_if<PlacedData>(&member.data))
            placed->matrix = Concat(matrix, placed->matrix);
        else if (auto* raster = std::get_if<RasterData>(&member.data))
            raster->matrix = Concat(matrix, raster->matrix);
        else if (auto* mesh = std::get_if<MeshData>(&member.data))
            TransformMesh(*mesh, matrix);
        else if (auto* text = std::get_if<TextFrameData>(&member.data))
            TransformText(*this, member, *text, matrix, lineScale, withPaint);
        // What a style draws in the art's place goes where the art goes.
        Art* drawn = member.styledArt == member.handle ? nullptr : Find(member.styledArt);
        if (drawn && !drawn->parent) Transform(*drawn, matrix, lineScale, withPaint);
    });
}

} // namespace workbench
