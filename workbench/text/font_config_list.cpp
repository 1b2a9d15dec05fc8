#include "workbench/text/font_config_list.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

struct PatternRelease {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
using OwnedPattern = std::unique_ptr<FcPattern, PatternRelease>;
using OwnedSet = std::unique_ptr<FcFontSet, PatternRelease>;

std::string TextOf(FcPattern* pattern, const char* object, int index = 0) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, object, index, &text) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(text);
}

/// Of the values in several languages the English one; else the first.
std::string EnglishOf(FcPattern* pattern, const char* object, const char* languages) {
    for (int i = 0;; ++i) {
        const std::string language = TextOf(pattern, languages, i);
        if (language.empty()) break;
        if (language.starts_with("en")) return TextOf(pattern, object, i);
    }
    return TextOf(pattern, object, 0);
}

/// An instance of a variable font has ranges where others have numbers.
double NumberOf(FcPattern* pattern, const char* object, double absent) {
    double value = absent;
    if (FcPatternGetDouble(pattern, object, 0, &value) == FcResultMatch) return value;
    FcRange* range = nullptr;
    double low = absent, high = absent;
    if (FcPatternGetRange(pattern, object, 0, &range) == FcResultMatch &&
        FcRangeGetDouble(range, &low, &high))
        return std::clamp(absent, low, high);
    return absent;
}

bool FlagOf(FcPattern* pattern, const char* object) {
    FcBool flag = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &flag) == FcResultMatch && flag == FcTrue;
}

/// For names: printable ASCII without blanks.
std::string Bare(std::string_view text, bool keepHyphens) {
    std::string bare;
    for (const char c : text) {
        if (c > ' ' && c < 0x7F && (keepHyphens || c != '-')) bare += c;
    }
    return bare;
}

std::string Folded(std::string_view text) {
    std::string folded;
    for (const char c : text) {
        if (c == ' ') continue;
        folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return folded;
}

bool Speaks(FcPattern* pattern, const char* language) {
    FcLangSet* set = nullptr;
    return FcPatternGetLangSet(pattern, FC_LANG, 0, &set) == FcResultMatch &&
           FcLangSetHasLang(set, reinterpret_cast<const FcChar8*>(language)) != FcLangDifferentLang;
}

int32_t ScriptOf(FcPattern* pattern) {
    if (FlagOf(pattern, FC_SYMBOL)) return 4;
    if (Speaks(pattern, "ja")) return 1;
    for (const char* language : {"zh-cn", "zh-tw", "zh-hk", "ko"}) {
        if (Speaks(pattern, language)) return 2;
    }
    return Speaks(pattern, "en") ? 3 : 0;
}

int32_t FaceOf(std::string_view family) {
    const std::string name = Folded(family);
    const auto holds = [&](std::initializer_list<std::string_view> words) {
        return std::ranges::any_of(
            words, [&](std::string_view word) { return name.find(word) != std::string::npos; });
    };
    if (holds({"sans", "gothic", "grotesk", "arial", "helvet", "verdana", "tahoma", "hei"})) return 2;
    if (holds({"serif", "mincho", "roman", "times", "georgia", "garamond", "song", "ming", "bookman",
               "schoolbook", "palatino"}))
        return 1;
    return 0;
}

int32_t Rounded(double value) {
    return static_cast<int32_t>(std::lround(value));
}

FontEntry EntryOf(FcPattern* pattern, const std::string& family, std::string name) {
    FontEntry entry;
    entry.name = std::move(name);
    const int32_t script = ScriptOf(pattern), face = FaceOf(family);
    const int slant = Rounded(NumberOf(pattern, FC_SLANT, FC_SLANT_ROMAN));
    entry.words[2] = script;
    entry.words[3] = NumberOf(pattern, FC_SPACING, FC_PROPORTIONAL) >= FC_DUAL;
    entry.words[4] = script == 1 || script == 2 ? 0 : face;
    entry.words[5] = face;
    entry.words[6] = Rounded(FcWeightToOpenTypeDouble(NumberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR)));
    entry.words[7] = slant >= FC_SLANT_OBLIQUE ? 2 : slant >= FC_SLANT_ITALIC ? 1 : 0;
    entry.words[8] = Rounded(NumberOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL));
    entry.words[9] = TextOf(pattern, FC_FONTFORMAT) != "TrueType";
    entry.words[10] = FlagOf(pattern, FC_VARIABLE);
    return entry;
}

FontConfigList* chosenFonts = nullptr;

} // namespace

void FontConfigList::Release::operator()(FcConfig* config) const {
    FcConfigDestroy(config);
}

void FontConfigList::Release::operator()(PangoFontMap* fonts) const {
    g_object_unref(fonts);
}

void FontConfigList::Release::operator()(PangoFontDescription* description) const {
    pango_font_description_free(description);
}

FontConfigList::FontConfigList() : config_(FcInitLoadConfigAndFonts()) {
    Fill();
}

FontConfigList::FontConfigList(const std::vector<std::string>& files) : config_(FcConfigCreate()) {
    for (const std::string& file : files) {
        FcConfigAppFontAddFile(config_.get(), reinterpret_cast<const FcChar8*>(file.c_str()));
    }
    Fill();
}

