#include "win32/gdi/typeface.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "win32/codepage_932.h"
#include "win32/utf8.h"

namespace {

template <auto Free>
struct Freed {
    template <typename Thing>
    void operator()(Thing* thing) const {
        Free(thing);
    }
};
template <typename Thing, auto Free>
using Owned = std::unique_ptr<Thing, Freed<Free>>;
using FontDescription = Owned<PangoFontDescription, pango_font_description_free>;
using Metrics = Owned<PangoFontMetrics, pango_font_metrics_unref>;
using TextLayout = Owned<PangoLayout, g_object_unref>;
using PangoFontOwner = Owned<PangoFont, g_object_unref>;
using ContextOwner = Owned<PangoContext, g_object_unref>;
using FontMapOwner = Owned<PangoFontMap, g_object_unref>;

// Faces that programs for Windows ask for, and families that have their widths or come near to them.
struct Substitute {
    const char* face; // small letters
    const char* families;
};
constexpr const char* kJapaneseFamilies = "IPAPGothic, Noto Sans CJK JP, Liberation Sans, sans-serif";
constexpr const char* kLatinFamilies = "Liberation Sans, Nimbus Sans, IPAPGothic, sans-serif";
constexpr const char* kFixedFamilies = "IPAGothic, Noto Sans Mono CJK JP, DejaVu Sans Mono, monospace";
constexpr Substitute kSubstitutes[] = {
    {"メイリオ", kJapaneseFamilies},   {"meiryo", kJapaneseFamilies},
    {"meiryo ui", kJapaneseFamilies},  {"ｍｓ ｐゴシック", kJapaneseFamilies},
    {"ms pgothic", kJapaneseFamilies}, {"ms ui gothic", kJapaneseFamilies},
    {"ｍｓ ゴシック", kFixedFamilies}, {"ms gothic", kFixedFamilies},
    {"courier new", kFixedFamilies},   {"arial", kLatinFamilies},
    {"ms sans serif", kLatinFamilies}, {"microsoft sans serif", kLatinFamilies},
    {"ms shell dlg", kLatinFamilies},  {"ms shell dlg 2", kLatinFamilies},
    {"tahoma", kLatinFamilies},        {"segoe ui", kLatinFamilies},
    {"system", kLatinFamilies},        {"", kLatinFamilies},
};

std::string Utf8OfFace(std::string_view face) {
    std::string text;
    while (!face.empty()) {
        const size_t bytes = Cp932UnitBytes(face);
        char32_t character = UnicodeOfCp932(Cp932UnitCode(face.substr(0, bytes)));
        face.remove_prefix(bytes);
        // A comma would begin another family.
        if (character == 0 || character == ',') continue;
        const bool wide = character >= 0xFF21 && character <= 0xFF3A;
        if ((character >= 'A' && character <= 'Z') || wide) character += 0x20;
        AppendUtf8(text, character);
    }
    return text;
}

std::string FamiliesOf(const std::string& face) {
    const std::string name = Utf8OfFace(face);
    for (const Substitute& substitute : kSubstitutes)
        if (name == substitute.face) return substitute.families;
    return name + ", " + kLatinFamilies;
}

// Texts look the same whatever the machine's own settings are.
PangoContext* NewTextContext() {
    static const FontMapOwner map(pango_cairo_font_map_new());
    pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(map.get()), 96);
    PangoContext* const context = pango_font_map_create_context(map.get());
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    pango_cairo_context_set_font_options(context, options);
    cairo_font_options_destroy(options);
    pango_context_set_language(context, pango_language_from_string("ja"));
    pango_context_set_base_dir(context, PANGO_DIRECTION_LTR);
    return context;
}

PangoContext* TextContext() {
    static const ContextOwner context(NewTextContext());
    return context.get();
}

