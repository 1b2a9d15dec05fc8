#include "plugin/rebuild/font_match.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/host/suites.h"

namespace {

constexpr int32_t kNoFont = -1;
constexpr int kComparedClasses = 3;
constexpr int kFirstClassWord = 2; ///< the record's third word

struct ListedFont {
    FontKey key;
    std::string name;
};
using Fonts = std::vector<ListedFont>;

/// All fonts of the host; one that it doesn't name has no key.
Fonts ReadFonts() {
    int32_t count = 0;
    if (FontSuite().CountFonts(&count) != kHostNoError) return {};
    Fonts fonts(static_cast<size_t>(std::max(count, 0)), ListedFont{nullptr, {}});
    for (size_t index = 0; index < fonts.size(); ++index) {
        FontKey key = nullptr;
        char name[256] = {};
        if (FontSuite().GetNthFont(static_cast<int32_t>(index), &key) != kHostNoError) continue;
        if (FontSuite().GetFontName(key, name, sizeof name) != kHostNoError || !name[0]) continue;
        fonts[index] = {key, name};
    }
    return fonts;
}

template <typename Matches>
int32_t LastFont(const Fonts& fonts, const Matches& matches) {
    for (size_t index = fonts.size(); index-- > 0;) {
        if (fonts[index].key && matches(std::string_view(fonts[index].name)))
            return static_cast<int32_t>(index);
    }
    return kNoFont;
}

bool Begins(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool ShorterBeginsLonger(std::string_view a, std::string_view b) {
    return a.size() < b.size() ? Begins(b, a) : Begins(a, b);
}

struct NameParts {
    std::string_view family, style; ///< the style with its "-", empty without one
};

NameParts PartsOf(std::string_view name) {
    const size_t cut = std::min(name.find('-'), name.size());
    return {name.substr(0, cut), name.substr(cut)};
}

int32_t FindByParts(const Fonts& fonts, const NameParts& wanted) {
    return LastFont(fonts, [&](std::string_view name) {
        const NameParts parts = PartsOf(name);
        return ShorterBeginsLonger(parts.family, wanted.family) &&
               ShorterBeginsLonger(parts.style, wanted.style);
    });
}

int32_t FindByName(const Fonts& fonts, std::string_view wanted) {
    int32_t found = LastFont(fonts, [&](std::string_view name) { return name == wanted; });
    if (found == kNoFont)
        found = LastFont(fonts, [&](std::string_view name) { return Begins(wanted, name); });
    NameParts parts = PartsOf(wanted);
    if (found == kNoFont) found = FindByParts(fonts, parts);
    const size_t second = parts.style.find('-', 1);
    if (found != kNoFont || second == std::string_view::npos) return found;
    parts.style = parts.style.substr(0, second + 1);
    return FindByParts(fonts, parts);
}

bool SameClass(FontKey font, const AidbFontRef& stored) {
    HostFontRecord record{};
    if (FontSuite().GetFontRecord(font, &record) != kHostNoError) return false;
    for (int i = 0; i < kComparedClasses; ++i) {
        if (static_cast<int16_t>(stored.classFirst[i]) != record.words[kFirstClassWord + i]) return false;
    }
    return true;
}

int32_t FindByClass(const Fonts& fonts, const AidbFontRef& stored, const std::string& storedName) {
    const FontFace face = FaceOfFont(storedName.c_str());
    int32_t first = kNoFont;
    for (size_t index = 0; index < fonts.size(); ++index) {
        if (!fonts[index].key || !SameClass(fonts[index].key, stored)) continue;
        if (FaceOfFont(fonts[index].name.c_str()) == face) return static_cast<int32_t>(index);
        if (first == kNoFont) first = static_cast<int32_t>(index);
    }
    return first;
}

} // namespace

FontFace FaceOfFont(const char* name) {
    static constexpr struct {
        const char* word;
        FontFace face;
    } kWords[] = {
        {"GOTHIC", FontFace::kGothic}, {"gothic", FontFace::kGothic}, {"Gothic", FontFace::kGothic},
        {"MINCHO", FontFace::kMincho}, {"mincho", FontFace::kMincho}, {"Mincho", FontFace::kMincho},
        {"GO", FontFace::kGothic},     {"go", FontFace::kGothic},     {"Go", FontFace::kGothic},
        {"MI", FontFace::kMincho},     {"mi", FontFace::kMincho},     {"Mi", FontFace::kMincho},
    };
    for (const auto& [word, face] : kWords) {
        if (std::strstr(name, word)) return face;
    }
    return FontFace::kNeither;
}

int32_t FindStoredFont(const AidbFontRef& stored) {
    const Fonts fonts = ReadFonts();
    const auto* end = std::find(std::begin(stored.name), std::end(stored.name), '\0');
    const std::string name(std::begin(stored.name), end);
    const int32_t found = FindByName(fonts, name);
    return found != kNoFont ? found : FindByClass(fonts, stored, name);
}
