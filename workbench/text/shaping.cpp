#include "workbench/text/shaping.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "workbench/document/story.h"
#include "workbench/text/font_config_list.h"
#include "workbench/text/pango_handle.h"

namespace workbench {

namespace {

/// A character's place in the paragraph's UTF-8 text.
struct Place {
    size_t byte = 0, unit = 0; ///< unit of the story
};

struct Utf8Paragraph {
    std::string text;
    std::vector<Place> places; ///< one for each character, and the end

    /// The index of the character that begins at a byte.
    size_t CharacterAt(size_t byte) const {
        return static_cast<size_t>(std::ranges::lower_bound(places, byte, {}, &Place::byte) - places.begin());
    }
};

constexpr char32_t kLostCharacter = 0xFFFD, kNoWidth = 0x200B;

char32_t TakeCharacter(std::u16string_view text, size_t* at) {
    const char16_t unit = text[(*at)++];
    const bool high = unit >= 0xD800 && unit < 0xDC00, low = unit >= 0xDC00 && unit < 0xE000;
    if (high && *at < text.size() && text[*at] >= 0xDC00 && text[*at] < 0xE000)
        return 0x10000 + ((char32_t{unit} - 0xD800) << 10) + (char32_t{text[(*at)++]} - 0xDC00);
    if (high || low) return kLostCharacter;
    return unit < 0x20 && unit != u'\t' && unit != u'\n' ? kNoWidth : char32_t{unit};
}

Utf8Paragraph ToUtf8(const Story& story, size_t first, size_t end) {
    Utf8Paragraph paragraph;
    const std::u16string_view text = std::u16string_view(story.text).substr(0, end);
    for (size_t at = first; at < end;) {
        paragraph.places.push_back({paragraph.text.size(), at});
        char bytes[6];
        paragraph.text.append(bytes, static_cast<size_t>(g_unichar_to_utf8(TakeCharacter(text, &at), bytes)));
    }
    paragraph.places.push_back({paragraph.text.size(), end});
    return paragraph;
}

/// Characters that keep standing in vertical text, by the blocks of the published property of vertical
/// orientation; those that turn where a font has a form for it are among them.
bool StandsUpright(char32_t c) {
    struct Block {
        char32_t first, last;
    };
    static constexpr Block kBlocks[] = {
        {0x1100, 0x11FF}, {0x2460, 0x24FF}, {0x25A0, 0x26FF},   {0x2E80, 0xA4CF},   {0xA960, 0xA97F},
        {0xAC00, 0xD7FF}, {0xF900, 0xFAFF}, {0xFE10, 0xFE1F},   {0xFE30, 0xFE48},   {0xFE50, 0xFE6F},
        {0xFF01, 0xFF60}, {0xFFE0, 0xFFE7}, {0x1B000, 0x1B2FF}, {0x1F000, 0x1FAFF}, {0x20000, 0x3FFFD}};
    return std::ranges::any_of(kBlocks, [c](Block block) { return c >= block.first && c <= block.last; });
}

const char* FeatureOf(int32_t alternate) {
    static constexpr const char* kFeatures[] = {nullptr, "trad", "expt", "jp78", "jp83"};
    return alternate > 0 && alternate < 5 ? kFeatures[alternate] : nullptr;
}

void Add(PangoAttrList* list, PangoAttribute* attribute, size_t first, size_t end) {
    attribute->start_index = static_cast<guint>(first);
    attribute->end_index = static_cast<guint>(end);
    pango_attr_list_insert(list, attribute);
}

DescriptionPointer DescriptionOf(const CharacterAttributes& style) {
    const FontConfigList& fonts = TextFonts();
    DescriptionPointer description(
        pango_font_description_copy(fonts.Description(fonts.Find(style.font).value_or(0))));
    pango_font_description_set_absolute_size(description.get(), kShapedEm * PANGO_SCALE);
    return description;
}

AttributesPointer AttributesOf(const Story& story, const Utf8Paragraph& paragraph, int32_t orientation) {
    AttributesPointer list(pango_attr_list_new());
    const auto& places = paragraph.places;
    const auto sameAs = [&](size_t a, size_t b) {
        return story.styles[places[a].unit].character == story.styles[places[b].unit].character;
    };
    for (size_t first = 0; first + 1 < places.size();) {
        size_t end = first + 1;
        while (end + 1 < places.size() && sameAs(first, end)) ++end;
        const CharacterStyle style = StyleOf(story, places[first].unit);
        Add(list.get(), pango_attr_font_desc_new(DescriptionOf(*style.character).get()), places[first].byte,
            places[end].byte);
        if (const char* feature = FeatureOf(style.character->japaneseAlternate))
            Add(list.get(), pango_attr_font_features_new(feature), places[first].byte, places[end].byte);
        first = end;
    }
    if (orientation != kVerticalText) return list;
    const auto upright = [&](size_t index) {
        return StandsUpright(g_utf8_get_char(paragraph.text.data() + places[index].byte));
    };
    for (size_t first = 0; first + 1 < places.size();) {
        size_t end = first + 1;
        while (end + 1 < places.size() && upright(first) == upright(end)) ++end;
        if (upright(first)) {
            Add(list.get(), pango_attr_gravity_new(PANGO_GRAVITY_EAST), places[first].byte, places[end].byte);
            Add(list.get(), pango_attr_gravity_hint_new(PANGO_GRAVITY_HINT_STRONG), places[first].byte,
                places[end].byte);
        }
        first = end;
    }
    return list;
}

/// No hinting and no rounding, so that glyphs grow in proportion.
ContextPointer NewContext() {
    ContextPointer context(pango_font_map_create_context(TextFonts().pangoFonts()));
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    return context;
}

bool Hangs(char16_t unit) {
    return std::u16string_view(u"、。，．､｡").find(unit) != std::u16string_view::npos;
}

double ScaleOf(double scale) {
    return scale > 0.001 && scale < 1000 ? scale : 1;
}

double SizeOf(const CharacterAttributes& style) {
    return style.fontSize > 0 && style.fontSize < 1e6 ? style.fontSize : 0;
}

struct FontHeight {
    double ascent = 0, descent = 0; ///< of an em of 1
};

FontHeight HeightOf(PangoFont* font) {
    PangoFontMetrics* metrics = pango_font_get_metrics(font, nullptr);
    const double unit = kShapedEm * PANGO_SCALE;
    const FontHeight height{pango_font_metrics_get_ascent(metrics) / unit,
                            pango_font_metrics_get_descent(metrics) / unit};
    pango_font_metrics_unref(metrics);
    return height;
}

/// What a cell has of its style alone.
/// @param upright  in vertical text: the letter isn't turned
Cell StyledCell(const Story& story, size_t first, int32_t orientation, bool upright, FontHeight height) {
    // The pointers of styles that have none stand for the whole process.
    const CharacterStyle style = StyleOf(story, first);
    const CharacterAttributes& character = *style.character;
    const double size = SizeOf(character);
    Cell cell;
    cell.first = first;
    cell.style = style.character.get();
    cell.along = ScaleOf(upright ? character.verticalScale : character.horizontalScale) * size;
    cell.across = ScaleOf(upright ? character.horizontalScale : character.verticalScale) * size;
    cell.ascent = height.ascent * cell.across;
    cell.descent = height.descent * cell.across;
    if (orientation == kVerticalText) cell.ascent = cell.descent = (cell.ascent + cell.descent) / 2;
    cell.leading = character.autoLeading ? size * style.paragraph->autoLeading : character.leading;
    cell.rise = character.baselineShift;
    return cell;
}

/// The glyphs of one cluster; spacing is added once, behind the last of them.
void SetGlyphs(Cell& cell, const Story& story, std::span<const PangoGlyphInfo> glyphs, double drop) {
    const CharacterStyle style = StyleOf(story, cell.first);
    double pen = 0;
    for (const PangoGlyphInfo& info : glyphs) {
        const double unit = kShapedEm * PANGO_SCALE;
        if (info.glyph != PANGO_GLYPH_EMPTY)
            cell.glyphs.push_back({info.glyph, pen + info.geometry.x_offset / unit * cell.along,
                                   drop + info.geometry.y_offset / unit * cell.across});
        pen += info.geometry.width / unit * cell.along;
    }
    const double em = SizeOf(*style.character);
    if (cell.blank) pen *= style.paragraph->wordSpacing[1];
    cell.advance = pen + em * (style.character->tracking / 1000.0 + style.paragraph->letterSpacing[1]);
}

struct Shaper {
    const Story& story;
    const Utf8Paragraph& paragraph;
    int32_t orientation;
    std::vector<PangoLogAttr> breaks;
    std::vector<Cell> cells;

