#include "tests/support/dialog_answers.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

constexpr UINT kAskedEvery = 10; // milliseconds
constexpr int kFarFromShort = 2000;

std::deque<std::function<void(HWND)>> answers;
UINT_PTR timer = 0;

bool IsDialog(HWND window) {
    char name[16] = "";
    GetClassNameA(window, name, sizeof name);
    return std::string(name) == "#32770";
}

void CALLBACK LookForDialog(HWND, UINT, UINT_PTR, DWORD) {
    const HWND dialog = GetActiveWindow();
    if (dialog == nullptr || !IsDialog(dialog) || !IsWindowVisible(dialog)) return;
    if (answers.empty()) {
        ADD_FAILURE() << "nobody answers the dialog " << TextOf(dialog);
        EndDialog(dialog, IDCANCEL);
        return;
    }
    const auto answer = answers.front();
    answers.pop_front();
    answer(dialog);
    if (!IsWindow(dialog) || !IsWindowVisible(dialog)) return;
    ADD_FAILURE() << "the dialog stands after its answer";
    EndDialog(dialog, IDCANCEL);
}

void Notify(HWND dialog, int control, int code) {
    SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(control | code << 16),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

} // namespace

DialogAnswers::DialogAnswers() {
    answers.clear();
    timer = SetTimer(nullptr, 0, kAskedEvery, LookForDialog);
    EXPECT_NE(timer, 0u);
}

DialogAnswers::~DialogAnswers() {
    KillTimer(nullptr, timer);
    EXPECT_TRUE(answers.empty()) << answers.size() << " dialogs did not come";
    answers.clear();
}

void DialogAnswers::Next(std::function<void(HWND)> answer) {
    answers.push_back(std::move(answer));
}

std::string TextOf(HWND window) {
    std::string text(kFarFromShort, '\0');
    text.resize(static_cast<size_t>(GetWindowTextA(window, text.data(), kFarFromShort)));
    return text;
}

std::string TextOf(HWND dialog, int control) {
    return TextOf(GetDlgItem(dialog, control));
}

std::vector<std::string> EntriesOf(HWND dialog, int list) {
    std::vector<std::string> entries;
    const LRESULT count = SendDlgItemMessageA(dialog, list, CB_GETCOUNT, 0, 0);
    for (LRESULT entry = 0; entry < count; ++entry) {
        char text[kFarFromShort] = "";
        SendDlgItemMessageA(dialog, list, CB_GETLBTEXT, static_cast<WPARAM>(entry),
                            reinterpret_cast<LPARAM>(text));
        entries.emplace_back(text);
    }
    return entries;
}

void Type(HWND dialog, int edit, const std::string& text) {
    SetDlgItemTextA(dialog, edit, text.c_str());
}

void Press(HWND dialog, int button) {
    Notify(dialog, button, BN_CLICKED);
}

void Check(HWND dialog, int box, bool on) {
    CheckDlgButton(dialog, box, on ? BST_CHECKED : BST_UNCHECKED);
    Notify(dialog, box, BN_CLICKED);
}

void Choose(HWND dialog, int list, const std::string& entry) {
    const std::vector<std::string> entries = EntriesOf(dialog, list);
    for (size_t at = 0; at < entries.size(); ++at) {
        if (entries[at] != entry) continue;
        SendDlgItemMessageA(dialog, list, CB_SETCURSEL, at, 0);
        Notify(dialog, list, CBN_SELCHANGE);
        return;
    }
    ADD_FAILURE() << entry << " is not in the list";
}
