/// The custom colours of a record: a table during capture, notes in the stream.
#pragma once

#include "plugin/frame/globals.h"

/// Adds the entry to the table unless it counts as present or all kCustomColorRows rows are used.
///
/// Only the first row of the same kind and flags is looked at; the entry is present if that row's values
/// are exactly the same, whatever its name.  Lab and one-value colours are never present.
void AddCustomColor(const customColorEntry& entry);

/// Adds the document's custom colour to the table; nothing happens if its definition can't be read.
void RegisterCustomColor(CustomColorHandle color);

/// Adds one note for each row to `curRecord`, in row order.
void WriteCustomColorNotes();
