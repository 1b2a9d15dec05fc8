/// From a stored font to a font of this machine.
#pragma once

#include "plugin/objects/object_layout.h"

/// The index in AI Font Suite's list of the font that stands for a stored one, or -1.
///
/// The first of these that gives a font decides:
///  1. a font of the stored name;
///  2. a font whose whole name is the beginning of the stored name;
///  3. a font whose family and style match, where family is what stands before the first "-" and style the
///     rest, and two texts match if the shorter is the beginning of the longer;
///  4. the same with a stored style cut behind its second "-";
///  5. a font with the stored class numbers 1 to 3 whose name speaks of the same face, Gothic, Mincho or
///     neither;
///  6. a font with these class numbers.
/// Of several, 1 to 4 take the last in the list, 5 and 6 the first.  Fonts that the host doesn't name count
/// for nothing.
int32_t FindStoredFont(const AidbFontRef& stored);

/// What a font's name says of its face; the first of Gothic, Mincho, Go and Mi that stands anywhere in it
/// decides, each in capitals, small letters or with a capital in front.
enum class FontFace : uint8_t { kNeither = 0, kGothic = 1, kMincho = 2 };
FontFace FaceOfFont(const char* name);
