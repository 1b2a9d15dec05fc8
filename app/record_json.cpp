#include "app/record_json.h"

#include <algorithm>
#include <cstring>

#include "app/database_view.h"
#include "app/texts.h"
#include "plugin/objects/object_layout.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/record_layout.h"

namespace {

using Json = nlohmann::ordered_json;
using Bytes = std::span<uint8_t>;

Json Real(Fixed value) {
    return value == kAbsentFixed ? Json() : Json(value / 65536.0);
}

Json Point(const FixedPoint& p) {
    return Json::array({Real(p.x), Real(p.y)});
}

Json Matrix(const FixedMatrix& m) {
    return Json::array({Real(m.a), Real(m.b), Real(m.c), Real(m.d), Real(m.tx), Real(m.ty)});
}

Json Rect(const FixedRect& r) {
    return Json::array({Real(r.left), Real(r.top), Real(r.right), Real(r.bottom)});
}

Json PatternUse(const AidbPatternUse& use) {
    return {{"pattern", use.number},
            {"shiftDistance", Real(use.shiftDistance)},
            {"shiftAngle", Real(use.shiftAngle)},
            {"scale", Point(use.scale)},
            {"rotation", Real(use.rotation)},
            {"reflect", use.reflect},
            {"reflectAngle", Real(use.reflectAngle)},
            {"shearAngle", Real(use.shearAngle)},
            {"shearAxis", Real(use.shearAxis)},
            {"matrix", Matrix(use.matrix)}};
}

Json GradientUse(const AidbGradientUse& use) {
    return {{"gradient", use.number},
            {"origin", Point(use.origin)},
            {"angle", Real(use.angle)},
            {"length", Real(use.length)},
            {"matrix", Matrix(use.matrix)},
            {"highlightAngle", Real(use.highlightAngle)},
            {"highlightLength", Real(use.highlightLength)},
            {"translation", Point(use.translation)}};
}

Json Color(const AidbColor& color) {
    Json json = {{"kind", color.kind}, {"reference", color.reference}};
    switch (color.kind) {
        case kStoredGray:
            json["gray"] = Real(color.u.gray);
            break;
        case kStoredFour:
            json["cyan"] = Real(color.u.four.cyan);
            json["magenta"] = Real(color.u.four.magenta);
            json["yellow"] = Real(color.u.four.yellow);
            json["black"] = Real(color.u.four.black);
            break;
        case kStoredThree:
            json["red"] = Real(color.u.three.red);
            json["green"] = Real(color.u.three.green);
            json["blue"] = Real(color.u.three.blue);
            break;
        case kStoredPattern:
            json.update(PatternUse(color.u.pattern));
            break;
        case kStoredGradient:
            json.update(GradientUse(color.u.gradient));
            break;
        default:
            break;
    }
    return json;
}

Json Style(const AidbStyle& style) {
    Json dashes = Json::array();
    for (const Fixed dash : style.dashes) dashes.push_back(Real(dash));
    return {{"fillFlag", style.fillFlag},
            {"fill", Color(style.fill)},
            {"fillOverprint", style.fillOverprint},
            {"strokeFlag", style.strokeFlag},
            {"stroke", Color(style.stroke)},
            {"strokeOverprint", style.strokeOverprint},
            {"lineWidth", Real(style.lineWidth)},
            {"dashCount", style.dashCount},
            {"dashOffset", Real(style.dashOffset)},
            {"dashes", std::move(dashes)},
            {"lineCap", style.lineCap},
            {"lineJoin", style.lineJoin},
            {"miterLimit", Real(style.miterLimit)},
            {"clip", style.clip},
            {"lockClip", style.lockClip},
            {"evenOdd", style.evenOdd},
            {"resolution", Real(style.resolution)}};
}

Json Ramp(const AidbGradientRamp& ramp) {
    Json stops = Json::array();
    for (int i = 0; i < std::min<int>(ramp.stopCount, kMaxStops); ++i) {
        stops.push_back({{"midpoint", Real(ramp.stops[i].midpoint)},
                         {"location", Real(ramp.stops[i].location)},
                         {"color", Color(ramp.stops[i].color)}});
    }
    return {{"type", ramp.type}, {"stopCount", ramp.stopCount}, {"stops", std::move(stops)}};
}

Json Segment(const AidbSegment& segment) {
    return {{"anchor", Point(segment.anchor)},
            {"in", Point(segment.in)},
            {"out", Point(segment.out)},
            {"corner", segment.corner}};
}

void AddPath(Bytes object, Json* json) {
    const auto* path = ViewAt<AidbPathObject>(object);
    if (!path) return;
    (*json)["style"] = Style(path->style);
    (*json)["gradient"] = Ramp(path->block.ramp);
    (*json)["closed"] = path->closed;
    (*json)["segmentCount"] = path->segmentCount;
    Json segments = Json::array();
    for (const AidbSegment& segment : PathSegments(object)) segments.push_back(Segment(segment));
    (*json)["segments"] = std::move(segments);
}

void AddNoteFields(Bytes object, Json* json) {
    (*json)["text"] = Utf8OfCp932(NoteText(object));
    if (const AidbNoteStyle* style = FindNoteStyle(object))
        (*json)["rsop"] = {{"opacity", Real(style->opacity)}, {"style", Style(style->style)}};
    if (const AidbPluginNote* plugin = FindPluginNote(object)) {
        (*json)["pluginArt"] = {{"groupName", FieldText(plugin->groupName, sizeof plugin->groupName)},
                                {"major", plugin->major},
                                {"minor", plugin->minor},
                                {"dataBytes", plugin->dataBytes}};
    }
}

void AddRaster(Bytes object, Json* json) {
    const auto* raster = ViewAt<AidbRasterObject>(object);
    if (!raster) return;
    const AidbRasterInfo& info = raster->info;
    (*json)["info"] = {{"flags", info.flags},
                       {"bounds", Json::array({info.left, info.top, info.right, info.bottom})},
                       {"byteWidth", info.byteWidth},
                       {"colorSpace", info.colorSpace},
                       {"bitsPerPixel", info.bitsPerPixel},
                       {"originalColorSpace", info.originalColorSpace}};
    (*json)["matrix"] = Matrix(raster->matrix);
    (*json)["bounds"] = Rect(raster->bounds);
    (*json)["tileCount"] = raster->tileCount;
    (*json)["tileBytes"] = RasterTiles(object).size();
    if (const AidbRasterStyle* style = FindRasterStyle(object))
        (*json)["rsop"] = {{"style", Style(style->style)}};
}

Json Points(Bytes vertex, uint64_t offset, uint32_t count) {
    Json points = Json::array();
    for (const FixedPoint& point : ViewsAt<FixedPoint>(vertex, offset, count)) points.push_back(Point(point));
    return points;
}

Json MeshVertex(Bytes vertex) {
    const auto* start = ViewAt<AidbMeshVertex>(vertex);
    Json json = {{"size", start->size},
                 {"color", Color(start->color)},
                 {"position", Point(start->position)},
                 {"edgeCount", start->edgeCount},
                 {"edges", Json::array()}};
    uint64_t offset = sizeof(AidbMeshVertex);
    for (uint32_t i = 0; i < start->edgeCount; ++i) {
        const auto* edge = ViewAt<AidbMeshEdge>(vertex, offset);
        if (!edge || edge->size < sizeof *edge || edge->size > vertex.size() - offset) break;
        const uint64_t lists = offset + sizeof *edge;
        json["edges"].push_back(
            {{"size", edge->size},
             {"tangent", Point(edge->tangent)},
             {"flag", edge->flag},
             {"first", Points(vertex, lists, edge->firstCount)},
             {"second", Points(vertex, lists + uint64_t{8} * edge->firstCount, edge->secondCount)}});
        offset += edge->size;
    }
    return json;
}

void AddMesh(Bytes object, Json* json) {
    const auto* mesh = ViewAt<AidbMeshObject>(object);
    if (!mesh) return;
    (*json)["meshType"] = mesh->meshType;
    (*json)["grid"] = Json::array({mesh->gridI, mesh->gridJ});
    (*json)["vertexCount"] = mesh->vertexCount;
    (*json)["vertices"] = Json::array();
    uint64_t offset = sizeof *mesh;
    for (uint32_t i = 0; i < mesh->vertexCount; ++i) {
        const auto* vertex = ViewAt<AidbMeshVertex>(object, offset);
        if (!vertex || vertex->size < sizeof *vertex || vertex->size > object.size() - offset) break;
        (*json)["vertices"].push_back(MeshVertex(object.subspan(offset, vertex->size)));
        offset += vertex->size;
    }
}

Json Paragraph(const AidbTextPara& para) {
    const auto three = [](const Fixed(&values)[3]) {
        return Json::array({Real(values[0]), Real(values[1]), Real(values[2])});
    };
    return {{"wordSpacing", three(para.wordSpacing)},
            {"letterSpacing", three(para.letterSpacing)},
            {"firstLineIndent", Real(para.firstLineIndent)},
            {"startIndent", Real(para.startIndent)},
            {"endIndent", Real(para.endIndent)},
            {"justification", para.justification},
            {"burasagari", para.burasagari},
            {"kinsoku", para.kinsoku},
            {"autoHyphenation", para.autoHyphenation},
            {"hyphenBefore", para.hyphenBefore},
            {"hyphenAfter", para.hyphenAfter},
            {"hyphenLimit", para.hyphenLimit},
            {"repeatedCharacters", para.repeatedCharacters},
            {"kinsokuKind", para.kinsokuKind},
            {"bunriKinshi", para.bunriKinshi},
            {"burasagariForced", para.burasagariForced}};
}

Json Font(const AidbFontRef& font) {
    Json classes = Json::array();
    for (const uint16_t number : font.classFirst) classes.push_back(number);
    for (const uint16_t number : font.classRest) classes.push_back(number);
    const size_t length = std::min<size_t>(font.nameLength, sizeof font.name);
    return {{"name", FieldText(font.name, length)}, {"classes", std::move(classes)}};
}

Json Character(const AidbCharacter& character) {
    return {{"fontSize", Real(character.fontSize)},
            {"baselineShift", Real(character.baselineShift)},
            {"leading", Real(character.leading)},
            {"tracking", Real(character.tracking)},
            {"horizontalScale", Real(character.horizontalScale)},
            {"verticalScale", Real(character.verticalScale)},
            {"hasAlternateForm", character.hasAlternateForm},
            {"alternateForm", character.alternateForm}};
}

void AddText(Bytes object, Json* json) {
    const auto* text = ViewAt<AidbTextObject>(object);
    if (!text) return;
    (*json)["frameKind"] = text->frameKind;
    (*json)["orientation"] = text->orientation;
    (*json)["pathCount"] = text->pathCount;
    (*json)["runCount"] = text->runCount;
    (*json)["runs"] = Json::array();
    for (const AidbTextRun& run : TextRuns(object)) {
        (*json)["runs"].push_back({{"text", FieldText(run.text, sizeof run.text)},
                                   {"style", Style(run.style)},
                                   {"paragraph", Paragraph(run.para)},
                                   {"font", Font(run.font)},
                                   {"character", Character(run.character)},
                                   {"kerning", run.kerning}});
    }
    (*json)["paths"] = Json::array();
    uint64_t offset = text->pathsOffset;
    for (uint32_t i = 0; i < text->pathCount; ++i) {
        const auto* path = ViewAt<AidbTextPath>(object, offset);
        if (!path) break;
        Json segments = Json::array();
        for (const AidbSegment& segment :
             ViewsAt<AidbSegment>(object, offset + sizeof *path, path->segmentCount))
            segments.push_back(Segment(segment));
        (*json)["paths"].push_back(
            {{"matrix", Matrix(path->matrix)}, {"closed", path->closed}, {"segments", std::move(segments)}});
        offset += sizeof *path + sizeof(AidbSegment) * uint64_t{path->segmentCount};
    }
}

const char* TypeName(uint32_t type) {
    switch (type) {
        case kPathObject:
            return "path";
        case kTextObject:
            return "text";
        case kNoteObject:
            return "note";
        case kRasterObject:
            return "raster";
        case kMeshObject:
            return "mesh";
        default:
            return "unknown";
    }
}

Json Object(Bytes object) {
    const AidbObjectHeader& header = *HeaderOf(object);
    Json json = {{"type", header.type}, {"object", TypeName(header.type)}, {"size", header.size}};
    if (header.type != kNoteObject) {
        json["blendMode"] = header.blendMode;
        json["opacity"] = Real(header.opacity);
        json["isolated"] = header.isolated;
        json["knockout"] = header.knockout;
        json["alphaIsShape"] = header.alphaIsShape;
    }
    switch (header.type) {
        case kPathObject:
            AddPath(object, &json);
            break;
        case kTextObject:
            AddText(object, &json);
            break;
        case kNoteObject:
            AddNoteFields(object, &json);
            break;
        case kRasterObject:
            AddRaster(object, &json);
            break;
        case kMeshObject:
            AddMesh(object, &json);
            break;
        default:
            break;
    }
    return json;
}

} // namespace

Json RecordToJson(MemoryHandle record) {
    RecordHeader header;
    std::memcpy(&header, BlockBytes(record), sizeof header);
    Json json = {{"name", FieldText(header.name, sizeof header.name)},
                 {"kind", FieldText(header.kind, sizeof header.kind)},
                 {"comment", FieldText(header.comment, sizeof header.comment)},
                 {"created", header.created},
                 {"modified", header.modified},
                 {"width", WidthOf(header)},
                 {"height", HeightOf(header)},
                 {"objectCount", header.objectCount},
                 {"expandedBytes", header.size},
                 {"objects", Json::array()}};
    ObjectWalk walk(record);
    std::vector<uint8_t> aligned; // objects stand at any byte, and the structures are used in place
    for (Bytes object = walk.Next(); !object.empty(); object = walk.Next()) {
        aligned.assign(object.begin(), object.end());
        json["objects"].push_back(Object(aligned));
    }
    if (walk.damaged()) json["objects"].push_back({{"damaged", true}});
    return json;
}
