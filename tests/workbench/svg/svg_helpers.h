/// Small SVG files for tests, and what is read from them as text.
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

/// "g(p,c(p,p))" with the topmost first: the structure of a container's members.
std::string Structure(const Art& art);
std::string Structure(const Document& document);

/// What a colour is as text, such as "three 1 0 0".
std::string ColorOf(const Document& document, const HostColor& color);

} // namespace workbench
