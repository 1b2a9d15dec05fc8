/// The state of the hands as they are now.
#pragma once

#include <windows.h>

struct HandState {
    POINT pointer;
    bool down[256];
    bool pressedSinceAsked[256];
    bool polled; ///< a key was asked for since the last input was taken
};
HandState& Hands();
