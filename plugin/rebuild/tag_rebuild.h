/// String tags and layer titles: from notes to art, and from art to art.
#pragma once

#include <string_view>
#include <vector>

#include "suites/host_types.h"

/// Replaces `globals->pendingTags` by the tags of a note, at most 500.  Each line reads
/// `Tag = "value", type, name`; other lines are ignored.  Values are cut at 255 bytes, types and names at 63.
void LoadArtTagProcess(std::string_view noteText);

/// Whether a stored layer title takes the art to that layer.
enum class LayerTitles { kFollow, kIgnore };

/// Puts the pending string tags on `art` and uses them up.  The tag that holds a layer title is never put on
/// art: with `layerOption` set and kFollow, `art` moves into the first layer of that title, on top, and a
/// layer is made above all others if there is none.  Failures of the host are ignored.
void ApplyPendingTags(ArtHandle art, LayerTitles titles);

/// Makes the string tags of `target` those of `source`; tags of other types stay and are not copied.
void CopyStringTags(ArtHandle target, ArtHandle source);

/// The art objects of a tree, `root` first, each group's members behind it, topmost first.  Only groups are
/// entered, so a compound path or plug-in art counts as one object.  `stop` (or none) is left out with all
/// that is in it, and so is art whose kind can't be read.
std::vector<ArtHandle> ListArtTree(ArtHandle root, ArtHandle stop);

/// The number of objects that ListArtTree gives.
size_t CountArtTree(ArtHandle root, ArtHandle stop);
