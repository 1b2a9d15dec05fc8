/// The menu bar of the application window.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "workbench/frame/popup_menu.h"

namespace workbench {

/// Drawn into the window of its owner, who hands it the window's messages.  Alt with a title's first letter
/// opens that menu, as a press on it does.
class MenuBar {
public:
    explicit MenuBar(std::vector<std::string> titles) : titles_(std::move(titles)) {}

    std::function<std::vector<PopupItem>(size_t menu)> items; ///< asked each time a menu opens
    std::function<void(int number)> picked;

    void Paint(HDC context, const RECT& client, const Theme& theme) const;
    bool Press(HWND window, POINT point, const Theme& theme); ///< true: it was on the bar
    bool TakeKey(HWND window, int virtualKey, const Theme& theme);
    RECT TitleRect(size_t menu) const; ///< in the window's client coordinates
    void Open(HWND window, size_t menu, const Theme& theme);

private:
    static constexpr size_t kNone = static_cast<size_t>(-1);
    size_t TitleAt(POINT point) const;

    std::vector<std::string> titles_;
    size_t open_ = kNone;
};

} // namespace workbench
