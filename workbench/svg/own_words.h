/// The attributes of our own namespace, and the texts in them.
///
/// They carry what SVG has no words for, so that what was written reads back as the same document.  Each is
/// written only where SVG's own words would read back as something else, and taken only if SVG's own words
/// still say the same: a file that another program changed means what that program wrote.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/document/document.h"
#include "workbench/svg/path_data.h"
#include "workbench/svg/svg_values.h"

namespace workbench {

inline constexpr char kOwnName[] = "name";         ///< of art, gradients, patterns: where it can't be the id
inline constexpr char kOwnPage[] = "page";         ///< left top right bottom
inline constexpr char kOwnSegments[] = "segments"; ///< of a path: anchors that `d` can't express
inline constexpr char kOwnCompound[] = "compound"; ///< "true": a compound path of one member
inline constexpr char kOwnEmpty[] = "empty";       ///< "true": a group without members that is kept
inline constexpr char kOwnClipped[] = "clipped";   ///< "true": a clipped group without a path on top
inline constexpr char kOwnGuide[] = "guide";       ///< "true"
inline constexpr char kOwnHidden[] = "hidden";     ///< "true": a guide that is hidden as well
inline constexpr char kOwnKnockout[] = "knockout"; ///< 1 or 2
inline constexpr char kOwnAlphaIsShape[] = "alpha-is-shape";
inline constexpr char kOwnFill[] = "fill"; ///< a colour text
inline constexpr char kOwnStroke[] = "stroke";
inline constexpr char kOwnStopColor[] = "stop-color";
inline constexpr char kOwnMidpoint[] = "midpoint";
inline constexpr char kOwnBetween[] = "between";      ///< "true": a stop that stands for a midpoint
inline constexpr char kOwnGradient[] = "gradient";    ///< angle length highlight-angle highlight-length
inline constexpr char kOwnPattern[] = "pattern";      ///< the fields of HostPatternUse but the handle
inline constexpr char kOwnOverprint[] = "overprint";  ///< of fill and stroke
inline constexpr char kOwnLineWidth[] = "line-width"; ///< "0": stroked all the same
inline constexpr char kOwnResolution[] = "resolution";
inline constexpr char kOwnLockClip[] = "lock-clip";
inline constexpr char kOwnClip[] = "clip";       ///< "true": the clip flag of a path that clips nothing
inline constexpr char kOwnPainted[] = "painted"; ///< "true": a clipping path's own paint counts
inline constexpr char kOwnPlace[] = "place";     ///< of an image: method alignment clip
inline constexpr char kOwnRaster[] = "raster";   ///< of an image: see raster_words.h
inline constexpr char kOwnPixels[] = "pixels";
inline constexpr char kOwnTags[] = "tags";          ///< see tag_words.h
inline constexpr char kOwnArtStyle[] = "art-style"; ///< id of a path without outlines that has its paint
inline constexpr char kOwnStyled[] = "styled";      ///< "true": a group of two parts, see produced_art.h
inline constexpr char kOwnPlugin[] = "plugin";      ///< name of plug-in art, see produced_art.h
inline constexpr char kOwnVersion[] = "version";    ///< of plug-in art: major minor
inline constexpr char kOwnData[] = "data";          ///< of plug-in art, as PercentText
inline constexpr char kOwnPart[] = "part";          ///< what a member is to the group around it
inline constexpr char kOwnMesh[] = "mesh";          ///< see mesh_words.h
inline constexpr char kOwnFrame[] = "frame";        ///< of a text frame, see text_words.h
inline constexpr char kOwnStory[] = "story";        ///< id and number; also an element
inline constexpr char kOwnRun[] = "run";            ///< an element: a stretch of a story
inline constexpr char kOwnTextPath[] = "text-path"; ///< id of the frame's own path
inline constexpr char kOwnColor[] = "color";        ///< an element: a custom colour

/// "gray 0.5", "four 0 1 1 0", "three 1 0 0" or "custom 0.25 Name"; empty for gradients and patterns.
std::string ColorText(const Document& document, const HostColor& color);
bool ParseColorText(Document& document, std::string_view text, HostColor* color);

/// A definition as "four 0 1 1 0 FLAGS", with "lab" and "one" for the others.
std::string DefinitionText(const HostCustomColor& definition);
bool ParseDefinitionText(std::string_view text, HostCustomColor* definition);

/// What other programs show for a colour: "#rrggbb".  Black for gradients and patterns.
std::string ScreenColor(const Document& document, const HostColor& color);
std::string HexColor(const ColorValue& color); ///< of a colour of three lights

/// A mark by which a text is known again: the published FNV-1a hash, as hexadecimal digits.
std::string MarkOf(std::string_view text);

/// Anchors exactly, with the mark of the path data that they belong to.
std::string SegmentsText(const Subpaths& subpaths, std::string_view pathData);
/// False if the text has a fault, has more than `most` anchors, or belongs to other path data.
bool ParseSegmentsText(std::string_view text, std::string_view pathData, size_t most, Subpaths* subpaths);

/// Appends the shortest text that reads back as the same double; 0 for what is not finite.
void AppendNumber(std::string* text, double value);

/// Numbers with a blank between them.
template <typename... Numbers>
std::string NumbersText(Numbers... numbers) {
    std::string text;
    ((text += text.empty() ? "" : " ", AppendNumber(&text, numbers)), ...);
    return text;
}

} // namespace workbench
