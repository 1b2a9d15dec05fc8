/// The host with the plug-in as it was built: loaded from its file, known by its PluginMain alone.
///
/// On every platform the same; what is compared between two of them depends on nothing that only one of them
/// has: fonts are named, not asked for, and what is drawn are blocks of colour.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "tests/module_tour/block_painter.h"
#include "tests/support/panel_hands.h"
#include "tests/support/text_art.h"
#include "workbench/frame/workspace.h"

/// Answers for every file that is there.
class EqualPictures : public workbench::PictureFiles {
public:
    std::optional<workbench::PictureSize> SizeOf(const std::string& file) override;
};

class HostedPlugin : public PanelHands {
public:
    /// Starts up.  With the host's windows only if `windows` is set; the panel is then built and its timers
    /// tick.
    explicit HostedPlugin(bool windows);

    /// Shuts the plug-in down if that wasn't done; faults that the host has found fail the test.
    ~HostedPlugin() override;

    void ShutDown();

    workbench::Host& host() { return host_; }
    workbench::PluginModule& plugin() { return plugin_; }
    workbench::Workspace& workspace() { return *workspace_; }
    workbench::Document& document() { return *host_.front(); }
    Hands& hand() override { return *hands_; }
    workbench::PanelFrame& frame() override;
    Globals& state() override { return *static_cast<Globals*>(plugin_.state()); }

    static bool IsModuleInProcess();

private:
    TestDesktop desktop_;
    BlockPainter painter_;
    EqualPictures pictures_;
    TestFonts fonts_;
    workbench::Host host_;
    workbench::PluginModule plugin_;
    std::unique_ptr<workbench::Workspace> workspace_;
    std::unique_ptr<Hands> hands_;
};

/// The next start-up is the first one of this user.
void ForgetSettings();
