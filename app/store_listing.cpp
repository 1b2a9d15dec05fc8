#include "app/store_listing.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "app/store_check_groups.h"
#include "app/store_words.h"
#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/intent_note.h"
#include "plugin/store/store_names.h"
#include "win32/copy_file.h"
#include "win32/path_names.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostParts = 3;
constexpr std::string_view kLockFile = "VLQ.LCK";
/// With a backslash in front, as those of the plug-in's own headers.
constexpr std::string_view kWorkFiles[] = {"\\VLQ.TMP", "\\VLQ.NEW", kIntentWorkFile, kNoteWorkFile};

class Lister {
public:
    explicit Lister(const std::string& folder) : root_(folder) {}

    StoreListing Run() {
        WalkFolder(root_, {}, false);
        TellAbandonedCopies();
        // Whoever is at work may have taken away what was just seen; what only can't be looked at stays.
        std::erase_if(listing_.findings, [](const Finding& finding) {
            std::error_code ignored;
            return fs::symlink_status(finding.path, ignored).type() == fs::file_type::not_found;
        });
        return std::move(listing_);
    }

private:
    using Parts = std::vector<std::string>; ///< cp932, from the root

    Finding& Tell(Severity severity, const fs::path& path, std::string what) {
        Finding finding;
        finding.severity = severity;
        finding.place = PlaceOfPath(path);
        finding.what = std::move(what);
        finding.path = path.string();
        finding.state = StateOfFile(finding.path);
        listing_.findings.push_back(std::move(finding));
        return listing_.findings.back();
    }

    std::string PlaceOfPath(const fs::path& path) const {
        std::string place = "\\" + path.lexically_relative(root_).string();
        std::replace(place.begin(), place.end(), '/', '\\');
        return place;
    }

    void WalkFolder(const fs::path& folder, const Parts& parts, bool throughLink);
    void TakeFolder(const fs::directory_entry& entry, const Parts& parts, bool throughLink);
    void TakeFile(const fs::path& path, const Parts& parts);
    bool TakeWorkFile(const fs::path& path, const std::string& name, bool inRoot);
    void TakeGroup(const fs::path& path, Parts parts);
    void TakePool(const fs::path& folder);
    void TellAbandonedCopies();

    static std::string GroupName(const Parts& parts) {
        if (parts.size() == 1) return parts[0];
        std::string name;
        for (const std::string& part : parts) name += "\\" + part;
        return name;
    }

    fs::path root_;
    StoreListing listing_;
};

// They may lie in any folder; those of repairs keep what they keep, and one that can't be read hides no
// other.
void Lister::TellAbandonedCopies() {
    std::error_code trouble;
    for (fs::recursive_directory_iterator entry(root_, fs::directory_options::skip_permission_denied,
                                                trouble);
         !trouble && entry != fs::recursive_directory_iterator(); entry.increment(trouble)) {
        std::error_code ignored;
        if (entry->is_directory(ignored)) {
            if (entry->path().filename().string().starts_with('.')) entry.disable_recursion_pending();
        } else if (IsAbandonedCopy(entry->path().string())) {
            Tell(Severity::kInfo, entry->path(), "what an interrupted copy has left").remedy =
                Remedy::kPutAside;
        }
    }
}

bool EndsWith(const std::string& name, const char* suffix) {
    return std::string_view(name).ends_with(suffix) && name.size() > std::string_view(suffix).size();
}

void Lister::WalkFolder(const fs::path& folder, const Parts& parts, bool throughLink) {
    std::error_code trouble;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator entry(folder, trouble); !trouble && entry != fs::directory_iterator();
         entry.increment(trouble))
        entries.push_back(*entry);
    if (trouble) Tell(Severity::kError, folder, "the folder can't be read: " + trouble.message());
    std::sort(entries.begin(), entries.end());
    for (const fs::directory_entry& entry : entries) {
        const std::string diskName = entry.path().filename().string();
        if (diskName.starts_with('.')) continue;
        const auto name = StoreNameOfDiskName(diskName);
        if (!name || !IsAllowedStoreName(*name)) {
            Tell(Severity::kWarning, entry.path(),
                 "the name holds characters that a database can't, so no list shows it");
            continue;
        }
        Parts inner = parts;
        inner.push_back(*name);
        std::error_code ignored;
        if (entry.is_directory(ignored))
            TakeFolder(entry, inner, throughLink);
        else if (entry.is_regular_file(ignored))
            TakeFile(entry.path(), inner);
        else
            Tell(Severity::kInfo, entry.path(), "it is neither a file nor a folder, and belongs to nothing");
    }
}

