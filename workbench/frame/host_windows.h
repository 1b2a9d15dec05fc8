/// The host's windows over the platform's calls: the application window, panels in their frames, alerts, and
/// the ticks of the plug-in's timers.  Runs wherever <windows.h> does.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "workbench/frame/panel_frame.h"
#include "workbench/module/plugin_module.h"
#include "workbench/suites/host.h"

namespace workbench {

/// The current host's frame.  The host and the plug-in must live longer; panels that are left at its end are
/// destroyed.
class HostWindows : public WindowFrame {
public:
    /// Makes the application window, as large as the screen, without a display of at least that size.
    HostWindows(Host& host, PluginModule& plugin, SIZE size);
    ~HostWindows() override;
    HostWindows(const HostWindows&) = delete;
    HostWindows& operator=(const HostWindows&) = delete;

    HWND window() const { return window_; }
    PanelFrame* FrameOf(const HostPanel& panel);

    /// Ticks of the timers that the plug-in has added, from now on: as messages, so also from within the
    /// loops of dialogs.
    void StartTimers();
    void StopTimers();

    /// Takes messages until nothing is waiting, or for ever (until Quit).
    void RunWaiting();
    void Run();
    void Quit();

    /// Puts the panels above the other windows of the host.
    void RaisePanels();

    /// A part of the host draws and listens in the application window: the menu bar.
    std::function<void(HDC context, const RECT& client)> paintMore;
    std::function<bool(UINT message, WPARAM wParam, LPARAM lParam)> handleMore; ///< true: done
    std::function<void()> menusChanged, documentChanged, screenChanged;
    /// Sees keys of these loops before their windows do; true: done.  Loops of dialogs and menus have their
    /// own keys.
    std::function<bool(const MSG& message)> takeKey;
    /// A dialog stands over the application window or a panel, or does so no longer.  The host's windows take
    /// no hands meanwhile; those of other parts follow by this.
    std::function<void(bool enable)> enableMore;

    void* ApplicationWindow() override { return window_; }
    bool MakePanelWindow(HostPanel& panel) override;
    void* PlatformWindow(const HostPanel& panel) override;
    void DestroyPanelWindow(HostPanel& panel) override;
    void ShowPanelWindow(HostPanel& panel) override;
    HostSize PanelSize(const HostPanel& panel) override;
    void ShowAlert(const std::string& text, bool error) override;
    bool AskYesNo(const std::string& question) override;
    /// kAlertYes: to be saved, kAlertNo: to be lost, kAlertCancel: neither.
    int AskToSave(const std::string& question);
    void MenusChanged() override;
    void DocumentChanged() override;

    bool showAlerts = true; ///< else alerts are only noted and questions get the answer of Escape

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Dispatch(const MSG& message);
    void EnableAll(bool enable);

    Host& host_;
    PluginModule& plugin_;
    HWND window_ = nullptr;
    bool quit_ = false, enabling_ = false;
    std::vector<std::unique_ptr<PanelFrame>> frames_;
    std::vector<std::pair<UINT_PTR, TimerHandle>> timers_;
};

} // namespace workbench
