/// Many processes at work on one database, some of them killed at random moments.
#pragma once

#include <cstdint>
#include <string>

/// Runs `workers` processes with `operations` operations each on the database in `root`, or on one of its own
/// if that is empty; 1 if a record that was acknowledged is not
/// there exactly once, else 0.
int RunProcesses(int workers, uint64_t operations, uint64_t seed, const std::string& root);
