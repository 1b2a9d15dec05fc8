/// Deleting the record that a row shows.
#pragma once

#include <windows.h>

#include <cstdint>

/// Asks, and deletes the record with its data; the list follows.  The number that the list knows is a place
/// in the group's file, where another machine may have put another record in the meantime: a record whose
/// header isn't what the list shows is left alone, with a message and a list that is built anew.  Needs the
/// host's suites.
void AskAndDeleteRecord(HWND panel, int32_t row);
