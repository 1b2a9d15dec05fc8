/// Random documents for round trips.
#pragma once

#include "workbench/document/document.h"

enum class RandomArt {
    kAnything,   ///< awkward numbers, names, tags and flags in every field of art and its paints
    kRecordable, ///< of what no record can hold only that which ApplyFormatLosses takes away
};

/// Fills an empty document with one or two layers of nested groups, compound paths, paths, images, meshes,
/// text, plug-in art and styled art.  Their paints are of all kinds, gradients and patterns within patterns
/// among them.  The same seed gives the same art.
void FillRandomDocument(workbench::Document& document, RandomArt art, unsigned seed);
