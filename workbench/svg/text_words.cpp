#include "workbench/svg/text_words.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>

#include "workbench/document/story.h"
#include "workbench/document/utf16.h"
#include "workbench/svg/path_art.h"

namespace workbench {

/// The stories of one file as far as they were met.
struct OwnStories {
    struct Entry {
        std::vector<std::pair<size_t, pugi::xml_node>> elements; ///< by their numbers in the chain
        bool good = false, checked = false;
        std::shared_ptr<Story> story;
        std::map<size_t, ArtHandle> frames;
    };
    std::map<std::string, Entry, std::less<>> entries;
};

namespace {

using Text = std::string_view;

// Text

bool NeedsEscape(std::u16string_view text, size_t at) {
    const char16_t unit = text[at];
    if (unit < 0x20 || unit == u'\\' || unit == 0x7F || unit >= 0xFFFE) return true;
    if (unit >= 0xD800 && unit < 0xDC00)
        return at + 1 >= text.size() || text[at + 1] < 0xDC00 || text[at + 1] > 0xDFFF;
    if (unit >= 0xDC00 && unit < 0xE000) return at == 0 || text[at - 1] < 0xD800 || text[at - 1] > 0xDBFF;
    return false;
}

std::string EscapedUnits(std::u16string_view text) {
    std::string result;
    size_t plain = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (!NeedsEscape(text, at)) continue;
        result += Utf8Of(text.substr(plain, at - plain));
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(text[at]));
        result += escape;
        plain = at + 1;
    }
    return result + Utf8Of(text.substr(plain));
}

std::u16string UnescapedUnits(Text text) {
    const std::u16string raw = Utf16Of(text);
    std::u16string result;
    for (size_t at = 0; at < raw.size(); ++at) {
        const bool escape = raw[at] == u'\\' && raw.size() - at >= 6 && raw[at + 1] == u'u';
        unsigned value = 0;
        bool good = escape;
        for (size_t i = 2; good && i < 6; ++i) {
            const size_t digit = std::u16string_view(u"0123456789abcdef").find(raw[at + i]);
            good = digit != std::u16string_view::npos;
            value = value << 4 | static_cast<unsigned>(digit);
        }
        result += good ? static_cast<char16_t>(value) : raw[at];
        if (good) at += 5;
    }
    return result;
}

// Attributes as lists of numbers

std::string CharacterText(const CharacterAttributes& a) {
    return NumbersText(a.fontSize, a.baselineShift, a.leading, a.autoLeading ? 1 : 0, a.tracking,
                       a.horizontalScale, a.verticalScale, a.japaneseAlternate);
}

std::string ParagraphText(const ParagraphAttributes& p) {
    return NumbersText(p.firstLineIndent, p.startIndent, p.endIndent, p.justification,
                       p.autoHyphenation ? 1 : 0, p.hyphenBefore, p.hyphenAfter, p.hyphenLimit,
                       p.wordSpacing[0], p.wordSpacing[1], p.wordSpacing[2], p.letterSpacing[0],
                       p.letterSpacing[1], p.letterSpacing[2], p.hangingRoman ? 1 : 0, p.autoLeading,
                       p.repeatedCharacters ? 1 : 0, p.bunriKinshi ? 1 : 0, p.burasagari);
}

int32_t Whole(double value) {
    return static_cast<int32_t>(std::lround(std::clamp(value, -2147483648.0, 2147483647.0)));
}

bool ParseCharacter(Text text, CharacterAttributes* a) {
    const std::vector<double> v = ParseNumbers(text, 8);
    if (v.size() != 8) return false;
    a->fontSize = v[0];
    a->baselineShift = v[1];
    a->leading = v[2];
    a->autoLeading = v[3] != 0;
    a->tracking = Whole(v[4]);
    a->horizontalScale = v[5];
    a->verticalScale = v[6];
    a->japaneseAlternate = Whole(v[7]);
    return true;
}

