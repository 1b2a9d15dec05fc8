#include "workbench/svg/svg_writer.h"

#include <algorithm>

#include "workbench/svg/computed_style.h"
#include "workbench/svg/mesh_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/picture_links.h"
#include "workbench/svg/produced_art.h"
#include "workbench/svg/raster_words.h"
#include "workbench/svg/svg_limits.h"
#include "workbench/svg/svg_text.h"
#include "workbench/svg/tag_words.h"
#include "workbench/svg/text_words.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

/// Deeper art than the reader takes would be lost there; here it would cost the stack.
constexpr int kMaxWriteDepth = 2000;

bool IsPathLike(const Art& art) {
    return art.kind == kArtPath || art.kind == kArtCompoundPath;
}

bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsId(std::string_view text) {
    return !text.empty() && IsNameStart(text.front()) && std::ranges::all_of(text, [](char c) {
        return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    });
}

/// The name as id where it can be one and isn't taken.
void AppendName(WriteContext& context, const std::string& name, std::string* markup) {
    if (name.empty()) return;
    if (IsId(name) && !name.starts_with("vlq-") && context.ids.insert(name).second)
        AppendAttribute(markup, "id", name);
    else
        AppendOwn(markup, kOwnName, name);
}

std::string BlendAttributes(const Blend& blend) {
    std::string text, css;
    if (blend.opacity != 1) AppendAttribute(&text, "opacity", NumbersText(blend.opacity));
    if (blend.mode != kBlendNormal) css += "mix-blend-mode:" + std::string(BlendModeName(blend.mode)) + ";";
    if (blend.isolated) css += "isolation:isolate;";
    if (!css.empty()) AppendAttribute(&text, "style", css);
    if (blend.knockout) AppendOwn(&text, kOwnKnockout, std::to_string(blend.knockout));
    if (blend.alphaIsShape) AppendOwn(&text, kOwnAlphaIsShape, "true");
    return text;
}

/// What every kind of art can have.
void AppendNature(WriteContext& context, const Art& art, bool hidden, std::string* markup) {
    AppendName(context, art.name, markup);
    if (hidden) AppendAttribute(markup, "display", "none");
    if (art.locked) AppendAttribute(markup, "sodipodi:insensitive", "true");
    *markup += TagAttributes(art.tags);
    if (const std::string style = ArtStyleReference(context, art); !style.empty())
        AppendOwn(markup, kOwnArtStyle, style);
}

std::string NatureOf(WriteContext& context, const Art& art) {
    std::string text;
    AppendNature(context, art, art.hidden, &text);
    return text + BlendAttributes(art.blend);
}

/// Whether a clipping path says no more than that it clips.
bool OnlyClips(WriteContext& context, const HostPathStyle& style) {
    const HostPathStyle plain = ClippingStyle(style.evenOdd);
    return !style.fillPaint && !style.strokePaint &&
           PaintAttributes(context, style, plain) == PaintAttributes(context, plain, plain);
}

void WritePath(WriteContext& context, const Art& art, std::string* markup) {
    const Art* top = nullptr;
    OutlinesOf(art, &top);
    if (!top) {
        context.losses["empty path"]++;
        return;
    }
    // The members of a compound path are one element.
    for (const Art* member = art.firstChild; member; member = member->below) {
        if (!member->tags.empty()) context.losses["tag"] += static_cast<int>(member->tags.size());
    }
    const PathData& path = *top->path();
    std::string text = "<path" + OutlineAttributes(context, art);
    AppendNature(context, art, art.hidden || path.guide, &text);
    text += BlendAttributes(top->blend);
    text += PaintAttributes(context, path.style, DefaultPathStyle());
    if (path.style.evenOdd) AppendAttribute(&text, "fill-rule", "evenodd");
    if (path.style.clip) AppendOwn(&text, kOwnClip, "true");
    if (path.guide) AppendOwn(&text, kOwnGuide, "true");
    if (path.guide && art.hidden) AppendOwn(&text, kOwnHidden, "true");
    *markup += text + "/>\n";
}

/// Defines the clip path that `path` is for its group, and gives its id.
/// @param top  the member of `path` whose style counts
std::string DefineClip(WriteContext& context, const Art& path, const Art& top) {
    const HostPathStyle& style = top.path()->style;
    std::string text = "<path" + OutlineAttributes(context, path);
    AppendNature(context, path, false, &text);
    if (style.evenOdd) AppendAttribute(&text, "clip-rule", "evenodd");
    if (!OnlyClips(context, style) || !(top.blend == Blend{})) {
        AppendOwn(&text, kOwnPainted, "true");
        text += BlendAttributes(top.blend) + PaintAttributes(context, style, DefaultPathStyle());
    }
    std::string id = context.NewId("clip");
    context.defs += "<clipPath id=\"" + id + "\">" + text + "/></clipPath>\n";
    return id;
}

void WriteMembers(WriteContext& context, const Art& container, const Art* except, std::string* markup) {
    for (const Art* child = container.lastChild; child; child = child->above)
        if (child != except) WriteArt(context, *child, markup);
}

