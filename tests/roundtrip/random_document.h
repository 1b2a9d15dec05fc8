/// Random documents of what a record can hold, for rapidcheck.
#pragma once

#include "workbench/document/document.h"

/// Fills an empty document, within a property, with one or two layers of nested groups, compound paths and
/// paths; their paints are of all kinds, gradients and patterns within patterns among them.  It leaves out
/// what a record can't hold at all: blend modes of groups, opacity of gradient stops, gradients on strokes.
void FillRandomDocument(workbench::Document& document);