bool ParseParagraph(Text text, ParagraphAttributes* p) {
    const std::vector<double> v = ParseNumbers(text, 19);
    if (v.size() != 19) return false;
    p->firstLineIndent = v[0];
    p->startIndent = v[1];
    p->endIndent = v[2];
    p->justification = Whole(v[3]);
    p->autoHyphenation = v[4] != 0;
    p->hyphenBefore = Whole(v[5]);
    p->hyphenAfter = Whole(v[6]);
    p->hyphenLimit = Whole(v[7]);
    std::copy_n(&v[8], 3, p->wordSpacing);
    std::copy_n(&v[11], 3, p->letterSpacing);
    p->hangingRoman = v[14] != 0;
    p->autoLeading = v[15];
    p->repeatedCharacters = v[16] != 0;
    p->bunriKinshi = v[17] != 0;
    p->burasagari = Whole(v[18]);
    return true;
}

// Marks

/// What may change without the text being another: where the element stands, whether it shows.
bool CountsForMark(Text name, Text ownPrefix) {
    if (!ownPrefix.empty() && name.starts_with(ownPrefix)) return false;
    static constexpr Text kFree[] = {"id", "display", "style", "opacity", "sodipodi:insensitive"};
    return std::ranges::find(kFree, name) == std::end(kFree) && !name.starts_with("data-") &&
           !name.starts_with("xmlns");
}

/// The element's words in one form, however the file lays them out.
void AppendWords(pugi::xml_node node, Text ownPrefix, int depth, std::string* words) {
    if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) *words += node.value();
    if (node.type() != pugi::node_element || depth > 4) return;
    *words += '<';
    *words += node.name();
    for (const pugi::xml_attribute attribute : node.attributes()) {
        if (!CountsForMark(attribute.name(), ownPrefix)) continue;
        *words += ' ';
        *words += attribute.name();
        *words += '=';
        *words += attribute.value();
    }
    *words += '>';
    for (const pugi::xml_node child : node.children()) AppendWords(child, ownPrefix, depth + 1, words);
    *words += "</>";
}

std::string MarkOfWords(pugi::xml_node element, Text ownPrefix) {
    std::string words;
    AppendWords(element, ownPrefix, 0, &words);
    return MarkOf(words);
}

// Reading

struct StoryLink {
    std::string id;
    size_t number = 0;
};

std::optional<StoryLink> LinkOf(const ReadContext& context, pugi::xml_node element) {
    const Text text = context.Own(element, kOwnStory);
    const size_t blank = text.rfind(' ');
    if (blank == Text::npos) return std::nullopt;
    TextCursor cursor(text.substr(blank + 1));
    double number = 0;
    if (!cursor.Number(&number) || !cursor.AtEnd() || number < 0 || number > 1e6) return std::nullopt;
    return StoryLink{std::string(text.substr(0, blank)), static_cast<size_t>(number)};
}

/// Finds all text elements of all stories, in one walk over the file.
OwnStories& StoriesOf(ReadContext& context) {
    if (context.ownStories) return *context.ownStories;
    context.ownStories = std::make_shared<OwnStories>();
    pugi::xml_node node = context.root;
    while (node) {
        if (node.type() == pugi::node_element && context.KindOf(node) == ElementKind::kText)
            if (const auto link = LinkOf(context, node))
                context.ownStories->entries[link->id].elements.emplace_back(link->number, node);
        if (node.first_child()) {
            node = node.first_child();
            continue;
        }
        while (node && node != context.root && !node.next_sibling()) node = node.parent();
        node = node == context.root ? pugi::xml_node{} : node.next_sibling();
    }
    return *context.ownStories;
}

bool ReadRun(ReadContext& context, pugi::xml_node run, const Surroundings& around, Story* story) {
    auto character = std::make_shared<CharacterAttributes>();
    auto paragraph = std::make_shared<ParagraphAttributes>();
    if (!ParseCharacter(run.attribute("character").value(), character.get()) ||
        !ParseParagraph(run.attribute("paragraph").value(), paragraph.get()))
        return false;
    character->font = Text(run.attribute("font").value()).substr(0, 255);
    if (const pugi::xml_attribute kinsoku = run.attribute("kinsoku"))
        paragraph->kinsoku = UnescapedUnits(kinsoku.value());
    Surroundings here = around;
    here.style = ComputeStyle(run, ComputedStyle{}, context.sheet);
    SetPaint(*character, ReadPathStyle(context, run, here, {}, nullptr, nullptr));
    const std::u16string text = UnescapedUnits(run.attribute("text").value());
    if (text.size() > context.textLeft) return false;
    context.textLeft -= text.size();
    const CharacterStyle style{std::move(character), std::move(paragraph)};
    if (text.empty())
        story->defaults = style;
    else
        InsertText(*story, story->text.size(), text, style);
    return true;
}

