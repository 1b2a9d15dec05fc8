#include "workbench/svg/text_content.h"

#include <algorithm>

#include "workbench/document/utf16.h"
#include "workbench/svg/element_reader.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr size_t kMostLists = 16; ///< elements within each other whose lists of places count

/// The places that an element lists for its characters.
struct PlaceLists {
    std::vector<double> x, y, dx, dy;
    size_t first = 0; ///< the element's first character
    bool any() const { return !x.empty() || !y.empty() || !dx.empty() || !dy.empty(); }
};

std::vector<double> ReadList(pugi::xml_node element, const char* name, double fontSize, double percentOf,
                             size_t most) {
    std::vector<double> list;
    TextCursor cursor(element.attribute(name).value());
    cursor.SkipBlanks();
    Length length;
    while (!cursor.AtEnd() && list.size() < most && TakeLength(cursor, &length)) {
        list.push_back(ToUserUnits(length, fontSize, percentOf));
        cursor.SkipSeparators();
    }
    return list;
}

class Collector {
public:
    Collector(ReadContext& context, TextContent* content) : context_(context), content_(content) {}

    void Read(pugi::xml_node element, const Surroundings& here, double rise, pugi::xml_node textPath,
              bool decorated);
    void Finish();

private:
    void ReadMember(pugi::xml_node child, const TextPart& part);
    void AddText(Text text, const TextPart& part);
    void AddUnit(char16_t unit, bool begins, const TextPart& part);
    void Place(TextCharacter* character) const;
    void EndParagraph();

    ReadContext& context_;
    TextContent* content_;
    std::vector<PlaceLists> lists_;
    size_t addressed_ = 0;    ///< characters that lists count
    bool blankBefore_ = true; ///< a blank here would be a second one, or the text's first
};

void Collector::Place(TextCharacter* character) const {
    const auto take = [&](std::vector<double> PlaceLists::*list, bool first) -> std::optional<double> {
        for (size_t i = lists_.size(); i-- > 0;) {
            const size_t index = addressed_ - lists_[i].first;
            const std::vector<double>& values = lists_[i].*list;
            if (index >= values.size()) continue;
            if (first) character->listed = index > 0;
            return values[index];
        }
        return std::nullopt;
    };
    character->y = take(&PlaceLists::y, true);
    character->x = take(&PlaceLists::x, true);
    character->dx = take(&PlaceLists::dx, false).value_or(0);
    character->dy = take(&PlaceLists::dy, false).value_or(0);
}

void Collector::AddUnit(char16_t unit, bool begins, const TextPart& part) {
    if (context_.textLeft == 0) {
        if (context_.refusal.empty()) context_.refusal = "the file has too much text";
        return;
    }
    --context_.textLeft;
    TextCharacter character{unit, begins, false, &part, {}, {}, 0, 0};
    if (begins) {
        Place(&character);
        ++addressed_;
    }
    content_->characters.push_back(character);
}

void Collector::AddText(Text text, const TextPart& part) {
    const bool keeps = part.here.style.text.keepsBlanks;
    for (const char16_t each : Utf16Of(text)) {
        const bool blank = each == u' ' || each == u'\t' || each == u'\n' || each == u'\r';
        if (blank && !keeps && blankBefore_) continue;
        if (!blank && each < 0x20) continue;
        blankBefore_ = blank;
        AddUnit(blank ? u' ' : each, each < 0xDC00 || each > 0xDFFF, part);
    }
}

void Collector::EndParagraph() {
    auto& characters = content_->characters;
    if (characters.empty()) return;
    const TextPart& last = *characters.back().part;
    if (characters.back().unit == u' ' && !last.here.style.text.keepsBlanks) characters.pop_back();
    AddUnit(u'\r', true, last);
    blankBefore_ = true;
}

void Collector::ReadMember(pugi::xml_node child, const TextPart& part) {
    const Text name = LocalName(child.name());
    const bool paragraph = name == "flowPara" || name == "flowDiv" || name == "p";
    const bool known = paragraph || name == "tspan" || name == "a" || name == "textPath" ||
                       name == "flowSpan" || name == "tref";
    if (name == "flowLine") EndParagraph();
    if (!known && name != "flowLine") return;
    const Visit visit(context_);
    if (!visit) return;
    // Transforms of members are no part of text.
    Surroundings here = part.here;
    here.style = ComputeStyle(child, part.here.style, context_.sheet);
    if (!here.style.displayed) return;
    Read(child, here, part.rise + here.style.text.baselineShift, name == "textPath" ? child : part.textPath,
         part.decorated || here.style.text.decorated);
    if (paragraph) EndParagraph();
}

void Collector::Read(pugi::xml_node element, const Surroundings& here, double rise, pugi::xml_node textPath,
                     bool decorated) {
    const TextPart& part = content_->parts.emplace_back(TextPart{element, here, rise, textPath, decorated});
    const double font = here.style.fontSize;
    PlaceLists lists;
    lists.first = addressed_;
    const auto read = [&](const char* name, double whole) {
        return ReadList(element, name, font, whole, context_.textLeft);
    };
    if (LocalName(element.name()) != "textPath") {
        lists.x = read("x", here.viewWidth);
        lists.y = read("y", here.viewHeight);
        lists.dx = read("dx", here.viewWidth);
        lists.dy = read("dy", here.viewHeight);
    }
    for (const double angle : ReadList(element, "rotate", font, 0, 64))
        if (angle != 0) {
            context_.Lose("rotated letters");
            break;
        }
    if (element.attribute("textLength")) context_.Lose("textLength");
    const bool listed = lists.any() && lists_.size() < kMostLists;
    if (listed) lists_.push_back(std::move(lists));
    for (const pugi::xml_node child : element.children()) {
        if (context_.refused()) break;
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            AddText(child.value(), part);
        else if (child.type() == pugi::node_element && context_.KindOf(child) != ElementKind::kForeign)
            ReadMember(child, part);
    }
    if (listed) lists_.pop_back();
}

/// A blank at the end shows nothing.
void Collector::Finish() {
    auto& characters = content_->characters;
    while (!characters.empty() &&
           (characters.back().unit == u'\r' ||
            (characters.back().unit == u' ' && !characters.back().part->here.style.text.keepsBlanks)))
        characters.pop_back();
}

} // namespace

TextContent ReadTextContent(ReadContext& context, pugi::xml_node element, const Surroundings& here) {
    TextContent content;
    Collector collector(context, &content);
    collector.Read(element, here, here.style.text.baselineShift, {}, here.style.text.decorated);
    collector.Finish();
    return content;
}

} // namespace workbench
