#include "app/action_file.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "app/database_view.h"
#include "app/texts.h"
#include "plugin/actions/action_handler.h"
#include "plugin/actions/place_action.h"
#include "plugin/dialogs/entry_dialog.h"
#include "plugin/placement/action_names.h"

using nlohmann::ordered_json;

namespace {

constexpr char kRegisterWord[] = "register", kUndoWord[] = "undo", kRedoWord[] = "redo", kAllWord[] = "all";

/// Why a file is refused.
struct Refusal {
    std::string sentence;
};

[[noreturn]] void RefuseFile(const std::string& sentence) {
    throw Refusal{sentence};
}

/// Refuses members of other names.
void CheckMembers(const ordered_json& object, std::initializer_list<const char*> names) {
    if (!object.is_object()) RefuseFile("it is no object");
    for (const auto& member : object.items()) {
        if (std::ranges::find(names, member.key()) == names.end())
            RefuseFile("'" + member.key() + "' can't stand there");
    }
}

const ordered_json* Find(const ordered_json& object, const char* name) {
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

const ordered_json& Need(const ordered_json& object, const char* name) {
    const ordered_json* member = Find(object, name);
    if (!member) RefuseFile(std::string("'") + name + "' is missing");
    return *member;
}

std::string ReadText(const ordered_json& value, const char* name) {
    if (!value.is_string()) RefuseFile(std::string("'") + name + "' is no text");
    return value.get<std::string>();
}

int64_t ReadCount(const ordered_json& value, const std::string& name) {
    constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
    const bool fits = value.is_number_unsigned() ? value.get<uint64_t>() <= static_cast<uint64_t>(kMost)
                                                 : value.is_number_integer() && value.get<int64_t>() >= 0;
    if (!fits) RefuseFile("'" + name + "' is no whole number from 0 on");
    return value.get<int64_t>();
}

std::string ReadGroup(const ordered_json& value) {
    std::string error;
    const auto group = GroupNameOfUtf8(ReadText(value, "group"), &error);
    if (!group) RefuseFile("'group': " + error);
    return *group;
}

std::string KeyText(uint32_t key) {
    return {static_cast<char>(key >> 24), static_cast<char>(key >> 16), static_cast<char>(key >> 8),
            static_cast<char>(key)};
}

/// 0 if there is no such parameter.
uint32_t KeyOfParameter(const std::string& name) {
    for (const ActionParameter& parameter : PlaceActionParameters()) {
        if (name == parameter.english || name == Utf8OfCp932(parameter.japanese) ||
            name == KeyText(parameter.key))
            return parameter.key;
    }
    return 0;
}

std::map<uint32_t, double> ReadParameters(const ordered_json& parameters) {
    if (!parameters.is_object()) RefuseFile("'parameters' is no object");
    std::map<uint32_t, double> reals;
    for (const auto& member : parameters.items()) {
        const uint32_t key = KeyOfParameter(member.key());
        if (key == 0) RefuseFile("the action has no parameter '" + member.key() + "'");
        if (!member.value().is_number() || !std::isfinite(member.value().get<double>()))
            RefuseFile("parameter '" + member.key() + "' is no number");
        if (!reals.emplace(key, member.value().get<double>()).second)
            RefuseFile("parameter '" + member.key() + "' is there twice");
    }
    for (const ActionParameter& parameter : PlaceActionParameters()) {
        const bool needed = parameter.key == kPlaceX || parameter.key == kPlaceY;
        if (needed && !reals.contains(parameter.key))
            RefuseFile(std::string("parameter '") + parameter.english + "' is missing");
    }
    return reals;
}

ActionStep ReadPlace(const ordered_json& action) {
    CheckMembers(action, {"action", "record", "parameters"});
    ActionStep step{.kind = ActionKind::kPlace};
    if (const ordered_json* record = Find(action, "record")) {
        CheckMembers(*record, {"group", "number"});
        step.record = {.group = ReadGroup(Need(*record, "group")),
                       .number = static_cast<int32_t>(ReadCount(Need(*record, "number"), "number"))};
    }
    step.reals = ReadParameters(Need(action, "parameters"));
    return step;
}

std::string ReadEntryText(const ordered_json& entry, const char* name, size_t most) {
    const ordered_json* value = Find(entry, name);
    if (!value) return {};
    std::string error;
    const auto text = Cp932OfUtf8(ReadText(*value, name), &error);
    if (!text) RefuseFile(std::string("'") + name + "': " + error);
    if (text->size() > most)
        RefuseFile(std::string("'") + name + "' is longer than " + std::to_string(most) + " bytes");
    return *text;
}

ArtChoice ReadChoice(const ordered_json& select) {
    if (select.is_string()) return ArtChoiceOf(select.get<std::string>());
    if (!select.is_array()) RefuseFile("'select' is no text and no list of numbers");
    ArtChoice choice;
    for (const ordered_json& number : select)
        choice.numbers.push_back(static_cast<size_t>(ReadCount(number, "select")));
    return choice;
}

ActionStep ReadRegister(const ordered_json& action) {
    CheckMembers(action, {"action", "command", "select", "entry"});
    if (ReadText(Need(action, "command"), "command") != kRegisterWord)
        RefuseFile("the command '" + action["command"].get<std::string>() + "' can't be played");
    ActionStep step{.kind = ActionKind::kRegister};
    if (const ordered_json* select = Find(action, "select")) step.select = ReadChoice(*select);
    const ordered_json& entry = Need(action, "entry");
    CheckMembers(entry, {"group", "name", "kind", "comment"});
    step.group = ReadGroup(Need(entry, "group"));
    step.texts = {.name = ReadEntryText(entry, "name", kEntryNameBytes),
                  .kind = ReadEntryText(entry, "kind", kEntryNameBytes),
                  .comment = ReadEntryText(entry, "comment", kEntryCommentBytes)};
    return step;
}

ActionStep ReadStep(const ordered_json& action) {
    if (!action.is_object()) RefuseFile("it is no object");
    const std::string name = ReadText(Need(action, "action"), "action");
    if (name == kPlaceAction) return ReadPlace(action);
    if (name == kInternalAction) return ReadRegister(action);
    if (name != kUndoWord && name != kRedoWord) RefuseFile("there is no action '" + name + "'");
    CheckMembers(action, {"action"});
    return {.kind = name == kUndoWord ? ActionKind::kUndo : ActionKind::kRedo};
}

std::vector<ActionStep> ReadSteps(const ordered_json& file) {
    CheckMembers(file, {"schema", "actions"});
    const int64_t schema = ReadCount(Need(file, "schema"), "schema");
    if (schema != kActionSchema)
        RefuseFile("its schema is " + std::to_string(schema) + ", and only " + std::to_string(kActionSchema) +
                   " is known");
    const ordered_json& actions = Need(file, "actions");
    if (!actions.is_array()) RefuseFile("'actions' is no list");
    std::vector<ActionStep> steps;
    for (const ordered_json& action : actions) {
        try {
            steps.push_back(ReadStep(action));
        } catch (const Refusal& refusal) {
            RefuseFile("action " + std::to_string(steps.size() + 1) + ": " + refusal.sentence);
        }
    }
    return steps;
}

/// `Folder/Sub/Group` in UTF-8.
std::string GroupText(const std::string& group) {
    std::string text = GroupForPeople(group);
    std::ranges::replace(text, '\\', '/');
    return text.substr(text.find_first_not_of('/'));
}

ordered_json JsonOfPlace(const ActionStep& step) {
    ordered_json action{{"action", kPlaceAction}};
    if (step.record)
        action["record"] = {{"group", GroupText(step.record->group)}, {"number", step.record->number}};
    ordered_json& parameters = action["parameters"] = ordered_json::object();
    for (const ActionParameter& parameter : PlaceActionParameters()) {
        const auto real = step.reals.find(parameter.key);
        if (real != step.reals.end()) parameters[parameter.english] = real->second;
    }
    return action;
}

ordered_json JsonOfRegister(const ActionStep& step) {
    ordered_json action{{"action", kInternalAction}, {"command", kRegisterWord}};
    if (step.select && step.select->all) {
        action["select"] = kAllWord;
    } else if (step.select && !step.select->name.empty()) {
        action["select"] = step.select->name;
    } else if (step.select) {
        action["select"] = step.select->numbers;
    }
    action["entry"] = {{"group", GroupText(step.group)},
                       {"name", Utf8OfCp932(step.texts.name)},
                       {"kind", Utf8OfCp932(step.texts.kind)},
                       {"comment", Utf8OfCp932(step.texts.comment)}};
    return action;
}

} // namespace

ArtChoice ArtChoiceOf(const std::string& text) {
    if (text == kAllWord) return {.all = true, .name = {}, .numbers = {}};
    return {.all = false, .name = text, .numbers = {}};
}

std::optional<std::vector<ActionStep>> ParseActions(std::string_view text, std::string* error) {
    try {
        if (text.size() > kMostActionBytes) RefuseFile("the file is too long");
        return ReadSteps(ordered_json::parse(text));
    } catch (const Refusal& refusal) {
        *error = refusal.sentence;
    } catch (const nlohmann::json::exception& exception) {
        // Behind the library's own mark: "parse error at line 3, column 7: ..."
        const std::string what = exception.what();
        const size_t mark = what.find("] ");
        *error = mark == std::string::npos ? what : what.substr(mark + 2);
    }
    return std::nullopt;
}

std::string TextOfActions(const std::vector<ActionStep>& steps) {
    ordered_json file{{"schema", kActionSchema}, {"actions", ordered_json::array()}};
    for (const ActionStep& step : steps) {
        switch (step.kind) {
            case ActionKind::kPlace:
                file["actions"].push_back(JsonOfPlace(step));
                break;
            case ActionKind::kRegister:
                file["actions"].push_back(JsonOfRegister(step));
                break;
            case ActionKind::kUndo:
            case ActionKind::kRedo:
                file["actions"].push_back(
                    {{"action", step.kind == ActionKind::kUndo ? kUndoWord : kRedoWord}});
        }
    }
    return file.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}
