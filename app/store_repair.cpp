#include "app/store_repair.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <set>

#include "app/durable_files.h"
#include "app/store_check_groups.h"
#include "app/store_words.h"
#include "plugin/store/interrupted_work.h"
#include "plugin/store/swap_words.h"

namespace {

namespace fs = std::filesystem;

/// One round may bring to light what another's damage had hidden.
constexpr int kMostRounds = 4;
constexpr uint32_t kCopyBytes = 0x100000;
constexpr char kWorkFile[] = "VLQ.TMP";
constexpr std::string_view kNoteWorkName = std::string_view(kNoteWorkFile).substr(1);
constexpr std::string_view kIntentName = std::string_view(kIntentFile).substr(1);

class Repair {
public:
    explicit Repair(const std::string& folder) : root_(fs::absolute(folder).lexically_normal()) {
        if (!root_.has_filename()) root_ = root_.parent_path();
    }

    RepairReport Run(UnfinishedWork unfinished);

private:
    bool EndInterruptedWork(UnfinishedWork unfinished);
    bool MendAll(const std::vector<Finding>& findings);
    bool Mend(const Finding& finding, std::string* error);
    bool MendGroup(const Finding& finding, std::string* error);
    bool PutAside(const Finding& finding, std::string* error);
    bool WriteNote(const Finding& finding, std::string* error);

    /// Where the copy of a file or folder of the database goes.
    std::string CopyPlace(const std::string& path);

    fs::path root_;
    std::set<std::string> tried_; ///< what failed once isn't tried again
    RepairReport report_;
};

std::string FolderName() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 64> name;
    std::strftime(name.data(), name.size(), ".velquorne-repair-%Y%m%d-%H%M%S", &local);
    return name.data();
}

std::string Repair::CopyPlace(const std::string& path) {
    if (report_.copies.empty()) {
        const std::string name = (root_ / FolderName()).string();
        report_.copies = name;
        std::error_code ignored;
        for (int i = 2; fs::exists(fs::symlink_status(report_.copies, ignored)); ++i)
            report_.copies = name + "-" + std::to_string(i);
    }
    const fs::path place = fs::path(report_.copies) / fs::absolute(path).lexically_relative(root_);
    // A later round may take out what has the same name.
    fs::path free = place;
    std::error_code ignored;
    for (int i = 2; fs::exists(fs::symlink_status(free, ignored)); ++i) {
        free = place;
        free += "-" + std::to_string(i);
    }
    return free.string();
}

/// The frame's count and records, with true size words, as one file.
bool WriteFrame(GroupFile& file, const GroupFrame& frame, int out) {
    const uint32_t count = SwapLong(static_cast<uint32_t>(frame.records.size()));
    if (!WriteAll(out, &count, sizeof count)) return false;
    std::vector<uint8_t> buffer(kCopyBytes);
    for (const FramedRecord& record : frame.records) {
        for (uint32_t done = 0; done < record.bytes;) {
            const uint32_t bytes = std::min(kCopyBytes, record.bytes - done);
            if (!file.Read(record.place + done, buffer.data(), bytes)) return false;
            const uint32_t size = SwapLong(record.bytes);
            if (done == 0)
                std::copy_n(reinterpret_cast<const uint8_t*>(&size), sizeof size,
                            buffer.data() + offsetof(RecordHeader, size));
            if (!WriteAll(out, buffer.data(), bytes)) return false;
            done += bytes;
        }
    }
    return true;
}

bool Repair::MendGroup(const Finding& finding, std::string* error) {
    GroupFile file;
    if (!file.OpenToChange(finding.group.c_str())) {
        *error = "the group's file can't be opened to change it";
        return false;
    }
    const GroupFrame frame = ReadGroupFrame(file);
    if (frame.unreadable) {
        *error = "the disk doesn't give the whole file";
        return false;
    }
    if (!CopyDurably(finding.path, CopyPlace(finding.path), error)) return false;
    const std::string work = (fs::path(finding.path).parent_path() / kWorkFile).string();
    return ReplaceDurably(
        finding.path, work, [&](int out) { return WriteFrame(file, frame, out); }, error);
}

