/// The settings that outlive a run, in a small text file of the plug-in's own.
///
/// The file is `Prefs\Velquorne_CC.ini` in the host's data folder: cp932, a line `key = value` for each
/// setting, in the grammar of line_grammar.h.  It is read once at start-up, over the defaults, and written
/// once at shut-down; whatever happens in between is lost with a crash.
#pragma once

#include <string>
#include <string_view>

/// Fills `globals` from the file.  A missing or unreadable file leaves what stands there.  Must run after the
/// defaults are set and before anything uses them.
void ReadPreferences();

/// Puts the settings of `globals` in place of the file's, in one step: at every instant the old or the new
/// file is there, whole.  If any call fails, or another program is writing for more than a second, the old
/// one stays.  A file that says the same already is left alone.
void WritePreferences();

/// The settings of `globals` as the file holds them.  Bytes that the grammar can't hold in a text, which are
/// quotes and line ends, are left out.
std::string PreferencesText();

/// Takes settings from a text as the file holds it, up to its first NUL.  Unknown keys and comments are
/// passed over, the last of several equal keys wins, numbers aren't checked against any range, texts are cut
/// to their fields.
void TakePreferences(std::string_view text);
