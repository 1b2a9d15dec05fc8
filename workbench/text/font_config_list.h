/// The fonts of this machine, by fontconfig, and Pango's way to them.
///
/// Names are "Family-Style" of the English names, ASCII, without blanks and without "-" in the family:
/// "DejaVuSans-BoldOblique".  The list is in the order of the names' bytes; of several files of one name
/// the first by path counts.  Fonts without outlines are left out.
///
/// The words of a font, counted from 1:
///
/// | word | meaning |
/// |---|---|
/// | 1, 2 | 0 |
/// | 3 | script: 1 Japanese, 2 another of East Asia, 3 Latin, 4 signs, 0 others |
/// | 4 | spacing: 0 proportional, 1 fixed or of two widths |
/// | 5 | face, by the family's name: 1 serif, 2 sans; 0 where names don't tell, and for East Asia, whose
/// faces are told by other means | | 6 | face as in word 5, also for East Asia (Mincho and Song are serif,
/// Gothic and Hei are sans) | | 7 | weight, 100 to 900 | | 8 | slant: 0 upright, 1 italic, 2 oblique | | 9 |
/// width in percent | | 10 | 1 for outlines of cubic curves, 0 for others | | 11 | 1 for variable fonts | |
/// 12 to 14 | 0 |
///
/// Words 3 to 5 are equal for fonts that may stand in for each other.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/document/fonts.h"

// Of the libraries; their own headers define macros that the platform's define too.
struct _FcConfig;
struct _FcPattern;
struct _PangoFontMap;
struct _PangoFontDescription;

namespace workbench {

/// A wish for a font as style sheets state it.
struct FontWish {
    std::vector<std::string> families; ///< UTF-8, the best first; also serif, sans-serif, monospace ...
    int weight = 400;                  ///< 1 to 1000
    int slant = 0;                     ///< as word 8
    int width = 100;                   ///< percent
};

struct FontMatch {
    std::string name;    ///< of a font in the list; empty: the list is empty
    std::string missing; ///< the first family, if none of the named ones is there
};

class FontConfigList : public FontList {
public:
    FontConfigList(); ///< of the machine
    /// Of these files alone, whatever the machine has.
    explicit FontConfigList(const std::vector<std::string>& files);
    FontConfigList(const FontConfigList&) = delete;
    FontConfigList& operator=(const FontConfigList&) = delete;

    size_t Count() override { return fonts_.size(); }
    const FontEntry& At(size_t index) override { return fonts_[index].entry; }

    /// Of a name; the list's first if there is no such font.  Nothing if the list is empty.
    std::optional<size_t> Find(std::string_view name) const;
    bool Has(std::string_view name) const;

    /// The family's English name, UTF-8, and what tells the font from others of it.
    FontWish WishFor(size_t index) const;

    /// The first family that is there, in the style next to the wish; else what fontconfig puts in its place.
    FontMatch Match(const FontWish& wish) const;

    /// What makes Pango take this very font; owned by the list.
    const _PangoFontDescription* Description(size_t index) const { return fonts_[index].description.get(); }
    _PangoFontMap* pangoFonts() const { return pangoFonts_.get(); }

private:
    struct Release {
        void operator()(_FcConfig* config) const;
        void operator()(_PangoFontMap* fonts) const;
        void operator()(_PangoFontDescription* description) const;
    };
    struct Font {
        FontEntry entry;
        std::string file, family;
        std::unique_ptr<_PangoFontDescription, Release> description;
    };
    void Fill();
    std::optional<Font> Read(_FcPattern* pattern) const;
    std::string NextBest(const FontWish& wish) const;
    std::string InFamily(std::string_view family, const FontWish& wish) const;

    std::unique_ptr<_FcConfig, Release> config_;
    std::unique_ptr<_PangoFontMap, Release> pangoFonts_;
    std::vector<Font> fonts_;
    std::map<std::string, std::vector<size_t>> families_; ///< by the folded name, in all languages
};

/// The fonts in use by this process: the machine's unless others were set.  Not thread-safe.
FontConfigList& TextFonts();
/// Not owned; null: the machine's again.
void UseTextFonts(FontConfigList* fonts);

} // namespace workbench