std::shared_ptr<Story> ReadStory(ReadContext& context, pugi::xml_node element, const Surroundings& around) {
    auto story = std::make_shared<Story>();
    const std::string name = context.ownPrefix + kOwnRun;
    for (const pugi::xml_node run : element.children(name.c_str()))
        if (!ReadRun(context, run, around, story.get())) return nullptr;
    const std::vector<double> kerning = ParseNumbers(element.attribute("kerning").value(), kMaxTextUnits);
    for (size_t i = 0; i + 1 < kerning.size(); i += 2) {
        const double position = kerning[i];
        if (position < 0 || position > static_cast<double>(story->text.size())) return nullptr;
        SetKerning(*story, static_cast<size_t>(position), Whole(kerning[i + 1]));
    }
    return story;
}

/// Whether all frames of a chain are there, each as it was written.
bool ChainIsWhole(const ReadContext& context, const OwnStories::Entry& entry, pugi::xml_node story) {
    TextCursor cursor(story.attribute("frames").value());
    double count = 0;
    if (!cursor.Number(&count) || count != static_cast<double>(entry.elements.size())) return false;
    return std::ranges::all_of(entry.elements, [&](const auto& each) {
        const Text frame = context.Own(each.second, kOwnFrame);
        return frame.starts_with(MarkOfWords(each.second, context.ownPrefix) + " ");
    });
}

Art* ReadFramePath(ReadContext& context, pugi::xml_node element, const Surroundings& around) {
    const pugi::xml_node path = context.Find(context.Own(element, kOwnTextPath));
    if (!path || context.KindOf(path) != ElementKind::kPath) return nullptr;
    Surroundings here = around;
    here.style = ComputeStyle(path, ComputedStyle{}, context.sheet);
    here.instance = true; // its id is no name
    Art* art = ReadShape(context, path, ElementKind::kPath, here, nullptr);
    return art && art->path() ? art : nullptr;
}

/// Frames of one chain share their story; one that is drawn again through a reference has a copy.
void JoinStory(OwnStories::Entry& entry, size_t number, Art& art, TextFrameData& frame) {
    if (entry.frames.emplace(number, art.handle).second) {
        frame.story = entry.story;
        frame.story->frames.clear();
        for (const auto& [each, handle] : entry.frames) frame.story->frames.push_back(handle);
    } else {
        frame.story = std::make_shared<Story>(*entry.story);
        frame.story->frames = {art.handle};
    }
}

// Writing

std::string RunMarkup(WriteContext& context, const CharacterStyle& style, std::u16string_view text) {
    std::string run = "<vlq:" + std::string(kOwnRun);
    AppendAttribute(&run, "text", EscapedUnits(text));
    AppendAttribute(&run, "font", style.character->font);
    AppendAttribute(&run, "character", CharacterText(*style.character));
    AppendAttribute(&run, "paragraph", ParagraphText(*style.paragraph));
    if (style.paragraph->kinsoku) AppendAttribute(&run, "kinsoku", EscapedUnits(*style.paragraph->kinsoku));
    return run + PaintAttributes(context, PaintOf(*style.character), DefaultPathStyle()) + "/>\n";
}

