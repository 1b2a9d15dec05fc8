/// The edges of the plug-in: where the host or the system calls it.
///
/// No exception may go through their frames, or the host would end with the designer's documents open.  The
/// only ones that come so far are those of memory that ran out; what was under way has been unwound then.
#pragma once

#include <windows.h>

/// Runs `call` and gives its answer, or `failed` if an exception ended it.
template <typename Answer, typename Call>
Answer AtEntry(Answer failed, Call call) {
    try {
        return call();
    } catch (...) {
        return failed;
    }
}

template <typename Call>
void AtEntry(Call call) {
    AtEntry(false, [&] {
        call();
        return true;
    });
}

/// `procedure` as a dialog's: a message that an exception ended is one not taken.
template <DLGPROC procedure>
INT_PTR CALLBACK DialogEntry(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return AtEntry<INT_PTR>(FALSE, [=] { return procedure(dialog, message, wParam, lParam); });
}

/// Brings a mark of `Globals` back to 0 at the end of what it stands for, however that ends.
template <typename Field>
class ClearedAtEnd {
public:
    explicit ClearedAtEnd(Field& field) : field_(field) {}
    ~ClearedAtEnd() { field_ = 0; }
    ClearedAtEnd(const ClearedAtEnd&) = delete;
    ClearedAtEnd& operator=(const ClearedAtEnd&) = delete;

private:
    Field& field_;
};
