/// Live text: stories of attributed characters, and the frames that show them.
///
/// A story's characters are UTF-16 units, and every position counts them; a paragraph ends with U+000D.  What
/// a page of Japanese asks for is in the host's own numbers, as its text suites give and take them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "suites/host_types.h"

namespace workbench {

struct CharacterAttributes {
    bool fill = true, stroke = false;
    HostColor fillColor{kColorGray, {{1.0}}}, strokeColor{kColorGray, {{1.0}}};
    bool fillOverprint = false, strokeOverprint = false;
    int32_t lineCap = 0, lineJoin = 0; ///< as in HostPathStyle
    double lineWidth = 1, miterLimit = 4;
    double dashOffset = 0;
    std::vector<double> dashes; ///< at most 6
    std::string font;           ///< stable name as FontList gives it, ASCII; empty: the list's first
    double fontSize = 12;       ///< points
    double leading = 0;         ///< points; counts only while autoLeading is off
    bool autoLeading = true;
    double baselineShift = 0; ///< points, up or, in vertical text, to the right
    int32_t tracking = 0;     ///< thousandths of an em behind each character
    double horizontalScale = 1, verticalScale = 1;
    int32_t japaneseAlternate = 0; ///< 0 none, 1 traditional, 2 expert, 3 JIS78, 4 JIS83
};

struct ParagraphAttributes {
    double firstLineIndent = 0, startIndent = 0, endIndent = 0; ///< points
    int32_t justification = 0; ///< 0 left, 1 right, 2 centre, 3 to 5 justified with the last line left,
                               ///< right, centred, 6 justified to the last line
    bool autoHyphenation = false;
    int32_t hyphenBefore = 2, hyphenAfter = 2, hyphenLimit = 0;
    double wordSpacing[3] = {0.8, 1.0, 1.33}; ///< minimum, desired, maximum; shares of a blank
    double letterSpacing[3] = {0, 0, 0};      ///< shares of an em
    bool hangingRoman = false;
    double autoLeading = 1.2;        ///< share of the font size
    bool repeatedCharacters = false; ///< kurikaeshi moji shori
    bool bunriKinshi = false;
    int32_t burasagari = 0;                ///< 0 none, 1 standard, 2 strong
    std::optional<std::u16string> kinsoku; ///< name of a set of the host; nothing: none
};

/// The attributes of a character, shared by its neighbours of the same.
struct CharacterStyle {
    std::shared_ptr<const CharacterAttributes> character;
    std::shared_ptr<const ParagraphAttributes> paragraph;
};

/// One text; one frame, or several in a chain, show it.
struct Story {
    std::u16string text;
    std::vector<CharacterStyle> styles; ///< one for each unit of the text
    std::map<size_t, int32_t>
        kerning;                   ///< thousandths of an em, by position, the text's end included; no zeros
    CharacterStyle defaults;       ///< what the first text that comes in has
    std::vector<ArtHandle> frames; ///< in the order of the chain
};

enum : int32_t { kPointText = 0, kAreaText = 1, kPathText = 2 };
enum : int32_t { kHorizontalText = 0, kVerticalText = 1 };

/// A frame of text.  `matrix` maps text space (the anchor of point text at (0, 0), y up) to art coordinates;
/// of text in an area or on a path it is the letters' own turning and stretching, without a translation,
/// while the path lies in art coordinates.
struct TextFrameData {
    int32_t frameKind = kPointText;
    int32_t orientation = kHorizontalText;
    HostMatrix matrix{1, 0, 0, 1, 0, 0};
    ArtHandle path = nullptr; ///< of kinds 1 and 2, out of the tree, owned by the frame
    double pathStart = 0;     ///< where text on a path begins, in segments from the path's start
    std::shared_ptr<Story> story;
};

} // namespace workbench
