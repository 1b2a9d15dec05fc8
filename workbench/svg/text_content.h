/// The characters of a text element with what their elements say of each.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "workbench/svg/read_context.h"

namespace workbench {

/// One element's own characters share it.
struct TextPart {
    pugi::xml_node element;
    Surroundings here;
    double rise = 0;         ///< user units, up: baseline shifts of it and of what it lies in
    pugi::xml_node textPath; ///< the textPath element that it lies in, or null
    bool decorated = false;
};

struct TextCharacter {
    char16_t unit;
    bool begins = true;  ///< false for the second unit of a pair
    bool listed = false; ///< its place is a later one of a list, not the first of its element
    const TextPart* part;
    std::optional<double> x, y; ///< user units
    double dx = 0, dy = 0;
};

struct TextContent {
    std::deque<TextPart> parts;
    std::vector<TextCharacter> characters; ///< blanks are taken together as SVG says
};

/// Reads all characters of a text element, or of one that areas of text have ("flowRoot": paragraphs end
/// with a return then).
/// @param here  the element's own
TextContent ReadTextContent(ReadContext& context, pugi::xml_node element, const Surroundings& here);

} // namespace workbench
