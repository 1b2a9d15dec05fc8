/// Small SVG files for tests, and documents as text for comparison.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "workbench/svg/svg_reader.h"

namespace workbench {

struct ReadFile {
    std::unique_ptr<Document> document;
    ReadReport report;
    std::string error;
};

/// A whole file as it is.
ReadFile ReadText(const std::string& text);

/// `body` in an svg of 100 x 100 points whose user unit is a point; fails the test if it is refused.
ReadFile ReadBody(const std::string& body);

/// The only member of the document's only layer; fails the test if there are more or none.
const Art* OnlyArt(const Document& document);

/// The first art of a name, anywhere; null if there is none.
const Art* Named(const Document& document, const std::string& name);

/// "M10,20 L30,40 C.. Z", rounded to a millionth: what a person would write for a path's segments.
std::string Outline(const Art& path);

/// "g(p,c(p,p))" with the topmost first: the structure of a container's members.
std::string Structure(const Art& art);
std::string Structure(const Document& document);

/// Every field of a document but handles, views and undo; numbers exactly.
std::string DocumentText(const Document& document);

/// What a colour is as text, such as "three 1 0 0".
std::string ColorOf(const Document& document, const HostColor& color);

} // namespace workbench
