/// What became of MessageBeep: a stand-in host without a speaker counts.
#pragma once

/// Calls of MessageBeep since the program began.
unsigned BeepCount();
