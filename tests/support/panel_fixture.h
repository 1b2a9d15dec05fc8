/// The plug-in with its panel on a desktop, over the host's windows and a database in a temporary folder.
///
/// The panel is built by the host's own notifier.  At the end the plug-in is shut down, and the test fails if
/// a window, a drawing object or anything of PluginFixture is left.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/plugin_fixture.h"
#include "tests/support/test_desktop.h"
#include "workbench/frame/host_windows.h"

class PanelFixture : public PluginFixture {
protected:
    PanelFixture();
    void SetUp() override;
    void TearDown() override;

    /// Sends the notifier that builds the panel; SetUp doesn't, so that a test can fill the database first.
    void BuildThePanel();

    TestDesktop& desktop() { return desktop_; }
    workbench::HostWindows& windows() { return *windows_; }
    workbench::PanelFrame& frame() { return *windows_->FrameOf(*host().panels().front()); }
    HWND panel() { return frame().body(); } ///< the panel's window, with its controls
    HWND control(int id) { return GetDlgItem(panel(), id); }

    /// Sends a tick of the plug-in's timer.
    void Tick();

    /// A group's file, in folders that are made with it, and records at its end.  Each preview is of one
    /// colour, by the record's name (ColorOfName), and each stamp by the name's first letter (StampOfName).
    void MakeGroup(const std::string& group, const std::vector<std::string>& names = {});
    std::vector<std::string> NamesIn(const char* group); ///< of its records
    void MakeFolder(const std::string& folder) { MakeFoldersAbove(folder + "\\"); }

private:
    void MakeFoldersAbove(const std::string& path);

    TestDesktop desktop_; // opens before the windows, ends behind them
    std::unique_ptr<workbench::HostWindows> windows_;
};

uint32_t ColorOfName(const std::string& name); ///< 0x00RRGGBB
uint32_t StampOfName(const std::string& name);
