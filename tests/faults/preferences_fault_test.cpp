// The preferences when system calls fail or the process is stopped: the old file is there or the new one,
// whole, whatever happens.
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "plugin/frame/preferences.h"
#include "tests/support/store_fixture.h"
#include "win32/fault_calls.h"

namespace {

class PreferencesFaultTest : public StoreTest {
protected:
    PreferencesFaultTest() {
        SetDefaults(nullptr);
        RedirectDocuments(documents_.path());
        WritePreferences();
        old_ = BytesOfFile(file());
        Change();
        const std::string text = PreferencesText();
        new_.assign(text.begin(), text.end());
    }
    ~PreferencesFaultTest() override { RedirectDocuments({}); }

    std::filesystem::path prefs() const { return documents_.path() / "Adobe" / "Illustrator" / "Prefs"; }
    std::filesystem::path file() const { return prefs() / "Velquorne_CC.ini"; }
    static void Change() {
        std::strcpy(globals->flCnvFnStr, "changed");
        globals->toolMode = 3;
    }

    // What the next start finds; and a write that nothing disturbs gets through whatever is left.
    void ExpectOldOrNew(const std::string& what) {
        const Bytes found = BytesOfFile(file());
        ASSERT_TRUE(found == old_ || found == new_) << what;
        Change();
        WritePreferences();
        ASSERT_EQ(BytesOfFile(file()), new_) << what;
        ASSERT_FALSE(std::filesystem::exists(prefs() / "Velquorne_CC.new")) << what;
        WriteFileBytes(file(), old_);
    }

    using Fault = std::function<void(FaultCalls&, unsigned)>;

    // With the fault at every call in turn; returns how often the old file stayed.
    unsigned FailEveryCall(const std::string& what, FaultCall kind, const Fault& fault) {
        unsigned stayed = 0;
        unsigned calls = 1;
        for (unsigned nth = 1; nth <= calls; ++nth) {
            {
                FaultCalls faults;
                fault(faults, nth);
                WritePreferences();
                calls = std::max(calls, faults.count(kind));
            }
            if (BytesOfFile(file()) == old_) ++stayed;
            ExpectOldOrNew(what + " at call " + std::to_string(nth));
            if (HasFatalFailure()) return stayed;
        }
        return stayed;
    }

    TemporaryFolder documents_;
    Bytes old_, new_;
};

} // namespace

TEST_F(PreferencesFaultTest, WritingFails) {
    for (const int error : {EIO, ENOSPC, EACCES}) {
        EXPECT_GT(FailEveryCall("once", kFaultAnyCall,
                                [error](FaultCalls& faults, unsigned nth) { faults.FailAt(nth, error); }),
                  0u);
        EXPECT_GT(FailEveryCall("from there on", kFaultAnyCall,
                                [error](FaultCalls& faults, unsigned nth) { faults.FailFrom(nth, error); }),
                  0u);
    }
    EXPECT_EQ(FailEveryCall("cut short", kFaultWrite,
                            [](FaultCalls& faults, unsigned nth) { faults.CutWriteAt(nth); }),
              1u);
}

TEST_F(PreferencesFaultTest, WritingIsStopped) {
    for (unsigned nth = 1;; ++nth) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            FaultCalls faults;
            faults.At(nth, [] { _exit(1); });
            WritePreferences();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        ExpectOldOrNew("stopped before call " + std::to_string(nth));
        if (HasFatalFailure() || WEXITSTATUS(status) == 0) return;
    }
}

// A file that can't be read gives the defaults, and never half of what it says.
TEST_F(PreferencesFaultTest, ReadingFails) {
    WriteFileBytes(file(), new_);
    unsigned calls = 1;
    for (unsigned nth = 1; nth <= calls; ++nth) {
        SetDefaults(nullptr);
        {
            FaultCalls faults;
            faults.FailAt(nth, EIO);
            ReadPreferences();
            calls = std::max(calls, faults.count());
        }
        const std::string text = PreferencesText();
        ASSERT_TRUE(Bytes(text.begin(), text.end()) == old_ || Bytes(text.begin(), text.end()) == new_)
            << "at call " << nth;
    }
}

// Programs that end at once: the file is one program's, whole.
TEST_F(PreferencesFaultTest, ManyWriteAtOnce) {
    constexpr int kPrograms = 8;
    for (int program = 0; program < kPrograms; ++program) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child != 0) continue;
        for (int16_t i = 0; i < 25; ++i) {
            globals->toolMode = i;
            std::memset(globals->flCnvFnStr, 'a' + program, static_cast<size_t>(program) * 20 + 1);
            WritePreferences();
        }
        _exit(0);
    }
    for (int ended = 0; ended < kPrograms;) {
        if (waitpid(-1, nullptr, WNOHANG) > 0) ++ended;
        const Bytes found = BytesOfFile(file());
        const std::string text(found.begin(), found.end());
        ASSERT_TRUE(text.ends_with("product = \"Velquorne\"\r\n")) << text;
    }
    EXPECT_FALSE(std::filesystem::exists(prefs() / "Velquorne_CC.new"));
}
