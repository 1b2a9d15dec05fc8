#include "workbench/document/undo_history.h"

#include <algorithm>
#include <utility>

namespace workbench {

UndoHistory::UndoHistory(Document& document, size_t mostSteps) : document_(document), mostSteps_(mostSteps) {}

void UndoHistory::Begin(std::string undoText, std::string redoText) {
    for (Step& step : undone_) Forget(step.other);
    undone_.clear();
    if (savedAt_ != kNowhere && savedAt_ > done_.size()) savedAt_ = kNowhere;
    done_.push_back({Capture(), std::move(undoText), std::move(redoText), ++lastStep_});
    if (done_.size() <= mostSteps_) return;
    Forget(done_.front().other);
    done_.erase(done_.begin());
    if (savedAt_ != kNowhere) savedAt_ = savedAt_ == 0 ? kNowhere : savedAt_ - 1;
}

bool UndoHistory::Holds(const std::vector<Step>& steps, uint64_t number) {
    return std::ranges::any_of(steps, [&](const Step& step) { return step.number == number; });
}

void UndoHistory::NameStep(std::string undoText, std::string redoText) {
    if (done_.empty()) return;
    done_.back().undoText = std::move(undoText);
    done_.back().redoText = std::move(redoText);
}

void UndoHistory::Undo() {
    if (CanUndo()) Cross(done_, undone_);
}

void UndoHistory::Redo() {
    if (CanRedo()) Cross(undone_, done_);
}

void UndoHistory::Cross(std::vector<Step>& from, std::vector<Step>& to) {
    Step step = std::move(from.back());
    from.pop_back();
    State now = Capture();
    PutBack(step.other);
    step.other = std::move(now);
    to.push_back(std::move(step));
}

UndoHistory::State UndoHistory::Capture() {
    State state;
    std::vector<const Art*> roots;
    for (size_t i = 0; i < document_.LayerCount(); ++i) {
        const Layer& layer = document_.LayerAt(i);
        if (&layer == &document_.CurrentLayer()) state.current = i;
        state.layers.push_back({.handle = layer.handle,
                                .title = layer.title,
                                .visible = layer.visible,
                                .locked = layer.locked,
                                .members = nullptr,
                                .selected = {}});
        ForEachArt(*layer.root,
                   [&](const Art& art) { state.layers.back().selected.push_back(art.selected); });
        roots.push_back(layer.root);
    }
    const std::vector<Art*> copies = document_.CopyArts(roots);
    for (size_t i = 0; i < copies.size(); ++i) state.layers[i].members = copies[i];
    return state;
}

void UndoHistory::PutBack(State& state) {
    for (size_t i = document_.LayerCount(); i-- > 0;) {
        bool stays = false;
        for (const LayerState& layer : state.layers) stays |= layer.handle == document_.LayerAt(i).handle;
        // There is always one layer; the last one goes when another is there.
        if (!stays && document_.LayerCount() > 1) document_.RemoveLayer(i);
    }
    for (size_t i = 0; i < state.layers.size(); ++i) {
        LayerState& wanted = state.layers[i];
        if (i >= document_.LayerCount() || document_.LayerAt(i).handle != wanted.handle) {
            const LayerHandle made = document_.InsertLayer(i, wanted.title).handle;
            // Other steps know the layer by the handle that it had.
            for (std::vector<Step>* steps : {&done_, &undone_}) {
                for (Step& step : *steps) {
                    for (LayerState& layer : step.other.layers) {
                        if (layer.handle == wanted.handle) layer.handle = made;
                    }
                }
            }
        }
        PutBackLayer(document_.LayerAt(i), wanted);
    }
    while (document_.LayerCount() > state.layers.size()) document_.RemoveLayer(document_.LayerCount() - 1);
    document_.SetCurrentLayer(state.current);
}

void UndoHistory::PutBackLayer(Layer& layer, LayerState& state) {
    layer.title = state.title;
    layer.visible = state.visible;
    layer.locked = state.locked;
    Art& root = *layer.root;
    Art& members = *state.members;
    while (root.firstChild) document_.DisposeArt(root.firstChild);
    while (members.firstChild) document_.AdoptArt(*members.firstChild, root);
    root.locked = members.locked;
    root.hidden = members.hidden;
    root.name = members.name;
    root.blend = members.blend;
    root.tags = members.tags;
    root.artStyle = members.artStyle;
    std::swap(root.styledArt, members.styledArt); // the old one goes with the shell
    root.data = members.data;
    document_.DisposeArt(&members);
    state.members = nullptr;
    document_.Select(root, false);
    std::vector<Art*> selected;
    size_t number = 0;
    ForEachArt(root, [&](const Art& art) {
        if (state.selected[number++]) selected.push_back(const_cast<Art*>(&art));
    });
    for (Art* art : selected) {
        if (!art->selected) document_.Select(*art, true);
    }
}

void UndoHistory::Forget(State& state) {
    for (LayerState& layer : state.layers) document_.DisposeArt(layer.members);
}

} // namespace workbench
