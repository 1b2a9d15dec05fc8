/// A person's hands at the host's windows, for tests that run on any desktop.
///
/// Steps are queued and come in their order, each when the one before it has had its effect: on the headless
/// desktop by its script, on a machine's own desktop by a thread that sends real input.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "tests/support/test_desktop.h"
#include "workbench/frame/host_windows.h"

struct HandsState;

class Hands {
public:
    /// Both must live longer.  One at a time.
    Hands(TestDesktop& desktop, workbench::HostWindows& windows);
    ~Hands();
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;

    /// To a point of the screen, asked when its moment has come; while the button is held the asking may be
    /// done by another thread than the windows'.
    void MoveTo(std::function<POINT()> place);
    void Press();
    void Release();
    void KeyDown(int virtualKey);
    void KeyUp(int virtualKey);
    void Type(const std::string& cp932);

    /// Runs in the loop that is at work, a dialog's for instance.  Not while the button is held.
    void Do(std::function<void()> action);

    /// Goes on when that is so; the test fails if it never is.  While the button is held too: for what the
    /// program does without taking messages, and only looks at its state.
    void Until(const char* what, std::function<bool()> reached);
    /// With the button held: to a point from some pixels beside it, again until that is so.  Nobody can tell
    /// when a program begins to follow the pointer, and one that does so late must see a move as well.
    void MoveUntil(std::function<POINT()> place, const char* what, std::function<bool()> reached);
    void Pause(unsigned milliseconds);

    /// Runs the host's loop until the queue is empty.
    void Play();

private:
    workbench::HostWindows& windows_;
    std::unique_ptr<HandsState> state_;
};
