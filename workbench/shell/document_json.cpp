#include "workbench/shell/document_json.h"

#include "workbench/shell/document_json_raster.h"
#include "workbench/shell/document_json_text.h"

namespace workbench {
namespace {

using Json = nlohmann::ordered_json;

/// Art nested deeper than this is counted, not written: JSON readers have a limit of their own.
constexpr int kDeepestJson = 400;

Json PointJson(const HostPoint& point) {
    return Json::array({point.x, point.y});
}

Json RectJson(const HostRect& rect) {
    return Json::array({rect.left, rect.top, rect.right, rect.bottom});
}

Json MatrixJson(const HostMatrix& m) {
    return Json::array({m.a, m.b, m.c, m.d, m.tx, m.ty});
}

/// Texts go in as they are; whoever writes the dump replaces bytes that are no UTF-8.
Json TextJson(const std::string& text) {
    return Json(text);
}

const char* KindName(int32_t kind) {
    switch (kind) {
        case kArtGroup:
            return "group";
        case kArtPath:
            return "path";
        case kArtCompoundPath:
            return "compound path";
        case kArtPlaced:
            return "placed";
        case kArtRaster:
            return "raster";
        case kArtPlugin:
            return "plug-in art";
        case kArtMesh:
            return "mesh";
        case kArtTextFrame:
            return "text frame";
        default:
            return "unknown";
    }
}

class Dump {
public:
    explicit Dump(const Document& document) : document_(document) {}

    Json ArtOf(const Art& art, int depth) const {
        Json json;
        json["kind"] = KindName(art.kind);
        if (!art.name.empty()) json["name"] = TextJson(art.name);
        if (art.locked) json["locked"] = true;
        if (art.hidden) json["hidden"] = true;
        json["blend"] = {{"mode", art.blend.mode},
                         {"opacity", art.blend.opacity},
                         {"isolated", art.blend.isolated},
                         {"knockout", art.blend.knockout},
                         {"alphaIsShape", art.blend.alphaIsShape}};
        for (const Tag& tag : art.tags) {
            json["tags"].push_back(
                {{"name", TextJson(tag.name)}, {"type", TextJson(tag.type)}, {"value", TextJson(tag.value)}});
        }
        if (const ArtStyle* style = document_.Find(art.artStyle)) json["artStyle"] = StyleOf(style->paint);
        AddData(art, &json);
        if (const Art* styled =
                art.styledArt && art.styledArt != art.handle ? document_.Find(art.styledArt) : nullptr) {
            if (depth < kDeepestJson) json["styledArt"] = ArtOf(*styled, depth + 1);
        }
        if (art.IsContainer()) AddMembers(art, depth, &json);
        return json;
    }

    Json ColorOf(const HostColor& color, int depth) const {
        switch (color.kind) {
            case kColorGray:
                return {{"kind", "gray"}, {"gray", color.u.gray.gray}};
            case kColorFour:
                return {{"kind", "four"},
                        {"cyan", color.u.four.cyan},
                        {"magenta", color.u.four.magenta},
                        {"yellow", color.u.four.yellow},
                        {"black", color.u.four.black}};
            case kColorThree:
                return {{"kind", "three"},
                        {"red", color.u.three.red},
                        {"green", color.u.three.green},
                        {"blue", color.u.three.blue}};
            case kColorCustom:
                return CustomOf(color);
            case kColorPattern:
                return PatternOf(color.u.pattern, depth);
            case kColorGradient:
                return GradientOf(color.u.gradient, depth);
            default:
                return {{"kind", color.kind}};
        }
    }

private:
    void AddMembers(const Art& art, int depth, Json* json) const {
        Json members = Json::array();
        if (depth >= kDeepestJson) {
            size_t count = 0;
            for (const Art* member = art.firstChild; member; member = member->below) ++count;
            (*json)["membersNotWritten"] = count;
            return;
        }
        for (const Art* member = art.firstChild; member; member = member->below) {
            members.push_back(ArtOf(*member, depth + 1));
        }
        (*json)["members"] = std::move(members);
    }

