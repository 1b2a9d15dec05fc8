/// The drag of a record over the document.
///
/// From the press in the panel to the drop: the outline of the record's bounds follows the pointer, pulled by
/// the snap searches; with Control held it lies on the path under the pointer, which then gets the record's
/// tags instead of a copy of its art.  The loop holds the host's thread and takes no messages.
#pragma once

/// Follows the pointer until the button is up and loads the record of `selectedRow` there.  Needs the host's
/// suites.  Without an open document, a window to draw on or a zoom above 0 it only beeps.
void TrackPlacement();
