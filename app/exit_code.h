/// How a command ended.
#pragma once

enum ExitCode : int {
    kDone = 0,
    kRefusedOrDiffers = 1, ///< something was refused, or a comparison found a difference
    kUsage = 2,
    kFileTrouble = 3, ///< a file or folder can't be read or written
};
