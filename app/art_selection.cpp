#include "app/art_selection.h"

#include <algorithm>

namespace {

using workbench::Art;
using workbench::Document;

/// Drawn objects by their numbers.
std::vector<const Art*> DrawnObjects(const Document& document) {
    std::vector<const Art*> objects;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            if (art.kind != kArtGroup && (!art.parent || art.parent->kind == kArtGroup))
                objects.push_back(&art);
        });
    }
    std::ranges::reverse(objects);
    return objects;
}

} // namespace

bool SelectNamedArt(Document& document, const std::string& name) {
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        ArtHandle found = nullptr;
        ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            if (!found && art.name == name) found = art.handle;
        });
        if (!found) continue;
        document.Select(*document.Find(found), true);
        return true;
    }
    return false;
}

size_t CountDrawnObjects(const Document& document) {
    return DrawnObjects(document).size();
}

std::vector<size_t> SelectedObjects(const Document& document) {
    const std::vector<const Art*> objects = DrawnObjects(document);
    std::vector<size_t> numbers;
    for (size_t i = 0; i < objects.size(); ++i) {
        if (objects[i]->selected) numbers.push_back(i);
    }
    return numbers;
}

bool SelectObjects(Document& document, const std::vector<size_t>& numbers) {
    document.SelectNone();
    const std::vector<const Art*> objects = DrawnObjects(document);
    if (std::ranges::any_of(numbers, [&](size_t number) { return number >= objects.size(); })) return false;
    for (const size_t number : numbers) document.Select(*document.Find(objects[number]->handle), true);
    return true;
}
