/// A question that tests put in front of GlobalAlloc and GlobalReAlloc.
#pragma once

/// Asked before each block is made or resized; true refuses it for lack of memory.  Null, and so no cost,
/// outside tests.
extern bool (*refusesBlock)();
