#include <cmath>
#include <cstring>

#include "workbench/document/pattern_space.h"
#include "workbench/svg/element_reader.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/paint_servers.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

/// One tile in the pattern's own space (y as in the file).
struct Tile {
    double x = 0, y = 0, width = 0, height = 0;
    HostMatrix content{1, 0, 0, 1, 0, 0}; ///< of the members into the pattern's space
    HostMatrix toArt{1, 0, 0, 1, 0, 0};   ///< of the pattern's space
};

bool ReadTile(const ServerChain& chain, const Surroundings& here, const Box& box, Tile* tile) {
    const bool inBox = chain.Value("patternUnits") != "userSpaceOnUse";
    const bool contentInBox = chain.Value("patternContentUnits") == "objectBoundingBox";
    if ((inBox || contentInBox) && (box.empty || !(box.width() > 0) || !(box.height() > 0))) return false;
    const auto read = [&](const char* name, double boxLength, double whole) {
        const double value = ToUserUnits(chain.LengthOf(name, {}), here.style.fontSize, inBox ? 1 : whole);
        return inBox ? value * boxLength : value;
    };
    tile->x = read("x", box.width(), here.viewWidth) + (inBox ? box.left : 0);
    tile->y = read("y", box.height(), here.viewHeight) + (inBox ? box.top : 0);
    tile->width = read("width", box.width(), here.viewWidth);
    tile->height = read("height", box.height(), here.viewHeight);
    if (!(tile->width > 0) || !(tile->height > 0)) return false;

    ViewBox view;
    if (ParseViewBox(chain.Value("viewBox"), &view))
        tile->content = FitViewBox(view, {tile->x, tile->y, tile->width, tile->height},
                                   chain.Value("preserveAspectRatio"));
    else if (contentInBox)
        tile->content = {box.width(), 0, 0, box.height(), box.left, box.top};
    HostMatrix own;
    ParseTransform(chain.Value("patternTransform"), &own);
    tile->toArt = Concat(here.toArt, own);
    return IsFinite(tile->toArt) && IsFinite(tile->content) && Determinant(tile->toArt) != 0;
}

std::string KeyOf(pugi::xml_node owner, const Tile& tile, double scale) {
    const void* node = owner.internal_object();
    const double numbers[] = {tile.x,         tile.y,          tile.width,     tile.height,
                              scale,          tile.content.a,  tile.content.b, tile.content.c,
                              tile.content.d, tile.content.tx, tile.content.ty};
    std::string key(sizeof node + sizeof numbers, '\0');
    std::memcpy(key.data(), &node, sizeof node);
    std::memcpy(key.data() + sizeof node, numbers, sizeof numbers);
    return key;
}

/// The members of `owner` in a group out of the tree; null if there are none.
Art* ReadTileMembers(ReadContext& context, pugi::xml_node owner, const HostMatrix& toTile,
                     const Surroundings& here) {
    const Reference reference(context, owner);
    if (!reference) {
        context.Lose("reference");
        return nullptr;
    }
    Art* group = context.NewArt(kArtGroup, nullptr);
    if (!group) return nullptr;
    Surroundings inside = here;
    inside.toArt = toTile;
    inside.style = StyleInPlace(context, owner);
    inside.instance = false;
    ReadMembers(context, owner, inside, group);
    if (group->firstChild) return group;
    context.document.DisposeArt(group);
    return nullptr;
}

PatternHandle KeepPattern(ReadContext& context, pugi::xml_node owner, Art* art) {
    Pattern& pattern = context.document.NewPattern(context.NameOf(owner));
    pattern.art = art;
    return pattern.handle;
}

