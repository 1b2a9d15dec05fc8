/// A small window that shows how far long work is.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace workbench {

/// Appears only when the work has taken a third of a second, and goes with this object.  The program takes no
/// messages meanwhile: the window paints itself at once.
class ProgressWindow {
public:
    ProgressWindow(HWND over, std::string text);
    ~ProgressWindow();
    ProgressWindow(const ProgressWindow&) = delete;
    ProgressWindow& operator=(const ProgressWindow&) = delete;

    void Show(size_t done, size_t of);

    /// For work that can't tell how far it is: the text alone, at once.
    void ShowNow();

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Paint();
    void Make();

    HWND over_, window_ = nullptr;
    std::string text_;
    DWORD begun_, shownAt_ = 0;
    size_t done_ = 0, of_ = 0;
};

} // namespace workbench