FontDescription DescriptionOf(const TypefaceKey& key, double emHeight) {
    FontDescription description(pango_font_description_new());
    pango_font_description_set_family(description.get(), FamiliesOf(key.face).c_str());
    pango_font_description_set_absolute_size(description.get(), emHeight * PANGO_SCALE);
    pango_font_description_set_weight(description.get(),
                                      key.weight > 550 ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(description.get(), key.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    return description;
}

// Heights of a line above and below the letters' foot, for letters of height 1.
struct LineHeights {
    double ascent, descent;
};
LineHeights HeightsOf(const TypefaceKey& key) {
    constexpr double kProbe = 1000; // so large that the library's rounding doesn't show
    const PangoFontOwner font(pango_context_load_font(TextContext(), DescriptionOf(key, kProbe).get()));
    if (font == nullptr) return {0.8, 0.2};
    const Metrics metrics(pango_font_get_metrics(font.get(), nullptr));
    constexpr double kUnits = kProbe * PANGO_SCALE;
    return {pango_font_metrics_get_ascent(metrics.get()) / kUnits,
            pango_font_metrics_get_descent(metrics.get()) / kUnits};
}

struct LineSize {
    int emHeight, ascent, descent;
};
// A letter height as given, or the largest one with which a line isn't higher than what is asked for.
LineSize LineSizeOf(const TypefaceKey& key) {
    constexpr int kLargest = 1000, kSystemHeight = 16;
    const int height = key.height == 0 ? kSystemHeight : std::clamp(key.height, -kLargest, kLargest);
    const LineHeights heights = HeightsOf(key);
    if (height < 0)
        return {-height, static_cast<int>(std::ceil(-height * heights.ascent)),
                static_cast<int>(std::ceil(-height * heights.descent))};
    for (int emHeight = height;; --emHeight) {
        const LineSize size = {emHeight, static_cast<int>(std::lround(emHeight * heights.ascent)),
                               static_cast<int>(std::lround(emHeight * heights.descent))};
        if (emHeight <= 1 || size.ascent + size.descent <= height) return size;
    }
}

// The ink of a layout's line, with the top of the font's line at the top.
void DrawInk(PangoLayoutLine* line, const PangoRectangle& ink, int ascent, Glyph& glyph) {
    if (ink.width <= 0 || ink.height <= 0) return;
    cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_A8, ink.width, ink.height);
    cairo_t* const drawing = cairo_create(surface);
    cairo_move_to(drawing, -ink.x, -ink.y);
    pango_cairo_show_layout_line(drawing, line);
    cairo_destroy(drawing);
    cairo_surface_flush(surface);
    if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) {
        glyph.left = ink.x;
        glyph.top = ascent + ink.y;
        glyph.width = ink.width;
        glyph.height = ink.height;
        const uint8_t* const rows = cairo_image_surface_get_data(surface);
        const int stride = cairo_image_surface_get_stride(surface);
        for (int y = 0; y < ink.height; ++y)
            glyph.coverage.insert(glyph.coverage.end(), rows + y * stride, rows + y * stride + ink.width);
    }
    cairo_surface_destroy(surface);
}

std::string TextOfUnit(uint16_t unit) {
    constexpr char32_t kUndefined = 0x30FB; // a middle dot, as code page 932 shows what it doesn't know
    char32_t character = UnicodeOfCp932(unit);
    if (character == 0) character = unit < 0x20 ? ' ' : kUndefined;
    // Control characters and the system's private ones have no look of their own.
    if (character < 0x20 || character == 0x7F || (character >= 0x80 && character < 0xA0)) character = ' ';
    if (character >= 0xF8F0 && character <= 0xF8F3) character = ' ';
    std::string text;
    AppendUtf8(text, character);
    return text;
}

} // namespace

struct TypefaceFont {
    TextLayout layout;
};

Typeface::Typeface(const TypefaceKey& key) : key_(key), font_(std::make_unique<TypefaceFont>()) {
    const LineSize size = LineSizeOf(key);
    emHeight_ = size.emHeight;
    ascent_ = size.ascent;
    descent_ = size.descent;
    const FontDescription description = DescriptionOf(key, emHeight_);
    font_->layout.reset(pango_layout_new(TextContext()));
    pango_layout_set_font_description(font_->layout.get(), description.get());
    pango_layout_set_single_paragraph_mode(font_->layout.get(), TRUE);
}

Typeface::~Typeface() = default;

const Glyph& Typeface::GlyphOf(uint16_t unit) {
    const auto [place, isNew] = glyphs_.try_emplace(unit);
    Glyph& glyph = place->second;
    if (!isNew) return glyph;
    PangoLayout* const layout = font_->layout.get();
    const std::string text = TextOfUnit(unit);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    PangoLayoutLine* const line = pango_layout_get_line_readonly(layout, 0);
    PangoRectangle ink, logical;
    pango_layout_line_get_extents(line, &ink, &logical);
    glyph.advance = std::max(1, (logical.width + PANGO_SCALE / 2) / PANGO_SCALE);
    pango_extents_to_pixels(&ink, nullptr);
    // Smoothing may colour a pixel beyond the outline.
    if (ink.width > 0 && ink.height > 0) ink = {ink.x - 1, ink.y - 1, ink.width + 2, ink.height + 2};
    DrawInk(line, ink, ascent_, glyph);
    return glyph;
}

std::shared_ptr<Typeface> FindTypeface(const TypefaceKey& key) {
    constexpr size_t kMostKept = 64;
    static std::vector<std::shared_ptr<Typeface>> known;
    for (const auto& typeface : known)
        if (typeface->Key() == key) return typeface;
    if (known.size() >= kMostKept)
        std::erase_if(known,
                      [](const std::shared_ptr<Typeface>& typeface) { return typeface.use_count() == 1; });
    known.push_back(std::make_shared<Typeface>(key));
    return known.back();
}