/// The pattern as a group with one clipped group in points, its lower left corner at (0, 0).  The clip is
/// not on the pattern's own group, because a record keeps only what is in that.
PatternHandle MakePattern(ReadContext& context, pugi::xml_node owner, const Tile& tile, double scale,
                          const Surroundings& here) {
    const HostMatrix toTile{scale, 0, 0, -scale, -scale * tile.x, scale * (tile.y + tile.height)};
    Art* art = ReadTileMembers(context, owner, Concat(toTile, tile.content), here);
    if (!art) return nullptr;
    PathBuilder builder(4);
    const double width = scale * tile.width, height = scale * tile.height;
    builder.MoveTo({0, 0});
    builder.LineTo({width, 0});
    builder.LineTo({width, height});
    builder.LineTo({0, height});
    builder.Close();
    if (!MakePathArt(context, builder.Finish(), ClippingStyle(false), {}, art)) return nullptr;
    art->group()->clipped = true;
    Art* whole = context.NewArt(kArtGroup, nullptr);
    if (!whole) return nullptr;
    context.document.AdoptArt(*art, *whole);
    return KeepPattern(context, owner, whole);
}

/// A pattern of our own files: the one member is the pattern's art, in the art's own coordinates.
PatternHandle MakeExactPattern(ReadContext& context, pugi::xml_node owner, const Surroundings& here) {
    Art* holder = ReadTileMembers(context, owner, kIdentity, here);
    if (!holder) return nullptr;
    const bool single = holder->firstChild == holder->lastChild && holder->firstChild->group();
    Art* art = single ? context.document.CopyArt(*holder->firstChild) : nullptr;
    context.document.DisposeArt(holder);
    return art ? KeepPattern(context, owner, art) : nullptr;
}

/// False if the numbers don't say the same as the element's own transform.
bool ReadExactUse(std::string_view text, const Tile& tile, const Surroundings& here, HostPatternUse* use) {
    const auto n = ParseNumbers(text, 15);
    if (n.size() != 15) return false;
    *use = {nullptr,   n[0], n[1], {n[2], n[3]}, n[4],
            n[5] != 0, n[6], n[7], n[8],         {n[9], n[10], n[11], n[12], n[13], n[14]}};
    use->matrix = Concat(here.toArt, use->matrix);
    const HostMatrix said = Concat(PatternToArt(*use), {1, 0, 0, 1, -tile.x, -tile.y});
    const auto near = [](double a, double b) { return std::abs(a - b) <= 1e-6 * std::max(1.0, std::abs(b)); };
    return near(said.a, tile.toArt.a) && near(said.b, tile.toArt.b) && near(said.c, tile.toArt.c) &&
           near(said.d, tile.toArt.d) && near(said.tx, tile.toArt.tx) && near(said.ty, tile.toArt.ty);
}

} // namespace

Paint PatternPaint(ReadContext& context, pugi::xml_node element, const Surroundings& here, const Box& box) {
    const ServerChain chain(context, element);
    const pugi::xml_node owner = chain.FirstWith([&](pugi::xml_node child) {
        return child.type() == pugi::node_element && context.KindOf(child) != ElementKind::kForeign;
    });
    Tile tile;
    if (!owner || !ReadTile(chain, here, box, &tile)) return {};
    HostPatternUse use{};
    use.scale = {1, 1};
    const bool exact = ReadExactUse(context.Own(element, kOwnPattern), tile, here, &use);
    // The tile is made in points, so that the matrix of the use needs no scale of its own.
    const double scale = exact ? 1 : MeanScale(tile.toArt);
    const std::string key = KeyOf(owner, tile, exact ? 0 : scale);
    const auto known = context.patterns.find(key);
    PatternHandle pattern = known == context.patterns.end() ? nullptr : known->second;
    if (!pattern) {
        pattern =
            exact ? MakeExactPattern(context, owner, here) : MakePattern(context, owner, tile, scale, here);
        context.patterns[key] = pattern;
    }
    if (!pattern) return {};
    if (!exact) {
        use = {};
        use.scale = {1, 1};
        use.matrix = Concat(tile.toArt, {1 / scale, 0, 0, -1 / scale, tile.x, tile.y + tile.height});
        if (!IsFinite(use.matrix)) return {};
    }
    use.pattern = pattern;
    Paint paint;
    paint.painted = true;
    paint.color.kind = kColorPattern;
    paint.color.u.pattern = use;
    return paint;
}

} // namespace workbench
