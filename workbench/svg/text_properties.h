/// The properties of style sheets that concern text alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbench/svg/computed_style.h"

namespace workbench {

/// @param fontSize  user units, of the element itself as far as it is known
void SetTextProperty(Property property, std::string_view value, double fontSize, TextProperties* text);

/// "inherit".
void InheritTextProperty(Property property, const TextProperties& parent, TextProperties* text);

/// The names of a list of families, without their quotes.
std::vector<std::string> FamiliesOf(std::string_view list);

} // namespace workbench
