#include "workbench/svg/images.h"

#include <algorithm>
#include <cmath>

#include "workbench/svg/data_uri.h"
#include "workbench/svg/element_reader.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/picture_links.h"
#include "workbench/svg/raster_words.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

using Text = std::string_view;

/// Side by side in user units, as the element tells it; NaN: it doesn't.
double Side(pugi::xml_node element, const char* name, const Surroundings& here, double percentOf) {
    return LengthAttribute(element, name, here.style.fontSize, percentOf, NAN);
}

/// The box that the picture is fitted into.  A side that isn't told follows from the picture's proportions.
/// @param natural  the picture's own size in user units; 0 by 0: not known
ViewBox BoxOf(pugi::xml_node element, const Surroundings& here, const PictureSize& natural) {
    ViewBox box;
    box.x = LengthAttribute(element, "x", here.style.fontSize, here.viewWidth, 0);
    box.y = LengthAttribute(element, "y", here.style.fontSize, here.viewHeight, 0);
    const double width = Side(element, "width", here, here.viewWidth);
    const double height = Side(element, "height", here, here.viewHeight);
    const bool known = natural.width > 0 && natural.height > 0;
    const double wide = std::isnan(height) ? natural.width : height * natural.width / natural.height;
    const double high = std::isnan(width) ? natural.height : width * natural.height / natural.width;
    box.width = !std::isnan(width) ? width : known ? wide : 0;
    box.height = !std::isnan(height) ? height : known ? high : 0;
    return box;
}

bool Slices(pugi::xml_node element) {
    return Text(element.attribute("preserveAspectRatio").value()).find("slice") != Text::npos;
}

void SetOptions(ReadContext& context, pugi::xml_node element, PlacedData* placed) {
    const auto options = ParseNumbers(context.Own(element, kOwnPlace), 3);
    if (options.size() != 3) return;
    const auto number = [](double value) { return static_cast<int32_t>(std::clamp(value, -1e6, 1e6)); };
    placed->method = number(options[0]);
    placed->alignment = number(options[1]);
    placed->clip = options[2] != 0 ? 1 : 0;
}

/// What an `image` element shows.
struct Picture {
    ArtData data; ///< PlacedData or RasterData; else nothing can be placed
    PictureSize natural;
    bool own = false; ///< an image of our own writing, which tells its place itself

    bool good() const { return !std::holds_alternative<GroupData>(data); }
};

/// What a link leads to; counts what is lost.
Picture Follow(ReadContext& context, Text href) {
    Picture picture;
    const std::string path = href.empty() ? std::string() : context.links.PathOf(href);
    if (path.empty()) {
        if (!href.empty()) context.Lose("image that is no file");
        return picture;
    }
    if (!context.links.MayFollow(path)) {
        context.Lose("image outside of the folder");
        return picture;
    }
    const LinkedPicture& linked = context.links.LookAt(path);
    if (linked.state == LinkState::kMissing) context.Lose("missing image file");
    if (linked.state == LinkState::kNoPicture) {
        context.Lose("image file that is no picture");
        return picture;
    }
    PlacedData placed;
    placed.file = path;
    picture.data = placed;
    if (linked.state == LinkState::kPicture) picture.natural = linked.size;
    return picture;
}

Picture FindPicture(ReadContext& context, pugi::xml_node element, const Surroundings& here) {
    Picture picture;
    RasterData raster;
    const Text href = Trim(Href(element));
    picture.own = ReadOwnRaster(context, element, here.toArt, &raster);
    if (!picture.own) {
        if (!IsDataUri(href)) return Follow(context, href);
        raster = {};
        if (!ReadDataImage(context, href, &raster)) return picture;
        picture.natural = {static_cast<double>(raster.Width()), static_cast<double>(raster.Height())};
    }
    picture.data = std::move(raster);
    return picture;
}

/// Fits the picture into the element's box; false if it can't be seen.
bool SetPlace(ReadContext& context, pugi::xml_node element, const Surroundings& here, const ViewBox& box,
              Picture* picture) {
    if (picture->own) return true;
    if (!(box.width > 0) || !(box.height > 0)) return false;
    const bool known = picture->natural.width > 0;
    const ViewBox whole = known ? ViewBox{0, 0, picture->natural.width, picture->natural.height}
                                : ViewBox{0, 0, box.width, box.height};
    const HostMatrix fit = FitViewBox(whole, box, element.attribute("preserveAspectRatio").value());
    // A linked picture's own space has y upward, from its lower left corner.
    const HostMatrix upright = Concat(here.toArt, Concat(fit, {1, 0, 0, -1, 0, whole.height}));
    if (!IsFinite(upright)) {
        context.Lose("number out of range");
        return false;
    }
    if (auto* raster = std::get_if<RasterData>(&picture->data)) {
        raster->matrix = PixelsToArt(Concat(here.toArt, fit));
        return true;
    }
    auto& placed = std::get<PlacedData>(picture->data);
    placed.matrix = upright;
    placed.width = whole.width;
    placed.height = whole.height;
    SetOptions(context, element, &placed);
    return true;
}

} // namespace

Art* ReadImage(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    Picture picture = FindPicture(context, element, here);
    if (!picture.good()) return nullptr;
    const ViewBox box = BoxOf(element, here, picture.natural);
    if (!SetPlace(context, element, here, box, &picture)) return nullptr;
    Art* const group = !picture.own && Slices(element) ? context.NewArt(kArtGroup, container) : nullptr;
    const bool raster = std::holds_alternative<RasterData>(picture.data);
    Art* const art = context.NewArt(raster ? kArtRaster : kArtPlaced, group ? group : container);
    if (!art) return nullptr;
    art->data = std::move(picture.data);
    if (group) ClipToViewport(context, box, here, group);
    Art* const outer = group ? group : art;
    outer->blend = ReadBlend(context, element, here.style);
    SetNature(context, element, here, *outer);
    if (!here.style.visible) outer->hidden = true;
    return outer;
}

} // namespace workbench
