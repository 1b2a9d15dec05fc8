#include <algorithm>

#include "workbench/document/story.h"
#include "workbench/document/utf16.h"
#include "workbench/svg/svg_text.h"
#include "workbench/svg/text_words.h"
#include "workbench/svg/transforms.h"
#include "workbench/text/font_config_list.h"
#include "workbench/text/frame_layout.h"

namespace workbench {
namespace {

/// What other programs are told of a frame: each line where it lies, in pieces of the same style.
class TextMarkup {
public:
    TextMarkup(WriteContext& context, const Art& art, const TextFrameData& frame)
        : context_(context),
          frame_(frame),
          story_(*frame.story),
          layout_(LayFrame(context.document, art)),
          vertical_(frame.orientation == kVerticalText),
          toArt_{frame.matrix.a,  frame.matrix.b,  -frame.matrix.c,
                 -frame.matrix.d, frame.matrix.tx, frame.matrix.ty} {}

    std::string Attributes() const {
        std::string text;
        AppendAttribute(&text, "transform", MatrixText(toArt_));
        AppendAttribute(&text, "xml:space", "preserve");
        if (vertical_) AppendAttribute(&text, "writing-mode", "tb");
        return text;
    }

    std::string Members() {
        if (frame_.frameKind == kPathText) return OnPath();
        std::string text;
        for (const LinePlace& line : layout_.lines) text += Stretch(line.first, line.end, &line);
        return text;
    }

private:
    std::string OnPath();
    std::string Stretch(size_t first, size_t end, const LinePlace* line);
    std::string Piece(size_t first, size_t end, const LinePlace* line);
    std::string Kerning(size_t first, size_t end, bool lineStart) const;
    std::string FontAttributes(const CharacterAttributes& style) const;
    std::string Paint(const CharacterAttributes& style);
    void MoveToText(HostColor& color) const;

