/// SVG markup being put together.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>

#include "workbench/document/document.h"
#include "workbench/svg/own_words.h"

namespace workbench {

/// What all parts of a writing share.
struct WriteContext {
    const Document& document;
    std::map<std::string, int>& losses;
    std::string folder;        ///< absolute, of the file that is written; empty: not known
    std::string defs;          ///< what is referred to, in the order of its making
    std::set<std::string> ids; ///< taken ones
    std::unordered_map<std::string, std::string> paints; ///< a server's text without its id, to its id
    std::map<const void*, std::string> stops;            ///< a gradient to the id of its stops
    std::map<const void*, std::string> tiles;            ///< a pattern to the id of its art
    std::map<const Story*, std::string> stories;         ///< to the id of its element
    int defCount = 0;
    int depth = 0;

    std::string NewId(const char* stem) {
        return std::string("vlq-") + stem + "-" + std::to_string(++defCount);
    }
};

/// Text for an attribute in double quotes or for character data.  Signs that XML can't hold become U+FFFD.
std::string Escaped(std::string_view text);

/// Appends ` name="value"`; the value is escaped.
void AppendAttribute(std::string* markup, std::string_view name, std::string_view value);
void AppendOwn(std::string* markup, std::string_view name, std::string_view value); ///< of our namespace

/// `d` of outlines in the coordinates they have.
std::string PathDataText(const Subpaths& subpaths);

std::string MatrixText(const HostMatrix& matrix);

/// The paint attributes of a path, with our own words where SVG's aren't enough.
std::string PaintAttributes(WriteContext& context, const HostPathStyle& style, const HostPathStyle& readBack);

/// Defines a gradient or pattern and gives its "url(#id)"; empty if the document doesn't have it.
std::string GradientReference(WriteContext& context, const HostGradientUse& use);
std::string PatternReference(WriteContext& context, const HostPatternUse& use);

/// Writes art with all its members.
void WriteArt(WriteContext& context, const Art& art, std::string* markup);

/// Writes a text frame.
/// @param nature  the attributes that every kind of art can have
void WriteText(WriteContext& context, const Art& art, const std::string& nature, std::string* markup);

/// A shape by its outlines: everything of a path element but its paint.
std::string OutlineAttributes(WriteContext& context, const Art& art);

/// The subpaths of a path or compound path, the bottommost first; `*top` is the member whose style counts.
Subpaths OutlinesOf(const Art& art, const Art** top);

} // namespace workbench
