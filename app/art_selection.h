/// Which art of a document is meant, as command lines and files say it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "workbench/document/document.h"

/// Selects, beside what is selected, the art that bears `name` (an id of the drawing's file); false if none
/// does.
bool SelectNamedArt(workbench::Document& document, const std::string& name);

/// Drawn objects are what isn't a group; a compound path is one of them.  They are numbered from 0 at the
/// bottom of the lowest layer, so that putting art on top, or art into groups, changes no number.
size_t CountDrawnObjects(const workbench::Document& document);
std::vector<size_t> SelectedObjects(const workbench::Document& document);

/// Selects these objects and nothing else; false, and nothing selected, if there is none of some number.
bool SelectObjects(workbench::Document& document, const std::vector<size_t>& numbers);
