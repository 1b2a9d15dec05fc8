#include "tests/support/test_desktop.h"

struct TestDesktopState {};

TestDesktop::TestDesktop(SIZE) {}
TestDesktop::~TestDesktop() = default;
