#include "workbench/shell/document_json_text.h"

#include <algorithm>

#include "workbench/document/story.h"
#include "workbench/document/utf16.h"

namespace workbench {
namespace {

using Json = nlohmann::ordered_json;
using ColorOf = std::function<Json(const HostColor&)>;

Json CharacterJson(const CharacterAttributes& a, const ColorOf& colorOf) {
    return {{"font", a.font},
            {"fontSize", a.fontSize},
            {"leading", a.autoLeading ? Json("auto") : Json(a.leading)},
            {"baselineShift", a.baselineShift},
            {"tracking", a.tracking},
            {"horizontalScale", a.horizontalScale},
            {"verticalScale", a.verticalScale},
            {"japaneseAlternate", a.japaneseAlternate},
            {"fill", a.fill ? colorOf(a.fillColor) : Json()},
            {"stroke", a.stroke ? colorOf(a.strokeColor) : Json()},
            {"fillOverprint", a.fillOverprint},
            {"strokeOverprint", a.strokeOverprint},
            {"lineWidth", a.lineWidth},
            {"lineCap", a.lineCap},
            {"lineJoin", a.lineJoin},
            {"miterLimit", a.miterLimit},
            {"dash", {{"offset", a.dashOffset}, {"lengths", a.dashes}}}};
}

Json ParagraphJson(const ParagraphAttributes& p) {
    return {{"justification", p.justification},
            {"firstLineIndent", p.firstLineIndent},
            {"startIndent", p.startIndent},
            {"endIndent", p.endIndent},
            {"autoHyphenation", p.autoHyphenation},
            {"hyphenBefore", p.hyphenBefore},
            {"hyphenAfter", p.hyphenAfter},
            {"hyphenLimit", p.hyphenLimit},
            {"wordSpacing", p.wordSpacing},
            {"letterSpacing", p.letterSpacing},
            {"hangingRoman", p.hangingRoman},
            {"autoLeading", p.autoLeading},
            {"repeatedCharacters", p.repeatedCharacters},
            {"bunriKinshi", p.bunriKinshi},
            {"burasagari", p.burasagari},
            {"kinsoku", p.kinsoku ? Json(Utf8Of(*p.kinsoku)) : Json()}};
}

Json RunsOf(const Story& story, const ColorOf& colorOf) {
    Json runs = Json::array();
    // Neighbours of equal attributes are one run, however the attributes are shared.
    size_t first = 0;
    Json character, paragraph;
    const auto close = [&](size_t end) {
        if (first == end) return;
        const auto text = std::u16string_view(story.text).substr(first, end - first);
        runs.push_back({{"text", Utf8Of(text)}, {"character", character}, {"paragraph", paragraph}});
        first = end;
    };
    CharacterStyle last;
    for (size_t at = 0; at < story.text.size(); ++at) {
        const CharacterStyle style = StyleOf(story, at);
        if (style.character == last.character && style.paragraph == last.paragraph) continue;
        last = style;
        Json nextCharacter = CharacterJson(*style.character, colorOf);
        Json nextParagraph = ParagraphJson(*style.paragraph);
        if (nextCharacter == character && nextParagraph == paragraph) continue;
        close(at);
        character = std::move(nextCharacter);
        paragraph = std::move(nextParagraph);
    }
    close(story.text.size());
    return runs;
}

Json PathJson(const PathData& path) {
    Json segments = Json::array();
    for (const HostPathSegment& segment : path.segments)
        segments.push_back({{"anchor", {segment.anchor.x, segment.anchor.y}},
                            {"in", {segment.in.x, segment.in.y}},
                            {"out", {segment.out.x, segment.out.y}},
                            {"corner", segment.corner}});
    return {{"closed", path.closed}, {"segments", std::move(segments)}};
}

} // namespace

void AddTextJson(const Document& document, const Art& art, const ColorOf& colorOf, Json* json) {
    static constexpr const char* kKinds[] = {"point", "area", "path"};
    const auto& frame = std::get<TextFrameData>(art.data);
    const HostMatrix& m = frame.matrix;
    const bool known = frame.frameKind >= kPointText && frame.frameKind <= kPathText;
    (*json)["frameKind"] = known ? Json(kKinds[frame.frameKind]) : Json(frame.frameKind);
    (*json)["orientation"] = frame.orientation == kVerticalText     ? Json("vertical")
                             : frame.orientation == kHorizontalText ? Json("horizontal")
                                                                    : Json(frame.orientation);
    (*json)["matrix"] = Json::array({m.a, m.b, m.c, m.d, m.tx, m.ty});
    if (frame.frameKind == kPathText) (*json)["pathStart"] = frame.pathStart;
    if (const Art* path = document.Find(frame.path); path && path->path())
        (*json)["path"] = PathJson(*path->path());
    if (!frame.story) return;
    const Story& story = *frame.story;
    const auto place = std::ranges::find(story.frames, art.handle);
    const StoryRange shown = ShownRange(document, art);
    (*json)["chain"] = {{"frame", place - story.frames.begin()}, {"frames", story.frames.size()}};
    (*json)["shown"] = Json::array({shown.first, shown.end});
    (*json)["runs"] = RunsOf(story, colorOf);
    Json kerning = Json::array();
    for (const auto& [position, value] : story.kerning) kerning.push_back(Json::array({position, value}));
    (*json)["kerning"] = std::move(kerning);
}

} // namespace workbench
