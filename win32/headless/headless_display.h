/// A desktop without a screen, driven by a script of hands.
///
/// The script is a queue of steps.  One step is taken each time the program waits for messages or sleeps, and
/// at every kPollsPerStep-th question for input in a loop that does neither, so that a program can look at
/// the pointer a few times before hands move on.  Steps of Do run inside of whatever loop is at work, a
/// dialog's for instance.
///
/// Time stands still but for waits, sleeps and pauses: a wait for a timer takes as long as the timer has to
/// go, a sleep as long as it says, a pause moves the clock by a millisecond at each question.  It begins at
/// the same date in every run.
///
/// A program can't hang here: if it waits for messages while no step is left and no timer is set, if it asks
/// for input kMostIdlePolls times, or lets kMostIdleMilliseconds go by, after the last step, then a line on
/// standard error tells what it waits for, and the program is aborted.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "win32/display.h"

class HeadlessDisplay : public Display {
public:
    static constexpr int kPollsPerStep = 8;
    static constexpr int kMostIdlePolls = 100000;
    static constexpr uint32_t kMostIdleMilliseconds = 600000;
    static constexpr int64_t kStartDate = 1715938200000; ///< 2024-05-17 09:30:00 UTC, in milliseconds

    /// Opens the desktop; the end of the display closes it.
    HeadlessDisplay(int width, int height);
    ~HeadlessDisplay() override;
    HeadlessDisplay(const HeadlessDisplay&) = delete;
    HeadlessDisplay& operator=(const HeadlessDisplay&) = delete;

    // Steps are queued and come in their order.  Places are of the screen.  A call may queue several steps.
    HeadlessDisplay& Move(int x, int y);
    HeadlessDisplay& Press(int button = VK_LBUTTON);
    HeadlessDisplay& Release(int button = VK_LBUTTON);
    HeadlessDisplay& Click(int x, int y, int button = VK_LBUTTON);
    HeadlessDisplay& DoubleClick(int x, int y);
    /// Presses at the first place, goes to the second in steps of equal length, and lets go there.
    HeadlessDisplay& Drag(POINT from, POINT to, int steps);
    HeadlessDisplay& Wheel(int steps); ///< positive: away from the user
    HeadlessDisplay& KeyDown(int virtualKey);
    HeadlessDisplay& KeyUp(int virtualKey);
    HeadlessDisplay& Key(int virtualKey);                   ///< down and up
    HeadlessDisplay& KeyWith(int modifier, int virtualKey); ///< while the modifier is down
    HeadlessDisplay& Type(std::u8string_view text);         ///< what cp932 doesn't have is an error
    HeadlessDisplay& TypeBytes(std::string_view cp932);
    HeadlessDisplay& Pause(uint32_t milliseconds);
    HeadlessDisplay& Do(std::function<void()> action);
    HeadlessDisplay& Picture(const std::string& path); ///< SavePng at that moment

    size_t StepsLeft() const { return steps_.size(); }
    void ForgetSteps() { steps_.clear(); }

    /// The frame buffer as it is now, with the pointer on it, as a PNG file at a path of the machine.
    bool SavePng(const std::string& path) const;
    /// 0x00RRGGBB; the place must be on the screen.
    uint32_t Pixel(int x, int y) const;
    HCURSOR Cursor() const { return cursor_; }

    uint64_t Milliseconds() override { return now_; }
    int64_t UnixMilliseconds() override;
    void Poll() override;
    void Wait(uint32_t milliseconds) override;
    void Sleep(uint32_t milliseconds) override;
    void Present(const RECT& /*changed*/) override {}
    void ShowCursor(HCURSOR cursor) override { cursor_ = cursor; }
    void MovePointer(int /*x*/, int /*y*/) override {}

private:
    struct Step {
        std::string name; // for the message when the script comes to its end
        std::function<void()> action;
        uint32_t pause; // milliseconds that are still to go
    };

    HeadlessDisplay& Add(std::string name, std::function<void()> action);
    void TakeStep();
    bool IsPausing() const { return !steps_.empty() && steps_.front().pause > 0; }
    void GoOnPausing(uint32_t milliseconds);
    void PassIdleTime(uint32_t milliseconds);
    void NoteProgress();
    [[noreturn]] void End(const char* reason) const;

    static constexpr uint64_t kStart = 3600000; // no program's zero is a moment ago
    uint64_t now_ = kStart;
    std::deque<Step> steps_;
    std::string lastStep_ = "none";
    int pollsSinceStep_ = 0;
    int idlePolls_ = 0;
    uint32_t idleMilliseconds_ = 0;
    HCURSOR cursor_ = nullptr;
};
