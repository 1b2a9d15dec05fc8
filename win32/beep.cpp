#include "win32/beep.h"

#include <windows.h>

#include <atomic>

namespace {
std::atomic<unsigned> beeps = 0;
}

unsigned BeepCount() {
    return beeps;
}

BOOL MessageBeep(UINT /*type*/) {
    ++beeps;
    return TRUE;
}
