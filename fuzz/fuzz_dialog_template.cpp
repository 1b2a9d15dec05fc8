// Dialog templates of any bytes: refused, or read with every size within them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "win32/controls/dialog_template.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    DialogTemplate dialog;
    if (!ReadDialogTemplate(bytes, count, dialog)) return 0;
    // An item takes 18 bytes at the least, so that damaged counts can't ask for memory.
    if (dialog.items.size() > count / 18) std::abort();
    for (const DialogItem& item : dialog.items)
        if (item.className.empty() || item.width < 0 || item.height < 0) std::abort();
    return 0;
}
