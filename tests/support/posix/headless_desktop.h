/// The display behind a TestDesktop, for tests that move hands or look at pixels.
#pragma once

#include "tests/support/test_desktop.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"

struct TestDesktopState {
    explicit TestDesktopState(SIZE size) : display(size.cx, size.cy) {}

    ObjectCounts before = CountObjects();
    HeadlessDisplay display;
};

inline HeadlessDisplay& DisplayOf(TestDesktop& desktop) {
    return desktop.state()->display;
}
