#include "app/store_check_files.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <set>

#include "app/database_view.h"
#include "app/texts.h"
#include "plugin/store/data_directories.h"
#include "plugin/store/linked_files.h"
#include "plugin/store/store_names.h"
#include "win32/path_names.h"

namespace {

namespace fs = std::filesystem;

/// A picture that is neither beside its record nor in the image folder under a name that the record knows.
struct LostFile {
    std::string place, storedName, notePath, state;
};

/// A number as the plug-in writes it.
std::optional<uint32_t> NumberOf(const std::string& name) {
    uint32_t number = 0;
    const char* end = name.data() + name.size();
    if (name.empty() || name.size() > kMostNumberDigits || (name[0] == '0' && name.size() > 1))
        return std::nullopt;
    const auto result = std::from_chars(name.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

std::string TextOfNote(const LinkNote& note) {
    return "orgn_fname = \"" + note.storedName + "\"\r\ncopy_fname = \"" + note.pooledName + "\"\r\n";
}

bool IsNoteName(const std::string& diskName) {
    return diskName.ends_with(kNoteSuffix) && diskName.size() > std::string_view(kNoteSuffix).size();
}

std::vector<fs::path> EntriesOf(const fs::path& folder) {
    std::vector<fs::path> paths;
    std::error_code trouble;
    for (fs::directory_iterator entry(folder, trouble); !trouble && entry != fs::directory_iterator();
         entry.increment(trouble)) {
        if (!entry->path().filename().string().starts_with('.')) paths.push_back(entry->path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// Whether a file in the image folder can have got its name from a stored one: that name itself, or with a
/// counter behind the base, which may have been cut to make room.
bool IsPooledNameOf(const std::string& pooled, const std::string& stored) {
    if (pooled == stored) return true;
    const size_t dot = std::min(stored.find('.'), stored.size());
    const std::string_view extension = std::string_view(stored).substr(dot);
    std::string_view base = pooled;
    if (!base.ends_with(extension)) return false;
    base.remove_suffix(extension.size());
    const size_t mark = base.rfind('_');
    if (mark == std::string_view::npos) return false;
    const std::string_view counter = base.substr(mark + 1);
    return !counter.empty() && counter.size() <= 3 && counter[0] != '0' &&
           counter.find_first_not_of("0123456789") == std::string_view::npos &&
           std::string_view(stored).substr(0, dot).starts_with(base.substr(0, mark));
}

class FileChecks {
public:
    FileChecks(const std::string& folder, const StoreListing& listing,
               const std::map<std::string, GroupFacts>& groups)
        : root_(folder), listing_(listing), groups_(groups) {}

    std::vector<Finding> Run() {
        for (const auto& [group, directory] : listing_.dataDirectories) CheckDataDirectory(group, directory);
        CheckRecordsWithoutData();
        CheckPool();
        return std::move(findings_);
    }

private:
    Finding& Tell(Severity severity, const fs::path& path, std::string what, const std::string& state) {
        Finding finding;
        finding.severity = severity;
        finding.place = "\\" + path.lexically_relative(root_).string();
        std::replace(finding.place.begin(), finding.place.end(), '/', '\\');
        finding.what = std::move(what);
        finding.path = path.string();
        finding.state = state + StateOfFile(finding.path);
        findings_.push_back(std::move(finding));
        return findings_.back();
    }

    void CheckDataDirectory(const std::string& group, const fs::path& directory);
    void CheckEntry(const GroupFacts& facts, const fs::path& path);
    bool ReadNoteOnDisk(const std::string& diskPath, LinkNote* note);
    std::vector<std::string> TakeOwners(const fs::path& directory);
    void CheckRecordDirectory(const GroupFacts& facts, uint32_t number, const fs::path& directory);
    void CheckNote(const GroupFacts& facts, const std::vector<std::string>& linked, bool sure,
                   const fs::path& path);
    void CheckLinkedFile(const GroupFacts& facts, const fs::path& directory, const std::string& name);
    void CheckRecordsWithoutData();
    void CheckPool();
    void Restore(const LostFile& lost, const std::vector<std::string>& orphans);

    bool IsPooled(const std::string& pooledName) const {
        return std::binary_search(listing_.pooled.begin(), listing_.pooled.end(),
                                  DiskNameOfStoreName(pooledName));
    }

    fs::path root_;
    const StoreListing& listing_;
    const std::map<std::string, GroupFacts>& groups_;
    std::map<std::string, std::vector<fs::path>> owners_; ///< pooled name on disk to the notes that name it
    std::set<std::pair<std::string, uint32_t>> withData_; ///< group and number
    std::vector<LostFile> lost_;
    bool allNotesRead_ = true;
    std::vector<Finding> findings_;
};

/// The plug-in reads notes by its own names of them.  False if the bytes can't be had, whatever they say.
bool FileChecks::ReadNoteOnDisk(const std::string& diskPath, LinkNote* note) {
    const StorePath stored = StorePathOfUtf8(diskPath);
    const bool read = !stored.path.empty() && ReadLinkNote(stored.path.c_str(), note);
    allNotesRead_ &= read;
    return read;
}

void FileChecks::CheckDataDirectory(const std::string& group, const fs::path& directory) {
    const auto found = groups_.find(group);
    if (found == groups_.end()) {
        Tell(Severity::kWarning, directory, "the files of a group that isn't there", {});
        for (const fs::path& path : EntriesOf(directory)) TakeOwners(path);
        return;
    }
    const GroupFacts& facts = found->second;
    for (const fs::path& path : EntriesOf(directory)) {
        const auto number = NumberOf(path.filename().string());
        std::error_code ignored;
        if (number && *number < facts.records && fs::is_directory(path, ignored)) {
            withData_.emplace(group, *number);
            CheckRecordDirectory(facts, *number, path);
        } else {
            CheckEntry(facts, path);
        }
    }
}

/// What is no directory of a record.
void FileChecks::CheckEntry(const GroupFacts& facts, const fs::path& path) {
    const std::string name = path.filename().string();
    std::error_code ignored;
    if (!fs::is_directory(fs::symlink_status(path, ignored))) {
        Tell(Severity::kInfo, path, "the file belongs to no record", facts.state);
        return;
    }
    std::vector<std::string> owned = TakeOwners(path);
    const auto putAside = [&](Severity severity, std::string what) {
        Finding& finding = Tell(severity, path, std::move(what), facts.state);
        finding.remedy = Remedy::kPutAside;
        finding.along = std::move(owned);
    };
    if (name.ends_with(kRenumberedSuffix)) {
        Tell(Severity::kError, path,
             "the files of a record whose number was being changed; renamed to the number of the record that "
             "they belong to, they are found again",
             facts.state);
    } else if (name.starts_with(kRemovedPrefix)) {
        putAside(Severity::kInfo, "what a delete has left");
    } else if (name.starts_with(kStalePrefix)) {
        putAside(Severity::kInfo, "files that stood where another record's had to go");
    } else if (name.find_first_not_of("0123456789") != std::string::npos) {
        Tell(Severity::kInfo, path, "the folder belongs to no record", facts.state);
    } else if (facts.known) {
        putAside(Severity::kWarning, "the group has no record of that number");
    }
}

/// What the notes in a directory that is no record's own in the image folder; paths on disk.
std::vector<std::string> FileChecks::TakeOwners(const fs::path& directory) {
    std::vector<std::string> owned;
    for (const fs::path& entry : EntriesOf(directory)) {
        LinkNote note;
        if (!IsNoteName(entry.filename().string()) || !ReadNoteOnDisk(entry.string(), &note)) continue;
        if (!IsPlainComponent(note.pooledName) || !IsPooled(note.pooledName)) continue;
        const std::string pooled = DiskNameOfStoreName(note.pooledName);
        owners_[pooled].push_back(entry);
        owned.push_back((fs::path(listing_.imageFolder) / pooled).string());
    }
    return owned;
}

void FileChecks::CheckRecordDirectory(const GroupFacts& facts, uint32_t number, const fs::path& directory) {
    const auto links = facts.linkedFiles.find(number);
    const std::vector<std::string> linked =
        links == facts.linkedFiles.end() ? std::vector<std::string>() : links->second;
    const bool sure = !facts.damagedRecords.contains(number); // that these are all
    std::set<std::string> wanted;
    for (const std::string& name : linked) wanted.insert(DiskNameOfStoreName(name));
    for (const fs::path& path : EntriesOf(directory)) {
        const std::string name = path.filename().string();
        if (IsNoteName(name) && !wanted.contains(name))
            CheckNote(facts, linked, sure, path);
        else if (!wanted.contains(name) && sure)
            Tell(Severity::kInfo, path, "the record has no picture of that name", facts.state);
    }
    for (const std::string& name : linked) CheckLinkedFile(facts, directory, name);
}

void FileChecks::CheckNote(const GroupFacts& facts, const std::vector<std::string>& linked, bool sure,
                           const fs::path& path) {
    LinkNote note;
    const auto wanted = std::find_if(linked.begin(), linked.end(), [&](const std::string& name) {
        return DiskNameOfStoreName(NameOfLinkNote(name)) == path.filename().string();
    });
    // What a note says of a picture of the record is told with the picture.
    if (ReadNoteOnDisk(path.string(), &note) && IsPlainComponent(note.pooledName))
        owners_[DiskNameOfStoreName(note.pooledName)].push_back(path);
    else if (wanted == linked.end())
        Tell(Severity::kError, path, "the note can't be read, or names a place outside the image folder",
             facts.state);
    if (wanted == linked.end() && sure)
        Tell(Severity::kInfo, path, "a note about a picture that the record doesn't have", facts.state);
}

void FileChecks::CheckLinkedFile(const GroupFacts& facts, const fs::path& directory,
                                 const std::string& name) {
    if (!IsPlainComponent(name)) {
        Tell(Severity::kError, directory,
             "the record links to '" + Utf8OfCp932(name) + "', which is no plain file name", facts.state);
        return;
    }
    const fs::path stored = directory / DiskNameOfStoreName(name);
    const fs::path notePath = directory / DiskNameOfStoreName(NameOfLinkNote(name));
    std::error_code ignored;
    const bool beside = fs::is_regular_file(fs::symlink_status(stored, ignored));
    const bool noted = fs::exists(fs::symlink_status(notePath, ignored)) && notePath != stored;
    if (!noted && beside) return;
    LinkNote note;
    std::string what;
    if (!noted)
        what = "is missing: it is neither beside the record nor in the image folder";
    else if (!ReadNoteOnDisk(notePath.string(), &note) || !IsPlainComponent(note.pooledName))
        what = "can't be found: the note about it is damaged";
    else if (!note.storedName.starts_with(name))
        what = "can't be found: the note in its place is about another one";
    else if (!IsPooled(note.pooledName))
        what = "is missing from the image folder";
    else
        return;
    const std::string text = "the linked picture '" + Utf8OfCp932(name) + "' " + what;
    lost_.push_back({{}, name, notePath.string(), facts.state});
    lost_.back().place = Tell(Severity::kError, noted ? notePath : stored, text, facts.state).place;
}

void FileChecks::CheckRecordsWithoutData() {
    for (const auto& [group, facts] : groups_) {
        for (const auto& [number, names] : facts.linkedFiles) {
            if (withData_.contains({group, number})) continue;
            Finding finding;
            finding.place = GroupForPeople(group) + ", record " + std::to_string(number);
            finding.what = "its linked pictures are missing";
            finding.state = facts.state;
            findings_.push_back(std::move(finding));
        }
    }
}

void FileChecks::CheckPool() {
    std::vector<std::string> orphans;
    for (const std::string& name : listing_.pooled) {
        const auto owners = owners_.find(name);
        const fs::path path = fs::path(listing_.imageFolder) / name;
        if (owners == owners_.end()) {
            orphans.push_back(name);
            Tell(Severity::kWarning, path, "no record's note names this picture", {});
        } else if (owners->second.size() > 1) {
            Tell(Severity::kError, path,
                 std::to_string(owners->second.size()) +
                     " notes name this picture: deleting one of their records takes it from the others",
                 {});
        }
    }
    for (const LostFile& lost : lost_) Restore(lost, orphans);
    // What several notes name goes with none of them, and a note that can't be read may name anything.
    for (Finding& finding : findings_) {
        if (!allNotesRead_ && finding.remedy == Remedy::kPutAside) finding.remedy = Remedy::kNone;
        std::erase_if(finding.along, [&](const std::string& path) {
            return owners_[fs::path(path).filename().string()].size() > 1;
        });
    }
}

/// A lost picture and a pooled one without a note belong together if neither can belong to any other.
void FileChecks::Restore(const LostFile& lost, const std::vector<std::string>& orphans) {
    std::vector<std::string> fitting;
    for (const std::string& orphan : orphans) {
        if (IsPooledNameOf(*StoreNameOfDiskName(orphan), lost.storedName)) fitting.push_back(orphan);
    }
    if (fitting.size() != 1) return;
    const std::string pooled = *StoreNameOfDiskName(fitting[0]);
    const auto claims = std::count_if(lost_.begin(), lost_.end(), [&](const LostFile& other) {
        return IsPooledNameOf(pooled, other.storedName);
    });
    if (claims != 1) return;
    for (Finding& finding : findings_) {
        if (finding.place != lost.place || finding.severity != Severity::kError) continue;
        finding.remedy = Remedy::kWriteNote;
        finding.path = lost.notePath;
        finding.note = TextOfNote({lost.storedName, pooled});
    }
}

} // namespace

std::vector<Finding> CheckLinkedFiles(const std::string& folder, const StoreListing& listing,
                                      const std::map<std::string, GroupFacts>& groups) {
    return FileChecks(folder, listing, groups).Run();
}
