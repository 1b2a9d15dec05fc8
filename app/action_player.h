/// Plays the steps of a file of actions: through the host's actions, at the plug-in's panel.
#pragma once

#include <string>

#include "app/action_file.h"
#include "app/session.h"
#include "win32/headless/headless_display.h"

/// Where actions are played.  The panel stands, the front document keeps its history, and nobody answers
/// alerts.
struct ActionStage {
    Session& session;
    HeadlessDisplay& display;
    ArtChoice select; ///< for steps that register and don't say what
};

/// Plays one step.  False, and a sentence in *error, if it didn't do all that it should; the document may
/// have changed all the same.  *line becomes what there is to report, empty if there is nothing.
bool PlayStep(const ActionStage& stage, const ActionStep& step, std::string* line, std::string* error);
