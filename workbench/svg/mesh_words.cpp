#include "workbench/svg/mesh_words.h"

#include <algorithm>
#include <cmath>

#include "workbench/document/color.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr char kVertex[] = "vertex";
constexpr char kEdge[] = "edge";

// Writing

/// The picture for other programs has about so many pieces, and at most kFinest in a patch's side.
constexpr double kPieces = 1024;
constexpr int kFinest = 8;

void AppendRounded(std::string* text, HostPoint point) {
    for (const double value : {point.x, point.y}) {
        AppendNumber(text, std::round(value * 1000) / 1000);
        *text += ' ';
    }
}

std::string Mixed(const Document& document, const MeshPatch& patch, double u, double v) {
    Light mixed;
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 2; ++j) {
            const Light light = LightOf(document, patch.corners[i][j]->color);
            const double weight = (i ? u : 1 - u) * (j ? v : 1 - v);
            mixed.red += weight * light.red;
            mixed.green += weight * light.green;
            mixed.blue += weight * light.blue;
        }
    }
    return ScreenColor(document, ThreeColor(mixed.red, mixed.green, mixed.blue));
}

/// One piece of a patch in one colour.
void AppendPiece(const Document& document, const MeshPatch& patch, double u, double v, double step,
                 std::string* markup, std::string* marked) {
    std::string outline = "M";
    AppendRounded(&outline, PointOfPatch(patch, u, v));
    for (const HostPoint corner : {HostPoint{u + step, v}, {u + step, v + step}, {u, v + step}}) {
        outline += 'L';
        AppendRounded(&outline, PointOfPatch(patch, corner.x, corner.y));
    }
    outline += 'Z';
    const std::string fill = Mixed(document, patch, u + step / 2, v + step / 2);
    *markup += "<path";
    AppendAttribute(markup, "d", outline);
    AppendAttribute(markup, "fill", fill);
    *markup += "/>\n";
    *marked += "path" + outline + fill;
}

void AppendPicture(const Document& document, const MeshData& mesh, std::string* markup, std::string* marked) {
    const double patches = static_cast<double>(mesh.gridI) * mesh.gridJ;
    const int pieces = std::clamp(static_cast<int>(std::sqrt(kPieces / patches)), 1, kFinest);
    for (int32_t a = 0; a < mesh.gridI; ++a) {
        for (int32_t b = 0; b < mesh.gridJ; ++b) {
            const MeshPatch patch = MeshPatchAt(mesh, a, b);
            for (int i = 0; i < pieces * pieces; ++i)
                AppendPiece(document, patch, static_cast<double>(i / pieces) / pieces,
                            static_cast<double>(i % pieces) / pieces, 1.0 / pieces, markup, marked);
        }
    }
}

void AppendVertex(const Document& document, const MeshVertex& vertex, std::string* markup) {
    std::string spokes;
    for (const MeshSpoke& spoke : vertex.spokes) {
        if (!spokes.empty()) spokes += ' ';
        spokes += NumbersText(spoke.tangent.x, spoke.tangent.y, spoke.smooth ? 1 : 0);
    }
    *markup += std::string("<vlq:") + kVertex;
    AppendAttribute(markup, "at", NumbersText(vertex.position.x, vertex.position.y));
    AppendAttribute(markup, "color", ColorText(document, vertex.color));
    AppendAttribute(markup, "edges", spokes);
    *markup += "/>\n";
}

void AppendEdge(const MeshEdge& edge, std::string* markup) {
    std::string points;
    for (const HostPoint& point : edge) {
        if (!points.empty()) points += ' ';
        points += NumbersText(point.x, point.y);
    }
    *markup += std::string("<vlq:") + kEdge;
    AppendAttribute(markup, "points", points);
    *markup += "/>\n";
}

// Reading

struct MeshHead {
    int32_t type = kMeshGrid, gridI = 0, gridJ = 0;
    Text mark;
};

bool TakeSize(TextCursor& cursor, int32_t* size) {
    double number = 0;
    cursor.SkipBlanks();
    if (!cursor.Number(&number) || !(number >= 0) || number > kMostMeshVertices) return false;
    *size = static_cast<int32_t>(number);
    cursor.SkipBlanks();
    return true;
}

bool ParseHead(Text text, MeshHead* head) {
    TextCursor cursor(text);
    if (cursor.TakeWord("ring"))
        head->type = kMeshRing;
    else if (!cursor.TakeWord("grid"))
        return false;
    if (!TakeSize(cursor, &head->gridI) || !TakeSize(cursor, &head->gridJ)) return false;
    head->mark = cursor.Rest();
    return true;
}

/// What the paths of the group say; anything else that draws makes it another text.
std::string MarkOfPicture(const ReadContext& context, pugi::xml_node element) {
    std::string marked;
    for (const pugi::xml_node child : element.children()) {
        const bool drawn =
            child.type() == pugi::node_element && context.KindOf(child) != ElementKind::kForeign;
        if (drawn)
            marked += std::string(child.name()).substr(std::string(child.name()).find(':') + 1) +
                      child.attribute("d").value() + child.attribute("fill").value();
    }
    return MarkOf(marked);
}

