#include "tests/support/plugin_fixture.h"

#include <cstring>

#include "plugin/frame/plugin_main.h"
#include "plugin/host/suite_table.h"
#include "plugin/store/store_names.h"

void ForgetPreferences() {
    char folder[kNameBytes];
    GetHostDataFolder(folder);
    DeleteFileA((std::string(folder) + "\\Prefs\\Velquorne_CC.ini").c_str());
}

PluginFixture::PluginFixture() : plugin_(host_, PluginMain) {
    RedirectDocuments(folder_.path());
    ForgetPreferences();
}

PluginFixture::~PluginFixture() {
    RedirectDocuments({});
}

void PluginFixture::SetUp() {
    OpenEmptyDocument();
    ASSERT_EQ(plugin_.StartUp(), kHostNoError);
    std::filesystem::create_directory(rootOnDisk());
    const std::string root = StorePathOf(rootOnDisk());
    ASSERT_LT(root.size(), sizeof globals->aidbfpath);
    std::strcpy(globals->aidbfpath, root.c_str());
    HoldSuites();
}

void PluginFixture::TearDown() {
    host_.RefuseNone();
    host_.FailAcquire("");
    host_.FailAllocations(false);
    ReleaseSuites();
    ShutDownPlugin();
    EXPECT_EQ(suiteUseCount, 0);
    host_.CheckBalance(true);
    for (const std::string& fault : host_.faults()) ADD_FAILURE() << fault;
}

workbench::Document& PluginFixture::OpenEmptyDocument() {
    host_.Open(std::make_unique<workbench::Document>());
    return document();
}

void PluginFixture::HoldSuites() {
    if (holding_) return;
    ASSERT_EQ(AcquireHostSuites(host_.basic()), kHostNoError);
    holding_ = true;
}

void PluginFixture::ReleaseSuites() {
    if (!holding_) return;
    EXPECT_EQ(ReleaseHostSuites(host_.basic()), kHostNoError);
    holding_ = false;
}

void PluginFixture::ShutDownPlugin() {
    if (!plugin_.running()) return;
    EXPECT_EQ(plugin_.ShutDown(), kHostNoError);
}
