#include <charconv>
#include <cmath>
#include <filesystem>

#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/missing_fonts.h"
#include "app/open_database.h"
#include "app/record_loading.h"
#include "plugin/frame/globals.h"

namespace {

bool ParsePoint(const std::string& text, HostPoint* point) {
    const char* end = text.data() + text.size();
    const auto x = std::from_chars(text.data(), end, point->x);
    if (x.ec != std::errc() || x.ptr == end || *x.ptr != ',') return false;
    const auto y = std::from_chars(x.ptr + 1, end, point->y);
    return y.ec == std::errc() && y.ptr == end && std::isfinite(point->x) && std::isfinite(point->y);
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
    if (options.layers) globals->layerOption = *options.layers ? 1 : 0;
    auto document = std::make_unique<workbench::Document>();
    if (!options.into.empty()) {
        workbench::ReadReport report;
        document = OpenDocument(options.into, &report, &error);
        if (!document) {
            Complain(error);
            return std::filesystem::exists(options.into) ? kRefusedOrDiffers : kFileTrouble;
        }
        const std::string losses = LossesLine(report);
        if (!losses.empty()) Complain(options.into + ": not taken from the file: " + losses);
    }
    database.host().Open(std::move(document));
    if (!LoadRecord(database.group(), options.number, point, options.origin, LinkedFileUse::kPool, &error)) {
        Complain(options.group + ": " + error);
        return kRefusedOrDiffers;
    }
    for (const std::string& sentence : MissingFonts()) Complain(options.group + ": " + sentence);
    for (const std::string& out : options.out) {
        if (SaveDocument(*database.host().front(), out, &error)) continue;
        Complain(error);
        return kFileTrouble;
    }
    return database.Ended(kDone);
}
