#include "plugin/capture/pattern_capture.h"

#include <cstdio>
#include <span>
#include <string_view>
#include <vector>

#include "plugin/capture/capture_notes.h"
#include "plugin/capture/post_art.h"
#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/trace.h"

namespace {

constexpr std::string_view kOpening = "PatternArt";
constexpr std::string_view kClosing = "/ PatternArt";

void CaptureRun(ArtHandle art, const HostPoint& origin, int32_t number) {
    char note[32];
    std::snprintf(note, sizeof note, "%s%.5d /", kOpening.data(), number);
    PutNote(note);
    if (PostArtProcess(art, &origin, 0) == kHostOutOfMemory) throw std::bad_alloc();
    std::snprintf(note, sizeof note, "%s%.5d", kClosing.data(), number);
    PutNote(note);
}

bool IsNote(std::span<uint8_t> object, std::string_view start) {
    return HeaderOf(object)->type == kNoteObject && NoteText(object).substr(0, start.size()) == start;
}

/// While a run is captured the side buffer is the current record, unless the pattern lies within another one,
/// whose run is the current record already.
class SideRecord {
public:
    SideRecord() : outermost_(globals->sideObjects != nullptr), outer_(globals->curRecord) {
        if (!outermost_) return;
        globals->curRecord = globals->sideObjects;
        globals->sideObjects = nullptr;
    }
    ~SideRecord() {
        globals->captureAll = outerCaptureAll_;
        if (!outermost_) return;
        globals->sideObjects = globals->curRecord;
        globals->curRecord = outer_;
    }
    SideRecord(const SideRecord&) = delete;
    SideRecord& operator=(const SideRecord&) = delete;

private:
    bool outermost_;
    MemoryHandle outer_;
    int16_t outerCaptureAll_ = globals->captureAll;
};

} // namespace

PatternHandle CapturePatternPaint(PatternHandle pattern) {
    const TraceScope trace("CapturePatternPaint");
    ArtHandle art = nullptr;
    HostRect bounds{};
    if (!pattern || PatternSuite().GetPatternArt(pattern, &art) || !art) return pattern;
    if (ArtSuite().GetArtBounds(art, &bounds)) return pattern;
    if (globals->patternCount + 1 >= kPatternNumberEnd) return nullptr;
    if (globals->captureAll >= kPatternDepth) return nullptr;

    const SideRecord side;
    // As a flag it is set; as a number it tells the patterns how deep they lie.
    ++globals->captureAll;
    const int32_t number = ++globals->patternCount;
    CaptureRun(art, {bounds.left, bounds.bottom}, number);
    return reinterpret_cast<PatternHandle>(static_cast<uintptr_t>(number));
}

bool AppendPatternRuns(MemoryHandle& record, MemoryHandle runs) {
    // Numbers are given when a run is opened, so the order of the openings is that of the numbers.
    std::vector<std::vector<std::span<uint8_t>>> members;
    std::vector<size_t> open;
    ObjectWalk walk(runs);
    for (auto object = walk.Next(); !object.empty(); object = walk.Next()) {
        if (IsNote(object, kOpening)) {
            open.push_back(members.size());
            members.emplace_back();
        }
        if (open.empty()) return false;
        members[open.back()].push_back(object);
        if (IsNote(object, kClosing)) open.pop_back();
    }
    if (!open.empty()) return false;
    for (const auto& run : members) {
        for (const auto& object : run) {
            if (AddAIDBObj(record, object.data())) return false;
        }
    }
    return true;
}
