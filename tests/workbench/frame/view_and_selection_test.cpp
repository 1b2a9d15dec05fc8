// The arithmetic of the view, and what hands select, each against a second way that is simple and slow.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "workbench/frame/selecting.h"
#include "workbench/frame/view_geometry.h"
#include "workbench/render/view_picture.h"

using namespace workbench;

namespace {

// A plug-in works out from the view's bounds, its zoom and the window's size where a pixel lies on the page:
// whatever hands do to the view, they have to agree.
TEST(ViewGeometry, BoundsAreAlwaysWhatTheCanvasShows) {
    std::mt19937 dice(1);
    const auto roll = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(dice); };
    for (int round = 0; round < 200; ++round) {
        const HostRect page{roll(-900, 900) * 1.0, roll(1000, 3000) * 1.0, roll(901, 4000) * 1.0,
                            roll(-500, 900) * 1.0};
        const HostRect world = WorldOf(page);
        SIZE size{roll(1, 2000), roll(1, 2000)};
        View view;
        ShowPage(view, page, size);
        for (int step = 0; step < 30; ++step) {
            const POINT pixel{roll(0, size.cx), roll(0, size.cy)};
            const HostPoint before = ArtPointOf(view, pixel);
            switch (roll(0, 3)) {
                case 0: {
                    ZoomAbout(view, NextZoom(view.zoom, roll(0, 1) == 1), pixel, size);
                    const HostPoint after = ArtPointOf(view, pixel);
                    ASSERT_NEAR(after.x, before.x, 1e-6);
                    ASSERT_NEAR(after.y, before.y, 1e-6);
                    break;
                }
                case 1:
                    Scroll(view, world, roll(-500, 500), roll(-500, 500), size);
                    ASSERT_TRUE(
                        view.bounds.right - view.bounds.left > world.right - world.left ||
                        (view.bounds.left >= world.left - 1e-6 && view.bounds.right <= world.right + 1e-6));
                    ASSERT_TRUE(
                        view.bounds.top - view.bounds.bottom > world.top - world.bottom ||
                        (view.bounds.bottom >= world.bottom - 1e-6 && view.bounds.top <= world.top + 1e-6));
                    break;
                case 2:
                    size = {roll(1, 2000), roll(1, 2000)};
                    SetView(view, {view.bounds.left, view.bounds.top}, view.zoom, size);
                    break;
                default:
                    ShowPage(view, page, size);
                    break;
            }
            ASSERT_EQ(std::trunc(size.cx - (view.bounds.right - view.bounds.left) * view.zoom), 0);
            ASSERT_EQ(std::trunc(size.cy - (view.bounds.top - view.bounds.bottom) * view.zoom), 0);
            ASSERT_GE(view.zoom, kSmallestZoom);
            ASSERT_LE(view.zoom, kLargestZoom);
            // The middle of a pixel, since its left top corner may round either way.
            const HostPoint corner = ArtPointOf(view, pixel);
            const POINT back = PixelOf(view, {corner.x + 0.5 / view.zoom, corner.y - 0.5 / view.zoom});
            ASSERT_EQ(back.x, pixel.x);
            ASSERT_EQ(back.y, pixel.y);
        }
    }
}

TEST(ViewGeometry, ZoomsUpAndDownMeetAtOneHundredPercent) {
    std::vector<double> up, down;
    for (double zoom = 0.25; zoom < 4.1; zoom = NextZoom(zoom, true)) up.push_back(zoom);
    for (double zoom = 4; zoom > 0.24; zoom = NextZoom(zoom, false)) down.insert(down.begin(), zoom);
    const std::vector<double> expected{0.25, 1 / 3.0, 0.5, 2 / 3.0, 1, 1.5, 2, 3, 4};
    ASSERT_EQ(up.size(), expected.size());
    ASSERT_EQ(down.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_DOUBLE_EQ(up[i], expected[i]);
        EXPECT_DOUBLE_EQ(down[i], expected[i]);
    }
}

