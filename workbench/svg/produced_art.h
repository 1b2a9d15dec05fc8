/// Art that is shown by other art: what a style draws in its place, and what a plug-in computes from it.
///
/// Both are groups whose members are parts, groups themselves that are not art: `vlq:part` says what each
/// holds.  Styled art is `<g vlq:styled="true">` over the parts "art", which isn't displayed, and "drawn".
/// Plug-in art is `<g vlq:plugin="NAME" vlq:version="MAJOR MINOR" vlq:data="...">`, name and data as
/// PercentText, over "edit", which isn't displayed, "result" and "member" for art that is neither, likewise
/// not displayed.  So other programs show what the host shows.  A part that another program gave several
/// members becomes a group.
#pragma once

#include <string>

#include "workbench/svg/read_context.h"
#include "workbench/svg/svg_text.h"

namespace workbench {

/// What the art's style draws in its place; null if it has none that does.
const Art* StyledArtOf(const Document& document, const Art& art);

/// Appends `art`, given as markup, and what is drawn for it.
void WriteStyledArt(WriteContext& context, const Art& art, const Art& drawn, const std::string& artMarkup,
                    std::string* markup);
/// @param nature  what stands in the group's tag besides
void WritePluginArt(WriteContext& context, const Art& art, const std::string& nature, std::string* markup);

bool IsStyledArt(const ReadContext& context, pugi::xml_node element);
bool IsPluginArt(const ReadContext& context, pugi::xml_node element);

/// Read such groups onto the top of `container`; null if there is nothing in them.
Art* ReadStyledArt(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container);
Art* ReadPluginArt(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art* container);

/// The id of a path without outlines that has the style's paint; empty for no style.
std::string ArtStyleReference(WriteContext& context, const Art& art);
/// Gives `art` the style that its element names, if any.
void ReadArtStyle(ReadContext& context, pugi::xml_node element, const Surroundings& here, Art& art);

} // namespace workbench
