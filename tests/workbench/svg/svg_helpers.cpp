#include "tests/workbench/svg/svg_helpers.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "tests/support/text_art.h"
#include "workbench/document/story.h"

namespace workbench {
namespace {

std::string Exact(double value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value + 0.0).ptr};
}

template <typename... Values>
std::string Line(const char* name, Values... values) {
    std::string text = name;
    ((text += " " + Exact(static_cast<double>(values))), ...);
    return text + "\n";
}

std::string MatrixLine(const HostMatrix& m) {
    return Line("matrix", m.a, m.b, m.c, m.d, m.tx, m.ty);
}

std::string ArtText(const Document& document, const Art& art);

std::string PaintText(const Document& document, const HostColor& color) {
    if (color.kind == kColorGradient) {
        const HostGradientUse& use = color.u.gradient;
        const Gradient* gradient = document.Find(use.gradient);
        if (!gradient) return "no gradient\n";
        std::string text = "gradient " + gradient->name + Line(" type", gradient->type) +
                           Line("use", use.origin.x, use.origin.y, use.angle, use.length, use.highlightAngle,
                                use.highlightLength) +
                           MatrixLine(use.matrix);
        for (const HostGradientStop& stop : gradient->stops)
            text += Line("stop", stop.midpoint, stop.location, stop.opacity) + ColorOf(document, stop.color) +
                    "\n";
        return text;
    }
    if (color.kind == kColorPattern) {
        const HostPatternUse& use = color.u.pattern;
        const Pattern* pattern = document.Find(use.pattern);
        if (!pattern || !pattern->art) return "no pattern\n";
        return "pattern " + pattern->name + "\n" +
               Line("use", use.shiftDistance, use.shiftAngle, use.scale.x, use.scale.y, use.rotation,
                    use.reflect, use.reflectAngle, use.shearAngle, use.shearAxis) +
               MatrixLine(use.matrix) + "{\n" + ArtText(document, *pattern->art) + "}\n";
    }
    return ColorOf(document, color) + "\n";
}

std::string StyleText(const Document& document, const HostPathStyle& style) {
    std::string text = Line("painted", style.fillPaint, style.strokePaint);
    text += "fill " + PaintText(document, style.fill) + "stroke " + PaintText(document, style.stroke);
    text += Line("line", style.lineWidth, style.lineCap, style.lineJoin, style.miterLimit);
    text += Line("dash", style.dash.count, style.dash.offset);
    for (int i = 0; i < style.dash.count; ++i) text += Line("length", style.dash.lengths[i]);
    return text + Line("flags", style.fillOverprint, style.strokeOverprint, style.clip, style.lockClip,
                       style.evenOdd, style.resolution);
}

std::string RasterText(const RasterData& raster) {
    const HostRasterRecord& r = raster.record;
    std::string text = "raster " + raster.file + "\n" + MatrixLine(raster.matrix);
    text +=
        Line("record", r.flags, r.left, r.top, r.right, r.bottom, r.byteWidth, r.colorSpace, r.bitsPerPixel,
             r.originalColorSpace, raster.box.left, raster.box.top, raster.box.right, raster.box.bottom);
    for (const uint8_t byte : raster.pixels)
        text += static_cast<char>('0' + byte / 16), text += static_cast<char>('0' + byte % 16);
    return text + "\n";
}

std::string MeshText(const Document& document, const MeshData& mesh) {
    std::string text = Line("mesh", mesh.type, mesh.gridI, mesh.gridJ);
    for (const MeshVertex& vertex : mesh.vertices) {
        text += Line("corner", vertex.position.x, vertex.position.y) + ColorOf(document, vertex.color) + "\n";
        for (const MeshSpoke& spoke : vertex.spokes)
            text += Line("spoke", spoke.tangent.x, spoke.tangent.y, spoke.smooth);
    }
    for (const auto* edges : {&mesh.edgesI, &mesh.edgesJ}) {
        for (const MeshEdge& edge : *edges) {
            text += "edge\n";
            for (const HostPoint& point : edge) text += Line("point", point.x, point.y);
        }
    }
    return text;
}

std::string TextFrameText(const Document& document, const Art& art, const TextFrameData& frame) {
    const auto place = std::ranges::find(frame.story->frames, art.handle) - frame.story->frames.begin();
    std::string text = Line("text", frame.frameKind, frame.orientation, frame.pathStart,
                            static_cast<double>(place), static_cast<double>(frame.story->frames.size())) +
                       MatrixLine(frame.matrix) + DescribeStory(*frame.story);
    const CharacterAttributes* last = nullptr;
    for (const CharacterStyle& style : frame.story->styles) {
        if (style.character.get() == last) continue;
        last = style.character.get();
        text += StyleText(document, PaintOf(*last));
    }
    if (const Art* path = document.Find(frame.path)) text += "on " + ArtText(document, *path);
    return text;
}

