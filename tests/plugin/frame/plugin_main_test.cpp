#include "plugin/frame/plugin_main.h"

#include <cstring>

#include "plugin/host/suite_table.h"
#include "tests/support/plugin_fixture.h"
#include "tests/support/recording_basic.h"

namespace {

using workbench::Alert;

/// Messages to a plug-in that is not up yet, through a basic interface that records.
class PluginMainTest : public ::testing::Test {
protected:
    PluginMainTest() {
        RedirectDocuments(documents.path());
        ForgetPreferences();
        host.SetPlugin({self, nullptr, {}});
    }
    void TearDown() override {
        if (slot) {
            EXPECT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN), kHostNoError);
        }
        EXPECT_EQ(suiteUseCount, 0);
        host.CheckBalance(true);
        for (const std::string& fault : host.faults()) ADD_FAILURE() << fault;
        RedirectDocuments({});
    }

    HostError Send(const char* caller, const char* selector) {
        return SendAny(caller, selector, HostMessage{});
    }

    template <typename Message>
    HostError SendAny(const char* caller, const char* selector, Message message) {
        auto* head = reinterpret_cast<HostMessage*>(&message);
        head->self = self;
        head->globals = slot;
        head->basic = recording.basic();
        recording.acquired.clear();
        recording.released.clear();
        const HostError error = PluginMain(caller, selector, head);
        slot = head->globals;
        return error;
    }

    HostError Notify(const char* selector, const char* type) {
        HostNotifierMessage message{};
        message.type = type;
        return SendAny(HOST_CALLER_NOTIFIER, selector, message);
    }

    void StartUpPlugin() { ASSERT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_STARTUP), kHostNoError); }

    TemporaryFolder documents;
    workbench::Host host;
    RecordingBasic recording{host.basic()};
    PluginHandle self = reinterpret_cast<PluginHandle>(this);
    void* slot = nullptr;
};

// A start over a block that holds something else must leave nothing of it.
TEST_F(PluginMainTest, DefaultsCoverTheWholeBlock) {
    StartUpPlugin();
    std::vector<uint8_t> first(sizeof(Globals)), second(sizeof(Globals));
    SetDefaults(self);
    std::memcpy(first.data(), globals, sizeof(Globals));
    std::memset(static_cast<void*>(globals), 0xA5, sizeof(Globals));
    SetDefaults(self);
    std::memcpy(second.data(), globals, sizeof(Globals));
    EXPECT_EQ(first, second);
}

TEST_F(PluginMainTest, WithoutMemoryThereIsNoBlockAndTheUserIsTold) {
    host.FailAllocations(true);
    EXPECT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_STARTUP), kHostOutOfMemory);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(globals, nullptr);
    ASSERT_EQ(host.alerts().size(), 1u);
    EXPECT_TRUE(host.alerts()[0].error);
    EXPECT_EQ(host.alerts()[0].text, "Error=4d454d21, !MEM (caller : SP Interface, selector : Startup)");
}

TEST_F(PluginMainTest, ShutDownEmptiesTheSlot) {
    StartUpPlugin();
    ASSERT_EQ(slot, globals);
    EXPECT_EQ(globals->pluginRef, self);
    globals->curRecord = NewHandle(1, kSmallGrain);
    globals->rihList = NewHandle(1, kSmallGrain);
    EXPECT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN), kHostNoError);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(globals, nullptr);
    EXPECT_EQ(host.BlockCount(), 0u);
}

// What the plug-in doesn't know costs one walk over the suites and nothing else, before start-up too.
TEST_F(PluginMainTest, QuietCallsHoldTheSuitesOnceAndGiveZero) {
    const std::pair<const char*, const char*> calls[] = {{"Nobody", "Nothing"},
                                                         {"", ""},
                                                         {HOST_CALLER_INTERFACE, "Nothing"},
                                                         {HOST_CALLER_INTERFACE, HOST_SELECTOR_ABOUT},
                                                         {HOST_CALLER_MENU, "Nothing"},
                                                         {HOST_CALLER_MENU, HOST_SELECTOR_GO},
                                                         {HOST_CALLER_MENU, HOST_SELECTOR_UPDATE},
                                                         {HOST_CALLER_TIMER, HOST_SELECTOR_NOTIFY},
                                                         {HOST_CALLER_NOTIFIER, HOST_SELECTOR_GO},
                                                         {HOST_CALLER_ACTION, "Nothing"},
                                                         {HOST_CALLER_ACTION, HOST_SELECTOR_DO_ACTION}};
    for (const bool started : {false, true}) {
        if (started) StartUpPlugin();
        for (const auto& [caller, selector] : calls) {
            SCOPED_TRACE(std::string(caller) + ", " + selector);
            // The longest of the messages: some of these callers' handlers look behind the head.
            EXPECT_EQ(SendAny(caller, selector, HostActionMessage{}), kHostNoError);
            EXPECT_EQ(recording.acquired.size(), kSuiteCount);
            EXPECT_EQ(recording.released.size(), kSuiteCount);
            EXPECT_TRUE(host.alerts().empty());
        }
    }
}

