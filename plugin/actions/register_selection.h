/// The register command.
#pragma once

/// Is a document open that holds selected art?  Guides don't count.
bool HasSelectedArt();

/// Captures the selection, lets the user name it, and stores it; the panel's lists follow, and the new record
/// is selected there.  A beep, and nothing else, while a search result is shown or nothing is selected.  If
/// the record can't be stored the user is told why and nothing is listed.
void RegisterSelection();
