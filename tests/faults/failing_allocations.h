/// Lets chosen allocations of this program find no memory: those of C++ and those of GlobalAlloc and
/// GlobalReAlloc, counted together from 1.
#pragma once

/// From now on allocations are counted, and those from `first` to `last` fail.
void FailAllocations(unsigned first, unsigned last);

/// All succeed again; returns how many were counted.
unsigned StopFailingAllocations();
