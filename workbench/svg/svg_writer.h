/// Documents to SVG.
#pragma once

#include <map>
#include <string>

#include "workbench/document/document.h"

namespace workbench {

/// The namespace of the attributes that carry what SVG has no words for.  Other programs ignore them; our
/// reader takes them, so that a document that was written reads back as the same document.
inline constexpr char kDocumentNamespace[] = "urn:velquorne:document";

/// The whole document as an SVG file, UTF-8, coordinates in points (so the width is given in pt and the
/// viewBox in the same numbers).  Numbers are the shortest that read back as the same double.
///
/// Other programs see each line of text where it lies; what SVG can't say of it is in our own words.
/// @param losses  if given, how often something was left out, by a short name
/// @param folder  absolute folder that the file will lie in, UTF-8: links to pictures are relative to it; if
///                it is empty they name the full path
std::string WriteSvg(const Document& document, std::map<std::string, int>* losses = nullptr,
                     const std::string& folder = {});

} // namespace workbench
