#include "tests/drawing/drawing_scenes.h"

namespace {

constexpr int kSide = 64;

/// A pen or a brush that is selected for a while.
class Selected {
public:
    Selected(HDC context, HGDIOBJ object)
        : context_(context), object_(object), old_(SelectObject(context, object)) {}
    ~Selected() {
        SelectObject(context_, old_);
        DeleteObject(object_);
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC context_;
    HGDIOBJ object_, old_;
};

RECT RollRectangle(Dice& dice, int least, int most) {
    RECT r;
    r.left = dice.Roll(-10, kSide + 5);
    r.top = dice.Roll(-10, kSide + 5);
    r.right = r.left + dice.Roll(least, most);
    r.bottom = r.top + dice.Roll(least, most);
    return r;
}

int RollOperation(Dice& dice) {
    const int operations[] = {R2_NOT, R2_XORPEN, R2_COPYPEN};
    return operations[dice.Roll(0, 2)];
}

void DrawFills(HDC context, Dice& dice) {
    for (int i = 0; i < 60; ++i) {
        const RECT r = RollRectangle(dice, -6, 20);
        const HBRUSH brush = CreateSolidBrush(dice.Color());
        switch (dice.Roll(0, 3)) {
            case 0:
                FillRect(context, &r, brush);
                break;
            case 1:
                FrameRect(context, &r, brush);
                break;
            case 2:
                InvertRect(context, &r);
                break;
            default:
                FillRect(context, &r,
                         static_cast<HBRUSH>(GetStockObject(dice.Roll(WHITE_BRUSH, NULL_BRUSH))));
        }
        DeleteObject(brush);
    }
}

void DrawPatterns(HDC context, Dice& dice) {
    const DWORD operations[] = {PATCOPY, PATINVERT, DSTINVERT};
    for (int i = 0; i < 60; ++i) {
        const Selected brush(context, CreateSolidBrush(dice.Color()));
        const RECT r = RollRectangle(dice, -15, 20);
        PatBlt(context, r.left, r.top, r.right - r.left, r.bottom - r.top, operations[dice.Roll(0, 2)]);
    }
}

void DrawThinLines(HDC context, Dice& dice) {
    for (int i = 0; i < 200; ++i) {
        const Selected pen(context, CreatePen(PS_SOLID, dice.Roll(0, 1), dice.Color()));
        SetROP2(context, RollOperation(dice));
        MoveToEx(context, dice.Roll(-20, 84), dice.Roll(-20, 84), nullptr);
        LineTo(context, dice.Roll(-20, 84), dice.Roll(-20, 84));
        LineTo(context, dice.Roll(-20, 84), dice.Roll(-20, 84));
    }
}

// Slopes that meet halfway between pixels as often as can be, and each line back over itself.
void DrawTiedLines(HDC context, Dice& dice) {
    SetROP2(context, R2_XORPEN);
    const Selected pen(context, CreatePen(PS_SOLID, 1, 0xFFFFFF));
    for (int i = 0; i < 60; ++i) {
        const int minor = dice.Roll(-3, 3), major = 2 * dice.Roll(-5, 5), x = dice.Roll(10, 50),
                  y = dice.Roll(10, 50);
        const bool steep = dice.Roll(0, 1) == 1;
        MoveToEx(context, x, y, nullptr);
        LineTo(context, x + (steep ? minor : major), y + (steep ? major : minor));
        if (dice.Roll(0, 1) == 1) LineTo(context, x, y);
    }
}

void DrawFarLines(HDC context, Dice& dice) {
    for (int i = 0; i < 60; ++i) {
        const Selected pen(context, CreatePen(PS_SOLID, 1, dice.Color()));
        MoveToEx(context, dice.Roll(-3000, 3000), dice.Roll(-3000, 3000), nullptr);
        LineTo(context, dice.Roll(0, 63), dice.Roll(0, 63));
        LineTo(context, dice.Roll(-3000, 3000), dice.Roll(-3000, 3000));
    }
}

void DrawRectangles(HDC context, Dice& dice) {
    for (int i = 0; i < 40; ++i) {
        const int style = dice.Roll(0, 2) == 0 ? PS_NULL : PS_SOLID;
        const Selected pen(context, CreatePen(style, 1, dice.Color()));
        const Selected brush(
            context, dice.Roll(0, 1) == 0 ? GetStockObject(NULL_BRUSH) : CreateSolidBrush(dice.Color()));
        SetROP2(context, RollOperation(dice));
        const RECT r = RollRectangle(dice, -4, 30);
        Rectangle(context, r.left, r.top, r.right, r.bottom);
    }
}

// Lines of wide pens along the axes, where square ends and round ones differ at the ends alone: those lie
// outside.
void DrawWideLines(HDC context, Dice& dice) {
    for (int i = 0; i < 20; ++i) {
        const Selected pen(context, CreatePen(PS_SOLID, dice.Roll(2, 7), dice.Color()));
        const int place = dice.Roll(0, 63);
        const bool upright = dice.Roll(0, 1) == 1;
        MoveToEx(context, upright ? place : -20, upright ? -20 : place, nullptr);
        LineTo(context, upright ? place : 90, upright ? 90 : place);
    }
}

void DrawPixels(HDC context, Dice& dice) {
    for (int i = 0; i < 300; ++i) {
        const int x = dice.Roll(-5, 70), y = dice.Roll(-5, 70);
        const COLORREF before = GetPixel(context, x, y);
        SetPixel(context, x, y, dice.Color());
        // What is told of a place outside is part of the picture.
        if (before == CLR_INVALID) SetPixel(context, y & 63, 1, 0x123456);
    }
}

void DrawCopies(HDC context, Dice& dice) {
    DrawFills(context, dice);
    const Canvas other(40, 30);
    DrawThinLines(other.Context(), dice);
    for (int i = 0; i < 40; ++i) {
        const HDC source = dice.Roll(0, 2) == 0 ? other.Context() : context;
        BitBlt(context, dice.Roll(-10, 60), dice.Roll(-10, 60), dice.Roll(0, 40), dice.Roll(0, 40), source,
               dice.Roll(0, 30), dice.Roll(0, 20), SRCCOPY);
    }
}

void DrawBitmaps(HDC context, Dice& dice) {
    constexpr int kWidth = 20, kHeight = 15;
    std::vector<uint32_t> bits(size_t{kWidth} * kHeight);
    for (int i = 0; i < 20; ++i) {
        for (uint32_t& pixel : bits) pixel = dice.Color() | 0xAB000000;
        BITMAPINFO information = {};
        information.bmiHeader.biSize = sizeof information.bmiHeader;
        information.bmiHeader.biWidth = kWidth;
        information.bmiHeader.biHeight = dice.Roll(0, 1) == 0 ? kHeight : -kHeight;
        information.bmiHeader.biPlanes = 1;
        information.bmiHeader.biBitCount = 32;
        const auto width = static_cast<DWORD>(dice.Roll(1, 25)),
                   height = static_cast<DWORD>(dice.Roll(1, 20));
        SetDIBitsToDevice(context, dice.Roll(-10, 60), dice.Roll(-10, 60), width, height, dice.Roll(0, 10),
                          dice.Roll(0, 8), 0, kHeight, bits.data(), &information, DIB_RGB_COLORS);
    }
}

void DrawClipped(HDC context, Dice& dice) {
    for (int i = 0; i < 12; ++i) {
        const int state = SaveDC(context);
        for (int depth = dice.Roll(1, 2); depth > 0; --depth) {
            const RECT r = RollRectangle(dice, 5, 40);
            const int kind = IntersectClipRect(context, r.left, r.top, r.right, r.bottom);
            SetROP2(context, R2_XORPEN);
            const Selected pen(context, CreatePen(PS_SOLID, 1, RGB(kind * 10, 0xFF, 0x80)));
            for (int line = 0; line < 5; ++line) LineTo(context, dice.Roll(-20, 84), dice.Roll(-20, 84));
            const RECT inside = RollRectangle(dice, 5, 40);
            FillRect(context, &inside,
                     static_cast<HBRUSH>(GetStockObject(dice.Roll(WHITE_BRUSH, BLACK_BRUSH))));
            if (depth > 1) SaveDC(context);
        }
        RestoreDC(context, dice.Roll(0, 1) == 0 ? state : -1);
        RestoreDC(context, state);
        POINT position;
        MoveToEx(context, dice.Roll(0, 63), dice.Roll(0, 63), &position);
        SetPixel(context, position.x & 63, position.y & 63, 0xFF);
    }
}

void DrawIcons(HDC context, Dice& dice) {
    for (int i = 0; i < 25; ++i) {
        const HICON icon = LoadIconA(
            ModuleOfTests(),
            MAKEINTRESOURCEA(
                kIconNumbers[static_cast<size_t>(dice.Roll(0, static_cast<int>(kIconNumbers.size()) - 1))]));
        const int x = dice.Roll(-20, 50), y = dice.Roll(-20, 50), size = dice.Roll(0, 2) * 16;
        if (dice.Roll(0, 1) == 0) {
            DrawIcon(context, x, y, icon);
        } else {
            DrawIconEx(context, x, y, icon, size, size, 0, nullptr, DI_NORMAL);
        }
    }
}

} // namespace

const std::vector<int> kIconNumbers = {16052, 16251, 16252, 16253, 16257, 16258, 16259, 16260,
                                       16261, 16264, 16265, 16266, 16280, 16281, 16351, 16352,
                                       16353, 16357, 16358, 16359, 16360, 16361};

HMODULE ModuleOfTests() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCSTR>(&PixelHash), &module);
    return module;
}

