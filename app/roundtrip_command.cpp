#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"
#include "app/compare_documents.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/format_losses.h"
#include "app/registration.h"
#include "app/session.h"
#include "app/worker_pool.h"
#include "plugin/capture/measure_selection.h"
#include "plugin/frame/globals.h"
#include "plugin/rebuild/load_art.h"
#include "win32/beep.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr char kGroup[] = "Roundtrip";

struct RoundTrip {
    std::string file;
    std::string refused; ///< why, if it was
    std::map<std::string, int> losses;
    std::vector<std::string> differences;

    const char* Result() const {
        return !refused.empty()       ? "refused"
               : !differences.empty() ? "different"
               : losses.empty()       ? "same"
                                      : "loss";
    }
};

/// A database that is gone when the work is done.
class TemporaryDatabase {
public:
    TemporaryDatabase() {
        std::string pattern = (std::filesystem::temp_directory_path() / "velquorne-XXXXXX").string();
        if (mkdtemp(pattern.data())) path_ = pattern;
    }
    ~TemporaryDatabase() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDatabase(const TemporaryDatabase&) = delete;
    TemporaryDatabase& operator=(const TemporaryDatabase&) = delete;

    const std::string& path() const { return path_; }

    /// Before each file, so that the group stays small however many files there are.
    void Empty() const {
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(path_, ignored)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with(kGroup) || name == "_%%image")
                std::filesystem::remove_all(entry.path(), ignored);
        }
    }

private:
    std::string path_;
};

/// The lower left corner of the selection as a record measures it.
HostPoint OriginOfSelection(Session& session) {
    const SuitesHeld held(session.host());
    HostRect bounds{};
    MeasureSelection(&bounds, false);
    return {bounds.left, bounds.bottom};
}

/// Loads the record where it came from; false if the load beeped or failed.
bool LoadAtOrigin(Session& session, const HostPoint& origin, int32_t number) {
    const SuitesHeld held(session.host());
    globals->placePoint = origin;
    globals->originMode = 2; // left, bottom
    globals->trackState = 0;
    const unsigned beeps = BeepCount();
    return AidbLoadArt(kGroup, number) == kHostNoError && globals->curRecord && BeepCount() == beeps;
}

RoundTrip TakeAround(Session& session, const TemporaryDatabase& database, const std::string& file) {
    RoundTrip result;
    result.file = file;
    database.Empty();
    auto document = OpenDocument(file, nullptr, &result.refused);
    if (!document) return result;
    const int missingPictures = LeaveOutMissingPictures(*document);
    document->SelectAll();
    const HostRect page = document->page;
    session.host().Open(std::move(document));
    RecordFrame frame;
    frame.origin = OriginOfSelection(session);
    Registered registered;
    if (!RegisterFrontDocument(session, kGroup, {}, &registered, &result.refused)) return result;
    const auto stored = session.host().Close();
    auto empty = std::make_unique<workbench::Document>();
    empty->page = page;
    session.host().Open(std::move(empty));
    if (!LoadAtOrigin(session, frame.origin, registered.number))
        result.differences.push_back("the load stopped before its end");
    const auto rebuilt = session.host().Close();
    result.losses = ApplyFormatLosses(*stored, frame);
    if (missingPictures > 0) result.losses["missing linked picture"] = missingPictures;
    for (std::string& line : CompareDocuments(*stored, *rebuilt, frame))
        result.differences.push_back(std::move(line));
    const std::string look = ComparePictures(*stored, *rebuilt);
    if (!look.empty()) result.differences.push_back(look);
    return result;
}

Json JsonOf(const RoundTrip& trip) {
    return {{"file", trip.file},
            {"result", trip.Result()},
            {"losses", Json(trip.losses)},
            {"differences", trip.refused.empty() ? Json(trip.differences) : Json::array({trip.refused})}};
}

int Work(const RoundtripOptions& options, int worker, int workers,
         const std::function<void(const std::string&)>& send) {
    Session session;
    const TemporaryDatabase database;
    std::string error;
    if (!session.ok() || !session.OpenDatabase(database.path(), true, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    for (size_t i = static_cast<size_t>(worker); i < options.files.size();
         i += static_cast<size_t>(workers)) {
        const RoundTrip trip = TakeAround(session, database, options.files[i]);
        send(JsonOf(trip).dump(-1, ' ', false, Json::error_handler_t::replace));
    }
    return session.faulty() ? kRefusedOrDiffers : kDone;
}

struct Tally {
    std::map<std::string, size_t> results;
    std::map<std::string, long> losses;
    std::map<std::string, size_t> filesWithLoss;
    Json files = Json::array();
};

void Count(const std::string& line, bool json, Tally* tally) {
    Json trip = Json::parse(line);
    const std::string result = trip["result"];
    ++tally->results[result];
    for (const auto& [what, count] : trip["losses"].items()) {
        tally->losses[what] += count.get<long>();
        ++tally->filesWithLoss[what];
    }
    if (json) {
        tally->files.push_back(std::move(trip));
        return;
    }
    std::cout << trip["file"].get<std::string>() << "\t" << result;
    const char* separator = "\t";
    for (const auto& [what, count] : trip["losses"].items()) {
        std::cout << separator << what << " " << count;
        separator = ", ";
    }
    std::cout << "\n";
    for (const auto& difference : trip["differences"])
        std::cout << "    " << difference.get<std::string>() << "\n";
}

void PrintSummary(const Tally& tally) {
    std::string line;
    for (const auto& [result, count] : tally.results) {
        line += (line.empty() ? "" : ", ") + std::to_string(count) + " " + result;
    }
    Complain(line);
    for (const auto& [what, count] : tally.losses) {
        Complain("  lost: " + what + ": " + std::to_string(count) + " in " +
                 std::to_string(tally.filesWithLoss.at(what)) + " files");
    }
}

} // namespace

int RunRoundtrip(const RoundtripOptions& options) {
    Tally tally;
    const int workers = std::min<int>(options.jobs, static_cast<int>(options.files.size()));
    int result;
    {
        Progress progress(options.files.size());
        result = RunWorkers(
            workers, [&](int i, const auto& send) { return Work(options, i, workers, send); },
            [&](const std::string& line) {
                Count(line, options.json, &tally);
                progress.Step();
            });
    }
    if (options.json) PrintJson({{"schema", 1}, {"files", std::move(tally.files)}});
    PrintSummary(tally);
    const bool good = !tally.results.contains("different") && !tally.results.contains("refused");
    return std::max<int>(result, good ? kDone : kRefusedOrDiffers);
}
