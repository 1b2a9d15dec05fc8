#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>

#include "app/action_recorder.h"
#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/hands_player.h"
#include "app/session.h"
#include "plugin/frame/globals.h"
#include "win32/screen/screen_display.h"
#include "workbench/frame/frame_looks.h"
#include "workbench/frame/workspace.h"
#include "workbench/render/view_picture.h"

namespace {

constexpr int kHeadlessWidth = 1280, kHeadlessHeight = 800;
constexpr int kScreenWidth = 1400, kScreenHeight = 900; ///< cut to the screen's size

std::unique_ptr<workbench::Document> OpenAndReport(const std::string& path, std::string* losses,
                                                   std::string* error) {
    workbench::ReadReport report;
    auto document = OpenDocument(path, &report, error);
    if (!document) return document;
    *losses = LossesLine(report);
    if (!losses->empty()) Complain(path + ": not taken from the file: " + *losses);
    for (const std::string& note : report.notes) Complain(path + ": " + note);
    return document;
}

workbench::WorkspaceFiles FilesOfDisk() {
    return {.open = OpenAndReport,
            .save = [](const workbench::Document& document, const std::string& path,
                       std::string* error) { return SaveDocument(document, path, error); },
            .exists =
                [](const std::string& path) {
                    std::error_code ignored;
                    return std::filesystem::exists(path, ignored);
                }};
}

workbench::CanvasPictures PicturesByCairo() {
    return {.draw =
                [](const workbench::Document& document, const workbench::View& view, SIZE size,
                   uint32_t* pixels, const std::function<void(size_t, size_t)>& progress) {
                    workbench::DrawView(document, view, size.cx, size.cy, pixels, progress);
                },
            .paintsAt = workbench::PaintsWithin};
}

int32_t LanguageNumber(const std::string& language) {
    return language == "ja" ? 0 : language == "en" ? 1 : 2;
}

/// What the command line alone wanted of the settings; the rest of them is the user's to keep.
class SettingsOfThisTime {
public:
    /// False, and a sentence in *error, if there is no such database.
    bool Take(Session& session, const OpenOptions& options, std::string* error) {
        database_ = globals->aidbfpath;
        language_ = globals->language;
        if (!options.database.empty() && !session.OpenDatabase(options.database, true, error)) return false;
        if (!options.language.empty()) globals->language = LanguageNumber(options.language);
        shownDatabase_ = globals->aidbfpath;
        shownLanguage_ = globals->language;
        return true;
    }

    /// Unless the user has chosen otherwise meanwhile.
    void GiveBack() const {
        if (globals->language == shownLanguage_) globals->language = language_;
        if (globals->aidbfpath != shownDatabase_) return;
        std::memset(globals->aidbfpath, 0, sizeof globals->aidbfpath);
        std::copy(database_.begin(), database_.end(), globals->aidbfpath);
    }

private:
    std::string database_, shownDatabase_;
    int32_t language_ = 0, shownLanguage_ = 0;
};

/// @param begin  called once everything stands
int ShowWorkspace(const OpenOptions& options, SIZE size,
                  const std::function<void(workbench::Host&, workbench::Workspace&)>& begin) {
    std::string error, losses;
    auto document = std::make_unique<workbench::Document>();
    if (!options.file.empty()) document = OpenAndReport(options.file, &losses, &error);
    if (!document) {
        Complain(error);
        return std::filesystem::exists(options.file) ? kRefusedOrDiffers : kFileTrouble;
    }
    Session session(options.play.empty() ? SettingsAtEnd::kAsTheyAre : SettingsAtEnd::kAsAtBegin);
    SettingsOfThisTime settings;
    if (!session.ok() || !settings.Take(session, options, &error)) {
        Complain(session.ok() ? error : "the plug-in didn't start");
        return session.ok() ? kFileTrouble : kRefusedOrDiffers;
    }
    workbench::Host& host = session.host();
    host.SetTheme(options.theme == "dark" ? workbench::DarkTheme() : workbench::LightTheme());
    workbench::Workspace workspace(host, session.plugin(), size, PicturesByCairo(), FilesOfDisk());
    workspace.ShowDocument(std::move(document), options.file, losses);
    workspace.Begin();
    std::optional<ActionRecorder> recorder;
    if (!options.record.empty()) recorder.emplace(host, workspace, options.record);
    begin(host, workspace);
    workspace.windows().Run();
    workspace.windows().StopTimers();
    const bool recorded = !recorder || recorder->Write();
    recorder.reset();
    settings.GiveBack();
    session.ShutDown();
    if (!recorded) return kFileTrouble;
    return session.faulty() ? kRefusedOrDiffers : kDone;
}

int PlayHands(const OpenOptions& options) {
    std::ifstream file(options.play, std::ios::binary);
    std::ostringstream text;
    if (!file || !(text << file.rdbuf())) {
        Complain(options.play + ": there is no such file of hands, or it is empty");
        return kFileTrouble;
    }
    std::string error;
    auto steps = ParseHands(text.str(), &error);
    if (!steps) {
        Complain(options.play + ": " + error);
        return kUsage;
    }
    std::error_code ignored;
    if (!options.pictures.empty()) std::filesystem::create_directories(options.pictures, ignored);
    HeadlessDisplay display(kHeadlessWidth, kHeadlessHeight);
    std::optional<HandsPlayer> player;
    return ShowWorkspace(options, {kHeadlessWidth, kHeadlessHeight},
                         [&](workbench::Host& host, workbench::Workspace& workspace) {
                             player.emplace(display, host, workspace, std::move(*steps), options.pictures);
                             player->end = [&workspace] { workspace.windows().Quit(); };
                             player->failed = [&](int line, const std::string& sentence) {
                                 Complain(options.play + ": line " + std::to_string(line) + ": " + sentence);
                                 // The program may be in the loop of a dialog that nobody will answer.
                                 std::fflush(nullptr);
                                 std::_Exit(kRefusedOrDiffers);
                             };
                             player->Begin();
                         });
}

} // namespace

int RunOpen(const OpenOptions& options) {
    if (!options.play.empty()) return PlayHands(options);
    const auto isSet = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value;
    };
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        Complain("there is no screen: neither DISPLAY nor WAYLAND_DISPLAY is set");
        return kRefusedOrDiffers;
    }
    std::string error;
    const auto display = ScreenDisplay::Open(
        {.title = "Velquorne", .width = kScreenWidth, .height = kScreenHeight, .scale = 0}, error);
    if (!display) {
        Complain("the screen can't be used: " + error);
        return kRefusedOrDiffers;
    }
    const SIZE size{GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    return ShowWorkspace(options, size, [&](workbench::Host&, workbench::Workspace& workspace) {
        display->closeWanted = [&workspace] { PostMessageA(workspace.windows().window(), WM_CLOSE, 0, 0); };
    });
}
