/// Titles, subjects and descriptions.
#pragma once

#include "workbench/svg/read_context.h"

namespace workbench {

/// Sets the document's title, subject and description from the RDF metadata, where there is some, else from
/// the title and desc elements.  The title stays as it is if neither has one.
void ReadMetadata(ReadContext& context);

/// The title of an element by its first title member, trimmed.
std::string TitleOf(pugi::xml_node element);

} // namespace workbench
