#include "workbench/module/plugin_module.h"

#include <gtest/gtest.h>

#include <cstring>

#include "plugin/frame/globals.h"
#include "tests/support/temporary_folder.h"

namespace {

using workbench::Host;
using workbench::Library;
using workbench::PluginModule;
using Bytes = std::vector<uint8_t>;

constexpr char kModuleFile[] = VELQUORNE_MODULE_FILE;

class PluginModuleTest : public ::testing::Test {
protected:
    PluginModuleTest() { RedirectDocumentsOfModules(folder.path()); }
    void TearDown() override {
        host.CheckBalance(true);
        for (const std::string& fault : host.faults()) ADD_FAILURE() << fault;
        EXPECT_FALSE(Library::IsInProcess(kModuleFile));
    }

    static Bytes StateOf(const PluginModule& plugin) {
        const auto* bytes = static_cast<const uint8_t*>(plugin.state());
        return Bytes(bytes, bytes + sizeof(Globals));
    }

    TemporaryFolder folder;
    Host host;
};

// The module's own variables are gone after an unload; all that counts has to be in the block.
TEST_F(PluginModuleTest, EveryByteOfTheStateSurvivesAnUnload) {
    PluginModule plugin(host, kModuleFile);
    ASSERT_EQ(plugin.StartUp(), kHostNoError) << plugin.error();
    const Bytes started = StateOf(plugin);
    auto* state = static_cast<uint8_t*>(plugin.state());
    for (size_t i = 0; i < sizeof(Globals); ++i) state[i] = static_cast<uint8_t>(i * 31 + i / 256);
    // What points into the module is taken anew.
    const auto kept = [&plugin] {
        Globals copy;
        std::memcpy(&copy, plugin.state(), sizeof copy);
        std::memset(copy.cursors, 0, sizeof copy.cursors);
        copy.handlersDue = 0;
        Bytes bytes(sizeof copy);
        std::memcpy(bytes.data(), &copy, sizeof copy);
        return bytes;
    };
    const Bytes before = kept();

    ASSERT_EQ(plugin.Unload(), kHostNoError);
    EXPECT_FALSE(plugin.ready());
    EXPECT_FALSE(Library::IsInProcess(kModuleFile));
    EXPECT_EQ(plugin.Send("Nobody", "Nothing"), kHostRefused);
    EXPECT_EQ(kept(), before);

    ASSERT_EQ(plugin.Reload(), kHostNoError) << plugin.error();
    EXPECT_EQ(plugin.state(), state);
    EXPECT_EQ(kept(), before);

    // The fresh module holds the suites anew and finds its state by itself.
    std::memcpy(state, started.data(), started.size());
    ASSERT_EQ(plugin.Tick(nullptr), kHostNoError);
    EXPECT_EQ(reinterpret_cast<Globals*>(state)->hostBasic, host.basic());
    EXPECT_EQ(plugin.ShutDown(), kHostNoError);
}

TEST_F(PluginModuleTest, MissingFileSaysWhy) {
    PluginModule missing(host, std::string(kModuleFile) + ".missing");
    EXPECT_FALSE(missing.ready());
    EXPECT_NE(missing.error(), "");
    EXPECT_EQ(missing.StartUp(), kHostRefused);
    EXPECT_EQ(missing.Reload(), kHostNotFound);
}

} // namespace
