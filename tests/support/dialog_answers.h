/// Hands that work modal dialogs from within their own message loop.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

/// Answers the dialogs that open while it lives, in their order.  A dialog that no answer waits for is closed
/// and fails the test, and so does an answer that no dialog came for.  One at a time.
class DialogAnswers {
public:
    DialogAnswers();
    ~DialogAnswers();
    DialogAnswers(const DialogAnswers&) = delete;
    DialogAnswers& operator=(const DialogAnswers&) = delete;

    /// `answer` must end the dialog.
    void Next(std::function<void(HWND dialog)> answer);
};

// What hands do and eyes see.  Texts are cp932.
std::string TextOf(HWND window);
std::string TextOf(HWND dialog, int control);
std::vector<std::string> EntriesOf(HWND dialog, int list);
void Type(HWND dialog, int edit, const std::string& text);
void Press(HWND dialog, int button);
void Check(HWND dialog, int box, bool on);
/// Picks a list's entry, which must be there.
void Choose(HWND dialog, int list, const std::string& entry);
