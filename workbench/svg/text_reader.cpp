#include "workbench/svg/text_reader.h"

#include <algorithm>
#include <cmath>

#include "workbench/document/story.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/shapes.h"
#include "workbench/svg/text_content.h"
#include "workbench/svg/text_style.h"
#include "workbench/svg/text_words.h"
#include "workbench/svg/transforms.h"
#include "workbench/text/frame_layout.h"
#include "workbench/text/frame_path.h"

namespace workbench {
namespace {

using Text = std::string_view;

double Snapped(double value) {
    const double whole = std::round(value);
    return std::abs(value - whole) < 1e-12 ? whole : value;
}

/// A letter that the file places by itself.
struct WantedPlace {
    size_t unit;
    double along; ///< user units
};

/// Builds the frames of one text element.
///
/// Along and down are user units: x and y of horizontal text, y and -x of vertical text.
class FrameBuilder {
public:
    FrameBuilder(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container);

    bool usable() const { return scale_ > 0 && std::isfinite(scale_) && IsFinite(linear_); }
    void Take(const TextCharacter& character);
    void TakeIntoArea(const TextContent& content, const Subpaths& area);
    Art* Finish();

private:
    void Begin(const TextCharacter& character);
    void Append(const TextCharacter& character);
    bool ContinuesBelow(const TextCharacter& character, double along, double down) const;
    Art* Open(const TextPart& part, int32_t frameKind);
    bool OpenOnPath(const TextPart& part);
    void Close();
    void PlaceWanted(const FrameLayout& layout);
    double PenAlong();
    Box TextBox() const;
    Story& story() { return *std::get<TextFrameData>(frame_->data).story; }

    ReadContext& context_;
    pugi::xml_node element_;
    const Surroundings& here_;
    Art* container_;
    bool vertical_;
    double scale_; ///< from user units to text space
    HostMatrix linear_;
    TextStyles styles_;