    void AddData(const Art& art, Json* json) const {
        if (const GroupData* group = art.group()) (*json)["clipped"] = group->clipped;
        if (const PathData* path = art.path()) AddPath(*path, json);
        if (const auto* placed = std::get_if<PlacedData>(&art.data)) {
            (*json)["file"] = TextJson(placed->file);
            (*json)["matrix"] = MatrixJson(placed->matrix);
            (*json)["size"] = Json::array({placed->width, placed->height});
            (*json)["options"] = Json::array({placed->method, placed->alignment, placed->clip});
        }
        if (const auto* raster = std::get_if<RasterData>(&art.data)) AddRasterJson(*raster, json);
        if (const auto* plugin = std::get_if<PluginArtData>(&art.data)) {
            (*json)["pluginGroup"] = TextJson(plugin->groupName);
            (*json)["version"] = Json::array({plugin->major, plugin->minor});
            (*json)["data"] = plugin->data;
            (*json)["editArt"] = MemberIndex(art, plugin->edit);
            (*json)["resultArt"] = MemberIndex(art, plugin->result);
        }
        if (const auto* mesh = std::get_if<MeshData>(&art.data)) AddMesh(*mesh, json);
        if (art.kind == kArtTextFrame)
            AddTextJson(
                document_, art, [this](const HostColor& color) { return ColorOf(color, 0); }, json);
    }

    /// Null if it is no member.
    static Json MemberIndex(const Art& art, ArtHandle handle) {
        size_t index = 0;
        for (const Art* member = art.firstChild; member; member = member->below, ++index)
            if (member->handle == handle) return index;
        return {};
    }

    void AddMesh(const MeshData& mesh, Json* json) const {
        (*json)["meshType"] = mesh.type == kMeshRing ? "ring" : "grid";
        (*json)["grid"] = Json::array({mesh.gridI, mesh.gridJ});
        Json vertices = Json::array();
        for (const MeshVertex& vertex : mesh.vertices) {
            Json one = {{"position", PointJson(vertex.position)}, {"color", ColorOf(vertex.color, 0)}};
            for (const MeshSpoke& spoke : vertex.spokes)
                one["edges"].push_back({{"tangent", PointJson(spoke.tangent)}, {"smooth", spoke.smooth}});
            vertices.push_back(std::move(one));
        }
        (*json)["vertices"] = std::move(vertices);
        for (const auto& [name, edges] : {std::pair("edgesI", &mesh.edgesI), {"edgesJ", &mesh.edgesJ}}) {
            Json all = Json::array();
            for (const MeshEdge& edge : *edges) {
                Json points = Json::array();
                for (const HostPoint& point : edge) points.push_back(PointJson(point));
                all.push_back(std::move(points));
            }
            (*json)[name] = std::move(all);
        }
    }

    void AddPath(const PathData& path, Json* json) const {
        (*json)["closed"] = path.closed;
        if (path.guide) (*json)["guide"] = true;
        Json segments = Json::array();
        for (const HostPathSegment& segment : path.segments) {
            segments.push_back({{"anchor", PointJson(segment.anchor)},
                                {"in", PointJson(segment.in)},
                                {"out", PointJson(segment.out)},
                                {"corner", segment.corner}});
        }
        (*json)["segments"] = std::move(segments);
        (*json)["style"] = StyleOf(path.style);
    }

    Json StyleOf(const HostPathStyle& style) const {
        Json json;
        json["fill"] = style.fillPaint ? ColorOf(style.fill, 0) : Json();
        json["stroke"] = style.strokePaint ? ColorOf(style.stroke, 0) : Json();
        json["fillOverprint"] = style.fillOverprint;
        json["strokeOverprint"] = style.strokeOverprint;
        json["lineWidth"] = style.lineWidth;
        json["dash"] = {{"offset", style.dash.offset}, {"lengths", Json::array()}};
        for (int i = 0; i < style.dash.count && i < 6; ++i)
            json["dash"]["lengths"].push_back(style.dash.lengths[i]);
        json["lineCap"] = style.lineCap;
        json["lineJoin"] = style.lineJoin;
        json["miterLimit"] = style.miterLimit;
        json["clip"] = style.clip;
        json["lockClip"] = style.lockClip;
        json["evenOdd"] = style.evenOdd;
        json["resolution"] = style.resolution;
        return json;
    }

