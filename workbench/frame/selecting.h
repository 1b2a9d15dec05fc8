/// What a click or a rubber band selects: the members of layers, groups as a whole.  Layers and art that are
/// locked or hidden are passed over.
#pragma once

#include <functional>
#include <vector>

#include "workbench/document/document.h"

namespace workbench {

/// Whether art paints anything within `reach` art units of a point.
using PaintsAt = std::function<bool(const Document&, const Art&, const HostPoint&, double reach)>;

std::vector<Art*> SelectableArt(Document& document); ///< the topmost first
std::vector<Art*> SelectedArt(Document& document);   ///< the outermost ones of the selectable

/// The topmost art that paints something there, or, without `paintsAt`, whose bounds hold the point; null if
/// there is none.
Art* ArtAtPoint(Document& document, const HostPoint& point, double reach, const PaintsAt& paintsAt);

/// All whose bounds touch the band, edges included.
std::vector<Art*> ArtInBand(Document& document, const HostRect& band);

} // namespace workbench
