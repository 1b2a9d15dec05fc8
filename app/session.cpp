#include "app/session.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "plugin/frame/globals.h"
#include "plugin/frame/plugin_main.h"
#include "plugin/frame/preferences.h"
#include "plugin/host/suite_table.h"
#include "plugin/store/store_names.h"
#include "win32/path_names.h"
#include "win32/shell_folder.h"

namespace {

/// The plug-in keeps a folder of its own below the documents folder.  A command line must not leave one in
/// the user's documents, so it gets the place where the desktop keeps programs' data.
std::string PrivateDocuments() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data && *data == '/') return std::string(data) + "/velquorne";
    const char* home = std::getenv("HOME");
    if (home && *home == '/') return std::string(home) + "/.local/share/velquorne";
    return (std::filesystem::temp_directory_path() / "velquorne").string();
}

} // namespace

Session::Session(SettingsAtEnd settings) : plugin_(host_, PluginMain), settings_(settings) {
    host_.SetPainter(&painter_);
    host_.SetPictureFiles(&pictures_);
    host_.SetFontList(&fonts_);
    const std::string documents = PrivateDocuments();
    std::error_code ignored;
    std::filesystem::create_directories(documents, ignored);
    SetDocumentsFolder(documents.c_str());
    started_ = plugin_.StartUp() == kHostNoError;
    if (started_) preferences_ = PreferencesText();
}

void Session::ShutDown() {
    if (!started_) return;
    // A command's database, order and search are its own, not what the next one begins with.
    if (settings_ == SettingsAtEnd::kAsAtBegin) TakePreferences(preferences_);
    plugin_.ShutDown();
    started_ = false;
}

Session::~Session() {
    ShutDown();
    host_.Close();
    host_.CheckBalance(true);
    for (const std::string& fault : host_.faults())
        std::fprintf(stderr, "velquorne: fault: %s\n", fault.c_str());
    SetDocumentsFolder(nullptr);
}

bool Session::OpenDatabase(const std::string& folder, bool create, std::string* error) {
    const StorePath stored = StorePathOfUtf8(folder);
    if (stored.path.empty()) {
        *error = folder + ": '" + stored.offender + "' can't stand in a database's path";
        return false;
    }
    if (stored.path.size() > kNameBytes - 1) {
        *error = folder + ": the path is longer than 255 bytes";
        return false;
    }
    std::error_code trouble;
    if (create) std::filesystem::create_directories(folder, trouble);
    if (!std::filesystem::is_directory(folder, trouble)) {
        *error = folder + (create ? ": the folder can't be made" : ": there is no such folder");
        return false;
    }
    std::copy(stored.path.begin(), stored.path.end(), globals->aidbfpath);
    globals->aidbfpath[stored.path.size()] = '\0';
    return true;
}

bool Session::MakeFolders(const std::string& groupName, std::string* error) {
    std::array<char, kPartBytes> folder{}, subFolder{}, group{};
    SplitGroupName(groupName.c_str(), folder.data(), subFolder.data(), group.data());
    std::string path = globals->aidbfpath;
    for (const char* part : {folder.data(), subFolder.data()}) {
        if (!*part) continue;
        path += std::string("\\") + part;
        if (CreateDirectoryA(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS) continue;
        *error = "a folder of the group can't be made";
        return false;
    }
    return true;
}

void Session::Trace() {
    host_.SetTrace([](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
}

SuitesHeld::SuitesHeld(workbench::Host& host) : host_(host) {
    AcquireHostSuites(host_.basic());
}

SuitesHeld::~SuitesHeld() {
    ReleaseHostSuites(host_.basic());
}
