#include "tests/tour/placement_tour.h"

#include <cmath>

#include "workbench/document/undo_history.h"

using workbench::Art;
using workbench::Document;

namespace {

constexpr RECT kDocumentPlace{40, 60, 640, 660};

} // namespace

void PlacementTour::SetUp() {
    Tour::SetUp();
    pictures_.draw = [](const Document&, const workbench::View&, SIZE size, uint32_t* pixels, const auto&) {
        std::fill_n(pixels, size.cx * size.cy, 0xFFFFFFu);
    };
}

void PlacementTour::TearDown() {
    windows().StopTimers();
    page_.reset();
    Tour::TearDown();
}

void PlacementTour::Begin() {
    page_ =
        std::make_unique<workbench::DocumentWindow>(host(), windows().window(), kDocumentPlace, pictures_);
    page_->fileName = "page.svg";
    page_->ShowFront();
    BuildThePanel();
    frame().Resize({560, 480});
    windows().StartTimers();
    WaitTicks().Play();
    ASSERT_EQ(globals->docWindow, page_->canvas().window());
}

void PlacementTour::TakeFreshPage() {
    OpenEmptyDocument().KeepHistory();
    page_->ShowFront();
    WaitTicks().Play();
}

void PlacementTour::SnapToNothing() {
    globals->flUseGrid = globals->flUseFcur = globals->flUseFcrs = globals->flUseFops = 0;
}

Art& PlacementTour::AddSquare(double left, double bottom, double side) {
    Art& path = *document().AppendArt(kArtPath, document().LayerAt(0).root);
    auto& data = std::get<workbench::PathData>(path.data);
    for (const HostPoint corner : {HostPoint{left, bottom}, HostPoint{left + side, bottom},
                                   HostPoint{left + side, bottom + side}, HostPoint{left, bottom + side}})
        data.segments.push_back({corner, corner, corner, 1});
    data.closed = true;
    return path;
}

POINT PlacementTour::PixelOfArt(HostPoint point) {
    return PanelHands::PixelOfArt(document().view(), page_->canvas().window(), point);
}

PanelHands& PlacementTour::DragRowTo(int row, HostPoint point) {
    PointAt([this, row] { return RowPoint(kRecordList, row); });
    hands().Press();
    return MoveTo(point);
}

PanelHands& PlacementTour::MoveTo(HostPoint point) {
    // Twice: a drag begins with the first, the second is its first move.
    PointAt([this, point] {
        const POINT pixel = PixelOfArt(point);
        return POINT{pixel.x + 12, pixel.y};
    });
    return PointAt([this, point] { return PixelOfArt(point); });
}

void PlacementTour::Drop() {
    hands().Release();
    Play();
}

size_t PlacementTour::ArtOnPage() {
    return document().LayerAt(0).root->childCount;
}

HostRect PlacementTour::BoundsOfTop() {
    HostRect bounds{};
    const Art* top = document().LayerAt(0).root->firstChild;
    EXPECT_TRUE(top && document().Bounds(*top, &bounds));
    return bounds;
}

void PlacementTour::RegisterPageAs(const std::string& name) {
    document().SelectAll();
    ClickControl(kNewButton).SetText(7, name).PressButton(IDOK).Play();
    Art* root = document().LayerAt(0).root;
    while (root->firstChild) document().DisposeArt(root->firstChild);
}

void ExpectRect(const HostRect& rect, double left, double top, double right, double bottom, double within) {
    EXPECT_NEAR(rect.left, left, within);
    EXPECT_NEAR(rect.top, top, within);
    EXPECT_NEAR(rect.right, right, within);
    EXPECT_NEAR(rect.bottom, bottom, within);
}
