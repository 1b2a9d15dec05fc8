/// A person at the panel: hands that press, drag, type and answer, over a real database, in one language.
///
/// Hands are queued and played together; everything between two calls of Play happens in the host's message
/// loop, as it would on a screen.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "plugin/panel/list_table.h"
#include "plugin/panel/panel_controls.h"
#include "tests/support/panel_fixture.h"
#include "tests/support/panel_hands.h"
#include "tests/support/posix/headless_desktop.h"

/// The parameter is `globals->language`.
class Tour : public PanelFixture, public PanelHands, public ::testing::WithParamInterface<int32_t> {
public:
    void SetUp() override;

    HeadlessDisplay& hands() { return DisplayOf(desktop()); }
    Hands& hand() override { return *hand_; }
    workbench::PanelFrame& frame() override { return PanelFixture::frame(); }
    const Globals& state() override { return *globals; }
    using PanelHands::control;
    using PanelHands::panel;

    bool japanese() const { return GetParam() == 0; }
    /// The text of the running language.
    const char* Either(const char* english, const char* japaneseText) const {
        return japanese() ? japaneseText : english;
    }

    std::set<std::string> FilesOnDisk(); ///< below the root, without the lock's file

private:
    std::unique_ptr<Hands> hand_; ///< the same as hands(), with fewer arts
};

std::string Utf8(const char* cp932); ///< as the host holds texts
