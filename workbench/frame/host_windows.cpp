#include "workbench/frame/host_windows.h"

#include <algorithm>

#include "workbench/frame/alert_window.h"
#include "workbench/frame/frame_looks.h"

namespace workbench {

namespace {

constexpr char kWorkbenchClass[] = "Workbench";
constexpr UINT kTicksPerSecond = 60;

HostWindows* current = nullptr;

} // namespace

HostWindows::HostWindows(Host& host, PluginModule& plugin, SIZE size) : host_(host), plugin_(plugin) {
    RegisterFrameClass(kWorkbenchClass, Procedure);
    CreateWindowExA(0, kWorkbenchClass, "Workbench", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, size.cx,
                    size.cy, nullptr, nullptr, nullptr, this);
    current = this;
    host_.SetFrame(this);
}

HostWindows::~HostWindows() {
    StopTimers();
    host_.SetFrame(nullptr);
    frames_.clear();
    if (window_) DestroyWindow(window_);
    DropFrameFont();
    current = nullptr;
}

PanelFrame* HostWindows::FrameOf(const HostPanel& panel) {
    const auto found =
        std::ranges::find_if(frames_, [&](const auto& each) { return &each->panel() == &panel; });
    return found == frames_.end() ? nullptr : found->get();
}

void HostWindows::StartTimers() {
    StopTimers();
    for (const auto& timer : host_.timers()) {
        const UINT milliseconds = static_cast<UINT>(timer->periodTicks) * 1000 / kTicksPerSecond;
        if (const UINT_PTR id = SetTimer(nullptr, 0, milliseconds, Tick))
            timers_.emplace_back(id, timer->handle);
    }
}

void HostWindows::StopTimers() {
    for (const auto& [id, timer] : timers_) KillTimer(nullptr, id);
    timers_.clear();
}

void HostWindows::Tick(HWND, UINT, UINT_PTR id, DWORD) {
    if (!current) return;
    const auto found = std::ranges::find(current->timers_, id, &std::pair<UINT_PTR, TimerHandle>::first);
    if (found != current->timers_.end()) current->plugin_.Tick(found->second);
}

void HostWindows::RunWaiting() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) quit_ = true;
        Dispatch(message);
    }
}

void HostWindows::Dispatch(const MSG& message) {
    const bool key = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    if (key && takeKey && takeKey(message)) return;
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

void HostWindows::Run() {
    quit_ = false;
    MSG message;
    while (!quit_ && GetMessageA(&message, nullptr, 0, 0) > 0) Dispatch(message);
}

void HostWindows::Quit() {
    quit_ = true;
    PostMessageA(window_, WM_NULL, 0, 0);
}

bool HostWindows::MakePanelWindow(HostPanel& panel) {
    RECT client{};
    GetClientRect(window_, &client);
    const int left = std::max(0, static_cast<int>(client.right) - static_cast<int>(panel.size.width) - 24);
    auto frame = std::make_unique<PanelFrame>(host_, panel, window_, POINT{left, kBarHeight + 12});
    if (!frame->window() || !frame->body()) return false;
    frame->enabled = [this](bool enable) { EnableAll(enable); };
    panel.window = frame.get();
    frames_.push_back(std::move(frame));
    return true;
}

void* HostWindows::PlatformWindow(const HostPanel& panel) {
    PanelFrame* frame = FrameOf(panel);
    return frame ? frame->body() : nullptr;
}

void HostWindows::DestroyPanelWindow(HostPanel& panel) {
    panel.window = nullptr;
    std::erase_if(frames_, [&](const auto& each) { return &each->panel() == &panel; });
}

void HostWindows::ShowPanelWindow(HostPanel& panel) {
    if (PanelFrame* frame = FrameOf(panel)) frame->Show(panel.shown);
}

HostSize HostWindows::PanelSize(const HostPanel& panel) {
    PanelFrame* frame = FrameOf(panel);
    return frame ? frame->BodySize() : panel.size;
}

void HostWindows::ShowAlert(const std::string& text, bool error) {
    if (showAlerts) RunAlert(window_, text, error ? AlertKind::kError : AlertKind::kMessage);
}

bool HostWindows::AskYesNo(const std::string& question) {
    return showAlerts && RunAlert(window_, question, AlertKind::kYesNo) == kAlertYes;
}

int HostWindows::AskToSave(const std::string& question) {
    return showAlerts ? RunAlert(window_, question, AlertKind::kSaveChanges) : kAlertCancel;
}

void HostWindows::RaisePanels() {
    for (const auto& frame : frames_) {
        SetWindowPos(frame->window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

void HostWindows::EnableAll(bool enable) {
    if (enabling_) return;
    enabling_ = true; // the windows tell of their own changes too
    if (window_) EnableWindow(window_, enable);
    for (const auto& frame : frames_) EnableWindow(frame->window(), enable);
    if (enableMore) enableMore(enable);
    enabling_ = false;
}

void HostWindows::DocumentChanged() {
    if (documentChanged) documentChanged();
}

void HostWindows::MenusChanged() {
    if (menusChanged) menusChanged();
}

LRESULT HostWindows::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    if (handleMore && handleMore(message, wParam, lParam)) return 0;
    switch (message) {
        case WM_PAINT: {
            PAINTSTRUCT paint;
            const HDC context = BeginPaint(window_, &paint);
            RECT client;
            GetClientRect(window_, &client);
            FillColor(context, client, ColorsOf(host_.theme()).strip);
            if (paintMore) paintMore(context, client);
            EndPaint(window_, &paint);
            return 0;
        }
        case WM_ENABLE:
            EnableAll(wParam != 0);
            return 0;
        case WM_DISPLAYCHANGE:
            SetWindowPos(window_, nullptr, 0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                         SWP_NOZORDER | SWP_NOACTIVATE);
            InvalidateRect(window_, nullptr, FALSE);
            if (screenChanged) screenChanged();
            return 0;
        case WM_CLOSE:
            Quit();
            return 0;
        case WM_DESTROY:
            SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcA(window_, message, wParam, lParam);
    }
}

LRESULT CALLBACK HostWindows::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    HostWindows* windows = ObjectOf<HostWindows>(window, message, lParam);
    if (!windows) return DefWindowProcA(window, message, wParam, lParam);
    windows->window_ = window;
    return windows->Handle(message, wParam, lParam);
}

} // namespace workbench
