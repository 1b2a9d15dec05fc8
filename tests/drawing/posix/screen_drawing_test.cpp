#include <gtest/gtest.h>

#include <string>

#include "tests/drawing/drawing_scenes.h"
#include "win32/gdi/screen_context.h"

namespace {

constexpr int kWidth = 100, kHeight = 90; // of the screen
constexpr uint32_t kUntouched = 0xFFFFFF;

// Copies show what the clipping left of their source, and some scenes clip themselves; in all others a pixel
// depends on what was at its own place alone.
bool IsDrawnPixelByPixel(const std::string& name) {
    return name != "copies" && name != "pixels" && name != "clipped" && name != "icons";
}

class ScreenDrawing : public testing::Test {
protected:
    ScreenDrawing() { ResizeScreen(kWidth, kHeight); }
    ~ScreenDrawing() override { ResizeScreen(0, 0); }

    static void Whiten() {
        const cairo_rectangle_int_t all = {0, 0, kWidth, kHeight};
        const HDC context = NewScreenContext(0, 0, cairo_region_create_rectangle(&all));
        PatBlt(context, 0, 0, kWidth, kHeight, PATCOPY);
        EndScreenContext(context);
        RECT changed;
        TakeScreenChanges(changed);
    }
    static bool IsVisible(const cairo_region_t* region, int x, int y) {
        return cairo_region_contains_point(region, x, y) != 0;
    }
};

// A context of the screen draws what one of memory does, as far as its region goes, and tells where.
TEST_F(ScreenDrawing, RegionsCutAndChangesAreTold) {
    Dice dice(7);
    for (const Scene& scene : kScenes) {
        if (!IsDrawnPixelByPixel(scene.name)) continue;
        for (int round = 0; round < 3; ++round) {
            Whiten();
            cairo_region_t* const region = cairo_region_create();
            for (int i = dice.Roll(0, 6); i > 0; --i) {
                const POINT corner = dice.Place(-10, 90), extent = dice.Place(1, 50);
                const cairo_rectangle_int_t part = {corner.x, corner.y, extent.x, extent.y};
                cairo_region_union_rectangle(region, &part);
            }
            const POINT origin = dice.Place(-20, 40);
            const Canvas whole(64, 64);
            Dice forMemory(1), forScreen(1);
            scene.draw(whole.Context(), forMemory);
            const HDC context = NewScreenContext(origin.x, origin.y, cairo_region_copy(region));
            scene.draw(context, forScreen);
            ASSERT_TRUE(EndScreenContext(context));

            RECT changed = {};
            TakeScreenChanges(changed);
            for (int y = 0; y < kHeight; ++y) {
                for (int x = 0; x < kWidth; ++x) {
                    const uint32_t pixel = ScreenPixels().pixels[y * kWidth + x];
                    const POINT there = {x - origin.x, y - origin.y};
                    const bool known = there.x >= 0 && there.x < 64 && there.y >= 0 && there.y < 64;
                    if (!IsVisible(region, x, y)) {
                        ASSERT_EQ(pixel, kUntouched) << scene.name << " at " << x << ", " << y;
                    } else if (known) {
                        const COLORREF expected = GetPixel(whole.Context(), there.x, there.y);
                        ASSERT_EQ(RGB(pixel >> 16, pixel >> 8, pixel), expected) << scene.name;
                    }
                    if (pixel != kUntouched) {
                        ASSERT_TRUE(PtInRect(&changed, {x, y})) << scene.name << " at " << x << ", " << y;
                    }
                }
            }
            cairo_region_destroy(region);
        }
    }
}

// What a program does with handles that it shouldn't use any more.
TEST_F(ScreenDrawing, HandlesAreCheckedAndCounted) {
    const DrawingCounts before = CountDrawingObjects();
    const HDC context = CreateCompatibleDC(nullptr), other = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateCompatibleBitmap(context, 10, 10);
    const HBRUSH brush = CreateSolidBrush(0x123456);
    EXPECT_EQ(CountDrawingObjects().contexts, before.contexts + 2);
    EXPECT_EQ(CountDrawingObjects().brushes, before.brushes + 1);
    const HGDIOBJ oldBitmap = SelectObject(context, bitmap), oldBrush = SelectObject(context, brush);
    EXPECT_EQ(SelectObject(other, bitmap), nullptr) << "one context at a time";
    EXPECT_FALSE(DeleteObject(bitmap)) << "selected";
    EXPECT_FALSE(DeleteObject(brush));
    EXPECT_EQ(SaveDC(context), 1);
    SelectObject(context, oldBrush);
    EXPECT_FALSE(DeleteObject(brush)) << "a saved state has it";
    EXPECT_TRUE(RestoreDC(context, 1));
    EXPECT_FALSE(RestoreDC(context, 1));
    SelectObject(context, oldBrush);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_FALSE(DeleteObject(brush));
    const RECT area = {0, 0, 5, 5};
    EXPECT_EQ(FillRect(context, &area, brush), 0);
    EXPECT_EQ(FillRect(reinterpret_cast<HDC>(bitmap), &area, GetSysColorBrush(COLOR_WINDOW)), 0);
    EXPECT_TRUE(DeleteObject(GetStockObject(BLACK_BRUSH)));
    EXPECT_NE(SelectObject(context, GetStockObject(BLACK_BRUSH)), nullptr);
    SelectObject(context, oldBitmap);
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_FALSE(EndScreenContext(context));
    EXPECT_TRUE(DeleteDC(context));
    EXPECT_FALSE(DeleteDC(context));
    EXPECT_FALSE(TextOutA(context, 0, 0, "x", 1));
    EXPECT_TRUE(DeleteDC(other));
    const DrawingCounts after = CountDrawingObjects();
    EXPECT_EQ(after.contexts, before.contexts);
    EXPECT_EQ(after.brushes, before.brushes);
    EXPECT_EQ(after.bitmaps, before.bitmaps);
}

// Coordinates that no screen has must neither wrap round nor take for ever.
TEST_F(ScreenDrawing, FarCoordinatesAreHarmless) {
    const Canvas canvas(20, 20);
    const HDC context = canvas.Context();
    const int ends[] = {INT32_MIN, INT32_MIN + 1, -1000000000, 0, 1000000000, INT32_MAX};
    const HPEN pen = CreatePen(PS_SOLID, 3, 0);
    const HGDIOBJ old = SelectObject(context, pen);
    for (const int x : ends) {
        for (const int y : ends) {
            RECT r = {x, y, y, x};
            MoveToEx(context, x, y, nullptr);
            LineTo(context, y, x);
            Rectangle(context, x, x, y, y);
            PatBlt(context, x, y, y, x, DSTINVERT);
            BitBlt(context, x, y, INT32_MAX, INT32_MAX, context, y, x, SRCCOPY);
            TextOutA(context, x, y, "text", 4);
            FillRect(context, &r, GetSysColorBrush(COLOR_WINDOW));
            DrawFocusRect(context, &r);
            FrameRect(context, &r, GetSysColorBrush(COLOR_WINDOW));
            DrawTextA(context, "two\nlines", -1, &r, DT_CENTER);
            DrawTextA(context, "one", -1, &r, DT_SINGLELINE | DT_VCENTER | DT_RIGHT);
            SetPixel(context, x, y, 0);
            SaveDC(context);
            IntersectClipRect(context, x, y, y, x);
            InvertRect(context, &r);
            RestoreDC(context, -1);
        }
    }
    SelectObject(context, old);
    DeleteObject(pen);
}

} // namespace
