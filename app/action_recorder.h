/// Records what the plug-in's actions do to a document, as a file that `velquorne play` plays again.
///
/// A drag is recorded as the place action that puts the record there at the size that it came in; played, its
/// art lies in a group of its own.  Undo and redo of placements are recorded too.  What is done by other
/// means is not: edits of the host, changes of the database that aren't registrations, tags that were handed
/// over, anything in another document.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/action_file.h"
#include "workbench/frame/workspace.h"

class ActionRecorder {
public:
    /// Watches from now on.  Host and workspace must live longer; the document is the one in front.
    ActionRecorder(workbench::Host& host, workbench::Workspace& workspace, std::string path);
    ~ActionRecorder();
    ActionRecorder(const ActionRecorder&) = delete;
    ActionRecorder& operator=(const ActionRecorder&) = delete;

    /// Writes what was recorded so far; complains and gives false if that can't be done.  After each step it
    /// does so by itself.
    bool Write() const;

private:
    /// What must be known from before an action.
    struct Before {
        ActionStep step;
        uint64_t lastStep = 0;
        std::set<ArtHandle> members;             ///< of the layers
        std::map<std::string, uint32_t> records; ///< in each group
        bool drag = false;
    };
    /// A placement that was recorded.
    struct Placed {
        uint64_t step = 0; ///< of the document's history
        bool undone = false;
    };

    void Watch(const workbench::HostAction& action, const std::map<uint32_t, double>& reals, bool done);
    std::optional<Before> Look(const std::string& action, const std::map<uint32_t, double>& reals);
    void TakePlacement(Before& before);
    void TakeRegistration(Before& before);
    void FollowHistory();
    void Add(ActionStep step);
    bool IsSameDocument() const;

    workbench::Host& host_;
    workbench::Workspace& workspace_;
    std::string path_;
    DocumentHandle document_ = nullptr;
    std::optional<Before> before_;
    std::vector<Placed> placed_;
    std::vector<ActionStep> steps_;
};