std::string ArtText(const Document& document, const Art& art) {
    std::string text =
        Line("art", art.kind, art.selected, art.locked, art.hidden) + "name " + art.name + "\n";
    text += Line("blend", art.blend.mode, art.blend.opacity, art.blend.isolated, art.blend.knockout,
                 art.blend.alphaIsShape);
    if (const GroupData* group = art.group()) text += Line("clipped", group->clipped);
    if (const PathData* path = art.path()) {
        text += Line("path", path->closed, path->guide) + StyleText(document, path->style);
        for (const HostPathSegment& s : path->segments)
            text += Line("segment", s.anchor.x, s.anchor.y, s.in.x, s.in.y, s.out.x, s.out.y, s.corner);
    }
    for (const Tag& tag : art.tags) text += "tag " + tag.name + ":" + tag.type + ":" + tag.value + "\n";
    if (const auto* raster = std::get_if<RasterData>(&art.data)) text += RasterText(*raster);
    if (const auto* mesh = std::get_if<MeshData>(&art.data)) text += MeshText(document, *mesh);
    if (const auto* frame = std::get_if<TextFrameData>(&art.data))
        text += TextFrameText(document, art, *frame);
    if (const auto* plugin = std::get_if<PluginArtData>(&art.data)) {
        text += "plug-in " + plugin->groupName + Line("", plugin->major, plugin->minor);
        text.append(plugin->data.begin(), plugin->data.end());
    }
    const auto* plugin = art.parent ? std::get_if<PluginArtData>(&art.parent->data) : nullptr;
    if (plugin) text += Line("part", plugin->edit == art.handle, plugin->result == art.handle);
    if (const ArtStyle* style = document.Find(art.artStyle))
        text += "style " + StyleText(document, style->paint);
    if (const Art* drawn = document.Find(art.styledArt)) text += "drawn " + ArtText(document, *drawn);
    text += "{\n";
    for (const Art* child = art.firstChild; child; child = child->below) text += ArtText(document, *child);
    return text + "}\n";
}

std::string Rounded(double value) {
    const double rounded = std::round(value * 1e6) / 1e6;
    return Exact(rounded == 0 ? 0 : rounded);
}

std::string PointText(HostPoint point) {
    return Rounded(point.x) + "," + Rounded(point.y);
}

std::string PieceText(const HostPathSegment& from, const HostPathSegment& to) {
    const auto same = [](HostPoint a, HostPoint b) { return a.x == b.x && a.y == b.y; };
    if (same(from.out, from.anchor) && same(to.in, to.anchor)) return " L" + PointText(to.anchor);
    return " C" + PointText(from.out) + " " + PointText(to.in) + " " + PointText(to.anchor);
}

} // namespace

ReadFile ReadText(const std::string& text) {
    ReadFile file;
    file.document = ReadSvg({reinterpret_cast<const uint8_t*>(text.data()), text.size()},
                            "some/where/file.svg", &file.report, &file.error);
    return file;
}

ReadFile ReadBody(const std::string& body) {
    ReadFile file = ReadText(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        "width='100pt' height='100pt' viewBox='0 0 100 100'>" +
        body + "</svg>");
    EXPECT_TRUE(file.document) << file.error;
    if (!file.document) file.document = std::make_unique<Document>();
    return file;
}

const Art* OnlyArt(const Document& document) {
    static const Art nothing{};
    const Art* root = document.LayerAt(0).root;
    const bool one = document.LayerCount() == 1 && root->firstChild && root->firstChild == root->lastChild;
    EXPECT_TRUE(one) << Structure(document);
    return one ? root->firstChild : &nothing;
}

const Art* Named(const Document& document, const std::string& name) {
    const Art* found = nullptr;
    for (size_t i = 0; i < document.LayerCount(); ++i)
        ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            if (!found && art.name == name) found = &art;
        });
    return found;
}

std::string Outline(const Art& art) {
    const PathData* path = art.path();
    if (!path || path->segments.empty()) return "no path";
    const auto& segments = path->segments;
    std::string text = "M" + PointText(segments.front().anchor);
    for (size_t i = 1; i < segments.size(); ++i) text += PieceText(segments[i - 1], segments[i]);
    if (!path->closed) return text;
    const std::string back = PieceText(segments.back(), segments.front());
    return text + (back[1] == 'C' ? back : "") + " Z";
}

std::string Structure(const Art& art) {
    if (art.kind == kArtPath) return "p";
    if (art.kind == kArtTextFrame) return "t";
    const bool clipped = art.group() && art.group()->clipped;
    std::string text = art.kind == kArtCompoundPath ? "c(" : clipped ? "clip(" : "g(";
    for (const Art* child = art.firstChild; child; child = child->below)
        text += Structure(*child) + (child->below ? "," : "");
    return text + ")";
}

std::string Structure(const Document& document) {
    std::string text;
    for (size_t i = 0; i < document.LayerCount(); ++i)
        text += (i ? " " : "") + Structure(*document.LayerAt(i).root);
    return text;
}

std::string ColorOf(const Document& document, const HostColor& color) {
    switch (color.kind) {
        case kColorGray:
            return "gray " + Exact(color.u.gray.gray);
        case kColorFour:
            return "four " + Exact(color.u.four.cyan) + " " + Exact(color.u.four.magenta) + " " +
                   Exact(color.u.four.yellow) + " " + Exact(color.u.four.black);
        case kColorThree:
            return "three " + Exact(color.u.three.red) + " " + Exact(color.u.three.green) + " " +
                   Exact(color.u.three.blue);
        case kColorCustom: {
            const CustomColor* custom = document.Find(color.u.custom.color);
            if (!custom) return "no custom colour";
            std::string text = "custom " + custom->name + " " + Exact(color.u.custom.tint) + " of " +
                               std::to_string(custom->definition.kind);
            for (const double value : custom->definition.values) text += " " + Exact(value);
            return text + " " + std::to_string(custom->definition.flags);
        }
        default:
            return "other";
    }
}

std::string DocumentText(const Document& document) {
    std::string text = "title " + document.title + "\nsubject " + document.subject + "\ndescription " +
                       document.description + "\n";
    text += Line("page", document.page.left, document.page.top, document.page.right, document.page.bottom);
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        const Layer& layer = document.LayerAt(i);
        text +=
            "layer " + layer.title + Line("", layer.visible, layer.locked) + ArtText(document, *layer.root);
    }
    return text;
}

} // namespace workbench
