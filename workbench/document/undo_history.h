/// The steps that can be undone and done again.
///
/// A step begins with a copy of all layers and what is on them, taken before anything changes.  Art that is
/// put back is new art: handles from before are stale afterwards, also those of art that the step didn't
/// touch.  Layers that are still there keep their handles.  Gradients, patterns, custom colours, styles and
/// swatches are not part of a step: what a step made of them stays.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/document/document.h"

namespace workbench {

class UndoHistory {
public:
    /// @param mostSteps  beyond these the oldest is forgotten
    explicit UndoHistory(Document& document, size_t mostSteps = 50);

    /// What follows is one step; what was undone can't be done again any more.
    void Begin(std::string undoText, std::string redoText);

    /// Names the step that was begun last, and that can be undone.
    void NameStep(std::string undoText, std::string redoText);

    bool CanUndo() const { return !done_.empty(); }
    bool CanRedo() const { return !undone_.empty(); }
    const std::string& undoText() const { return done_.back().undoText; }   ///< only if CanUndo
    const std::string& redoText() const { return undone_.back().redoText; } ///< only if CanRedo
    void Undo();
    void Redo();

    /// The number of the step that was begun last; 0: none yet.  No number comes twice.
    uint64_t lastStep() const { return lastStep_; }
    bool HasDone(uint64_t step) const { return Holds(done_, step); }     ///< it can be undone, in its turn
    bool HasUndone(uint64_t step) const { return Holds(undone_, step); } ///< it can be done again

    /// The document is as it was when MarkSaved was last called, or at first.
    bool saved() const { return savedAt_ == done_.size(); }
    void MarkSaved() { savedAt_ = done_.size(); }

private:
    struct LayerState {
        LayerHandle handle = nullptr;
        std::string title;
        bool visible = true, locked = false;
        Art* members = nullptr;     ///< a free-standing copy of the layer's group
        std::vector<bool> selected; ///< in the order of ForEachArt
    };
    struct State {
        std::vector<LayerState> layers;
        size_t current = 0;
    };
    struct Step {
        State other; ///< on the other side of the step
        std::string undoText, redoText;
        uint64_t number = 0;
    };

    static bool Holds(const std::vector<Step>& steps, uint64_t number);
    State Capture();
    void PutBack(State& state);
    void PutBackLayer(Layer& layer, LayerState& state);
    void Forget(State& state);
    void Cross(std::vector<Step>& from, std::vector<Step>& to);

    static constexpr size_t kNowhere = static_cast<size_t>(-1);

    Document& document_;
    size_t mostSteps_;
    uint64_t lastStep_ = 0;
    std::vector<Step> done_, undone_; ///< the nearest last
    size_t savedAt_ = 0;              ///< number of done steps
};

} // namespace workbench
