/// The calling thread's error code, filled from POSIX's errno.
#pragma once

/// Windows' code for an errno value; ERROR_GEN_FAILURE for one that has no counterpart.
unsigned ErrorCodeOfErrno(int error);

/// Sets the code for errno after a call on `diskPath` failed.  Windows tells a missing file from a missing
/// folder, so a missing file's folder is looked for.  Throws nothing.
void SetErrorOfPath(int error, const char* diskPath);

/// Refuses what a call here does not offer: a line on standard error, and ERROR_NOT_SUPPORTED.
void RefuseLoudly(const char* what);

void SetErrorOfMemory();

/// What a call gives when texts found no memory: as on Windows it fails, and nothing is thrown through it.
template <typename Result>
Result FailForMemory(Result failed) {
    SetErrorOfMemory();
    return failed;
}