void WriteGroup(WriteContext& context, const Art& art, std::string* markup) {
    std::string text = "<g";
    AppendNature(context, art, art.hidden, &text);
    text += BlendAttributes(art.blend);
    const Art* clip = nullptr;
    if (const GroupData* group = art.group(); group && group->clipped) {
        const Art* top = nullptr;
        if (art.firstChild && IsPathLike(*art.firstChild)) OutlinesOf(*art.firstChild, &top);
        if (top && top->path()->style.clip) {
            clip = art.firstChild;
            AppendAttribute(&text, "clip-path", "url(#" + DefineClip(context, *clip, *top) + ")");
        } else {
            AppendOwn(&text, kOwnClipped, "true");
        }
    }
    if (art.firstChild == art.lastChild && art.firstChild == clip) AppendOwn(&text, kOwnEmpty, "true");
    *markup += text + ">\n";
    WriteMembers(context, art, clip, markup);
    *markup += "</g>\n";
}

void WriteLayer(WriteContext& context, const Layer& layer, std::string* markup) {
    const HostRect& page = context.document.page;
    std::string text = "<g inkscape:groupmode=\"layer\"";
    AppendAttribute(&text, "inkscape:label", layer.title);
    AppendName(context, layer.root->name, &text);
    if (!layer.visible) AppendAttribute(&text, "display", "none");
    if (layer.locked) AppendAttribute(&text, "sodipodi:insensitive", "true");
    text += TagAttributes(layer.root->tags);
    // y grows upward in the document; so the numbers in the file are the document's own.
    AppendAttribute(&text, "transform", MatrixText({1, 0, 0, -1, -page.left, page.top}));
    *markup += text + BlendAttributes(layer.root->blend) + ">\n";
    WriteMembers(context, *layer.root, nullptr, markup);
    *markup += "</g>\n";
}

std::string Metadata(const Document& document) {
    std::string text = "<metadata><rdf:RDF><cc:Work rdf:about=\"\"><dc:format>image/svg+xml</dc:format>";
    text += "<dc:title>" + Escaped(document.title) + "</dc:title>";
    if (!document.subject.empty()) {
        text += "<dc:subject><rdf:Bag>";
        for (size_t at = 0;;) {
            const size_t stop = document.subject.find(", ", at);
            text += "<rdf:li>" + Escaped(document.subject.substr(at, stop - at)) + "</rdf:li>";
            if (stop == std::string::npos) break;
            at = stop + 2;
        }
        text += "</rdf:Bag></dc:subject>";
    }
    if (!document.description.empty())
        text += "<dc:description>" + Escaped(document.description) + "</dc:description>";
    return text + "</cc:Work></rdf:RDF></metadata>\n";
}

std::string Head(const Document& document) {
    const HostRect& page = document.page;
    const double width = page.right - page.left, height = page.top - page.bottom;
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\""
        " xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
        "xmlns:cc=\"http://creativecommons.org/ns#\""
        " xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
        " xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\""
        " xmlns:sodipodi=\"http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd\""
        " xmlns:vlq=\"" +
        std::string(kDocumentNamespace) + "\" version=\"1.1\"";
    AppendAttribute(&text, "width", NumbersText(width) + "pt");
    AppendAttribute(&text, "height", NumbersText(height) + "pt");
    AppendAttribute(&text, "viewBox", NumbersText(0, 0, width, height));
    if (page.left != 0 || page.bottom != 0)
        AppendOwn(&text, kOwnPage, NumbersText(page.left, page.top, page.right, page.bottom));
    return text + ">\n";
}

/// The definitions of custom colours in use, one of each.
struct InksInUse {
    WriteContext& context;
    std::string markup;
    std::set<std::string> names;
    std::set<const void*> visited; ///< patterns and styled art

    void AddColor(const HostColor& color) {
        const Document& document = context.document;
        if (color.kind == kColorGradient) {
            if (const Gradient* gradient = document.Find(color.u.gradient.gradient))
                for (const HostGradientStop& stop : gradient->stops) AddColor(stop.color);
        } else if (color.kind == kColorPattern) {
            const Pattern* pattern = document.Find(color.u.pattern.pattern);
            if (pattern && pattern->art && visited.insert(pattern).second) AddTree(*pattern->art);
        } else if (color.kind == kColorCustom) {
            const CustomColor* custom = document.Find(color.u.custom.color);
            if (!custom || !names.insert(custom->name).second) return;
            markup += "<vlq:" + std::string(kOwnColor);
            AppendAttribute(&markup, "name", custom->name);
            AppendAttribute(&markup, "definition", DefinitionText(custom->definition));
            markup += "/>\n";
        }
    }

    void AddStyle(const HostPathStyle& style) {
        AddColor(style.fill);
        AddColor(style.stroke);
    }

    void AddTree(const Art& root) {
        ForEachArt(root, [this](const Art& art) {
            if (const PathData* path = art.path()) AddStyle(path->style);
            if (const ArtStyle* style = context.document.Find(art.artStyle)) AddStyle(style->paint);
            if (const auto* text = std::get_if<TextFrameData>(&art.data); text && text->story)
                ForEachTextColor(*text->story, [this](const HostColor& color) { AddColor(color); });
            if (const auto* mesh = std::get_if<MeshData>(&art.data))
                for (const MeshVertex& vertex : mesh->vertices) AddColor(vertex.color);
            const Art* drawn = StyledArtOf(context.document, art);
            if (drawn && visited.insert(drawn).second) AddTree(*drawn);
        });
    }
};

