/// Random documents for round trips.
#pragma once

#include "workbench/document/document.h"

enum class RandomArt {
    kAnything,   ///< awkward numbers, names and flags in every field of paths, containers and their paints
    kRecordable, ///< tags too; of what no record can hold only that which ApplyFormatLosses takes away
};

/// Fills an empty document with one or two layers of nested groups, compound paths and paths.  Their paints
/// are of all kinds, gradients and patterns within patterns among them.  The same seed gives the same art.
void FillRandomDocument(workbench::Document& document, RandomArt art, unsigned seed);
