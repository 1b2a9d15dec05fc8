#include "tests/support/test_desktop.h"

TestDesktop::TestDesktop(SIZE) {}
TestDesktop::~TestDesktop() = default;