TEST_F(PluginMainTest, RunningCallsBeforeStartUpDoNothing) {
    EXPECT_EQ(SendAny(HOST_CALLER_TIMER, HOST_SELECTOR_GO, HostTimerMessage{}), kHostNoError);
    EXPECT_EQ(Notify(HOST_SELECTOR_NOTIFY, "AI Application Started Notifier"), kHostNoError);
    EXPECT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN), kHostNoError);
    EXPECT_EQ(Send(HOST_CALLER_ACCESS, HOST_SELECTOR_UNLOAD), kHostNoError);
    EXPECT_EQ(Send(HOST_CALLER_ACCESS, HOST_SELECTOR_RELOAD), kHostNoError);
    EXPECT_EQ(slot, nullptr);
}

// Callbacks outside of a message acquire the suites with what a message brought last.
TEST_F(PluginMainTest, TimerAndNotifierNoteTheBasicInterface) {
    StartUpPlugin();
    EXPECT_EQ(Notify(HOST_SELECTOR_NOTIFY, "AI Selection Changed Notifier"), kHostNoError);
    EXPECT_EQ(Notify(HOST_SELECTOR_GO, "AI Application Started Notifier"), kHostNoError);
    EXPECT_EQ(globals->hostBasic, nullptr);
    // This host has no windows and refuses the panel.
    EXPECT_EQ(Notify(HOST_SELECTOR_NOTIFY, "AI Application Started Notifier"), kHostRefused);
    EXPECT_EQ(globals->panelRef, nullptr);
    EXPECT_EQ(globals->hostBasic, recording.basic());
    globals->hostBasic = nullptr;
    EXPECT_EQ(SendAny(HOST_CALLER_TIMER, HOST_SELECTOR_GO, HostTimerMessage{}), kHostNoError);
    EXPECT_EQ(globals->hostBasic, recording.basic());
}

// A start-up that fails half-way can be shut down, and the settings of the last run outlive it.
TEST_F(PluginMainTest, EveryRefusalAtStartUp) {
    StartUpPlugin();
    globals->toolMode = 3;
    ASSERT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN), kHostNoError);
    for (uint64_t n = 1;; ++n) {
        host.DropPluginObjects();
        host.RefuseCall(n);
        Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_STARTUP);
        const bool refused = host.refused();
        host.RefuseNone();
        ASSERT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN), kHostNoError) << n;
        host.DropPluginObjects();
        StartUpPlugin();
        ASSERT_EQ(globals->toolMode, 3) << n;
        ASSERT_EQ(Send(HOST_CALLER_INTERFACE, HOST_SELECTOR_SHUTDOWN), kHostNoError);
        if (!refused) break;
    }
}

TEST_F(PluginMainTest, AccessCallsTouchNoSuite) {
    StartUpPlugin();
    for (const char* selector : {"Lock", HOST_SELECTOR_UNLOAD, HOST_SELECTOR_RELOAD}) {
        EXPECT_EQ(Send(HOST_CALLER_ACCESS, selector), kHostNoError);
        EXPECT_TRUE(recording.acquired.empty());
        EXPECT_EQ(slot, globals);
    }
    suiteUseCount = 3;
    EXPECT_EQ(Send(HOST_CALLER_ACCESS, "Lock"), kHostNoError);
    EXPECT_EQ(suiteUseCount, 3);
    EXPECT_EQ(Send(HOST_CALLER_ACCESS, HOST_SELECTOR_RELOAD), kHostNoError);
    EXPECT_EQ(suiteUseCount, 0);
}

// A suite that can't be had brings any error code out of a call.
TEST_F(PluginMainTest, ShowsWhatTheUserDoesNotKnowAndReturnsIt) {
    const std::string end = " (caller : Nobody, selector : Nothing)";
    const std::pair<HostError, std::string> reports[] = {{kHostSilent, ""},
                                                         {kHostStopped, ""},
                                                         {kHostSuiteNotFound, ""},
                                                         {2, "Error=2, \x02" + end},
                                                         {0x41424344, "Error=41424344, DCBA" + end},
                                                         {0x41420044, "Error=41420044, D" + end}};
    for (const auto& [error, text] : reports) {
        recording.failAcquire[SuiteTable()[49].name] = error;
        host.ClearAlerts();
        EXPECT_EQ(Send("Nobody", "Nothing"), error);
        ASSERT_EQ(host.alerts().size(), text.empty() ? 1u : 2u) << error;
        EXPECT_FALSE(host.alerts()[0].error);
        if (text.empty()) continue;
        EXPECT_TRUE(host.alerts()[1].error);
        EXPECT_EQ(host.alerts()[1].text, text);
    }
    host.ClearAlerts();
    EXPECT_EQ(Send(std::string(2000, 'c').c_str(), "Nothing"), 0x41420044);
    ASSERT_EQ(host.alerts().size(), 2u);
    EXPECT_EQ(host.alerts()[1].text.size(), 1023u); // it fits its buffer
}

TEST_F(PluginMainTest, WithoutTheAlertSuiteNothingIsShown) {
    recording.failAcquire["AI User Suite"] = 4711;
    recording.failAcquire["AI Unicode String Suite"] = 4711;
    EXPECT_EQ(Send("Nobody", "Nothing"), 4711);
    EXPECT_TRUE(host.alerts().empty());
}

} // namespace
