#include "app/open_database.h"

#include "app/commands.h"
#include "app/database_view.h"
#include "app/texts.h"
#include "plugin/store/record.h"

OpenedDatabase::OpenedDatabase(const std::string& folder) {
    std::string error = "the plug-in didn't start";
    if (!session_.ok()) {
        trouble_ = kRefusedOrDiffers;
    } else if (!session_.OpenDatabase(folder, false, &error)) {
        trouble_ = kFileTrouble;
    }
    if (trouble_ == kDone) {
        held_.emplace(session_.host());
    } else {
        Complain(error);
    }
}

OpenedDatabase::OpenedDatabase(const std::string& folder, const std::string& group) : OpenedDatabase(folder) {
    if (trouble_ != kDone || group.empty()) return;
    std::string error;
    const auto name = GroupNameOfUtf8(group, &error);
    if (!name) {
        trouble_ = kRefusedOrDiffers;
    } else if (!GroupFileExists(name->c_str())) {
        error = "there is no such group";
        trouble_ = kFileTrouble;
    } else {
        group_ = *name;
        return;
    }
    Complain(group + ": " + error);
}

std::vector<std::string> OpenedDatabase::Groups() const {
    return group_.empty() ? AllGroups() : std::vector<std::string>{group_};
}
