/// The desktop in a window of the machine's own screen.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "win32/display.h"

struct ScreenOptions {
    std::string title;              ///< UTF-8
    int width = 1100, height = 760; ///< of the desktop, in its own pixels; cut to the screen's size
    /// Pixels of the screen for one of the desktop, on each side: 1, 2, ...; 0 takes 2 for dense screens.
    int scale = 0;
};

struct ScreenWindow; ///< the library's side

/// The desktop is open as long as this lives, and has the size of the window, which the user may change.
///
/// The pointer, its buttons and wheel, keys and typed letters become the desktop's input; letters that cp932
/// doesn't have are dropped.  All calls come from the thread that made it.
class ScreenDisplay : public Display {
public:
    /// Null, with the reason, if there is no screen or it can't be used.
    static std::unique_ptr<ScreenDisplay> Open(const ScreenOptions& options, std::string& error);
    ~ScreenDisplay() override;
    ScreenDisplay(const ScreenDisplay&) = delete;
    ScreenDisplay& operator=(const ScreenDisplay&) = delete;

    /// The user wants to close the window.  Called while input is handed on, so it must only take note.
    std::function<void()> closeWanted;

    uint64_t Milliseconds() override;
    void Poll() override;
    void Wait(uint32_t milliseconds) override;
    void Sleep(uint32_t milliseconds) override;
    void Present(const RECT& changed) override;
    void ShowCursor(HCURSOR cursor) override;
    void MovePointer(int x, int y) override;

private:
    explicit ScreenDisplay(std::unique_ptr<ScreenWindow> window);
    void PresentAll();
    void FollowSize();

    std::unique_ptr<ScreenWindow> window_;
};
