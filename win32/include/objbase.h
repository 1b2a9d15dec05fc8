/// CoTaskMemFree stands in <windows.h>; this header is here because Windows has it.
#pragma once

#include <windows.h>
