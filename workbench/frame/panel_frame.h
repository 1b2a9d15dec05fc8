/// The frame of a panel: title, flyout button, size grip, and inside them the window that the plug-in gets.
#pragma once

#include <windows.h>

#include <functional>

#include "workbench/suites/host.h"

namespace workbench {

constexpr int kFlyoutButtonWidth = 26;

class PanelFrame {
public:
    /// A hidden window over `owner`, with room for `panel.size` inside.  `window()` is null if that failed.
    PanelFrame(Host& host, HostPanel& panel, HWND owner, POINT at);
    ~PanelFrame();
    PanelFrame(const PanelFrame&) = delete;
    PanelFrame& operator=(const PanelFrame&) = delete;

    HostPanel& panel() { return panel_; }
    HWND window() const { return window_; }
    HWND body() const; ///< the plug-in's window; null once it was destroyed
    void Show(bool show);
    HostSize BodySize() const;

    /// Makes the body this large, at least the panel's minimum, and tells the plug-in.
    void Resize(HostSize body);

    RECT FlyoutButton() const; ///< in the frame's client coordinates
    void OpenFlyout();         ///< until the user picks, and hands the pick to the plug-in

    std::function<void(bool enable)> enabled; ///< a dialog over the panel came or went

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Paint();
    void Press(POINT point);
    void Drag(POINT screen);

    enum class Grip { kNone, kMove, kSize };

    Host& host_;
    HostPanel& panel_;
    HWND window_ = nullptr, body_ = nullptr;
    Grip grip_ = Grip::kNone;
    POINT gripPoint_{};
    RECT gripRect_{};
};

} // namespace workbench
