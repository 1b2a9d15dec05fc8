/// The plug-in, up and running in the stand-in host, for the length of one command.
#pragma once

#include <memory>
#include <string>

#include "workbench/module/plugin_module.h"
#include "workbench/render/cairo_painter.h"
#include "workbench/suites/host.h"
#include "workbench/svg/picture_links.h"
#include "workbench/text/font_config_list.h"

/// The fonts of this machine, listed when something asks for them: most commands never do.
class MachineFonts : public workbench::FontList {
public:
    size_t Count() override { return workbench::TextFonts().Count(); }
    const workbench::FontEntry& At(size_t index) override { return workbench::TextFonts().At(index); }
};

/// What becomes of the settings that change while the plug-in is up.
enum class SettingsAtEnd { kAsAtBegin, kAsTheyAre };

class Session {
public:
    /// Brings the plug-in up through its entry; ok() tells.
    explicit Session(SettingsAtEnd settings = SettingsAtEnd::kAsAtBegin);
    /// ShutDown, unless that was called; what the host found wrong goes to standard error.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool ok() const { return started_; }

    /// Takes the plug-in down, while the windows that it has in the host's frame still stand.
    void ShutDown();

    /// Makes a folder the database root.  False, and a sentence in *error, if its path can't be stored, is
    /// too long, or there is no such folder and `create` is not set.
    bool OpenDatabase(const std::string& folder, bool create, std::string* error);

    /// Makes the folders of a group, given as the plug-in names it.
    bool MakeFolders(const std::string& groupName, std::string* error);

    workbench::Host& host() { return host_; }

    /// True if the host was used wrongly so far; such a run must not end as done.
    bool faulty() const { return host_.faultCount() != 0; }

    /// Every suite call as a line on standard error.
    void Trace();

    workbench::PluginModule& plugin() { return plugin_; }

private:
    workbench::CairoPainter painter_;
    workbench::DiskPictures pictures_;
    MachineFonts fonts_;
    workbench::Host host_;
    workbench::PluginModule plugin_;
    std::string preferences_; ///< as they stood when the plug-in was up
    bool started_ = false;
    SettingsAtEnd settings_;
};

/// Holds the host's suites, as the plug-in's own callbacks do.
class SuitesHeld {
public:
    explicit SuitesHeld(workbench::Host& host);
    ~SuitesHeld();
    SuitesHeld(const SuitesHeld&) = delete;
    SuitesHeld& operator=(const SuitesHeld&) = delete;

private:
    workbench::Host& host_;
};