    Json CustomOf(const HostColor& color) const {
        Json json = {{"kind", "custom"}, {"tint", color.u.custom.tint}};
        if (const CustomColor* ink = document_.Find(color.u.custom.color)) {
            json["name"] = TextJson(ink->name);
            json["form"] = ink->definition.kind;
            json["values"] = ink->definition.values;
            json["flags"] = ink->definition.flags;
        }
        return json;
    }

    Json GradientOf(const HostGradientUse& use, int depth) const {
        Json json = {{"kind", "gradient"},
                     {"origin", PointJson(use.origin)},
                     {"angle", use.angle},
                     {"length", use.length},
                     {"matrix", MatrixJson(use.matrix)},
                     {"highlightAngle", use.highlightAngle},
                     {"highlightLength", use.highlightLength}};
        if (const Gradient* gradient = document_.Find(use.gradient)) {
            json["type"] = gradient->type == kGradientRadial ? "radial" : "linear";
            for (const HostGradientStop& stop : gradient->stops) {
                json["stops"].push_back({{"midpoint", stop.midpoint},
                                         {"location", stop.location},
                                         {"color", ColorOf(stop.color, depth)},
                                         {"opacity", stop.opacity}});
            }
        }
        return json;
    }

    Json PatternOf(const HostPatternUse& use, int depth) const {
        Json json = {{"kind", "pattern"},
                     {"shift", Json::array({use.shiftDistance, use.shiftAngle})},
                     {"scale", PointJson(use.scale)},
                     {"rotation", use.rotation},
                     {"reflect", use.reflect},
                     {"reflectAngle", use.reflectAngle},
                     {"shear", Json::array({use.shearAngle, use.shearAxis})},
                     {"matrix", MatrixJson(use.matrix)}};
        const Pattern* pattern = document_.Find(use.pattern);
        // A pattern can't hold itself, but a damaged document could; patternDepth_ ends that.
        if (pattern && pattern->art && patternDepth_ < 8 && depth < kDeepestJson) {
            ++patternDepth_;
            json["art"] = ArtOf(*pattern->art, depth + 1);
            --patternDepth_;
        }
        return json;
    }

    const Document& document_;
    mutable int patternDepth_ = 0;
};

} // namespace

Json ArtJson(const Document& document, const Art& art) {
    return Dump(document).ArtOf(art, 0);
}

Json DocumentJson(const Document& document) {
    const Dump dump(document);
    Json json;
    json["schema"] = kDocumentSchema;
    json["title"] = TextJson(document.title);
    json["subject"] = TextJson(document.subject);
    json["description"] = TextJson(document.description);
    json["page"] = RectJson(document.page);
    json["layers"] = Json::array();
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        const Layer& layer = document.LayerAt(i);
        Json art = Json::array();
        for (const Art* member = layer.root->firstChild; member; member = member->below) {
            art.push_back(dump.ArtOf(*member, 0));
        }
        json["layers"].push_back({{"title", TextJson(layer.title)},
                                  {"visible", layer.visible},
                                  {"locked", layer.locked},
                                  {"art", std::move(art)}});
    }
    json["swatches"] = Json::array();
    for (size_t i = 0; i < document.SwatchCount(); ++i) {
        const Swatch& swatch = document.SwatchAt(i);
        json["swatches"].push_back(
            {{"name", TextJson(swatch.name)}, {"color", dump.ColorOf(swatch.color, 0)}});
    }
    return json;
}

} // namespace workbench
