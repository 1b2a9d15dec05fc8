/// A database that exists, opened for the length of one command.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/exit_code.h"
#include "app/session.h"

class OpenedDatabase {
public:
    /// Brings the plug-in up, makes `folder` its root and holds the host's suites.  What went wrong was
    /// complained of; trouble() is then the code to end with.
    explicit OpenedDatabase(const std::string& folder);

    /// The same with a group of it, written as people do, which must exist.  An empty text is no group.
    OpenedDatabase(const std::string& folder, const std::string& group);

    ExitCode trouble() const { return trouble_; }
    Session& session() { return session_; }
    workbench::Host& host() { return session_.host(); }

    /// The group as the plug-in names it; empty if none was asked for.
    const std::string& group() const { return group_; }

    /// The group, or all groups if none was asked for.
    std::vector<std::string> Groups() const;

    /// `code`, or kRefusedOrDiffers if a good end would hide that the host was used wrongly.
    int Ended(int code) const { return code == kDone && session_.faulty() ? kRefusedOrDiffers : code; }

private:
    Session session_;
    std::optional<SuitesHeld> held_;
    std::string group_;
    ExitCode trouble_ = kDone;
};