    std::vector<Art*> frames_;
    Art* frame_ = nullptr;  ///< the one that text is added to; null: none
    pugi::xml_node path_;   ///< the textPath element in hand
    bool skipping_ = false; ///< characters of a path that isn't there
    int anchor_ = 0;
    double along_ = 0, down_ = 0; ///< of the line's start
    double shift_ = 0;            ///< down, of the next letter from its line
    double leading_ = 0;          ///< of the line, in text space; 0: the first
    double penAlong_ = 0;         ///< behind the last frame
    std::vector<WantedPlace> wanted_;
};

FrameBuilder::FrameBuilder(ReadContext& context, pugi::xml_node element, const Surroundings& here,
                           Art* container)
    : context_(context),
      element_(element),
      here_(here),
      container_(container),
      vertical_(here.style.text.vertical),
      scale_(MeanScale(here.toArt)),
      styles_(context, scale_) {
    const HostMatrix& m = here.toArt;
    linear_ = {
        Snapped(m.a / scale_), Snapped(m.b / scale_), Snapped(-m.c / scale_), Snapped(-m.d / scale_), 0, 0};
}

Art* FrameBuilder::Open(const TextPart& part, int32_t frameKind) {
    frame_ = context_.NewArt(kArtTextFrame, nullptr);
    if (!frame_) return nullptr;
    frames_.push_back(frame_);
    auto& data = std::get<TextFrameData>(frame_->data);
    data.frameKind = frameKind;
    data.orientation = vertical_ ? kVerticalText : kHorizontalText;
    data.matrix = linear_;
    anchor_ = part.here.style.text.anchor;
    path_ = part.textPath;
    wanted_.clear();
    shift_ = leading_ = 0;
    if (frameKind != kPointText) return frame_;
    const HostPoint place =
        Apply(here_.toArt, vertical_ ? HostPoint{-down_, along_} : HostPoint{along_, down_});
    data.matrix.tx = place.x;
    data.matrix.ty = place.y;
    return frame_;
}

/// The path that a textPath element goes along, as the frame's own.
bool FrameBuilder::OpenOnPath(const TextPart& part) {
    const pugi::xml_node target = context_.Target(part.textPath);
    const ElementKind kind = target ? context_.KindOf(target) : ElementKind::kUnknown;
    if (!IsShape(kind)) {
        context_.Lose("reference");
        return false;
    }
    Surroundings there = here_;
    there.style = StyleInPlace(context_, target);
    Subpaths subpaths = ShapeGeometry(context_, target, kind, there);
    if (subpaths.empty()) return false;
    if (subpaths.size() > 1) context_.Lose("text on several paths");
    const HostMatrix toArt = Concat(here_.toArt, OwnTransform(target, there.style));
    if (!ToArt(context_, toArt, &subpaths)) return false;
    Art* path = context_.NewArt(kArtPath, nullptr);
    if (!path || !Open(part, kPathText)) return false;
    path->path()->segments = subpaths.front().segments;
    path->path()->closed = subpaths.front().closed;
    path->path()->style.strokePaint = 0;
    auto& data = std::get<TextFrameData>(frame_->data);
    data.path = path->handle;
    Length offset;
    if (ParseLength(part.textPath.attribute("startOffset").value(), &offset)) {
        const Way way(*path->path(), kIdentity);
        const double distance = offset.unit == Unit::kPercent
                                    ? way.length() * offset.value / 100
                                    : ToUserUnits(offset, part.here.style.fontSize, 0) * MeanScale(toArt);
        data.pathStart = way.SegmentsAt(distance);
    }
    return true;
}

bool FrameBuilder::ContinuesBelow(const TextCharacter& character, double along, double down) const {
    return frame_ && !path_ && !character.part->textPath &&
           anchor_ == character.part->here.style.text.anchor &&
           std::abs(along - along_) < 1e-6 * std::max(1.0, std::abs(along_)) && down > down_ + 1e-6;
}

double FrameBuilder::PenAlong() {
    if (!frame_) return penAlong_;
    const FrameLayout layout = LayFrame(context_.document, *frame_);
    if (layout.lines.empty()) return along_;
    const HostPoint stop = layout.lines.back().stop;
    return along_ + (vertical_ ? -stop.y : stop.x) / scale_;
}

/// A new line of the frame in hand, or a new frame.
void FrameBuilder::Begin(const TextCharacter& character) {
    const std::optional<double>& along = vertical_ ? character.y : character.x;
    const std::optional<double>& across = vertical_ ? character.x : character.y;
    const double dx = vertical_ ? character.dy : character.dx;
    const double dy = vertical_ ? -character.dx : character.dy;
    const bool bare = frame_ == nullptr && frames_.empty();
    const double newAlong = (along ? *along : bare ? 0 : PenAlong()) + dx;
    const double newDown = (across ? (vertical_ ? -*across : *across) : bare ? 0 : down_ + shift_) + dy;
    if (ContinuesBelow(character, newAlong, newDown)) {
        InsertText(story(), story().text.size(), u"\r");
        leading_ = (newDown - down_) * scale_;
        down_ = newDown;
        shift_ = 0;
        return;
    }
    Close();
    along_ = newAlong;
    down_ = newDown;
    path_ = character.part->textPath;
    if (path_)
        skipping_ = !OpenOnPath(*character.part);
    else
        skipping_ = Open(*character.part, kPointText) == nullptr;
}

void FrameBuilder::Take(const TextCharacter& character) {
    const bool placed = character.begins && (character.x || character.y);
    const bool otherPath = character.part->textPath != path_;
    const bool open = frame_ || skipping_;
    const bool single = placed && character.listed && frame_ && !path_ && anchor_ == 0;
    if (!open || otherPath || (placed && !single && !(path_ && frame_))) {
        Begin(character);
    } else if (character.begins && frame_) {
        const std::optional<double>& along = vertical_ ? character.y : character.x;
        const std::optional<double>& across = vertical_ ? character.x : character.y;
        const double dx = vertical_ ? character.dy : character.dx;
        if (single && across) shift_ = (vertical_ ? -*across : *across) - down_;
        shift_ += vertical_ ? -character.dx : character.dy;
        const double size = character.part->here.style.fontSize;
        if (single && along)
            wanted_.push_back({story().text.size(), *along + dx});
        else if (dx != 0 && size > 0)
            SetKerning(story(), story().text.size(),
                       static_cast<int32_t>(std::lround(std::clamp(dx / size * 1000, -1e6, 1e6))));
    }
    if (frame_) Append(character);
}

void FrameBuilder::Append(const TextCharacter& character) {
    // Kerning at the text's end belongs to what comes in there.
    const size_t at = story().text.size();
    const auto kerning = story().kerning.find(at);
    const int32_t own = kerning == story().kerning.end() ? 0 : kerning->second;
    if (own) SetKerning(story(), at, 0);
    InsertText(story(), at, {&character.unit, 1},
               styles_.StyleFor(*character.part, -shift_, leading_, false));
    if (own) SetKerning(story(), at, own);
}

/// Kerning takes each letter from where it would stand to where it is wanted.
void FrameBuilder::PlaceWanted(const FrameLayout& layout) {
    auto place = layout.places.begin();
    size_t line = 0;
    double shifted = 0;
    for (const WantedPlace& want : wanted_) {
        while (line < layout.lines.size() && layout.lines[line].end <= want.unit) {
            ++line;
            shifted = 0;
        }
        while (place != layout.places.end() && place->first < want.unit) ++place;
        if (place == layout.places.end()) return;
        if (place->first != want.unit) continue;
        const double size = StyleOf(story(), want.unit).character->fontSize;
        if (!(size > 0)) continue;
        const double stands = (vertical_ ? -place->origin.y : place->origin.x) + shifted;
        const double away = (want.along - along_) * scale_ - stands;
        const auto kerning = static_cast<int32_t>(std::lround(std::clamp(away / size * 1000, -1e6, 1e6)));
        shifted += kerning * size / 1000;
        SetKerning(story(), want.unit, kerning);
    }
}

void FrameBuilder::Close() {
    if (!frame_) return;
    if (!wanted_.empty()) PlaceWanted(LayFrame(context_.document, *frame_));
    wanted_.clear();
    frame_ = nullptr;
}

void FrameBuilder::TakeIntoArea(const TextContent& content, const Subpaths& area) {
    Art* path = context_.NewArt(kArtPath, nullptr);
    if (!path || !Open(*content.characters.front().part, kAreaText)) return;
    path->path()->segments = area.front().segments;
    path->path()->closed = true;
    path->path()->style.strokePaint = 0;
    std::get<TextFrameData>(frame_->data).path = path->handle;
    for (const TextCharacter& character : content.characters)
        InsertText(story(), story().text.size(), {&character.unit, 1},
                   styles_.StyleFor(*character.part, 0, 0, true));
}

Box FrameBuilder::TextBox() const {
    Box box;
    HostMatrix toUser;
    if (!Invert(here_.toArt, &toUser)) return box;
    for (const Art* frame : frames_) {
        const FrameLayout layout = LayFrame(context_.document, *frame);
        if (!layout.hasBox) continue;
        const HostRect& rect = layout.box;
        for (const HostPoint corner : {HostPoint{rect.left, rect.top},
                                       {rect.right, rect.top},
                                       {rect.left, rect.bottom},
                                       {rect.right, rect.bottom}})
            box.Add(Apply(toUser, corner));
    }
    return box;
}

Art* FrameBuilder::Finish() {
    Close();
    if (frames_.empty()) return nullptr;
    if (styles_.unfinished()) styles_.Finish(TextBox());
    Art* art = frames_.front();
    if (frames_.size() > 1) {
        art = context_.NewArt(kArtGroup, container_);
        if (!art) return nullptr;
        for (Art* frame : frames_) {
            context_.document.AdoptArt(*frame, *art, true);
            frame->blend.opacity = styles_.opacity();
        }
        art->blend = ReadBlend(context_, element_, here_.style);
    } else {
        art->blend = ReadBlend(context_, element_, here_.style);
        art->blend.opacity *= styles_.opacity();
        context_.document.AdoptArt(*art, *container_, true);
    }
    SetNature(context_, element_, here_, *art);
    return art;
}

/// The outline of the region that old flowing text fills.
Subpaths RegionOf(ReadContext& context, pugi::xml_node element, const Surroundings& here) {
    for (const pugi::xml_node region : element.children()) {
        if (LocalName(region.name()) != "flowRegion") continue;
        for (const pugi::xml_node child : region.children()) {
            const ElementKind kind = context.KindOf(child);
            if (!IsShape(kind)) continue;
            Surroundings there = here;
            there.style = ComputeStyle(child, here.style, context.sheet);
            Subpaths subpaths = ShapeGeometry(context, child, kind, there);
            const HostMatrix toArt = Concat(here.toArt, OwnTransform(child, there.style));
            if (subpaths.empty() || !ToArt(context, toArt, &subpaths)) continue;
            return subpaths;
        }
    }
    return {};
}

} // namespace

Art* ReadText(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container) {
    bool own = false;
    if (Art* art = ReadOwnText(context, element, here, container, &own); own) return art;
    const TextContent content = ReadTextContent(context, element, here);
    if (context.refused() || content.characters.empty()) return nullptr;
    for (const TextPart& part : content.parts)
        if (part.decorated) {
            context.Lose("text decoration");
            break;
        }
    FrameBuilder builder(context, element, here, container);
    if (!builder.usable()) return nullptr;
    if (LocalName(element.name()) == "text") {
        for (const TextCharacter& character : content.characters) builder.Take(character);
    } else {
        const Subpaths area = RegionOf(context, element, here);
        if (area.empty()) {
            context.Lose("text without a place");
            return nullptr;
        }
        builder.TakeIntoArea(content, area);
    }
    return builder.Finish();
}

} // namespace workbench