std::optional<FontConfigList::Font> FontConfigList::Read(FcPattern* pattern) const {
    Font font;
    font.file = TextOf(pattern, FC_FILE);
    font.family = EnglishOf(pattern, FC_FAMILY, FC_FAMILYLANG);
    const std::string family = Bare(font.family, false);
    const std::string style = Bare(EnglishOf(pattern, FC_STYLE, FC_STYLELANG), true);
    std::string name = family + "-" + (style.empty() ? "Regular" : style);
    if (family.empty() || name.size() > 255 || !FlagOf(pattern, FC_OUTLINE)) return std::nullopt;
    font.entry = EntryOf(pattern, font.family, std::move(name));
    font.description.reset(pango_fc_font_description_from_pattern(pattern, FALSE));
    return font;
}

void FontConfigList::Fill() {
    pangoFonts_.reset(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(pangoFonts_.get()), config_.get());
    std::vector<std::pair<Font, FcPattern*>> found;
    for (const FcSetName which : {FcSetSystem, FcSetApplication}) {
        FcFontSet* set = FcConfigGetFonts(config_.get(), which); // the configuration's own
        for (int i = 0; set && i < set->nfont; ++i) {
            // A variable font comes as one pattern for the whole and one for each named instance.
            if (std::optional<Font> font = Read(set->fonts[i]))
                found.emplace_back(std::move(*font), set->fonts[i]);
        }
    }
    std::ranges::sort(found, [](const auto& a, const auto& b) {
        return std::tie(a.first.entry.name, a.first.file) < std::tie(b.first.entry.name, b.first.file);
    });
    for (auto& [font, pattern] : found) {
        if (!fonts_.empty() && fonts_.back().entry.name == font.entry.name) continue;
        for (int i = 0;; ++i) {
            const std::string family = TextOf(pattern, FC_FAMILY, i);
            if (family.empty()) break;
            auto& members = families_[Folded(family)];
            if (members.empty() || members.back() != fonts_.size()) members.push_back(fonts_.size());
        }
        fonts_.push_back(std::move(font));
    }
}

bool FontConfigList::Has(std::string_view name) const {
    const auto found = std::ranges::lower_bound(
        fonts_, name, {}, [](const Font& font) -> std::string_view { return font.entry.name; });
    return found != fonts_.end() && found->entry.name == name;
}

std::optional<size_t> FontConfigList::Find(std::string_view name) const {
    if (fonts_.empty()) return std::nullopt;
    const auto found = std::ranges::lower_bound(
        fonts_, name, {}, [](const Font& font) -> std::string_view { return font.entry.name; });
    const bool same = found != fonts_.end() && found->entry.name == name;
    return same ? static_cast<size_t>(found - fonts_.begin()) : 0;
}

FontWish FontConfigList::WishFor(size_t index) const {
    const Font& font = fonts_[index];
    const auto& words = font.entry.words;
    return {{font.family}, words[6], words[7], words[8]};
}

std::string FontConfigList::InFamily(std::string_view family, const FontWish& wish) const {
    const auto found = families_.find(Folded(family));
    if (found == families_.end()) return {};
    const auto distance = [&](size_t index) {
        const auto& words = fonts_[index].entry.words;
        const bool slanted = words[7] != 0, wanted = wish.slant != 0;
        // Width before slant before weight; between the two slants there is little to choose.
        return std::abs(words[8] - wish.width) * 10000 + (slanted != wanted) * 5000 +
               std::abs(words[6] - wish.weight) * 4 + (words[7] != wish.slant);
    };
    const size_t best = *std::ranges::min_element(found->second, {}, distance);
    return fonts_[best].entry.name;
}

std::string FontConfigList::NextBest(const FontWish& wish) const {
    const OwnedPattern pattern(FcPatternCreate());
    for (const std::string& family : wish.families) {
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
    }
    FcPatternAddDouble(pattern.get(), FC_WEIGHT, FcWeightFromOpenTypeDouble(wish.weight));
    FcPatternAddInteger(pattern.get(), FC_SLANT,
                        wish.slant == 0   ? FC_SLANT_ROMAN
                        : wish.slant == 1 ? FC_SLANT_ITALIC
                                          : FC_SLANT_OBLIQUE);
    FcPatternAddDouble(pattern.get(), FC_WIDTH, wish.width);
    FcConfigSubstitute(config_.get(), pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    const OwnedSet candidates(FcFontSort(config_.get(), pattern.get(), FcFalse, nullptr, &result));
    for (int i = 0; candidates && i < candidates->nfont; ++i) {
        const std::string family = EnglishOf(candidates->fonts[i], FC_FAMILY, FC_FAMILYLANG);
        std::string name = InFamily(family, wish);
        if (!name.empty()) return name;
    }
    return fonts_.empty() ? std::string() : fonts_.front().entry.name;
}

FontMatch FontConfigList::Match(const FontWish& wish) const {
    static constexpr std::string_view kGeneric[] = {"serif",   "sans-serif", "sans",     "monospace",
                                                    "cursive", "fantasy",    "system-ui"};
    for (const std::string& family : wish.families) {
        std::string name = InFamily(family, wish);
        if (!name.empty()) return {std::move(name), {}};
        if (std::ranges::find(kGeneric, std::string_view(Folded(family))) != std::end(kGeneric)) {
            FontWish generic = wish;
            generic.families = {family};
            // Falling through to a generic family means that the named ones before it are missing.
            const bool first = &family == wish.families.data();
            return {NextBest(generic), first ? std::string() : wish.families.front()};
        }
    }
    return {NextBest(wish), wish.families.empty() ? std::string() : wish.families.front()};
}

FontConfigList& TextFonts() {
    if (chosenFonts) return *chosenFonts;
    static FontConfigList machine;
    return machine;
}

void UseTextFonts(FontConfigList* fonts) {
    chosenFonts = fonts;
}

} // namespace workbench
