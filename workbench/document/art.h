/// One object of the art tree: what it is, how it lies on the page, what hangs on it.
///
/// Art is owned by its document and reached by handle.  Siblings are a linked list with the topmost
/// first, so that adding on top costs the same however much art there is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "suites/host_types.h"
#include "workbench/document/mesh_data.h"
#include "workbench/document/raster_data.h"
#include "workbench/document/text_data.h"

namespace workbench {

struct Art;

/// A named value on art; all three are bytes that pass through unchanged.
struct Tag {
    std::string name;
    std::string type; ///< "string" or another word
    std::string value;
};

struct Blend {
    int32_t mode = 0; ///< BlendMode
    double opacity = 1.0;
    int32_t isolated = 0;     ///< flag
    int32_t knockout = 0;     ///< 0 off, 1 on, 2 as the parent
    int32_t alphaIsShape = 0; ///< flag
    bool operator==(const Blend&) const = default;
};

enum BlendMode : int32_t {
    kBlendNormal = 0,
    kBlendMultiply,
    kBlendScreen,
    kBlendOverlay,
    kBlendSoftLight,
    kBlendHardLight,
    kBlendColorDodge,
    kBlendColorBurn,
    kBlendDarken,
    kBlendLighten,
    kBlendDifference,
    kBlendExclusion,
    kBlendHue,
    kBlendSaturation,
    kBlendColor,
    kBlendLuminosity,
    kBlendModeCount
};

struct GroupData {
    bool clipped = false; ///< the topmost path member clips the others
};

struct CompoundPathData {};

struct PathData {
    std::vector<HostPathSegment> segments;
    bool closed = false;
    bool guide = false;
    HostPathStyle style{};
};

/// A linked file.  The picture fills the unit square of `matrix` (0 to `width`, 0 to `height`).
struct PlacedData {
    std::string file; ///< full path, UTF-8; empty: not known
    HostMatrix matrix{1, 0, 0, 1, 0, 0};
    double width = 0, height = 0;
    int32_t method = 0, alignment = 0, clip = 0;
};

/// Art that a plug-in computes; its members are the edit art and the result art.
struct PluginArtData {
    std::string groupName;
    int32_t major = 0, minor = 0;
    std::vector<uint8_t> data;
    ArtHandle edit = nullptr, result = nullptr;
};

using ArtData = std::variant<GroupData, PathData, CompoundPathData, PlacedData, RasterData, PluginArtData,
                             MeshData, TextFrameData>;

struct Art {
    ArtHandle handle = nullptr;
    int32_t kind = 0;            ///< kArtGroup and its like; `data` holds the matching alternative
    LayerHandle layer = nullptr; ///< of a layer's root group only; LayerOf finds it for all others

    Art* parent = nullptr;
    Art* firstChild = nullptr; ///< topmost
    Art* lastChild = nullptr;
    Art* above = nullptr; ///< previous sibling
    Art* below = nullptr; ///< next sibling

    size_t childCount = 0, selectedChildren = 0; ///< kept by the document
    bool selected = false;                       ///< written by Document::Select and by the document alone
    bool locked = false, hidden = false;
    std::string name; ///< UTF-8; an SVG's id
    Blend blend;
    std::vector<Tag> tags;
    ArtHandle styledArt = nullptr;     ///< what the art's style draws in its place; out of the tree
    ArtStyleHandle artStyle = nullptr; ///< none: no style
    ArtData data;

    PathData* path() { return std::get_if<PathData>(&data); }
    const PathData* path() const { return std::get_if<PathData>(&data); }
    GroupData* group() { return std::get_if<GroupData>(&data); }
    const GroupData* group() const { return std::get_if<GroupData>(&data); }
    bool IsContainer() const { return kind == kArtGroup || kind == kArtCompoundPath || kind == kArtPlugin; }
};

} // namespace workbench
