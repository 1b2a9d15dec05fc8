#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "app/action_player.h"
#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "plugin/frame/globals.h"
#include "workbench/frame/host_windows.h"

namespace {

constexpr int32_t kEnglish = 1;
constexpr SIZE kDesktop{1280, 800}; ///< nobody sees it

ExitCode ReadActions(const std::string& path, std::vector<ActionStep>* steps) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || !(text << file.rdbuf())) {
        Complain(path + ": there is no such file of actions, or it is empty");
        return kFileTrouble;
    }
    std::string error;
    auto parsed = ParseActions(text.str(), &error);
    if (!parsed) {
        Complain(path + ": " + error);
        return kRefusedOrDiffers;
    }
    *steps = std::move(*parsed);
    return kDone;
}

/// The drawing to play on, or a new page; null after a complaint.
std::unique_ptr<workbench::Document> OpenPage(const std::string& path) {
    if (path.empty()) return std::make_unique<workbench::Document>();
    workbench::ReadReport report;
    std::string error;
    auto document = OpenDocument(path, &report, &error);
    if (!document) {
        Complain(error);
        return document;
    }
    const std::string losses = LossesLine(report);
    if (!losses.empty()) Complain(path + ": not taken from the file: " + losses);
    return document;
}

bool PlayAll(const PlayOptions& options, const ActionStage& stage, const std::vector<ActionStep>& steps) {
    for (size_t i = 0; i < steps.size(); ++i) {
        std::string line, error;
        if (!PlayStep(stage, steps[i], &line, &error)) {
            Complain(options.actions + ": action " + std::to_string(i + 1) + ": " + error +
                     "; no drawing is written");
            return false;
        }
        if (!line.empty()) std::cout << line << "\n";
    }
    return true;
}

int PlayAndSave(const PlayOptions& options, Session& session, HeadlessDisplay& display,
                const std::vector<ActionStep>& steps) {
    workbench::HostWindows windows(session.host(), session.plugin(), kDesktop);
    windows.showAlerts = false;
    session.plugin().Notify("AI Application Started Notifier");
    int code = kRefusedOrDiffers;
    if (PlayAll(options, {session, display, ArtChoiceOf(options.select)}, steps)) {
        code = session.faulty() ? kRefusedOrDiffers : kDone;
        std::string error;
        for (const std::string& out : options.out) {
            if (SaveDocument(*session.host().front(), out, &error)) continue;
            Complain(error);
            code = kFileTrouble;
            break;
        }
    }
    session.ShutDown(); // while its windows stand
    return code;
}

} // namespace

int RunPlay(const PlayOptions& options) {
    std::string error;
    for (const std::string& out : options.out) {
        if (KnownExtension(out, &error)) continue;
        Complain(error);
        return kUsage;
    }
    std::vector<ActionStep> steps;
    const ExitCode read = ReadActions(options.actions, &steps);
    if (read != kDone) return read;
    auto document = OpenPage(options.into);
    if (!document) return std::filesystem::exists(options.into) ? kRefusedOrDiffers : kFileTrouble;
    HeadlessDisplay display(kDesktop.cx, kDesktop.cy);
    Session session;
    if (!session.ok()) {
        Complain("the plug-in didn't start");
        return kRefusedOrDiffers;
    }
    const bool registers =
        std::ranges::any_of(steps, [](const ActionStep& step) { return step.kind == ActionKind::kRegister; });
    if (!session.OpenDatabase(options.database, registers, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    if (options.trace) session.Trace();
    globals->language = kEnglish; // its alerts become lines of this command
    document->KeepHistory();
    session.host().Open(std::move(document));
    return PlayAndSave(options, session, display, steps);
}
