#include "workbench/frame/selecting.h"

namespace workbench {

namespace {

bool Touches(const HostRect& a, const HostRect& b) {
    return a.left <= b.right && b.left <= a.right && a.bottom <= b.top && b.bottom <= a.top;
}

} // namespace

std::vector<Art*> SelectableArt(Document& document) {
    std::vector<Art*> found;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        const Layer& layer = document.LayerAt(i);
        if (!Document::CanChange(&layer)) continue;
        for (Art* art = layer.root->firstChild; art; art = art->below) {
            if (!art->hidden && !art->locked) found.push_back(art);
        }
    }
    return found;
}

std::vector<Art*> SelectedArt(Document& document) {
    std::vector<Art*> found;
    for (Art* member : SelectableArt(document)) {
        const Art* covered = nullptr; // within what was found already
        ForEachArt(*member, [&](const Art& art) {
            for (const Art* each = &art; covered && each != member->parent; each = each->parent) {
                if (each == covered) return;
            }
            covered = nullptr;
            if (!art.selected) return;
            found.push_back(const_cast<Art*>(&art));
            covered = &art;
        });
    }
    return found;
}

Art* ArtAtPoint(Document& document, const HostPoint& point, double reach, const PaintsAt& paintsAt) {
    const HostRect spot{point.x - reach, point.y + reach, point.x + reach, point.y - reach};
    for (Art* art : SelectableArt(document)) {
        HostRect bounds;
        const bool hit = paintsAt ? paintsAt(document, *art, point, reach)
                                  : document.Bounds(*art, &bounds) && Touches(bounds, spot);
        if (hit) return art;
    }
    return nullptr;
}

std::vector<Art*> ArtInBand(Document& document, const HostRect& band) {
    std::vector<Art*> found;
    for (Art* art : SelectableArt(document)) {
        HostRect bounds;
        if (document.Bounds(*art, &bounds) && Touches(bounds, band)) found.push_back(art);
    }
    return found;
}

} // namespace workbench