std::string DefineStory(WriteContext& context, const Story& story) {
    std::string& id = context.stories[&story];
    if (!id.empty()) return id;
    id = context.NewId("story");
    std::string runs = RunMarkup(context, StyleOf({{}, {}, {}, story.defaults, {}}, 0), {});
    for (size_t first = 0; first < story.text.size();) {
        size_t end = first + 1;
        while (end < story.text.size() && story.styles[end].character == story.styles[first].character &&
               story.styles[end].paragraph == story.styles[first].paragraph)
            ++end;
        runs += RunMarkup(context, StyleOf(story, first),
                          std::u16string_view(story.text).substr(first, end - first));
        first = end;
    }
    std::string kerning;
    for (const auto& [position, value] : story.kerning)
        kerning += (kerning.empty() ? "" : " ") + std::to_string(position) + " " + std::to_string(value);
    std::string text = "<vlq:" + std::string(kOwnStory);
    AppendAttribute(&text, "id", id);
    AppendAttribute(&text, "frames", std::to_string(story.frames.size()));
    if (!kerning.empty()) AppendAttribute(&text, "kerning", kerning);
    context.defs += text + ">\n" + runs + "</vlq:" + kOwnStory + ">\n";
    return id;
}

} // namespace

Art* ReadOwnText(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container,
                 bool* own) {
    *own = false;
    if (context.ownPrefix.empty()) return nullptr;
    const std::optional<StoryLink> link = LinkOf(context, element);
    const pugi::xml_node storyElement = link ? context.Find(link->id) : pugi::xml_node{};
    const Text frameText = context.Own(element, kOwnFrame);
    const std::vector<double> v =
        ParseNumbers(frameText.substr(std::min(frameText.find(' '), frameText.size())), 9);
    if (!storyElement || v.size() != 9) return nullptr;
    OwnStories::Entry& entry = StoriesOf(context).entries[link->id];
    Surroundings around = here;
    around.toArt = here.outerToArt;
    if (!entry.checked) {
        entry.checked = true;
        if (ChainIsWhole(context, entry, storyElement))
            entry.story = ReadStory(context, storyElement, around);
    }
    if (!entry.story) return nullptr;
    *own = true;
    Art* art = context.NewArt(kArtTextFrame, container);
    if (!art) return nullptr;
    auto& frame = std::get<TextFrameData>(art->data);
    frame.frameKind = Whole(v[0]);
    frame.orientation = Whole(v[1]);
    frame.matrix = {v[2], v[3], v[4], v[5], v[6], v[7]};
    frame.pathStart = v[8];
    if (const Art* path = ReadFramePath(context, element, around)) frame.path = path->handle;
    JoinStory(entry, link->number, *art, frame);
    art->blend = ReadBlend(context, element, here.style);
    SetNature(context, element, here, *art);
    return art;
}

std::string OwnTextAttributes(WriteContext& context, const TextFrameData& frame, ArtHandle handle,
                              const std::string& words) {
    std::string attributes;
    pugi::xml_document tree;
    const bool parsed = tree.load_buffer(words.data(), words.size(),
                                         pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
    if (!parsed || !frame.story) return attributes;
    const HostMatrix& m = frame.matrix;
    AppendOwn(
        &attributes, kOwnFrame,
        MarkOfWords(tree.document_element(), "vlq:") + " " +
            NumbersText(frame.frameKind, frame.orientation, m.a, m.b, m.c, m.d, m.tx, m.ty, frame.pathStart));
    const auto& frames = frame.story->frames;
    const auto number = std::ranges::find(frames, handle) - frames.begin();
    AppendOwn(&attributes, kOwnStory, DefineStory(context, *frame.story) + " " + std::to_string(number));
    const Art* path = context.document.Find(frame.path);
    if (!path || !path->path()) return attributes;
    if (path->path()->segments.empty()) {
        context.losses["empty path"]++;
        return attributes;
    }
    const std::string id = context.NewId("text-path");
    std::string markup = "<path";
    AppendAttribute(&markup, "id", id);
    markup += OutlineAttributes(context, *path);
    markup += PaintAttributes(context, path->path()->style, DefaultPathStyle());
    if (path->path()->style.evenOdd) AppendAttribute(&markup, "fill-rule", "evenodd");
    context.defs += markup + "/>\n";
    AppendOwn(&attributes, kOwnTextPath, id);
    return attributes;
}

} // namespace workbench
