#include "app/action_player.h"

#include <windows.h>

#include <cstring>

#include "app/art_selection.h"
#include "app/commands.h"
#include "app/database_view.h"
#include "app/missing_fonts.h"
#include "app/record_loading.h"
#include "app/store_words.h"
#include "app/texts.h"
#include "plugin/dialogs/entry_dialog.h"
#include "plugin/frame/globals.h"
#include "plugin/panel/current_place.h"
#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/placement/action_names.h"
#include "plugin/store/places.h"
#include "plugin/store/record.h"
#include "plugin/store/record_index.h"
#include "plugin/store/store_names.h"
#include "win32/beep.h"
#include "workbench/document/undo_history.h"

namespace {

constexpr int16_t kOriginCentre = 4;

/// The panel shows the group, as if it had been picked there, with nothing selected.
bool ShowGroup(HWND panel, const std::string& group, std::string* error) {
    if (!panel) {
        *error = "the panel isn't there";
        return false;
    }
    if (group != globals->aidbfname) {
        SelectGroup(group.c_str());
        if (globals->browseMode) RebuildFolderList(panel);
        RebuildGroupCombo(panel);
    }
    const auto count = static_cast<int32_t>(CountRecords(group.c_str()));
    if (RihCount(globals->rihList) != count) FreeHandle(globals->rihList); // read anew when it is asked
    if (GetRowCount(GetDlgItem(panel, kRecordList)) != count) RebuildRecordList(panel, true);
    SelectRecordRow(panel, -1);
    return true;
}

bool SelectRecord(HWND panel, const ActionRecord& record, std::string* error) {
    if (!GroupFileExists(record.group.c_str())) {
        *error = GroupForPeople(record.group) + ": there is no such group";
        return false;
    }
    if (!ShowGroup(panel, record.group, error)) return false;
    const int32_t row = FindRihItem(record.group.c_str(), static_cast<uint32_t>(record.number));
    if (row < 0) {
        *error = GroupForPeople(record.group) + ": there is no record " + std::to_string(record.number);
        return false;
    }
    SelectRecordRow(panel, row);
    return true;
}

/// What is selected in the panel now; a number below 0: nothing.
ActionRecord SelectedRecord(HWND panel) {
    char group[kNameBytes] = "";
    int32_t number = 0;
    const int32_t row = panel ? GetSelectedRow(GetDlgItem(panel, kRecordList)) : -1;
    if (row < 0 || !GetRecordOfRow(row, group, &number)) return {.group = {}, .number = -1};
    return {.group = group, .number = number};
}

/// The plug-in's last word to the user, if there was any.
bool WasAlerted(const workbench::Host& host, std::string* error) {
    if (host.alerts().empty()) return false;
    *error = host.alerts().back().text;
    return true;
}

bool Place(const ActionStage& stage, const ActionStep& step, std::string* error) {
    workbench::Host& host = stage.session.host();
    const SuitesHeld held(host);
    const HWND panel = PanelWindow();
    if (step.record && !SelectRecord(panel, *step.record, error)) return false;
    const ActionRecord record = SelectedRecord(panel);
    // Art that goes to layers of its own isn't brought to its place by the action but by the load alone.
    globals->originMode = kOriginCentre;
    host.ClearAlerts();
    const unsigned beeps = BeepCount();
    if (host.PlayAction(kPlaceAction, step.reals) != kHostNoError) {
        *error = "the plug-in has no such action";
        return false;
    }
    if (WasAlerted(host, error)) return false;
    if (!WasLoadedWhole(record.group, record.number, LinkedFileUse::kPool, beeps, error)) return false;
    for (const std::string& sentence : MissingFonts())
        Complain(GroupForPeople(record.group) + ": " + sentence);
    return true;
}

/// Fills in the entry dialog as soon as it stands, and answers it.
class EntryHand {
public:
    EntryHand(HeadlessDisplay& display, const ActionStep& step) : display_(display), step_(step) {}
    ~EntryHand() { display_.ForgetSteps(); }
    EntryHand(const EntryHand&) = delete;
    EntryHand& operator=(const EntryHand&) = delete;

