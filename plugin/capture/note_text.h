/// Numbers in note texts.
#pragma once

#include <string>

/// Appends a real as printf's %g writes it in the "C" locale, whatever locale the host has set: a comma in
/// the place of the point would split the number when the note is read.
void AppendReal(std::string& text, double value);
