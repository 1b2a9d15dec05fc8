#include "win32/controls/clipboard.h"

std::string& Clipboard() {
    static std::string text;
    return text;
}
