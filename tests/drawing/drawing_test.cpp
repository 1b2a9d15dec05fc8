#include <gtest/gtest.h>

#include <algorithm>

#include "tests/drawing/drawing_scenes.h"

namespace {

// The same calls give the same pixels here and on Windows; the numbers come from there.
TEST(Drawing, PixelsAreThoseOfWindows) {
    for (const Scene& scene : kScenes) EXPECT_EQ(DrawScene(scene), scene.pixels) << scene.name;
}

class TextDrawing : public testing::Test {
protected:
    TextDrawing() {
        font_ = CreateFontA(-12, 0, 0, 0, FW_NORMAL, 0, 0, 0, SHIFTJIS_CHARSET, 0, 0, 0, 0, "ＭＳ ゴシック");
        oldFont_ = SelectObject(canvas_.Context(), font_);
        SetBkMode(canvas_.Context(), TRANSPARENT);
    }
    ~TextDrawing() override {
        SelectObject(canvas_.Context(), oldFont_);
        DeleteObject(font_);
    }
    int Width(const std::string& text) const {
        SIZE size = {};
        EXPECT_TRUE(
            GetTextExtentPoint32A(canvas_.Context(), text.data(), static_cast<int>(text.size()), &size));
        return size.cx;
    }
    // The brush that a context begins with is white.
    void Clear() const { PatBlt(canvas_.Context(), 0, 0, canvas_.Width(), canvas_.Height(), PATCOPY); }
    // The rectangle around what is drawn; empty if nothing is.
    RECT Ink() const {
        RECT ink = {canvas_.Width(), canvas_.Height(), 0, 0};
        const std::vector<COLORREF> pixels = canvas_.Pixels();
        for (size_t i = 0; i < pixels.size(); ++i) {
            if (pixels[i] == 0xFFFFFF) continue;
            const auto x = static_cast<LONG>(i % static_cast<size_t>(canvas_.Width()));
            const auto y = static_cast<LONG>(i / static_cast<size_t>(canvas_.Width()));
            ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                   std::max(ink.bottom, y + 1)};
        }
        return ink;
    }

    const Canvas canvas_{200, 60};
    HFONT font_;
    HGDIOBJ oldFont_;
};

// Whoever cuts a text by these widths must see no more of it drawn than was measured.
TEST_F(TextDrawing, WidthsAddUpByCharacterAndHoldWhatIsDrawn) {
    const std::string text = "Ab,iW 日本語ｱｲｳ“表”ソ";
    std::vector<int> widths(text.size());
    for (int most = 0; most < 200; most += 7) {
        int fit = -1;
        SIZE size = {};
        ASSERT_TRUE(GetTextExtentExPointA(canvas_.Context(), text.data(), static_cast<int>(text.size()), most,
                                          &fit, widths.data(), &size));
        const std::string fitting = text.substr(0, static_cast<size_t>(fit)),
                          rest = text.substr(fitting.size());
        EXPECT_EQ(size.cx, Width(fitting) + Width(rest)) << most;
        EXPECT_LE(Width(fitting), most);
        Clear();
        TextOutA(canvas_.Context(), 3, 5, fitting.data(), fit);
        if (fit == 0) continue;
        EXPECT_EQ(widths[static_cast<size_t>(fit) - 1], Width(fitting));
        EXPECT_GE(Ink().left, 2) << most;
        EXPECT_LE(Ink().right, 3 + Width(fitting) + 1) << most;
        EXPECT_GE(Ink().top, 5);
        EXPECT_LE(Ink().bottom, 5 + size.cy);
    }
}

TEST_F(TextDrawing, TextsLieInTheirRectangle) {
    struct Case {
        UINT format;
        const char* text;
        int lines;
    };
    const Case cases[] = {
        {DT_LEFT, "one", 1},
        {DT_CENTER, "one\r\ntwo\n\nfour", 4},
        {DT_RIGHT | DT_WORDBREAK, "one two three four five", 3},
        {DT_WORDBREAK, "日本語の長い文章を折り返す", 3},
        {DT_SINGLELINE | DT_VCENTER, "日本語の長い文章を折り返す", 1},
        {DT_SINGLELINE | DT_VCENTER | DT_CENTER, "&Cancel", 1},
    };
    TEXTMETRICA metrics;
    GetTextMetricsA(canvas_.Context(), &metrics);
    for (const Case& each : cases) {
        const RECT room = {20, 4, 90, 59};
        RECT size = room, area = room;
        Clear();
        const int middle = (each.format & DT_VCENTER) != 0 ? 55 / 2 - metrics.tmHeight / 2 : 0;
        EXPECT_EQ(DrawTextA(canvas_.Context(), each.text, -1, &size, each.format | DT_CALCRECT),
                  middle + each.lines * metrics.tmHeight)
            << each.text;
        EXPECT_EQ(size.bottom, room.top + middle + each.lines * metrics.tmHeight) << each.text;
        EXPECT_EQ(Ink().right, 0) << "measuring draws nothing";
        EXPECT_EQ(DrawTextA(canvas_.Context(), each.text, -1, &area, each.format),
                  middle + each.lines * metrics.tmHeight);
        EXPECT_GE(Ink().left, room.left - 1) << each.text;
        EXPECT_LE(Ink().right, room.right) << each.text;
        EXPECT_GE(Ink().top, room.top + middle) << each.text;
    }
    EXPECT_EQ(Width("Cancel"), [&] {
        RECT size = {};
        DrawTextA(canvas_.Context(), "&Cancel", -1, &size, DT_SINGLELINE | DT_CALCRECT);
        return size.right;
    }()) << "the mark before a letter takes no room";
}

TEST(Texts, AreThoseOfTheirNumbersAndCutAtCharacters) {
    char text[255];
    EXPECT_EQ(LoadStringA(ModuleOfTests(), 17251, text, sizeof text), 83);
    EXPECT_STREQ(text,
                 "Do you want to delete this '%s' group? \r\nOnce You deleted,  it cannot be restored. ");
    LoadStringA(ModuleOfTests(), 16254, text, sizeof text);
    EXPECT_STREQ(text, "'%s'フォルダを作成出来ませんでした。[%d]\r\nフォルダ名が不適切か重複しています。");
    LoadStringA(ModuleOfTests(), 16102, text, 4);
    EXPECT_STREQ(text, "種");
    EXPECT_EQ(LoadStringA(ModuleOfTests(), 16104, text, sizeof text), 0);
    EXPECT_STREQ(text, "");
}

} // namespace
