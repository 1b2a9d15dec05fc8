/// The style of one element after the cascade.
#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "workbench/svg/style_sheet.h"
#include "workbench/svg/svg_values.h"

namespace workbench {

/// What fill or stroke names.  The texts point into the file's tree.
struct PaintValue {
    enum class Kind : uint8_t { kNone, kColor, kCurrentColor, kServer } kind = Kind::kNone;
    Kind fallback = Kind::kNone; ///< of a server that can't be used
    bool hasFallback = false;
    ColorValue color;        ///< of the kind, or of the fallback
    std::string_view server; ///< id
};

/// What concerns text alone.  All but the last are inherited.
struct TextProperties {
    std::string_view families; ///< as the file lists them; empty: none named
    int weight = 400, width = 100;
    int slant = 0;  ///< 0 upright, 1 italic, 2 oblique
    int anchor = 0; ///< 0 start, 1 middle, 2 end
    int align = 0;  ///< of areas: 0 start, 1 end, 2 centre, 3 justified
    bool vertical = false;
    bool keepsBlanks = false;
    double letterSpacing = 0, wordSpacing = 0; ///< user units
    double lineHeight = 0;                     ///< share of the font size; 0: normal
    bool decorated = false;
    double baselineShift = 0; ///< user units, up, of this element over its parent
};

struct ComputedStyle {
    // Inherited.
    PaintValue fill{PaintValue::Kind::kColor, PaintValue::Kind::kNone, false, {}, {}};
    PaintValue stroke;
    ColorValue color;
    double fillOpacity = 1, strokeOpacity = 1;
    Length strokeWidth{1, Unit::kUser};
    Length dashOffset;
    std::string_view dashArray; ///< empty: none
    double miterLimit = 4;
    double fontSize = 16; ///< user units
    int lineCap = 0, lineJoin = 0;
    bool evenOdd = false, clipEvenOdd = false;
    bool visible = true;
    bool strokeFirst = false; ///< paint-order
    bool marked = false;      ///< has a marker
    TextProperties text;

    // Not inherited.
    bool displayed = true;
    bool isolated = false;
    bool overflows = false;        ///< overflow: visible or auto
    bool fixedStrokeWidth = false; ///< vector-effect
    bool unknownBlend = false;
    int blendMode = 0; ///< BlendMode
    double opacity = 1;
    ColorValue stopColor;
    bool stopIsCurrentColor = false;
    double stopOpacity = 1;
    std::string_view clipPath; ///< id
    bool masked = false, filtered = false;
    std::string_view transform; ///< of the style; empty: the attribute counts
};

/// The style of `element`: presentation attributes, then the sheet's rules, then the style attribute, then
/// what is important, over what `parent` hands down.
ComputedStyle ComputeStyle(pugi::xml_node element, const ComputedStyle& parent, StyleSheet& sheet);

/// The colour that a paint or `currentColor` stands for; false for none and for servers.
bool PlainColor(const ComputedStyle& style, PaintValue::Kind kind, const ColorValue& given,
                ColorValue* color);

/// The names of the blending modes in the order of BlendMode.
std::string_view BlendModeName(int mode);

} // namespace workbench