/// The pictures first: a folder that still stands here with notes about pictures that are gone is put aside
/// by the next repair, while a picture whose notes are gone would stay for good.
bool Repair::PutAside(const Finding& finding, std::string* error) {
    for (const std::string& path : finding.along) {
        if (!MoveDurably(path, CopyPlace(path), error)) return false;
    }
    return MoveDurably(finding.path, CopyPlace(finding.path), error);
}

bool Repair::WriteNote(const Finding& finding, std::string* error) {
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(finding.path, ignored)) &&
        !CopyDurably(finding.path, CopyPlace(finding.path), error))
        return false;
    return ReplaceDurably(
        finding.path, (root_ / kNoteWorkName).string(),
        [&](int out) { return WriteAll(out, finding.note.data(), finding.note.size()); }, error);
}

bool Repair::Mend(const Finding& finding, std::string* error) {
    switch (finding.remedy) {
        case Remedy::kMendGroup:
            return MendGroup(finding, error);
        case Remedy::kPutAside:
            return PutAside(finding, error);
        case Remedy::kWriteNote:
            return WriteNote(finding, error);
        default:
            *error = "it can't be finished now";
            return false;
    }
}

/// True if anything was mended.  One change of a group's file mends all that was found wrong with it.
bool Repair::MendAll(const std::vector<Finding>& findings) {
    // Work files first: the changes of groups and notes need their places.
    std::vector<Finding> ordered = findings;
    std::ranges::stable_partition(ordered,
                                  [](const Finding& finding) { return finding.remedy == Remedy::kPutAside; });
    bool mended = false;
    std::set<std::string> changed;
    for (const Finding& finding : ordered) {
        if (finding.remedy == Remedy::kNone || tried_.contains(finding.path)) continue;
        const std::string line = finding.place + "\t" + WordsOfRemedy(finding);
        std::string error;
        if (changed.contains(finding.path)) continue;
        if (Mend(finding, &error)) {
            report_.done.push_back(line);
            changed.insert(finding.path);
            mended = true;
        } else {
            report_.failed.push_back(line + ": " + error);
            tried_.insert(finding.path);
        }
    }
    return mended;
}

/// False if what was interrupted can neither be finished nor be given up.
bool Repair::EndInterruptedWork(UnfinishedWork unfinished) {
    if (!WorkIsInterrupted()) return true;
    const std::string line = kIntentFile + ("\t" + WordsOfInterruptedWork());
    if (FinishInterruptedWork() && !WorkIsInterrupted()) {
        report_.done.push_back(line + ": finished, or undone where it had hardly begun");
        return true;
    }
    if (unfinished == UnfinishedWork::kStays) {
        report_.failed.push_back(line +
                                 ": it can't be finished now, and nothing else was mended. If that stays so "
                                 "though all files are in reach, --give-up mends the rest");
        return false;
    }
    std::string error;
    const std::string note = (root_ / kIntentName).string();
    const bool moved = MoveDurably(note, CopyPlace(note), &error);
    if (moved)
        report_.done.push_back(line + ": given up; its note was moved into the folder of copies");
    else
        report_.failed.push_back(line + ": " + error);
    return moved;
}

RepairReport Repair::Run(UnfinishedWork unfinished) {
    if (!EndInterruptedWork(unfinished)) {
        report_.left = CheckStore(root_.string(), Looks::kOnce);
        return std::move(report_);
    }
    for (int round = 0;; ++round) {
        report_.left = CheckStore(root_.string(), Looks::kOnce);
        if (round == kMostRounds || !MendAll(report_.left)) return std::move(report_);
    }
}

} // namespace

std::string WordsOfRemedy(const Finding& finding) {
    switch (finding.remedy) {
        case Remedy::kMendGroup:
            return "the group is written anew with all records that can be read";
        case Remedy::kFinishWork:
            return "the interrupted change is finished";
        case Remedy::kPutAside:
            return "moved into the folder of copies";
        case Remedy::kWriteNote:
            return "the note is written anew: only one picture can be meant";
        case Remedy::kNone:
            break;
    }
    return {};
}

RepairReport RepairStore(const std::string& folder, UnfinishedWork unfinished) {
    return Repair(folder).Run(unfinished);
}
