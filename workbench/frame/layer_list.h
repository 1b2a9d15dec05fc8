/// A tool window that lists the front document's layers, the topmost first: an eye for visible ones, a lock,
/// the title.  The current layer is marked.
#pragma once

#include <windows.h>

#include <functional>

#include "workbench/suites/host.h"

namespace workbench {

constexpr int kLayerRow = 22;
constexpr int kLayerEyeWidth = 26, kLayerLockWidth = 22; ///< the columns on the left

class LayerList {
public:
    LayerList(Host& host, HWND owner, const RECT& place);
    ~LayerList();
    LayerList(const LayerList&) = delete;
    LayerList& operator=(const LayerList&) = delete;

    HWND window() const { return window_; }
    bool shown() const { return IsWindowVisible(window_) != 0; }
    void Show(bool show);
    void Refresh(); ///< the layers may have changed

    /// A click on the eye or the lock wants a change of that layer: a step for the history.
    std::function<void(size_t layer, bool Layer::*flag)> flip;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Paint();
    void Press(POINT point);
    void ScrollTo(int firstRow);

    Host& host_;
    HWND window_ = nullptr;
    int firstRow_ = 0;
};

} // namespace workbench
