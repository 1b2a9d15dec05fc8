/// Where each drawing of a folder goes in a database.
#pragma once

#include <map>
#include <string>
#include <vector>

/// The rule, for people.
inline constexpr char kImportRule[] =
    "Folders become folders and groups: a/x.svg goes to group a, a/b/x.svg to group b of folder a,\n"
    "a/b/c/x.svg to group c of folder a and subfolder b.  What lies deeper joins its names: a/b/c/d/x.svg\n"
    "goes to group \"c - d\" there.  Drawings beside the folders go to a group with the name of the folder\n"
    "that is imported.  With --into all of this happens inside that folder, so one level less is left.\n"
    "Characters that a name can't hold become '_'; names are cut at 79 bytes.\n"
    "A record gets the drawing's title, or its file's name, as its name, the subject as its kind and the\n"
    "description as its comment.\n"
    "An import that was stopped goes on where it stopped, and one that is run again takes only what is new:\n"
    "the folder .velquorne-import in the database remembers what was taken.";

struct ImportPlan {
    /// Group (as the plug-in names it) to its files, as paths relative to the imported folder, sorted.
    std::map<std::string, std::vector<std::string>> groups;
    size_t files = 0;
};

/// False, and a sentence in *error, if the folder can't be read or `into` can't be a folder's name.
bool PlanImport(const std::string& folder, const std::string& into, ImportPlan* plan, std::string* error);
