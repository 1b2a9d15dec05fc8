#include <gtest/gtest.h>
#include <shlobj.h>
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "dialog_script.h"
#include "script_places.h"
#include "store_folder.h"
#include "win32/controls/dialog.h"
#include "win32/controls/folder_dialog.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"
#include "win32/shell_folder.h"

namespace {

INT_PTR RunTemplate(const std::vector<uint8_t>& bytes, HWND owner, DLGPROC procedure, LPARAM parameter) {
    DialogTemplate dialog;
    if (!ReadDialogTemplate(bytes.data(), bytes.size(), dialog)) return -1;
    return RunDialog(nullptr, dialog, owner, procedure, parameter);
}

TEST(DialogTest, KeysLeadWhereTheyLeadInARealDialog) {
    const HeadlessDisplay display(640, 480);
    const ObjectCounts before = CountObjects();
    EXPECT_EQ(DialogScript({kScriptPlace, RunTemplate}), ExpectedLog("dialog"));
    EXPECT_TRUE(CountObjects() == before);
}

INT_PTR CALLBACK NestingProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        (*reinterpret_cast<const std::function<void(HWND)>*>(lParam))(dialog);
        return TRUE;
    }
    if (message == WM_COMMAND && LOWORD(wParam) == IDOK) EndDialog(dialog, 9);
    return message == WM_COMMAND;
}

HWND NewOwner() {
    return CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                           nullptr);
}

TEST(DialogTest, ADialogGoesWithItsOwner) {
    HeadlessDisplay display(640, 480);
    const ObjectCounts before = CountObjects();
    const HWND owner = NewOwner();
    std::function<void(HWND)> nothing = [](HWND) {};
    std::function<void(HWND)> nest = [&](HWND outer) {
        EXPECT_EQ(RunTemplate(ScriptDialogTemplate(), outer, NestingProc, reinterpret_cast<LPARAM>(&nothing)),
                  0);
        EXPECT_FALSE(IsWindow(outer));
    };
    display.Do([owner] { DestroyWindow(owner); });
    EXPECT_EQ(RunTemplate(ScriptDialogTemplate(), owner, NestingProc, reinterpret_cast<LPARAM>(&nest)), 0);
    EXPECT_EQ(RunTemplate(ScriptDialogTemplate(), owner, NestingProc, 0), 0);
    EXPECT_TRUE(CountObjects() == before);
}

// ---- Picking a folder -----------------------------------------------------------------------------------

class FolderDialogTest : public StoreFolderTest {
protected:
    FolderDialogTest() {
        for (const char* name : {"\\b", "\\a", "\\a\\inner"})
            CreateDirectoryA((root_ + name).c_str(), nullptr);
        information_.lpszTitle = "Title";
        information_.pszDisplayName = name_;
        information_.ulFlags = BIF_RETURNONLYFSDIRS;
        information_.lpfn = [](HWND window, UINT message, LPARAM, LPARAM data) {
            if (message == BFFM_INITIALIZED) SendMessageA(window, BFFM_SETSELECTIONA, TRUE, data);
            return 0;
        };
        information_.lParam = reinterpret_cast<LPARAM>(root_.c_str());
    }

    // The path that was picked; empty for none.
    std::string Pick() {
        const LPITEMIDLIST list = SHBrowseForFolderA(&information_);
        char path[MAX_PATH] = {};
        if (list != nullptr) SHGetPathFromIDListA(list, path);
        CoTaskMemFree(list);
        return path;
    }
    static std::string ShownPath() {
        char path[MAX_PATH] = {};
        GetDlgItemTextA(GetForegroundWindow(), kFolderDialogPath, path, sizeof path);
        return path;
    }

    HeadlessDisplay display_{640, 480};
    std::string root_ = folder_.storePath();
    char name_[MAX_PATH] = {};
    BROWSEINFOA information_ = {};
};

TEST_F(FolderDialogTest, WalksInAndOutByKeys) {
    std::vector<std::string> shown;
    const auto note = [&shown] { shown.push_back(ShownPath()); };
    display_.Do(note).Key(VK_DOWN).Key(VK_DOWN).Do(note); // "..", then a
    display_.Key(VK_RIGHT).Key(VK_DOWN).Key(VK_DOWN).Do(note).Key(VK_LEFT).Key(VK_DOWN).Do(note).Key(
        VK_RETURN);
    EXPECT_EQ(Pick(), root_ + "\\b");
    EXPECT_STREQ(name_, "b");
    EXPECT_EQ(shown, (std::vector<std::string>{root_, root_ + "\\a", root_ + "\\a\\inner", root_ + "\\b"}));
}

} // namespace
