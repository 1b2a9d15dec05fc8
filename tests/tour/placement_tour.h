/// A document's window beside the panel: registering what is on the page, and dragging it back.
#pragma once

#include <memory>
#include <string>

#include "plugin/placement/action_names.h"
#include "tests/tour/tour.h"
#include "workbench/frame/document_window.h"

class PlacementTour : public Tour {
public:
    void SetUp() override;
    void TearDown() override;

    /// With the panel and the ticks, so that the plug-in knows the view.
    void Begin();
    /// A fresh page that can undo, shown whole; its ticks have come.
    void TakeFreshPage();
    void SnapToNothing(); ///< none of the four ways

    workbench::Art& AddSquare(double left, double bottom, double side);
    POINT PixelOfArt(HostPoint point); ///< on the screen

    /// Presses a row and drags it over the page; the button stays down.
    PanelHands& DragRowTo(int row, HostPoint point);
    PanelHands& MoveTo(HostPoint point);
    void Drop();

    size_t ArtOnPage();
    HostRect BoundsOfTop();

    /// Registers all of the page under a name and clears the page.
    void RegisterPageAs(const std::string& name);

    workbench::DocumentWindow& page() { return *page_; }

private:
    workbench::CanvasPictures pictures_;
    std::unique_ptr<workbench::DocumentWindow> page_;
};

void ExpectRect(const HostRect& rect, double left, double top, double right, double bottom,
                double within = 1e-3);
