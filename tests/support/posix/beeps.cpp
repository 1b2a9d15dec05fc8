#include "tests/support/beeps.h"

#include "win32/beep.h"

std::optional<unsigned> BeepsSoFar() {
    return BeepCount();
}