struct Box {
    Art* art = nullptr;
    int left = 0, bottom = 0, right = 0, top = 0;
    bool filled = false, selectable = false;
};

/// Layers of rectangles with whole numbers, some filled and some only outlined, some out of reach; the lowest
/// first.
std::vector<Box> FillWithBoxes(Document& document, std::mt19937& dice) {
    const auto roll = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(dice); };
    std::vector<Box> boxes;
    for (int layerNumber = 0; layerNumber < 3; ++layerNumber) {
        Layer& layer = layerNumber == 0 ? document.LayerAt(0) : document.InsertLayer(0, "more");
        layer.visible = roll(0, 5) != 0;
        layer.locked = roll(0, 5) == 0;
        for (int i = roll(0, 12); i > 0; --i) {
            Art* holder = roll(0, 3) == 0 ? document.PrependArt(kArtGroup, layer.root) : nullptr;
            Art* art = document.PrependArt(kArtPath, holder ? holder : layer.root);
            Box box;
            box.art = holder ? holder : art;
            box.left = roll(0, 180);
            box.bottom = roll(0, 180);
            box.right = box.left + roll(10, 80);
            box.top = box.bottom + roll(10, 80);
            box.filled = roll(0, 2) != 0;
            box.art->hidden = roll(0, 9) == 0;
            box.art->locked = roll(0, 9) == 0;
            box.selectable = layer.visible && !layer.locked && !box.art->hidden && !box.art->locked;
            PathData& path = *art->path();
            for (const auto& [x, y] : {std::pair(box.left, box.bottom), std::pair(box.right, box.bottom),
                                       std::pair(box.right, box.top), std::pair(box.left, box.top)}) {
                const HostPoint point{x * 1.0, y * 1.0};
                path.segments.push_back({.anchor = point, .in = point, .out = point, .corner = 1});
            }
            path.closed = true;
            path.style.fillPaint = box.filled ? 1 : 0;
            path.style.strokePaint = 1;
            path.style.lineWidth = 2;
            boxes.push_back(box);
        }
    }
    return boxes;
}

/// Whether a square of half a unit around the point touches what a box paints: its inside, or a line that
/// reaches one unit to both sides.
bool Paints(const Box& box, double x, double y) {
    constexpr double kReach = 0.5, kLine = 1;
    const auto holds = [&](double grow) {
        return x > box.left - grow && x < box.right + grow && y > box.bottom - grow && y < box.top + grow;
    };
    return holds(kLine + kReach) && (box.filled || !holds(-kLine - kReach));
}

TEST(Selecting, AClickFindsTheTopmostThatPaintsThereAndABandWhatItTouches) {
    int hits = 0, misses = 0;
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 dice(seed);
        Document document;
        const std::vector<Box> boxes = FillWithBoxes(document, dice);
        std::uniform_int_distribution<int> quarter(0, 1000);
        for (int i = 0; i < 100; ++i) {
            // Never where the square just touches an edge.
            const double x = quarter(dice) / 4 + 0.25, y = quarter(dice) / 4 + 0.25;
            Art* expected = nullptr;
            for (const Box& box : boxes) {
                if (box.selectable && Paints(box, x, y)) expected = box.art;
            }
            ASSERT_EQ(ArtAtPoint(document, {x, y}, 0.5, PaintsWithin), expected)
                << seed << ": " << x << ", " << y;
            ++(expected ? hits : misses);

            const HostRect band{x, y, x + quarter(dice) / 8, y - quarter(dice) / 8};
            std::vector<Art*> inBand;
            for (auto box = boxes.rbegin(); box != boxes.rend(); ++box) {
                const bool apart = box->right < band.left || box->left > band.right ||
                                   box->top < band.bottom || box->bottom > band.top;
                if (box->selectable && !apart) inBand.push_back(box->art);
            }
            ASSERT_EQ(ArtInBand(document, band), inBand);
        }
    }
    EXPECT_GT(hits, 500);
    EXPECT_GT(misses, 500);
}

} // namespace