/// Upside down in the numbers, because the layer's y grows upward: exact when read back.
void WritePlaced(WriteContext& context, const Art& art, const PlacedData& placed, std::string* markup) {
    if (placed.file.empty()) {
        context.losses["placed file"]++;
        return;
    }
    const HostMatrix& m = placed.matrix;
    std::string text = "<image";
    AppendNature(context, art, art.hidden, &text);
    text += BlendAttributes(art.blend);
    AppendAttribute(&text, "y", NumbersText(-placed.height));
    AppendAttribute(&text, "width", NumbersText(placed.width));
    AppendAttribute(&text, "height", NumbersText(placed.height));
    AppendAttribute(&text, "preserveAspectRatio", "none");
    AppendAttribute(&text, "transform", MatrixText({m.a, m.b, -m.c, -m.d, m.tx, m.ty}));
    if (placed.method || placed.alignment || placed.clip)
        AppendOwn(&text, kOwnPlace, NumbersText(placed.method, placed.alignment, placed.clip));
    AppendAttribute(&text, "xlink:href", LinkTo(placed.file, context.folder));
    *markup += text + "/>\n";
}

/// The art itself, whatever its style draws in its place.
void WriteOwn(WriteContext& context, const Art& art, std::string* markup) {
    if (IsPathLike(art)) {
        WritePath(context, art, markup);
    } else if (art.kind == kArtGroup) {
        WriteGroup(context, art, markup);
    } else if (const auto* placed = std::get_if<PlacedData>(&art.data)) {
        WritePlaced(context, art, *placed, markup);
    } else if (art.kind == kArtRaster) {
        WriteRaster(context, art, NatureOf(context, art), markup);
    } else if (const auto* mesh = std::get_if<MeshData>(&art.data)) {
        WriteMesh(context, *mesh, NatureOf(context, art), markup);
    } else if (art.kind == kArtTextFrame) {
        WriteText(context, art, NatureOf(context, art), markup);
    } else if (art.kind == kArtPlugin) {
        WritePluginArt(context, art, NatureOf(context, art), markup);
    } else {
        context.losses["art"]++;
    }
}

} // namespace

Subpaths OutlinesOf(const Art& art, const Art** top) {
    Subpaths subpaths;
    *top = nullptr;
    const auto add = [&](const Art& member) {
        const PathData* path = member.path();
        if (!path || path->segments.empty()) return;
        subpaths.push_back({path->segments, path->closed});
        *top = &member;
    };
    if (art.kind == kArtPath) add(art);
    for (const Art* member = art.lastChild; member; member = member->above) add(*member);
    return subpaths;
}

std::string OutlineAttributes(WriteContext&, const Art& art) {
    const Art* top = nullptr;
    const Subpaths subpaths = OutlinesOf(art, &top);
    const std::string data = PathDataText(subpaths);
    std::string text;
    AppendAttribute(&text, "d", data);
    bool damaged = false, overflow = false;
    const Subpaths read = ParsePathData(data, kMaxSegments, &damaged, &overflow);
    if (SegmentsText(read, {}) != SegmentsText(subpaths, {}))
        AppendOwn(&text, kOwnSegments, SegmentsText(subpaths, data));
    if (art.kind == kArtCompoundPath && subpaths.size() == 1) AppendOwn(&text, kOwnCompound, "true");
    return text;
}

void WriteArt(WriteContext& context, const Art& art, std::string* markup) {
    if (context.depth == kMaxWriteDepth) {
        context.losses["nesting"]++;
        return;
    }
    ++context.depth;
    if (const Art* drawn = StyledArtOf(context.document, art)) {
        std::string own;
        WriteOwn(context, art, &own);
        if (!own.empty()) WriteStyledArt(context, art, *drawn, own, markup);
    } else {
        WriteOwn(context, art, markup);
    }
    --context.depth;
}

std::string WriteSvg(const Document& document, std::map<std::string, int>* losses,
                     const std::string& folder) {
    std::map<std::string, int> ownLosses;
    WriteContext context{document, losses ? *losses : ownLosses, folder, {}, {}, {}, {}, {}, {}, 0, 0};
    std::string body;
    InksInUse inks{context, {}, {}, {}};
    for (size_t i = document.LayerCount(); i-- > 0;) {
        inks.AddTree(*document.LayerAt(i).root);
        WriteLayer(context, document.LayerAt(i), &body);
    }
    std::string text = Head(document) + "<title>" + Escaped(document.title) + "</title>\n";
    if (!document.description.empty()) text += "<desc>" + Escaped(document.description) + "</desc>\n";
    text += Metadata(document);
    if (!inks.markup.empty() || !context.defs.empty())
        text += "<defs>\n" + inks.markup + context.defs + "</defs>\n";
    return text + body + "</svg>\n";
}

} // namespace workbench
