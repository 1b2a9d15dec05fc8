/// Tags of art as attributes of its element.
///
/// A tag of the type "string" whose name and value XML can hold is `data-NAME="value"`, for other programs
/// too.  Once one tag of an element can't be told so, `vlq:tags` lists all of them in their order, with
/// blanks between: `NAME` for one that stands as a data attribute beside it, `NAME=TYPE=VALUE` in full for
/// others. Bytes in the list that are no ASCII letter, digit or one of "-_." are `%XX`.
///
/// A reader takes the list's order and its full entries; a data attribute that isn't listed is a tag behind
/// them, and a listed one that is gone is no tag any more.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/document/art.h"

namespace workbench {

/// With a blank in front of each attribute; empty for no tags.
std::string TagAttributes(const std::vector<Tag>& tags);

/// @param ownPrefix  of our namespace, with its colon; empty: the file has none of its words
std::vector<Tag> ReadTags(pugi::xml_node element, const std::string& ownPrefix);

/// Any bytes as ASCII that an attribute holds, and back; bytes that are no such text come back as they are.
std::string PercentText(std::string_view bytes);
std::string BytesOfPercentText(std::string_view text);

} // namespace workbench
