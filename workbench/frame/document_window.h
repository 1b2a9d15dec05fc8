/// The document's window: its title, the canvas, two scroll bars, and a grip at its right lower corner.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "workbench/frame/canvas.h"

namespace workbench {

/// "drawing.svg @ 66.67%", with a star behind it for changes that aren't saved.  A document without a file
/// has its own title.
std::string DocumentTitle(const Document& document, const std::string& fileName);

/// A window over its owner, titled by DocumentTitle; without a front document it is hidden and has no title,
/// so that nobody takes it for a document's.
class DocumentWindow {
public:
    DocumentWindow(Host& host, HWND owner, const RECT& place, const CanvasPictures& pictures);
    ~DocumentWindow();
    DocumentWindow(const DocumentWindow&) = delete;
    DocumentWindow& operator=(const DocumentWindow&) = delete;

    HWND window() const { return window_; }
    Canvas& canvas() { return canvas_; }

    void ShowFront();  ///< another document, or none, is in front: the whole page
    void Refresh();    ///< the document's art may have changed
    void ShowTitle();  ///< its name, zoom or star may have changed
    RECT Grip() const; ///< in the window's client coordinates

    std::string fileName; ///< of the front document, without its folder; empty if it has none

    std::function<void()> closeAsked, raised;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static HWND Make(HWND owner, const RECT& place);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Layout();
    void ShowNumbers(); ///< the scroll bars'
    void ScrollTo(HWND bar, int code);
    void DragGrip(POINT point);
    void Paint();

    Host& host_;
    HWND window_ = nullptr;
    Canvas canvas_;
    HWND verticalBar_ = nullptr, horizontalBar_ = nullptr;
    bool gripHeld_ = false;
    POINT gripOffset_{}; ///< from the pointer to the window's right lower corner
    std::string title_;
};

} // namespace workbench
