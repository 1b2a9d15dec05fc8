/// The window in which a document's page is seen: its picture, the frames of what is selected, and the hands
/// that scroll, zoom and select.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "workbench/frame/selecting.h"
#include "workbench/frame/view_geometry.h"
#include "workbench/suites/host.h"

namespace workbench {

/// What the canvas needs of whoever can draw.
struct CanvasPictures {
    /// Fills `size.cx` times `size.cy` pixels, 0x00RRGGBB, top row first, with what the view shows, and tells
    /// now and then how far it is.
    std::function<void(const Document&, const View&, SIZE size, uint32_t* pixels,
                       const std::function<void(size_t done, size_t of)>& progress)>
        draw;
    PaintsAt paintsAt;
};

/// A child window.  It shows the host's front document and writes its view: the bounds are always what the
/// canvas shows.
///
/// The wheel scrolls, with Control it zooms; Space and a drag move the page; a click selects the topmost art
/// that paints something within three pixels, a drag that begins on nothing what its band touches; with Shift
/// a click adds or takes away, a band adds.
class Canvas {
public:
    Canvas(Host& host, HWND parent, const CanvasPictures& pictures);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HWND window() const { return window_; }
    SIZE Size() const;

    void Move(const RECT& place); ///< in the parent; what was in the left top corner stays there
    void DocumentChanged();       ///< or its view: draws anew when it is painted next
    void SelectionChanged();

    // Each tells viewChanged.
    void ZoomTo(double zoom); ///< about the middle
    void ZoomAboutPixel(double zoom, POINT pixel);
    void ScrollBy(double dx, double dy);
    void ShowWholePage();

    std::function<void()> viewChanged, selectionChanged;

private:
    enum class Hand { kNone, kPan, kBand };

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void ViewChanged();
    void Paint();
    void DrawPicture(const Document& document);
    void PaintSelection(HDC context, Document& document);
    void Press(POINT point, bool shift);
    void Drag(POINT point);
    void Release(POINT point, bool shift);
    void Wheel(WPARAM wParam, LPARAM lParam);
    void InvertBand(); ///< shows it, or takes it away again
    void EndHand();

    Host& host_;
    const CanvasPictures& pictures_;
    HWND window_ = nullptr;
    std::vector<uint32_t> pixels_;
    SIZE pixelsSize_{};
    bool stale_ = true;
    Hand hand_ = Hand::kNone;
    POINT handStart_{}, handLast_{};
    bool bandShown_ = false;
};

} // namespace workbench
