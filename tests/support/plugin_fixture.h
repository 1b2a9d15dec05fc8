/// The plug-in, linked into the test, over the stand-in host.
///
/// It is brought up by a real start-up message over an empty document, and the suites are held for the length
/// of the test, so that a test can call the plug-in's operations as its own callbacks would.  Its database
/// lies in a temporary folder.  At the end the plug-in is shut down, and the test fails if the host found a
/// fault in any call, or if a suite use, a host string or a block was not given back.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "plugin/frame/globals.h"
#include "tests/support/temporary_folder.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

/// Makes the next start-up a first one, also where documents can't be redirected.
void ForgetPreferences();

/// A segment without handles.
inline HostPathSegment Corner(double x, double y) {
    return {{x, y}, {x, y}, {x, y}, 1};
}

class PluginFixture : public ::testing::Test {
protected:
    PluginFixture();
    ~PluginFixture() override;
    void SetUp() override;
    void TearDown() override;

    workbench::Host& host() { return host_; }
    workbench::Document& document() { return *host_.front(); }
    workbench::PluginModule& plugin() { return plugin_; }

    /// Replaces the front document by an empty one.
    workbench::Document& OpenEmptyDocument();

    /// The temporary folder, with the database's root in it: `globals->aidbfpath`.
    const TemporaryFolder& folder() const { return folder_; }
    std::filesystem::path rootOnDisk() const { return folder_.path() / "root"; }

    /// Ends and begins the holding of the suites, for tests of whole messages.
    void ReleaseSuites();
    void HoldSuites();

    /// Shuts the plug-in down early; TearDown still checks the balance.
    void ShutDownPlugin();

private:
    TemporaryFolder folder_;
    workbench::Host host_;
    workbench::PluginModule plugin_;
    bool holding_ = false;
};
