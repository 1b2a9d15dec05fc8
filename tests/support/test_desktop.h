/// A desktop for tests of windows: headless and under a virtual clock where the Windows calls are ours, the
/// machine's own elsewhere.
#pragma once

#include <windows.h>

#include <memory>

struct TestDesktopState;

/// Open for the length of its life.  Where objects can be counted, the end of it is a failure of the running
/// test if windows, timers, contexts or drawing objects are left that were not there at its beginning.
class TestDesktop {
public:
    explicit TestDesktop(SIZE size);
    ~TestDesktop();
    TestDesktop(const TestDesktop&) = delete;
    TestDesktop& operator=(const TestDesktop&) = delete;

    TestDesktopState* state() { return state_.get(); }

private:
    std::unique_ptr<TestDesktopState> state_;
};