    void Wait() {
        display_.Do([this] { Look(); });
    }
    bool came() const { return came_; }

private:
    static constexpr int kMostLooks = 10000;

    void Look() {
        const HWND dialog = GetActiveWindow();
        if (dialog && GetDlgItem(dialog, kEntryName) && GetDlgItem(dialog, kEntryComment)) {
            Fill(dialog);
        } else if (++looks_ < kMostLooks) {
            Wait();
        }
    }

    void Fill(HWND dialog) {
        SetDlgItemTextA(dialog, kEntryName, step_.texts.name.c_str());
        SetDlgItemTextA(dialog, kEntryKind, step_.texts.kind.c_str());
        SetDlgItemTextA(dialog, kEntryComment, step_.texts.comment.c_str());
        // The dialog begins with the panel's group, which is the wanted one.
        char folder[kPartBytes], subFolder[kPartBytes], group[kPartBytes], shown[kPartBytes] = "";
        SplitGroupName(step_.group.c_str(), folder, subFolder, group);
        GetDlgItemTextA(dialog, kEntryGroup, shown, sizeof shown);
        came_ = std::strcmp(group, shown) == 0;
        PostMessageA(dialog, WM_COMMAND, came_ ? IDOK : IDCANCEL, 0);
    }

    HeadlessDisplay& display_;
    const ActionStep& step_;
    int looks_ = 0;
    bool came_ = false;
};

bool SelectArt(workbench::Document& document, const ArtChoice& choice, std::string* error) {
    document.SelectNone();
    if (choice.all) {
        document.SelectAll();
    } else if (!choice.name.empty() && !SelectNamedArt(document, choice.name)) {
        *error = "no art bears the name '" + choice.name + "'";
        return false;
    } else if (choice.name.empty() && !SelectObjects(document, choice.numbers)) {
        *error = "the document has no drawn object of a number that is to be selected";
        return false;
    }
    if (!SelectedObjects(document).empty()) return true;
    *error = "no art is selected";
    return false;
}

bool MakeGroupIfMissing(Session& session, const std::string& group, std::string* error) {
    if (GroupFileExists(group.c_str())) return true;
    if (!session.MakeFolders(group, error)) return false;
    if (MakeGroup(group.c_str()) == 0) return true;
    *error = WordsOfStoreTrouble();
    return false;
}

bool Register(const ActionStage& stage, const ActionStep& step, std::string* line, std::string* error) {
    workbench::Host& host = stage.session.host();
    const SuitesHeld held(host);
    if (!SelectArt(*host.front(), step.select.value_or(stage.select), error) ||
        !MakeGroupIfMissing(stage.session, step.group, error) || !ShowGroup(PanelWindow(), step.group, error))
        return false;
    host.ClearAlerts();
    const uint32_t before = CountRecords(step.group.c_str());
    EntryHand hand(stage.display, step);
    hand.Wait();
    globals->commandPending = kRegisterCommand;
    host.PlayAction(kInternalAction, std::map<uint32_t, double>{});
    globals->commandPending = 0; // if it couldn't be played
    if (WasAlerted(host, error)) return false;
    if (!hand.came() || CountRecords(step.group.c_str()) <= before) {
        *error = GroupForPeople(step.group) + ": what is selected can't be stored there";
        return false;
    }
    *line = GroupForPeople(step.group) + "\t" + std::to_string(SelectedRecord(PanelWindow()).number) + "\t" +
            Utf8OfCp932(step.texts.name);
    return true;
}

bool CrossStep(workbench::UndoHistory& history, bool undo, std::string* error) {
    if (undo ? !history.CanUndo() : !history.CanRedo()) {
        *error = undo ? "there is nothing to undo" : "there is nothing to do again";
        return false;
    }
    if (undo) {
        history.Undo();
    } else {
        history.Redo();
    }
    return true;
}

} // namespace

bool PlayStep(const ActionStage& stage, const ActionStep& step, std::string* line, std::string* error) {
    line->clear();
    switch (step.kind) {
        case ActionKind::kPlace:
            return Place(stage, step, error);
        case ActionKind::kRegister:
            return Register(stage, step, line, error);
        default:
            return CrossStep(*stage.session.host().front()->history(), step.kind == ActionKind::kUndo, error);
    }
}
