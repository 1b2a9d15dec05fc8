/// SVG files to documents.
///
/// One file becomes one document: shapes become paths, elements with members become groups, clip paths
/// become clipped groups, what the editors mark as a layer becomes a layer.  What the document has no words
/// for is counted by a short name, never dropped in silence.  Files come from anywhere: whatever the bytes
/// are, the answer is a document or a clear refusal, in bounded memory and time.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "workbench/document/document.h"

namespace workbench {

/// What a file lost on its way in.
struct ReadReport {
    std::map<std::string, int> losses; ///< how often by a short name: "filter", "mask", "text", "image" ...
    std::map<std::string, std::string> missingFonts; ///< a family, as the file names it, to the font that
                                                     ///< stands in for it, as FontList names it
    std::vector<std::string> notes; ///< sentences for a person, such as where the file is damaged
};

/// Reads a file's content, SVG or SVG packed by gzip (known by its first bytes, not by its name).
///
/// The document has the page of the file in points, y growing upward, (0, 0) the page's lower left corner;
/// nothing is selected.  Art bears its element's id as its name, or its title if it has none.  What isn't
/// displayed is read as hidden art, so a caller that selects everything has to leave hidden art out.
/// No link to a picture is followed: each counts as missing.
/// @param fileName  UTF-8; its last part without the suffix is the title of a document that has none
/// @param report    may be null
/// @param error     set when the answer is null; may be null
/// @return null if the bytes are no SVG, or ask for more than the bounds of svg_limits.h allow
std::unique_ptr<Document> ReadSvg(std::span<const uint8_t> bytes, const std::string& fileName,
                                  ReadReport* report, std::string* error);

/// The same for a file on disk; `path` is UTF-8.  Links to pictures lead on from the file's folder to
/// wherever the user may read, since drawings share pictures with their neighbours; only regular files that
/// are pictures are taken.
/// @param picturesBelow  if not empty, an absolute folder that no picture may lie outside of: for drawings
///                       that nobody looked at one by one
std::unique_ptr<Document> ReadSvgFile(const std::string& path, ReadReport* report, std::string* error,
                                      const std::string& picturesBelow = {});

} // namespace workbench
