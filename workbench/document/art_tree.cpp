#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "workbench/document/document.h"
#include "workbench/document/document_tables.h"

namespace workbench {

namespace {

/// Brings the flags of `art` and of what it lies in up to date with their members.
void RefreshSelected(Art* art) {
    while (art && art->childCount) {
        const bool selected = art->selectedChildren == art->childCount;
        if (selected == art->selected) return;
        art->selected = selected;
        art = art->parent;
        if (!art) return;
        if (selected)
            ++art->selectedChildren;
        else
            --art->selectedChildren;
    }
}

/// Hangs `art` into `parent`, directly below `above`; null: on top.
void Link(Art& art, Art& parent, Art* above) {
    Art* below = above ? above->below : parent.firstChild;
    art.parent = &parent;
    art.above = above;
    art.below = below;
    (above ? above->below : parent.firstChild) = &art;
    (below ? below->above : parent.lastChild) = &art;
    ++parent.childCount;
    if (art.selected) ++parent.selectedChildren;
    RefreshSelected(&parent);
}

void Unlink(Art& art) {
    Art* parent = art.parent;
    if (!parent) return;
    (art.above ? art.above->below : parent->firstChild) = art.below;
    (art.below ? art.below->above : parent->lastChild) = art.above;
    art.parent = art.above = art.below = nullptr;
    --parent->childCount;
    if (art.selected) --parent->selectedChildren;
    RefreshSelected(parent);
}

Art& RootOf(Art& art) {
    Art* root = &art;
    while (root->parent) root = root->parent;
    return *root;
}

bool IsWithin(const Art* art, const Art& container) {
    while (art && art != &container) art = art->parent;
    return art != nullptr;
}

/// What hangs on `art` out of the tree.
template <typename ArtType, typename Visitor>
void ForEachSatellite(ArtType& art, Visitor&& visit) {
    if (art.styledArt) visit(art.styledArt);
    if (auto* text = std::get_if<TextFrameData>(&art.data); text && text->path) visit(text->path);
}

/// Copies of frames that were in one chain are one again, over a copy of the whole story.
void ShareCopy(const Story& story, const std::vector<Art*>& copies,
               const std::map<ArtHandle, ArtHandle>& copyOfFrame) {
    const auto copy = std::make_shared<Story>(story);
    copy->frames.clear();
    for (const ArtHandle frame : story.frames) {
        const auto found = copyOfFrame.find(frame);
        if (found != copyOfFrame.end()) copy->frames.push_back(found->second);
    }
    for (Art* each : copies) std::get<TextFrameData>(each->data).story = copy;
}

bool MakeData(int32_t kind, ArtData* data) {
    switch (kind) {
        case kArtGroup:
            *data = GroupData{};
            return true;
        case kArtPath:
            *data = PathData{{}, false, false, DefaultPathStyle()};
            return true;
        case kArtCompoundPath:
            *data = CompoundPathData{};
            return true;
        case kArtPlaced:
            *data = PlacedData{};
            return true;
        case kArtRaster:
            *data = RasterData{};
            return true;
        case kArtPlugin:
            *data = PluginArtData{};
            return true;
        case kArtMesh:
            *data = MeshData{};
            return true;
        case kArtTextFrame:
            *data = TextFrameData{};
            return true;
        default:
            return false;
    }
}

} // namespace

Art* Document::Find(ArtHandle handle) {
    return tables_->Find<Art>(HandleType::kArt, handle);
}

const Art* Document::Find(ArtHandle handle) const {
    return tables_->Find<const Art>(HandleType::kArt, handle);
}

Art* Document::MakeArt(int32_t kind) {
    ArtData data;
    if (!MakeData(kind, &data)) return nullptr;
    auto* art = new Art;
    art->kind = kind;
    art->data = std::move(data);
    tables_->Add<ArtHandle>(HandleType::kArt, *art);
    if (auto* text = std::get_if<TextFrameData>(&art->data)) {
        text->story = std::make_shared<Story>();
        text->story->frames.push_back(art->handle);
    }
    return art;
}

HostError Document::PlaceFor(int32_t kind, int32_t paintOrder, Art* prep, Art** parent, Art** above) {
    if (paintOrder < kPlaceAbove || paintOrder > kPlaceAboveAll) return kHostBadParameter;
    if (paintOrder == kPlaceAboveAll) prep = CurrentLayer().root;
    if (!prep) return kHostBadPlace;
    const bool beside = paintOrder == kPlaceAbove || paintOrder == kPlaceBelow;
    Art* container = beside ? prep->parent : prep;
    if (!container || !CanChange(*container)) return kHostBadPlace;
    const bool member = kind == kArtPath || kind == kArtGroup;
    if (container->kind != kArtGroup && !(container->kind == kArtCompoundPath && member))
        return kHostBadPlace;
    *parent = container;
    switch (paintOrder) {
        case kPlaceAbove:
            *above = prep->above;
            break;
        case kPlaceBelow:
            *above = prep;
            break;
        case kPlaceInsideAtBottom:
            *above = container->lastChild;
            break;
        default:
            *above = nullptr;
            break;
    }
    return kHostNoError;
}

HostError Document::NewArt(int32_t kind, int32_t paintOrder, Art* prep, Art** art) {
    ArtData data;
    if (!MakeData(kind, &data)) return kHostBadParameter;
    Art *parent = nullptr, *above = nullptr;
    if (const HostError error = PlaceFor(kind, paintOrder, prep, &parent, &above)) return error;
    *art = MakeArt(kind);
    Link(**art, *parent, above);
    return kHostNoError;
}

Art* Document::AppendArt(int32_t kind, Art* parent) {
    Art* art = MakeArt(kind);
    if (art && parent) Link(*art, *parent, parent->lastChild);
    return art;
}

Art* Document::PrependArt(int32_t kind, Art* parent) {
    Art* art = MakeArt(kind);
    if (art && parent) Link(*art, *parent, nullptr);
    return art;
}

void Document::AdoptArt(Art& art, Art& parent, bool onTop) {
    Unlink(art);
    Link(art, parent, onTop ? nullptr : parent.lastChild);
}

void Document::DetachArt(Art& art) {
    Unlink(art);
}

HostError Document::DisposeArt(Art* art) {
    if (!art) return kHostBadHandle;
    if (art->layer) return kHostBadPlace;
    Unlink(*art);
    std::vector<Art*> doomed{art};
    for (size_t i = 0; i < doomed.size(); ++i) {
        for (Art* child = doomed[i]->firstChild; child; child = child->below) doomed.push_back(child);
        ForEachSatellite(*doomed[i], [&](ArtHandle handle) {
            // Two art objects may name the same satellite, which is then met a second time.
            Art* satellite = Find(handle);
            if (satellite && !satellite->parent && !satellite->layer) {
                doomed.push_back(satellite);
                tables_->handles.Remove(reinterpret_cast<uintptr_t>(handle));
            }
        });
    }
    for (Art* each : doomed) {
        const auto* text = std::get_if<TextFrameData>(&each->data);
        if (text && text->story) std::erase(text->story->frames, each->handle);
        tables_->handles.Remove(reinterpret_cast<uintptr_t>(each->handle));
        delete each;
    }
    return kHostNoError;
}

HostError Document::ReorderArt(Art* art, int32_t paintOrder, Art* prep) {
    if (!art) return kHostBadHandle;
    if (art->layer) return kHostBadPlace;
    Art *parent = nullptr, *above = nullptr;
    if (const HostError error = PlaceFor(art->kind, paintOrder, prep, &parent, &above)) return error;
    if (prep == art || IsWithin(parent, *art)) return kHostBadPlace;
    if (above == art) above = art->above;
    Unlink(*art);
    Link(*art, *parent, above);
    return kHostNoError;
}

HostError Document::SetEditArt(Art& pluginArt, Art& edit) {
    auto* data = std::get_if<PluginArtData>(&pluginArt.data);
    if (!data || edit.kind != kArtGroup) return kHostBadArt;
    if (edit.layer || IsWithin(&pluginArt, edit)) return kHostBadPlace;
    if (data->edit == edit.handle) return kHostNoError;
    Art* old = Find(data->edit);
    // The old edit art may hold the new one, so it goes last.
    Unlink(edit);
    Link(edit, pluginArt, pluginArt.lastChild);
    data->edit = edit.handle;
    if (old && old->parent == &pluginArt) DisposeArt(old);
    return kHostNoError;
}

Art* Document::CopyArt(const Art& art) {
    return CopyArts({&art}).front();
}

std::vector<Art*> Document::CopyArts(const std::vector<const Art*>& arts) {
    struct Pair {
        const Art* from;
        Art* to;
    };
    const auto copyOf = [this](const Art& from, Art* parent) {
        Art* to = AppendArt(from.kind, parent);
        to->locked = from.locked;
        to->hidden = from.hidden;
        to->name = from.name;
        to->blend = from.blend;
        to->tags = from.tags;
        to->artStyle = from.artStyle;
        to->styledArt = from.styledArt;
        to->data = from.data;
        return to;
    };
    std::vector<Pair> pairs;
    std::vector<Art*> roots;
    for (const Art* art : arts) {
        roots.push_back(copyOf(*art, nullptr));
        pairs.push_back({art, roots.back()});
    }
    std::map<const Story*, std::vector<Art*>> framesOfCopies;
    for (size_t i = 0; i < pairs.size(); ++i) {
        const auto [from, to] = pairs[i];
        if (auto* text = std::get_if<TextFrameData>(&to->data); text && text->story)
            framesOfCopies[text->story.get()].push_back(to);
        auto* plugin = std::get_if<PluginArtData>(&to->data);
        for (const Art* child = from->firstChild; child; child = child->below) {
            pairs.push_back({child, copyOf(*child, to)});
            if (plugin && plugin->edit == child->handle) plugin->edit = pairs.back().to->handle;
            if (plugin && plugin->result == child->handle) plugin->result = pairs.back().to->handle;
        }
        // A visited reference is the copy's own, so it can be pointed at the satellite's copy.
        ForEachSatellite(*to, [&](ArtHandle& handle) {
            const Art* satellite = Find(handle);
            if (satellite && satellite->parent) return;
            handle = nullptr;
            if (!satellite) return;
            pairs.push_back({satellite, copyOf(*satellite, nullptr)});
            handle = pairs.back().to->handle;
        });
    }
    std::map<ArtHandle, ArtHandle> copyOfFrame;
    for (const auto& [from, to] : pairs) copyOfFrame[from->handle] = to->handle;
    for (const auto& [story, copies] : framesOfCopies) ShareCopy(*story, copies, copyOfFrame);
    return roots;
}

Layer* Document::LayerOf(const Art& art) {
    return Find(RootOf(const_cast<Art&>(art)).layer);
}

void Document::Select(Art& art, bool selected) {
    const bool before = art.selected;
    ForEachArt(art, [selected](const Art& each) {
        Art& member = const_cast<Art&>(each);
        member.selected = selected;
        member.selectedChildren = selected ? member.childCount : 0;
    });
    if (!art.parent || before == selected) return;
    if (selected)
        ++art.parent->selectedChildren;
    else
        --art.parent->selectedChildren;
    RefreshSelected(art.parent);
}

void Document::SelectAll() {
    for (const auto& layer : layers_) Select(*layer->root, true);
}

void Document::SelectNone() {
    for (const auto& layer : layers_) Select(*layer->root, false);
}

} // namespace workbench