void Lister::TakeFolder(const fs::directory_entry& entry, const Parts& parts, bool throughLink) {
    const std::string& name = parts.back();
    std::error_code ignored;
    const bool link = entry.is_symlink(ignored);
    if (parts.size() == 1 && name == kImageFolder) return TakePool(entry.path());
    if (EndsWith(name, kDataSuffix)) {
        Parts group = parts;
        group.back().resize(name.size() - std::string_view(kDataSuffix).size());
        listing_.dataDirectories[GroupName(group)] = entry.path().string();
        return;
    }
    if (IsHiddenFolderName(name.c_str())) {
        Tell(Severity::kInfo, entry.path(), "no list shows a folder of that name");
        return;
    }
    const std::string trouble = NameTrouble(name, false);
    if (!trouble.empty()) Tell(Severity::kWarning, entry.path(), trouble);
    if (!(link && throughLink)) WalkFolder(entry.path(), parts, link || throughLink);
}

void Lister::TakeFile(const fs::path& path, const Parts& parts) {
    const std::string& name = parts.back();
    if (TakeWorkFile(path, name, parts.size() == 1)) return;
    if (EndsWith(name, kGroupSuffix)) return TakeGroup(path, parts);
    const bool listed = name.find(kGroupSuffix) != std::string::npos && name.find(kGroupSuffix) > 0;
    Tell(listed ? Severity::kWarning : Severity::kInfo, path,
         listed ? "lists show it as a group, which it isn't" : "the file belongs to nothing in the database");
}

bool Lister::TakeWorkFile(const fs::path& path, const std::string& name, bool inRoot) {
    if (inRoot && name == kLockFile) return true;
    if (inRoot && "\\" + name == kIntentFile) {
        Tell(Severity::kWarning, path, WordsOfInterruptedWork()).remedy = Remedy::kFinishWork;
        return true;
    }
    if (std::find(std::begin(kWorkFiles), std::end(kWorkFiles), "\\" + name) == std::end(kWorkFiles))
        return false;
    Tell(Severity::kInfo, path, "a work file that an interrupted change has left").remedy = Remedy::kPutAside;
    return true;
}

void Lister::TakeGroup(const fs::path& path, Parts parts) {
    std::string& name = parts.back();
    name.resize(name.size() - std::string_view(kGroupSuffix).size());
    const std::string group = GroupName(parts);
    const std::string trouble = NameTrouble(name, true);
    if (!trouble.empty()) Tell(Severity::kWarning, path, trouble);
    if (parts.size() > kMostParts)
        Tell(Severity::kWarning, path, "the group lies deeper than two folders, where no list reaches it");
    uint8_t pascal[kPascalPathBytes];
    MakeGroupPath(group.c_str(), pascal, false);
    if (pascal[0] == 0 || group.size() >= static_cast<size_t>(kNameBytes)) {
        Tell(Severity::kWarning, path, "the group's name is too long to be opened");
        return;
    }
    listing_.groups[group] = path.string();
}

void Lister::TakePool(const fs::path& folder) {
    listing_.imageFolder = folder.string();
    std::error_code trouble;
    for (fs::directory_iterator entry(folder, trouble); !trouble && entry != fs::directory_iterator();
         entry.increment(trouble)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with('.')) continue;
        std::error_code ignored;
        if (!fs::is_regular_file(entry->symlink_status(ignored)))
            Tell(Severity::kInfo, entry->path(), "it is no picture, and belongs to nothing");
        else if (!StoreNameOfDiskName(name))
            Tell(Severity::kWarning, entry->path(), "the name holds characters that a database can't");
        else
            listing_.pooled.push_back(name);
    }
    if (trouble) Tell(Severity::kError, folder, "the folder can't be read: " + trouble.message());
    std::sort(listing_.pooled.begin(), listing_.pooled.end());
}

} // namespace

StoreListing ListStore(const std::string& folder) {
    return Lister(folder).Run();
}
