#include "tests/support/panel_fixture.h"

#include "workbench/frame/frame_looks.h"

namespace {

constexpr SIZE kDesktop{1280, 800};

} // namespace

PanelFixture::PanelFixture() : desktop_(kDesktop) {}

void PanelFixture::SetUp() {
    PluginFixture::SetUp();
    windows_ = std::make_unique<workbench::HostWindows>(host(), plugin(), kDesktop);
    windows_->showAlerts = false; // noted, and questions answered by Host::AnswerNext
    host().SetTheme(workbench::LightTheme());
}

void PanelFixture::TearDown() {
    PluginFixture::TearDown();
    windows_.reset();
}

void PanelFixture::BuildThePanel() {
    ASSERT_EQ(plugin().Notify("AI Application Started Notifier"), kHostNoError);
    ASSERT_EQ(host().panels().size(), 1u);
    ASSERT_NE(panel(), nullptr);
}

void PanelFixture::Tick() {
    ASSERT_EQ(host().timers().size(), 1u);
    EXPECT_EQ(plugin().Tick(host().timers().front()->handle), kHostNoError);
}
