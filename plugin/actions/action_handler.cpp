#include "plugin/actions/action_handler.h"

#include <cstring>

#include "plugin/actions/place_action.h"
#include "plugin/actions/register_selection.h"
#include "plugin/actions/tracking.h"
#include "plugin/frame/globals.h"
#include "plugin/host/entry.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"
#include "plugin/placement/action_names.h"

namespace {

constexpr int32_t kActionVersion = 1;
constexpr uint32_t kRealType = 0x7265616C; // 'real'

/// The host's block of parameter types, given back at the end of the scope.
class ParameterTypes {
public:
    ParameterTypes() {
        if (ActionManagerSuite().NewParameterTypes(&types_) != kHostNoError) types_ = nullptr;
    }
    ~ParameterTypes() {
        if (types_) ActionManagerSuite().FreeParameterTypes(types_);
    }
    ParameterTypes(const ParameterTypes&) = delete;
    ParameterTypes& operator=(const ParameterTypes&) = delete;

    ParameterTypesHandle get() const { return types_; }

private:
    ParameterTypesHandle types_ = nullptr;
};

void Register(PluginHandle plugin, const char* name, int32_t word, const ParameterTypes& types) {
    const HostString localName(name, std::strlen(name), kEncodingCp932);
    ActionManagerSuite().RegisterAction(name, localName.get(), kActionVersion, 0, 0, plugin, word,
                                        types.get());
}

void AddPlaceParameters(const ParameterTypes& types) {
    for (const ActionParameter& row : PlaceActionParameters()) {
        const char* text = globals->language != 0 ? row.english : row.japanese;
        const HostString name(text, std::strlen(text), kEncodingCp932);
        ActionManagerSuite().AddParameterType(types.get(), row.key, name.get(), kRealType, 1);
    }
}

} // namespace

const std::array<ActionParameter, 5>& PlaceActionParameters() {
    static constexpr std::array<ActionParameter, 5> parameters{{{kPlaceX, "X-coordinate", "X 座標"},
                                                                {kPlaceY, "Y-coordinate", "Y 座標"},
                                                                {kPlaceWidth, "Width", "横幅"},
                                                                {kPlaceHeight, "Height", "高さ"},
                                                                {kPlaceAngle, "Angle", "角度"}}};
    return parameters;
}

HostError RegisterPlaceActions(const HostMessage* message) {
    if (!message->self) return kHostNoError;
    {
        const ParameterTypes none;
        if (none.get()) Register(message->self, kInternalAction, kInternalWord, none);
    }
    const ParameterTypes types;
    if (!types.get()) return kHostNoError;
    AddPlaceParameters(types);
    Register(message->self, kPlaceAction, kPlaceWord, types);
    return kHostNoError;
}

HostError HandleDoAction(HostMessage* message) {
    // An action's message continues behind the head.
    const auto* action = reinterpret_cast<const HostActionMessage*>(message);
    if (action->typeWord == kPlaceWord) {
        PlaceFromAction(action->parameters);
        return kHostNoError;
    }
    const ClearedAtEnd pending(globals->commandPending);
    switch (globals->commandPending) {
        case kPlaceCommand:
            TrackPlacement();
            break;
        case kRegisterCommand:
            RegisterSelection();
            break;
        default:
            break;
    }
    return kHostNoError;
}
