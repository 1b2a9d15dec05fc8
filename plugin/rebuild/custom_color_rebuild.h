/// From the notes of a record's custom colours to custom colours and swatches of the document.
#pragma once

#include <string_view>

/// Brings one custom colour into the document and into its row of `globals->customColors` and
/// `customHandles`, and raises `customCount` to its number.
///
/// A colour of the document with the stored name, kind, flags and values (within 0.001) is used as it is.  If
/// the name stands for another colour, 1, 2 and so on up to 99 is put behind it until it is free or fits;
/// past that the row stays empty.  A new colour gets a swatch unless one of its name is there.  Names hold at
/// most 254 bytes with their number, whole characters only.  Notes of a form without a rule are ignored, and
/// so are all behind one that raised `customCount` to 255.
/// @param text  of the note, behind the word "CustomColor": `number = "name", form, flags, values...`
void LoadCustomColor(std::string_view text);
