// The pixels of the owner-drawn lists and controls, all but their texts.

#include <string>

#include "plugin/panel/list_table.h"
#include "plugin/panel/paint_controls.h"
#include "plugin/panel/paint_folders.h"
#include "plugin/panel/paint_records.h"
#include "plugin/panel/panel_lists.h"
#include "plugin/store/store_names.h"
#include "tests/plugin/panel/browser_fixture.h"

namespace {

class PaintingTest : public BrowserFixture {
protected:
    void ShowRecords(int16_t toolMode, int16_t sortMode) {
        globals->toolMode = toolMode;
        globals->sortMode = sortMode;
        MakeGroup("Shapes", {"arch", "beam", "dome"});
        Browse("Shapes");
        SelectListRow(recordList(), 1);
    }
};

// The record list is 240 pixels wide where the panel is 400 and the folder list takes 0.3 of 390.
TEST_F(PaintingTest, IconCells) {
    ShowRecords(1, 0);
    Canvas canvas(300, 100);
    PaintRecordList(canvas.context(), recordList());
    for (int row = 0; row < 3; ++row) {
        const std::string name = row == 0 ? "arch" : row == 1 ? "beam" : "dome";
        const int x = row * 33;
        EXPECT_EQ(canvas.All({x + 2, 2, x + 32, 32}), ColorOfName(name)) << "the picture: 30 by 30";
    }
    // Between the frame and the picture a white line; the selected cell has one more frame there.
    EXPECT_EQ(canvas.All({1, 1, 33, 2}), 0xFFFFFFu);
    EXPECT_EQ(canvas.All({34, 1, 66, 2}), SystemColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(canvas.All({0, 0, 100, 1}), 0xCCCCCCu);
    EXPECT_EQ(canvas.All({66, 0, 67, 34}), 0xCCCCCCu) << "neighbours share a border";
    EXPECT_EQ(canvas.All({100, 0, 230, 60}), 0xEEEEEEu) << "behind the last cell";
}

// Each view of the list: the row's colour, the sorted column over it, the box of the picture, the line below.
TEST_F(PaintingTest, ListRows) {
    ShowRecords(3, 0);
    SetWindowPos(recordList(), nullptr, 0, 0, 600, 200, SWP_NOMOVE | SWP_NOZORDER);
    struct Column {
        int16_t sortMode;
        int left, right;
    };
    for (const Column& column : {Column{0, 1, 24 + 148}, {1, 24 + 148, 24 + 248}, {2, 24 + 248, 24 + 348}}) {
        globals->sortMode = column.sortMode;
        Canvas canvas(620, 200);
        PaintRecordList(canvas.context(), recordList());
        for (int row = 0; row < 3; ++row) {
            const bool selected = row == 1;
            const int top = row * 24;
            // At the foot of a row there is no text.
            const uint32_t grey = selected ? SystemColor(COLOR_ACTIVECAPTION) : 0xEEEEEEu;
            const uint32_t sorted = selected ? SystemColor(COLOR_HIGHLIGHT) : 0xCCCCCCu;
            for (const int x : {26, 171, 172, 271, 272, 371, 372, 598}) {
                const bool inColumn = x >= column.left && x < column.right;
                EXPECT_EQ(canvas.At(x, top + 23), inColumn ? sorted : grey) << row << " " << x;
            }
            EXPECT_EQ(canvas.All({0, top + 24, 600, top + 25}), 0xFFFFFFu) << row;
            EXPECT_EQ(canvas.All({2, top + 2, 23, top + 3}), 0u) << "the box's border";
            EXPECT_EQ(canvas.All({2, top + 2, 3, top + 23}), 0u);
            const char* name = row == 0 ? "arch" : row == 1 ? "beam" : "dome";
            EXPECT_EQ(canvas.All({3, top + 3, 22, top + 22}), ColorOfName(name));
        }
        EXPECT_EQ(canvas.All({0, 73, 600, 200}), 0xEEEEEEu);
    }
    const SCROLLINFO place{sizeof place, SIF_POS, 0, 0, 0, 2, 0};
    SetScrollInfo(control(1002), SB_CTL, &place, FALSE);
    Canvas scrolled(620, 100);
    PaintRecordRow(scrolled.context(), recordList(), 1, false);
    EXPECT_EQ(scrolled.All({0, 0, 620, 100}), Canvas::kUntouched) << "out of sight";
    PaintRecordList(scrolled.context(), recordList());
    EXPECT_EQ(scrolled.All({3, 3, 22, 22}), ColorOfName("dome"));
}

// A white picture leaves its box white, and a record that can't be read has none.
TEST_F(PaintingTest, WhatIsMissingStaysWhite) {
    ShowRecords(1, 0);
    DeleteFileA((std::string(globals->aidbfpath) + "\\Shapes.AID").c_str());
    AddListRow(recordList(), "4"); // a row that the index doesn't know
    Canvas canvas(300, 100);
    PaintRecordList(canvas.context(), recordList());
    for (const int x : {0, 66, 99}) EXPECT_EQ(canvas.All({x + 1, 1, x + 33, 33}), 0xFFFFFFu) << x;
}

TEST_F(PaintingTest, FolderRows) {
    MakeGroup("\\Plants\\Trees", {"oak"});
    MakeGroup("Ground");
    Browse("Ground");
    Canvas canvas(200, 200);
    PaintFolderList(canvas.context(), folderList());
    RECT client;
    GetClientRect(folderList(), &client);
    const int right = client.right - 1;
    EXPECT_EQ(canvas.At(right - 1, 1), SystemColor(COLOR_ACTIVECAPTION)) << "the selected group";
    EXPECT_EQ(canvas.At(right - 1, 25), 0xEEEEEEu);
    EXPECT_EQ(canvas.All({0, 24, client.right, 25}), 0xFFFFFFu);
    EXPECT_EQ(canvas.All({0, 80, client.right, 200}), 0xF4F4F4u) << "below the last icon";
}

TEST_F(PaintingTest, FolderRowLooks) {
    struct Row {
        const char* text;
        int indent;
        bool isGroup;
        const char* shown;
    };
    for (const Row& row : {Row{"\\F\\S\\G", 40, true, "G"},
                           {"\\F\\S\\$$$.$$$", 20, false, "S"},
                           {"\\F\\G", 20, true, "G"},
                           {"\\F\\$$$\\$$$.$$$", 0, false, "F"},
                           {"\\F\\$$$\\G", 20, true, "G"},
                           {"G", 0, true, "G"},
                           {"Search Result", 0, true, "Search Result"}}) {
        const FolderRowLook look = LookOfFolderRow(row.text);
        EXPECT_EQ(look.indent, row.indent) << row.text;
        EXPECT_EQ(look.isGroup, row.isGroup) << row.text;
        EXPECT_STREQ(look.shown, row.shown);
    }
}

// The current cell is black, the one under the pointer shows the press; the others depend on the theme.
TEST_F(PaintingTest, OriginControl) {
    globals->originMode = 4;
    Browse("UNTITLED");
    PointAt(control(6), 18, 2);
    for (const int dark : {0, 1}) {
        globals->uiDark = static_cast<int16_t>(dark);
        Canvas canvas(23, 23);
        DRAWITEMSTRUCT item{};
        item.CtlID = 6;
        item.hwndItem = control(6);
        item.hDC = canvas.context();
        item.rcItem = {0, 0, 23, 23};
        item.itemState = ODS_SELECTED;
        PaintOriginControl(item);
        for (int cell = 0; cell < 9; ++cell) {
            const int x = cell / 3 * 8, y = cell % 3 * 8;
            const uint32_t idle = dark ? 0xDDDDDD : 0x888888, held = dark ? 0xAAAAAA : 0x444444;
            EXPECT_EQ(canvas.All({x, y, x + 6, y + 6}), cell == 4 ? 0 : cell == 6 ? held : idle) << cell;
        }
        EXPECT_EQ(canvas.All({6, 0, 8, 23}), 0xF0F0F0u);
    }
}

TEST_F(PaintingTest, IconButtonInvertsWhilePressed) {
    Browse("UNTITLED");
    for (HICON& icon : globals->panelIcons) icon = nullptr;
    Canvas canvas(24, 32);
    DRAWITEMSTRUCT item{};
    item.CtlID = 1;
    item.hwndItem = control(1);
    item.hDC = canvas.context();
    item.rcItem = {0, 0, 24, 16};
    PaintIconButton(item);
    EXPECT_EQ(canvas.All({0, 0, 24, 16}), 0xF0F0F0u);
    item.itemState = ODS_SELECTED;
    PaintIconButton(item);
    EXPECT_EQ(canvas.All({0, 0, 24, 16}), 0x0F0F0Fu);
    EXPECT_EQ(canvas.All({0, 16, 24, 32}), Canvas::kUntouched);
}

} // namespace
