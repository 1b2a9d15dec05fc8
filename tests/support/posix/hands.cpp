#include "tests/support/hands.h"

#include <gtest/gtest.h>

#include "tests/support/posix/headless_desktop.h"

namespace {

constexpr uint32_t kLongEnough = 200; ///< milliseconds: some rounds of any loop that looks at the hands

} // namespace

struct HandsState {
    HeadlessDisplay& display;
};

Hands::Hands(TestDesktop& desktop, workbench::HostWindows& windows)
    : windows_(windows), state_(new HandsState{DisplayOf(desktop)}) {}

Hands::~Hands() = default;

void Hands::MoveTo(std::function<POINT()> place) {
    state_->display.Do([place = std::move(place)] {
        const POINT at = place();
        InputPointer(at.x, at.y);
    });
}

void Hands::Press() {
    state_->display.Press();
}

void Hands::Release() {
    state_->display.Release();
}

void Hands::KeyDown(int virtualKey) {
    state_->display.KeyDown(virtualKey);
}

void Hands::KeyUp(int virtualKey) {
    state_->display.KeyUp(virtualKey);
}

void Hands::Type(const std::string& cp932) {
    state_->display.TypeBytes(cp932);
}

void Hands::Do(std::function<void()> action) {
    state_->display.Do(std::move(action));
}

void Hands::Until(const char* what, std::function<bool()> reached) {
    state_->display.Pause(kLongEnough).Do([what, reached = std::move(reached)] {
        EXPECT_TRUE(reached()) << what << " is never so";
    });
}

void Hands::MoveUntil(std::function<POINT()> place, const char* what, std::function<bool()> reached) {
    MoveTo(std::move(place));
    Until(what, std::move(reached));
}

void Hands::Pause(unsigned milliseconds) {
    state_->display.Pause(milliseconds);
}

void Hands::Play() {
    Do([this] { windows_.Quit(); });
    windows_.Run();
    ASSERT_EQ(state_->display.StepsLeft(), 0u);
    // What hands have invalidated is painted, as it would be in the next moment.
    windows_.RunWaiting();
}