const std::vector<Scene> kScenes = {
    {"fills", DrawFills, 0x18C282BBFA34B2E8},          {"patterns", DrawPatterns, 0x6819A3EE1CC442B4},
    {"thin lines", DrawThinLines, 0x78F5CF5A9EDD1C4F}, {"tied lines", DrawTiedLines, 0x8D6C7BDC6FC5410B},
    {"far lines", DrawFarLines, 0xB49B696D3EB56BB3},   {"rectangles", DrawRectangles, 0x06EEF5090680E718},
    {"wide lines", DrawWideLines, 0xDA85791C8176B49E}, {"pixels", DrawPixels, 0x4453496A04D46168},
    {"copies", DrawCopies, 0x36E7D800A4F42DE4},        {"bitmaps", DrawBitmaps, 0x690A083DA8319DEA},
    {"clipped", DrawClipped, 0xA48F9DF7F1022D0C},      {"icons", DrawIcons, 0xD607037C00D1FC23},
};

Canvas::Canvas(int width, int height) : width_(width), height_(height) {
    const HDC screen = GetDC(nullptr);
    context_ = CreateCompatibleDC(screen);
    bitmap_ = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    oldBitmap_ = SelectObject(context_, bitmap_);
    PatBlt(context_, 0, 0, width, height, PATCOPY);
}

Canvas::~Canvas() {
    SelectObject(context_, oldBitmap_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
}

std::vector<COLORREF> Canvas::Pixels() const {
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) pixels.push_back(GetPixel(context_, x, y));
    return pixels;
}

uint64_t PixelHash(const std::vector<COLORREF>& pixels) {
    uint64_t hash = 0xCBF29CE484222325;
    for (const COLORREF pixel : pixels) hash = (hash ^ pixel) * 0x100000001B3;
    return hash;
}

uint64_t DrawScene(const Scene& scene) {
    const Canvas canvas(kSide, kSide);
    Dice dice(1);
    scene.draw(canvas.Context(), dice);
    return PixelHash(canvas.Pixels());
}
