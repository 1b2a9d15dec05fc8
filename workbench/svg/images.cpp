#include "workbench/svg/images.h"

#include <algorithm>
#include <cmath>

#include "workbench/svg/element_reader.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/picture_links.h"
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

/// Why an address is not followed.
const char* LossOf(Text href) {
    return href.starts_with("data:") ? "image" : "image that is no file";
}

void SetOptions(ReadContext& context, pugi::xml_node element, PlacedData* placed) {
    const auto options = ParseNumbers(context.Own(element, kOwnPlace), 3);
    if (options.size() != 3) return;
    const auto number = [](double value) { return static_cast<int32_t>(std::clamp(value, -1e6, 1e6)); };
    placed->method = number(options[0]);
    placed->alignment = number(options[1]);
    placed->clip = options[2] != 0 ? 1 : 0;
}

/// What a link leads to; counts what is lost, and an empty path if nothing can be placed.
std::string Follow(ReadContext& context, pugi::xml_node element, LinkedPicture* picture) {
    const Text href = Trim(Href(element));
    const std::string path = href.empty() ? std::string() : context.links.PathOf(href);
    if (path.empty()) {
        if (!href.empty()) context.Lose(LossOf(href));
        return {};
    }
    if (!context.links.MayFollow(path)) {
        context.Lose("image outside of the folder");
        return {};
    }
    *picture = context.links.LookAt(path);
    if (picture->state == LinkState::kMissing) context.Lose("missing image file");
    if (picture->state != LinkState::kNoPicture) return path;
    context.Lose("image file that is no picture");
    return {};
}

} // namespace

Art* ReadImage(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    LinkedPicture picture;
    const std::string path = Follow(context, element, &picture);
    if (path.empty()) return nullptr;
    const ViewBox box = BoxOf(element, here, picture.size);
    if (!(box.width > 0) || !(box.height > 0)) return nullptr;
    const bool known = picture.state == LinkState::kPicture;
    const ViewBox whole =
        known ? ViewBox{0, 0, picture.size.width, picture.size.height} : ViewBox{0, 0, box.width, box.height};
    const HostMatrix fit = FitViewBox(whole, box, element.attribute("preserveAspectRatio").value());
    // A picture's own space has y upward, from its lower left corner.
    const HostMatrix matrix = Concat(here.toArt, Concat(fit, {1, 0, 0, -1, 0, whole.height}));
    if (!IsFinite(matrix)) {
        context.Lose("number out of range");
        return nullptr;
    }
    Art* const group = Slices(element) ? context.NewArt(kArtGroup, container) : nullptr;
    Art* const art = context.NewArt(kArtPlaced, group ? group : container);
    if (!art) return nullptr;
    auto& placed = std::get<PlacedData>(art->data);
    placed.file = path;
    placed.matrix = matrix;
    placed.width = whole.width;
    placed.height = whole.height;
    SetOptions(context, element, &placed);
    if (group) ClipToViewport(context, box, here, group);
    Art* const outer = group ? group : art;
    outer->blend = ReadBlend(context, element, here.style);
    SetNature(context, element, here, *outer);
    if (!here.style.visible) outer->hidden = true;
    return outer;
}

} // namespace workbench
