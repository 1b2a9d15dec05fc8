#include <charconv>
#include <cmath>
#include <filesystem>

#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "plugin/frame/globals.h"
#include "plugin/rebuild/load_art.h"
#include "plugin/store/record.h"
#include "win32/beep.h"

namespace {

bool ParsePoint(const std::string& text, HostPoint* point) {
    const char* end = text.data() + text.size();
    const auto x = std::from_chars(text.data(), end, point->x);
    if (x.ec != std::errc() || x.ptr == end || *x.ptr != ',') return false;
    const auto y = std::from_chars(x.ptr + 1, end, point->y);
    return y.ec == std::errc() && y.ptr == end && std::isfinite(point->x) && std::isfinite(point->y);
}

/// Loads the record into the front document.
int Load(const std::string& group, const PlaceOptions& options, const HostPoint& point) {
    globals->placePoint = point;
    globals->originMode = static_cast<int16_t>(options.origin);
    globals->trackState = 0;
    globals->trackTarget = nullptr;
    const unsigned beeps = BeepCount();
    const HostError result = AidbLoadArt(group.c_str(), options.number);
    if (!globals->curRecord) {
        Complain(options.group + ": record " + std::to_string(options.number) + " can't be read");
        return kRefusedOrDiffers;
    }
    if (BeepCount() != beeps || result != kHostNoError) {
        Complain("not all of the record could be placed: the layer is hidden or locked, or art was refused");
        return kRefusedOrDiffers;
    }
    return kDone;
}

} // namespace

int RunPlace(const PlaceOptions& options) {
    std::string error;
    HostPoint point{};
    if (!ParsePoint(options.at, &point)) {
        Complain("--at takes two numbers of points: X,Y");
        return kUsage;
    }
    for (const std::string& out : options.out) {
        if (KnownExtension(out, &error)) continue;
        Complain(error);
        return kUsage;
    }
    OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    if (options.trace) database.session().Trace();
    auto document = std::make_unique<workbench::Document>();
    if (!options.into.empty()) {
        workbench::ReadReport report;
        document = OpenDocument(options.into, &report, &error);
        if (!document) {
            Complain(error);
            return std::filesystem::exists(options.into) ? kRefusedOrDiffers : kFileTrouble;
        }
        const std::string losses = LossesLine(report.losses);
        if (!losses.empty()) Complain(options.into + ": not taken from the file: " + losses);
    }
    database.host().Open(std::move(document));
    const int loaded = Load(database.group(), options, point);
    if (loaded != kDone) return loaded;
    for (const std::string& out : options.out) {
        if (SaveDocument(*database.host().front(), out, &error)) continue;
        Complain(error);
        return kFileTrouble;
    }
    return database.Ended(kDone);
}