/// Pairs of numbers; false for an odd one, for more than `most` pairs, and for what no page can hold.
bool ReadPoints(Text text, const HostMatrix& toArt, size_t most, MeshEdge* points) {
    const std::vector<double> numbers = ParseNumbers(text, most * 2 + 1);
    points->clear();
    for (size_t i = 0; i + 1 < numbers.size(); i += 2) {
        points->push_back(Apply(toArt, {numbers[i], numbers[i + 1]}));
        if (!std::isfinite(points->back().x) || !std::isfinite(points->back().y)) return false;
    }
    return numbers.size() % 2 == 0; // with one too many there is an odd one
}

bool ReadVertex(ReadContext& context, pugi::xml_node element, const HostMatrix& toArt, MeshVertex* vertex) {
    MeshEdge position;
    if (!ReadPoints(element.attribute("at").value(), toArt, 1, &position) || position.size() != 1)
        return false;
    vertex->position = position[0];
    HostColor color{};
    if (ParseColorText(context.document, element.attribute("color").value(), &color)) vertex->color = color;
    const std::vector<double> numbers =
        ParseNumbers(element.attribute("edges").value(), size_t{3} * kMeshDirections);
    const HostMatrix turned{toArt.a, toArt.b, toArt.c, toArt.d, 0, 0};
    for (size_t i = 0; i + 2 < numbers.size(); i += 3) {
        MeshSpoke& spoke = vertex->spokes[i / 3];
        const HostPoint tangent = Apply(turned, {numbers[i], numbers[i + 1]});
        if (std::isfinite(tangent.x) && std::isfinite(tangent.y)) spoke.tangent = tangent;
        spoke.smooth = numbers[i + 2] != 0;
    }
    return true;
}

/// The elements of one name within the group.
std::vector<pugi::xml_node> OwnMembers(const ReadContext& context, pugi::xml_node element, const char* name) {
    const std::string whole = context.ownPrefix + name;
    const auto range = element.children(whole.c_str());
    return {range.begin(), range.end()};
}

bool FillMesh(ReadContext& context, pugi::xml_node element, const Surroundings& here, MeshData* mesh) {
    MeshHead head;
    ParseHead(context.Own(element, kOwnMesh), &head);
    const auto vertices = OwnMembers(context, element, kVertex), edges = OwnMembers(context, element, kEdge);
    // The sizes are believed only as far as there are vertices for them.
    const int64_t columns = int64_t{head.gridI} + (head.type == kMeshRing ? 0 : 1);
    const int64_t expected = head.gridI == 0 ? 0 : columns * (int64_t{head.gridJ} + 1);
    if (expected != static_cast<int64_t>(vertices.size())) return false;
    if (expected == 0) return edges.empty();
    if (!InitMesh(*mesh, head.type, head.gridI, head.gridJ)) return false;
    if (edges.size() != mesh->edgesI.size() + mesh->edgesJ.size()) return false;
    for (size_t i = 0; i < vertices.size(); ++i) {
        if (!ReadVertex(context, vertices[i], here.toArt, &mesh->vertices[i])) return false;
    }
    for (size_t i = 0; i < edges.size(); ++i) {
        const size_t along = mesh->edgesI.size();
        MeshEdge& edge = i < along ? mesh->edgesI[i] : mesh->edgesJ[i - along];
        if (!ReadPoints(edges[i].attribute("points").value(), here.toArt, context.segmentsLeft, &edge))
            return false;
        context.segmentsLeft -= std::min(context.segmentsLeft, edge.size());
    }
    return true;
}

} // namespace

void WriteMesh(WriteContext& context, const MeshData& mesh, const std::string& nature, std::string* markup) {
    std::string members, marked;
    for (const MeshVertex& vertex : mesh.vertices) AppendVertex(context.document, vertex, &members);
    for (const auto* edges : {&mesh.edgesI, &mesh.edgesJ}) {
        for (const MeshEdge& edge : *edges) AppendEdge(edge, &members);
    }
    if (mesh.gridI > 0) AppendPicture(context.document, mesh, &members, &marked);
    *markup += "<g" + nature;
    AppendAttribute(markup, "shape-rendering", "crispEdges"); // no seams between the pieces
    AppendOwn(markup, kOwnMesh,
              std::string(mesh.type == kMeshRing ? "ring " : "grid ") + NumbersText(mesh.gridI, mesh.gridJ) +
                  ' ' + MarkOf(marked));
    *markup += ">\n" + members + "</g>\n";
}

bool IsMesh(const ReadContext& context, pugi::xml_node element) {
    const Text text = context.Own(element, kOwnMesh);
    MeshHead head;
    return !text.empty() && ParseHead(text, &head) && head.mark == MarkOfPicture(context, element);
}

Art* ReadMesh(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    MeshData mesh;
    if (!FillMesh(context, element, here, &mesh)) {
        context.Lose("damaged mesh");
        return nullptr;
    }
    Art* art = context.NewArt(kArtMesh, container);
    if (!art) return nullptr;
    std::get<MeshData>(art->data) = std::move(mesh);
    art->blend = ReadBlend(context, element, here.style);
    SetNature(context, element, here, *art);
    return art;
}

} // namespace workbench
