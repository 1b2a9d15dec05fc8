#include "app/store_check_groups.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "app/database_view.h"
#include "app/store_check_objects.h"
#include "plugin/store/memory_handle.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/swap_words.h"

namespace {

/// Reads records of one file into a block that is used again.
class RecordReader {
public:
    explicit RecordReader(GroupFile& file) : file_(file) {}

    /// Empty if the file or memory failed.
    std::span<const uint8_t> Read(uint32_t place, uint32_t bytes) {
        const MemoryHandle block = ResizeHandle(block_.get(), bytes, kRecordGrain);
        if (!block) return {};
        block_.get() = block;
        if (!file_.Read(place, block_.bytes(), bytes)) return {};
        return {block_.bytes(), bytes};
    }

private:
    GroupFile& file_;
    HandleOwner block_;
};

class FrameReader {
public:
    explicit FrameReader(GroupFile& file) : file_(file), reader_(file) {
        frame_.storedCount = file.storedCount();
        frame_.length = file.length();
    }

    GroupFrame Read() {
        FramedRecord record{};
        while (frame_.records.size() < frame_.storedCount && Next(frame_.end, &record)) Take(record);
        if (frame_.records.size() == frame_.storedCount && frame_.length > frame_.end) TakeUncounted();
        return std::move(frame_);
    }

private:
    void Take(const FramedRecord& record) {
        frame_.records.push_back(record);
        frame_.end = record.place + record.bytes;
    }

    /// The sizes that stand in a record.
    struct Sizes {
        uint32_t word = 0;
        uint64_t byBodies = 0;
    };

    bool ReadSizes(uint32_t place, Sizes* sizes) {
        std::array<uint8_t, kPreviewOffset> start;
        if (Left(place) < kSmallestRecordBytes) return false;
        if (!file_.Read(place, start.data(), start.size())) {
            frame_.unreadable = true;
            return false;
        }
        std::memcpy(&sizes->word, start.data() + offsetof(RecordHeader, size), sizeof sizes->word);
        sizes->word = SwapLong(sizes->word);
        sizes->byBodies = BytesByBodies(start);
        return true;
    }

    uint32_t Left(uint32_t place) const { return frame_.length < place ? 0 : frame_.length - place; }

    /// The file ends there, or there is a record whose sizes agree.
    bool LeadsOn(uint32_t place) {
        Sizes sizes;
        return place == frame_.length ||
               (ReadSizes(place, &sizes) && sizes.word == sizes.byBodies && sizes.word <= Left(place));
    }

    /// The record at `place`, if any of its two sizes leads to one.  The size word is what every reader goes
    /// by: the other one counts only where the word leads nowhere.
    bool Next(uint32_t place, FramedRecord* record) {
        Sizes sizes;
        if (!ReadSizes(place, &sizes)) return false;
        const bool wordFits = sizes.word >= kSmallestRecordBytes && sizes.word <= Left(place);
        *record = {place, sizes.word, false};
        if (wordFits && (sizes.word == sizes.byBodies || LeadsOn(place + sizes.word))) return true;
        if (sizes.byBodies <= Left(place)) {
            const auto bytes = static_cast<uint32_t>(sizes.byBodies);
            const bool last = !wordFits && frame_.records.size() + 1 == frame_.storedCount;
            if ((last || LeadsOn(place + bytes)) && IsWhole(place, bytes)) {
                *record = {place, bytes, true};
                return true;
            }
        }
        return wordFits;
    }

    bool IsWhole(uint32_t place, uint32_t bytes) {
        const auto image = reader_.Read(place, bytes);
        frame_.unreadable |= image.empty();
        return !image.empty() && !CheckRecordImage(image).HasErrors();
    }

    void TakeUncounted() {
        std::vector<FramedRecord> found;
        uint32_t place = frame_.end;
        FramedRecord record{};
        while (place < frame_.length) {
            if (!Next(place, &record) || record.wrongSizeWord || !IsWhole(place, record.bytes)) return;
            found.push_back(record);
            place += record.bytes;
        }
        for (const FramedRecord& each : found) Take(each);
    }