    WriteContext& context_;
    const TextFrameData& frame_;
    const Story& story_;
    FrameLayout layout_;
    bool vertical_;
    HostMatrix toArt_; ///< of the element's user space, y down
};

std::string TextMarkup::FontAttributes(const CharacterAttributes& style) const {
    static constexpr const char* kSlants[] = {"normal", "italic", "oblique"};
    std::string text;
    const FontConfigList& fonts = TextFonts();
    if (const auto index = fonts.Find(style.font)) {
        const FontWish wish = fonts.WishFor(*index);
        AppendAttribute(&text, "font-family", "'" + wish.families.front() + "'");
        if (wish.weight != 400) AppendAttribute(&text, "font-weight", std::to_string(wish.weight));
        if (wish.slant > 0 && wish.slant < 3) AppendAttribute(&text, "font-style", kSlants[wish.slant]);
    }
    AppendAttribute(&text, "font-size", NumbersText(style.fontSize));
    if (style.tracking)
        AppendAttribute(&text, "letter-spacing", NumbersText(style.tracking * style.fontSize / 1000));
    if (style.baselineShift != 0) AppendAttribute(&text, "baseline-shift", NumbersText(style.baselineShift));
    return text;
}

/// Gradients and patterns lie in art coordinates, which for the element are elsewhere.
void TextMarkup::MoveToText(HostColor& color) const {
    HostMatrix toText;
    if (!Invert(toArt_, &toText)) return;
    if (color.kind == kColorGradient) color.u.gradient.matrix = Concat(toText, color.u.gradient.matrix);
    if (color.kind == kColorPattern) color.u.pattern.matrix = Concat(toText, color.u.pattern.matrix);
}

std::string TextMarkup::Paint(const CharacterAttributes& style) {
    HostPathStyle paint = PaintOf(style);
    MoveToText(paint.fill);
    MoveToText(paint.stroke);
    const double scale = MeanScale(toArt_);
    if (scale > 0) {
        paint.lineWidth /= scale;
        paint.dash.offset /= scale;
        for (double& length : paint.dash.lengths) length /= scale;
    }
    return PaintAttributes(context_, paint, DefaultPathStyle());
}

/// Distances in front of letters, one for each character up to the last that has one.
std::string TextMarkup::Kerning(size_t first, size_t end, bool lineStart) const {
    const auto last = story_.kerning.lower_bound(end);
    const auto begin = story_.kerning.lower_bound(lineStart ? first + 1 : first);
    if (begin == last) return {};
    std::string text;
    const size_t stop = std::prev(last)->first + 1;
    for (size_t at = first; at < stop; ++at) {
        const bool second = story_.text[at] >= 0xDC00 && story_.text[at] < 0xE000 && at > first;
        if (second) continue;
        const auto found = lineStart && at == first ? story_.kerning.end() : story_.kerning.find(at);
        const double size = StyleOf(story_, at).character->fontSize;
        if (!text.empty()) text += ' ';
        AppendNumber(&text, found == story_.kerning.end() ? 0 : found->second * size / 1000);
    }
    return text;
}

/// @param line  set for the first piece of a line
std::string TextMarkup::Piece(size_t first, size_t end, const LinePlace* line) {
    const CharacterStyle style = StyleOf(story_, first);
    std::string text = "<tspan";
    if (line) {
        AppendAttribute(&text, "x", NumbersText(line->start.x));
        AppendAttribute(&text, "y", NumbersText(-line->start.y));
    }
    const std::string kerning = Kerning(first, end, line != nullptr);
    if (!kerning.empty()) AppendAttribute(&text, vertical_ ? "dy" : "dx", kerning);
    text += FontAttributes(*style.character) + Paint(*style.character) + ">";
    text += Escaped(Utf8Of(std::u16string_view(story_.text).substr(first, end - first)));
    return text + "</tspan>";
}

std::string TextMarkup::Stretch(size_t first, size_t end, const LinePlace* line) {
    std::string text;
    while (end > first && (story_.text[end - 1] == u'\r' || story_.text[end - 1] == u'\n')) --end;
    for (size_t at = first; at < end;) {
        size_t stop = at + 1;
        while (stop < end && story_.styles[stop].character == story_.styles[at].character &&
               story_.text[stop] != u'\r')
            ++stop;
        if (story_.text[at] != u'\r') text += Piece(at, stop, at == first ? line : nullptr);
        at = stop;
    }
    return text;
}

std::string TextMarkup::OnPath() {
    const Art* path = context_.document.Find(frame_.path);
    HostMatrix toText;
    if (!path || !path->path() || path->path()->segments.empty() || !Invert(toArt_, &toText)) return {};
    Subpath mapped{path->path()->segments, path->path()->closed};
    for (HostPathSegment& segment : mapped.segments)
        for (HostPoint* point : {&segment.anchor, &segment.in, &segment.out}) *point = Apply(toText, *point);
    const std::string id = context_.NewId("text-way");
    context_.defs += "<path id=\"" + id + "\"";
    AppendAttribute(&context_.defs, "d", PathDataText({mapped}));
    context_.defs += "/>\n";
    std::string text = "<textPath";
    AppendAttribute(&text, "xlink:href", "#" + id);
    if (layout_.start > 0) AppendAttribute(&text, "startOffset", NumbersText(layout_.start));
    return text + ">" + Stretch(layout_.first, layout_.end, nullptr) + "</textPath>";
}

} // namespace

void WriteText(WriteContext& context, const Art& art, const std::string& nature, std::string* markup) {
    const auto& frame = std::get<TextFrameData>(art.data);
    if (!frame.story) {
        context.losses["text"]++;
        return;
    }
    TextMarkup text(context, art, frame);
    const std::string attributes = text.Attributes(), members = text.Members();
    const std::string words = "<text" + attributes + ">" + members + "</text>";
    *markup += "<text" + nature + attributes + OwnTextAttributes(context, frame, art.handle, words) + ">" +
               members + "</text>\n";
}

} // namespace workbench
