/// The search.
#pragma once

/// Lets the user search; true if `rihList` and the current name are a search result now.
bool RunSearchDialog();
