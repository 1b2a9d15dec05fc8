#include "app/action_recorder.h"

#include <algorithm>

#include "app/art_selection.h"
#include "app/commands.h"
#include "app/database_view.h"
#include "app/documents.h"
#include "app/session.h"
#include "app/texts.h"
#include "plugin/actions/place_action.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/placement/action_names.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "workbench/document/undo_history.h"

using workbench::Art;
using workbench::Document;

namespace {

std::optional<ActionRecord> RecordOfRow(int32_t row) {
    char group[kNameBytes] = "";
    int32_t number = 0;
    if (row < 0 || !GetRecordOfRow(row, group, &number)) return std::nullopt;
    return ActionRecord{.group = group, .number = number};
}

int32_t SelectedRow() {
    const HWND panel = PanelWindow();
    return panel ? GetSelectedRow(GetDlgItem(panel, kRecordList)) : -1;
}

template <typename Visit>
void ForEachMember(Document& document, Visit&& visit) {
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        for (const Art* art = document.LayerAt(i).root->firstChild; art; art = art->below) visit(*art);
    }
}

std::map<std::string, uint32_t> CountAllRecords() {
    std::map<std::string, uint32_t> records;
    for (const std::string& group : AllGroups()) records[group] = CountRecords(group.c_str());
    return records;
}

/// Bytes behind a missing NUL don't count.
template <size_t kBytes>
std::string FieldBytes(const char (&field)[kBytes]) {
    return {field, std::find(field, field + kBytes, '\0')};
}

/// The place action's parameters for art that lies within these bounds.
std::map<uint32_t, double> RealsOf(const HostRect& bounds) {
    return {{kPlaceX, (bounds.left + bounds.right) / 2},
            {kPlaceY, (bounds.top + bounds.bottom) / 2},
            {kPlaceWidth, bounds.right - bounds.left},
            {kPlaceHeight, bounds.top - bounds.bottom},
            {kPlaceAngle, 0}};
}

} // namespace

ActionRecorder::ActionRecorder(workbench::Host& host, workbench::Workspace& workspace, std::string path)
    : host_(host), workspace_(workspace), path_(std::move(path)), document_(host.front()->handle()) {
    host_.WatchActions([this](const workbench::HostAction& action, const std::map<uint32_t, double>& reals,
                              bool done) { Watch(action, reals, done); });
    workspace_.documentChanged = [this] { FollowHistory(); };
}

ActionRecorder::~ActionRecorder() {
    host_.WatchActions(nullptr);
    workspace_.documentChanged = nullptr;
}

bool ActionRecorder::IsSameDocument() const {
    const Document* document = host_.front();
    return document && document->handle() == document_;
}

void ActionRecorder::Watch(const workbench::HostAction& action, const std::map<uint32_t, double>& reals,
                           bool done) {
    const SuitesHeld held(host_);
    if (!done) {
        before_ = Look(action.name, reals);
        return;
    }
    if (!before_) return;
    Before before = std::move(*before_);
    before_.reset();
    if (!IsSameDocument()) return;
    if (before.step.kind == ActionKind::kRegister) {
        TakeRegistration(before);
    } else {
        TakePlacement(before);
    }
}

std::optional<ActionRecorder::Before> ActionRecorder::Look(const std::string& action,
                                                           const std::map<uint32_t, double>& reals) {
    const bool internal = action == kInternalAction;
    const int32_t command = internal ? globals->commandPending : kPlaceCommand;
    if (!host_.front() || (command != kPlaceCommand && command != kRegisterCommand)) return std::nullopt;
    if (!IsSameDocument()) {
        Complain(path_ + ": what is done in another document isn't recorded");
        return std::nullopt;
    }
    Document& document = *host_.front();
    Before before;
    before.lastStep = document.history()->lastStep();
    if (command == kRegisterCommand) {
        before.step.kind = ActionKind::kRegister;
        const std::vector<size_t> numbers = SelectedObjects(document);
        const bool all = numbers.size() == CountDrawnObjects(document);
        before.step.select = {.all = all, .name = {}, .numbers = all ? std::vector<size_t>{} : numbers};
        before.records = CountAllRecords();
    } else {
        before.drag = internal;
        before.step.record = RecordOfRow(internal ? globals->selectedRow : SelectedRow());
        before.step.reals = reals;
        ForEachMember(document, [&](const Art& art) { before.members.insert(art.handle); });
    }
    return before;
}

void ActionRecorder::TakePlacement(Before& before) {
    Document& document = *host_.front();
    const uint64_t step = document.history()->lastStep();
    if (step == before.lastStep || !before.step.record) return;
    std::optional<HostRect> bounds;
    size_t added = 0;
    ForEachMember(document, [&](const Art& art) {
        HostRect own{};
        if (before.members.contains(art.handle)) return;
        ++added;
        if (!document.Bounds(art, &own)) return;
        if (!bounds) bounds = own;
        bounds = HostRect{std::min(bounds->left, own.left), std::max(bounds->top, own.top),
                          std::max(bounds->right, own.right), std::min(bounds->bottom, own.bottom)};
    });
    if (added == 0 || (before.drag && !bounds)) {
        Complain(path_ + ": what was just done without new art isn't recorded");
        return;
    }
    if (before.drag) before.step.reals = RealsOf(*bounds);
    placed_.push_back({.step = step});
    Add(std::move(before.step));
}

void ActionRecorder::TakeRegistration(Before& before) {
    const std::string group = globals->entryName;
    const uint32_t count = CountRecords(group.c_str());
    const auto old = before.records.find(group);
    if (count <= (old == before.records.end() ? 0 : old->second)) return;
    RecordHeader header{};
    if (!ReadHeader(group, static_cast<int32_t>(count - 1), &header)) return;
    before.step.group = group;
    before.step.texts = {.name = FieldBytes(header.name),
                         .kind = FieldBytes(header.kind),
                         .comment = FieldBytes(header.comment)};
    Add(std::move(before.step));
}

void ActionRecorder::FollowHistory() {
    if (!IsSameDocument()) return;
    const workbench::UndoHistory& history = *host_.front()->history();
    for (size_t i = placed_.size(); i-- > 0;) {
        if (placed_[i].undone || !history.HasUndone(placed_[i].step)) continue;
        placed_[i].undone = true;
        Add({.kind = ActionKind::kUndo});
    }
    for (Placed& placed : placed_) {
        if (!placed.undone || !history.HasDone(placed.step)) continue;
        placed.undone = false;
        Add({.kind = ActionKind::kRedo});
    }
}

void ActionRecorder::Add(ActionStep step) {
    steps_.push_back(std::move(step));
    Write();
}

bool ActionRecorder::Write() const {
    const std::string text = TextOfActions(steps_);
    std::string error;
    if (SaveBytes(path_, text.data(), text.size(), &error)) return true;
    Complain(error);
    return false;
}
