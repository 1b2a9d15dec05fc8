#include "tests/support/test_desktop.h"

#include <gtest/gtest.h>

#include "tests/support/posix/headless_desktop.h"

TestDesktop::TestDesktop(SIZE size) : state_(std::make_unique<TestDesktopState>(size)) {}

TestDesktop::~TestDesktop() {
    const ObjectCounts before = state_->before, after = CountObjects();
    EXPECT_EQ(after.windows, before.windows) << "windows are left";
    EXPECT_EQ(after.timers, before.timers) << "timers are left";
    EXPECT_EQ(after.contexts, before.contexts) << "contexts are left";
    EXPECT_EQ(after.brushes, before.brushes) << "brushes are left";
    EXPECT_EQ(after.pens, before.pens) << "pens are left";
    EXPECT_EQ(after.fonts, before.fonts) << "fonts are left";
    EXPECT_EQ(after.bitmaps, before.bitmaps) << "bitmaps are left";
}
