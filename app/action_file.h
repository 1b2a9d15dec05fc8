/// A file of actions: what a plug-in's actions do to a drawing and a database, in JSON.
///
///     {"schema": 1, "actions": [
///       {"action": "VELQUORNE_PLACE", "record": {"group": "Food/Fruit", "number": 3},
///        "parameters": {"X-coordinate": 306, "Y-coordinate": 396, "Width": 120, "Height": 90, "Angle": 0}},
///       {"action": "VELQUORNE_INTERNAL_ACTION", "command": "register", "select": "all",
///        "entry": {"group": "Food/New", "name": "Apples", "kind": "fruit", "comment": "two of them"}},
///       {"action": "undo"}]}
///
/// The place action's parameters bear their English or Japanese names or their four-character keys: points,
/// y upward, and radians.  Both coordinates must be there.  Without a record it is the one that is selected
/// in the panel: the last that was placed or registered.
/// Of the internal action only the command "register" can be played; the drag needs a hand and is recorded as
/// the place action that has the same result.  "select" is "all", the id of art, or a list of numbers as
/// app/art_selection.h counts drawn objects.
/// "undo" and "redo" are the host's own, of placements.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/registration.h"

constexpr int kActionSchema = 1;
constexpr size_t kMostActionBytes = 4 << 20; ///< of a file

enum class ActionKind { kPlace, kRegister, kUndo, kRedo };

struct ActionRecord {
    std::string group; ///< as the plug-in names it
    int32_t number = 0;
};

struct ArtChoice {
    bool all = false;
    std::string name; ///< UTF-8, if it isn't empty
    std::vector<size_t> numbers;
};

struct ActionStep {
    ActionKind kind = ActionKind::kPlace;
    std::optional<ActionRecord> record{}; ///< to place
    std::map<uint32_t, double> reals{};   ///< of the place action, by key
    std::optional<ArtChoice> select{};    ///< to register
    std::string group{};                  ///< to register in, as the plug-in names it
    RecordTexts texts{};
};

/// Nothing, and a sentence that names the place in *error, if the text is anything else.
std::optional<std::vector<ActionStep>> ParseActions(std::string_view text, std::string* error);

/// "all" or an id.
ArtChoice ArtChoiceOf(const std::string& text);

std::string TextOfActions(const std::vector<ActionStep>& steps);
