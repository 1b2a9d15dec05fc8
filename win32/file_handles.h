/// HFILE and HANDLE values of open files.
///
/// As on Windows a value is a small multiple of 4, and the same number as HFILE and as HANDLE.
#pragma once

#include <windows.h>

inline HFILE HandleOfDescriptor(int descriptor) {
    return (descriptor + 1) * 4;
}

/// -1 for what can't be the handle of a file.
inline int DescriptorOfHandle(intptr_t handle) {
    if (handle < 4 || handle % 4 != 0 || handle > INT32_MAX) return -1;
    return static_cast<int>(handle / 4 - 1);
}