    void Shape(const PangoItem& item);
    void AddCell(const PangoItem& item, std::shared_ptr<PangoFont> font, FontHeight height, size_t byte,
                 size_t endByte, std::span<const PangoGlyphInfo> glyphs);
};

void Shaper::AddCell(const PangoItem& item, std::shared_ptr<PangoFont> font, FontHeight height, size_t byte,
                     size_t endByte, std::span<const PangoGlyphInfo> glyphs) {
    const size_t character = paragraph.CharacterAt(byte), endCharacter = paragraph.CharacterAt(endByte);
    const size_t unit = paragraph.places[character].unit;
    const bool upright = item.analysis.gravity == PANGO_GRAVITY_EAST;
    Cell cell = StyledCell(story, unit, orientation, upright, height);
    cell.end = paragraph.places[endCharacter].unit;
    cell.font = std::move(font);
    cell.level = item.analysis.level;
    cell.blank = breaks[character].is_white;
    cell.tab = story.text[unit] == u'\t';
    cell.mustBreakAfter = story.text[unit] == u'\n' || story.text[unit] == u'\x3';
    cell.breakAfter = breaks[endCharacter].is_line_break;
    const CharacterStyle style = StyleOf(story, unit);
    cell.hangs = style.paragraph->burasagari != 0 && Hangs(story.text[unit]);
    const auto kerning = story.kerning.find(unit);
    if (kerning != story.kerning.end()) cell.kerning = kerning->second / 1000.0 * SizeOf(*style.character);
    // Turned letters stand on a baseline; in vertical text their middle goes onto the line's.
    const bool turned = orientation == kVerticalText && !upright;
    const double drop = turned ? (height.ascent - height.descent) / 2 * cell.across : 0;
    SetGlyphs(cell, story, glyphs, drop);
    if (cell.tab || cell.mustBreakAfter) cell.glyphs.clear();
    cells.push_back(std::move(cell));
}

void Shaper::Shape(const PangoItem& item) {
    const GlyphsPointer glyphs(pango_glyph_string_new());
    const auto offset = static_cast<size_t>(item.offset);
    pango_shape_full(paragraph.text.data() + offset, item.length, paragraph.text.data(),
                     static_cast<int>(paragraph.text.size()), &item.analysis, glyphs.get());
    auto* fontObject = static_cast<PangoFont*>(g_object_ref(item.analysis.font));
    const std::shared_ptr<PangoFont> font(fontObject, FontRelease{});
    const FontHeight height = HeightOf(fontObject);

    // Glyphs come in the order of the eye; clusters are wanted in the order of the text.
    struct Cluster {
        int byte, first, end;
    };
    std::vector<Cluster> clusters;
    for (int i = 0; i < glyphs->num_glyphs; ++i) {
        const int byte = glyphs->log_clusters[i];
        if (!clusters.empty() && clusters.back().byte == byte)
            clusters.back().end = i + 1;
        else
            clusters.push_back({byte, i, i + 1});
    }
    if (item.analysis.level % 2) std::ranges::reverse(clusters);
    for (size_t i = 0; i < clusters.size(); ++i) {
        const int end = i + 1 < clusters.size() ? clusters[i + 1].byte : item.length;
        if (end <= clusters[i].byte) continue;
        AddCell(item, font, height, offset + static_cast<size_t>(clusters[i].byte),
                offset + static_cast<size_t>(end),
                {glyphs->glyphs + clusters[i].first, glyphs->glyphs + clusters[i].end});
    }
}

} // namespace

std::vector<Cell> ShapeParagraph(const Story& story, size_t first, size_t end, int32_t orientation) {
    if (first >= end || TextFonts().Count() == 0) return {};
    const Utf8Paragraph paragraph = ToUtf8(story, first, end);
    const auto length = static_cast<int>(paragraph.text.size());
    const ContextPointer context = NewContext();
    const AttributesPointer attributes = AttributesOf(story, paragraph, orientation);
    Shaper shaper{story, paragraph, orientation, {}, {}};
    shaper.breaks.resize(paragraph.places.size());
    pango_get_log_attrs(paragraph.text.data(), length, -1, pango_language_get_default(), shaper.breaks.data(),
                        static_cast<int>(shaper.breaks.size()));
    const ItemsPointer items(pango_itemize_with_base_dir(
        context.get(), PANGO_DIRECTION_LTR, paragraph.text.data(), 0, length, attributes.get(), nullptr));
    shaper.cells.reserve(paragraph.places.size());
    for (const GList* each = items.get(); each; each = each->next) {
        const auto* item = static_cast<const PangoItem*>(each->data);
        if (item->analysis.font) shaper.Shape(*item);
    }
    return std::move(shaper.cells);
}

Cell EmptyCell(const Story& story, size_t at, int32_t orientation) {
    FontHeight height{0.88, 0.12};
    if (TextFonts().Count() != 0) {
        const ContextPointer context = NewContext();
        const CharacterStyle style = StyleOf(story, at);
        if (PangoFont* font = pango_context_load_font(context.get(), DescriptionOf(*style.character).get())) {
            height = HeightOf(font);
            g_object_unref(font);
        }
    }
    Cell cell = StyledCell(story, at, orientation, true, height);
    cell.end = at;
    return cell;
}

double BlankAdvance(const CharacterAttributes& style) {
    Story story;
    InsertText(story, 0, u" ", {std::make_shared<const CharacterAttributes>(style), nullptr});
    const std::vector<Cell> cells = ShapeParagraph(story, 0, 1, kHorizontalText);
    return cells.empty() ? 0 : cells.front().advance;
}

} // namespace workbench
