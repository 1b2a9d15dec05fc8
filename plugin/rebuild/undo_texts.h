/// What the host's Edit menu says of a placement.
#pragma once

/// Begins an undo step of its own and names it, in the language of `globals->language`.
void SetPlacementUndoTexts();