    GroupFile& file_;
    RecordReader reader_;
    GroupFrame frame_;
};

std::string Number(uint64_t number) {
    return std::to_string(number);
}

/// The findings about a frame that is not sound.
void TellFrame(const GroupFrame& frame, const std::string& place, GroupFacts* facts) {
    const auto tell = [&](Severity severity, std::string where, std::string what) {
        Finding finding;
        finding.severity = severity;
        finding.place = std::move(where);
        finding.what = std::move(what);
        finding.remedy = frame.unreadable ? Remedy::kNone : Remedy::kMendGroup;
        facts->findings.push_back(std::move(finding));
    };
    const size_t found = frame.records.size();
    if (frame.unreadable) {
        tell(Severity::kError, place, "the disk gives only " + Number(found) + " of its records");
        return;
    }
    if (frame.length < kCountBytes) {
        tell(Severity::kInfo, place, "the group was begun and holds nothing yet");
        return;
    }
    for (size_t i = 0; i < found; ++i) {
        if (frame.records[i].wrongSizeWord)
            tell(Severity::kError, place + ", record " + Number(i),
                 "its stored size is damaged, so the records behind it can't be reached");
    }
    if (found < frame.storedCount)
        tell(Severity::kError, place,
             "damaged: " + Number(found) + " of " + Number(frame.storedCount) + " records can be read");
    if (found == frame.storedCount + uint64_t{1})
        tell(Severity::kError, place, "a whole record behind the counted ones is not shown");
    else if (found > frame.storedCount)
        tell(Severity::kError, place,
             Number(found - frame.storedCount) + " whole records behind the counted ones are not shown");
    if (frame.length > frame.end)
        tell(found < frame.storedCount ? Severity::kError : Severity::kWarning, place,
             Number(frame.length - frame.end) + " bytes behind the last record belong to none");
}

void TellRecord(const std::string& place, const RecordReport& report, GroupFacts* facts) {
    for (const RecordFault& fault : report.faults) {
        Finding finding;
        finding.severity = fault.severity;
        finding.place = place + (fault.object < 0 ? "" : ", object " + std::to_string(fault.object));
        finding.what = fault.what;
        facts->findings.push_back(std::move(finding));
    }
}

void CheckRecords(GroupFile& file, const GroupFrame& frame, const std::string& place, GroupFacts* facts) {
    RecordReader reader(file);
    for (uint32_t number = 0; number < frame.records.size(); ++number) {
        const FramedRecord& record = frame.records[number];
        const auto image = reader.Read(record.place, record.bytes);
        RecordReport report;
        if (image.empty())
            report.faults.push_back({Severity::kError, -1, "it can't be read"});
        else
            report = CheckRecordImage(image);
        TellRecord(place + ", record " + Number(number), report, facts);
        if (report.HasErrors()) facts->damagedRecords.insert(number);
        if (!report.linkedFiles.empty()) facts->linkedFiles[number] = std::move(report.linkedFiles);
    }
}

} // namespace

bool GroupFrame::IsSound() const {
    return !unreadable && length >= kCountBytes && length == end && records.size() == storedCount &&
           std::none_of(records.begin(), records.end(),
                        [](const FramedRecord& record) { return record.wrongSizeWord; });
}

GroupFrame ReadGroupFrame(GroupFile& file) {
    return FrameReader(file).Read();
}

GroupFacts CheckGroup(const std::string& group, const std::string& diskPath) {
    GroupFacts facts;
    facts.state = StateOfFile(diskPath);
    const std::string place = GroupForPeople(group);
    GroupFile file;
    if (file.OpenToRead(group.c_str())) {
        const GroupFrame frame = ReadGroupFrame(file);
        facts.records = static_cast<uint32_t>(frame.records.size());
        facts.known = !frame.unreadable;
        if (!frame.IsSound()) TellFrame(frame, place, &facts);
        CheckRecords(file, frame, place, &facts);
    } else {
        Finding finding;
        finding.place = place;
        finding.what = "the group's file can't be opened or read, or is longer than 2 GB";
        facts.findings.push_back(std::move(finding));
    }
    for (Finding& finding : facts.findings) {
        finding.path = diskPath;
        finding.group = group;
        finding.state = facts.state;
    }
    return facts;
}

std::string StateOfFile(const std::string& diskPath) {
    struct stat entry;
    if (::lstat(diskPath.c_str(), &entry) != 0) return {};
    std::string state;
    for (const long long number :
         {static_cast<long long>(entry.st_dev), static_cast<long long>(entry.st_ino),
          static_cast<long long>(entry.st_size), static_cast<long long>(entry.st_mtim.tv_sec),
          static_cast<long long>(entry.st_mtim.tv_nsec)})
        state += std::to_string(number) + " ";
    return state;
}
