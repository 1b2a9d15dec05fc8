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
    const POINT corner = dice.Place(-10, kSide + 5), extent = dice.Place(least, most);
    return {corner.x, corner.y, corner.x + extent.x, corner.y + extent.y};
}

int RollOperation(Dice& dice) {
    const int operations[] = {R2_NOT, R2_XORPEN, R2_COPYPEN};
    return operations[dice.Roll(0, 2)];
}

HPEN RollPen(Dice& dice, int leastWidth, int mostWidth) {
    const int width = dice.Roll(leastWidth, mostWidth);
    return CreatePen(PS_SOLID, width, dice.Color());
}

void MoveTo(HDC context, POINT place) {
    MoveToEx(context, place.x, place.y, nullptr);
}
void DrawTo(HDC context, POINT place) {
    LineTo(context, place.x, place.y);
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
        const Selected pen(context, RollPen(dice, 0, 1));
        SetROP2(context, RollOperation(dice));
        MoveTo(context, dice.Place(-20, 84));
        DrawTo(context, dice.Place(-20, 84));
        DrawTo(context, dice.Place(-20, 84));
    }
}

// Slopes that meet halfway between pixels as often as can be, and lines back over themselves.
void DrawTiedLines(HDC context, Dice& dice) {
    SetROP2(context, R2_XORPEN);
    const Selected pen(context, CreatePen(PS_SOLID, 1, 0xFFFFFF));
    for (int i = 0; i < 60; ++i) {
        const int minor = dice.Roll(-3, 3), major = 2 * dice.Roll(-5, 5);
        const POINT start = dice.Place(10, 50);
        const bool steep = dice.Roll(0, 1) == 1;
        MoveTo(context, start);
        DrawTo(context, {start.x + (steep ? minor : major), start.y + (steep ? major : minor)});
        if (dice.Roll(0, 1) == 1) DrawTo(context, start);
    }
}

void DrawFarLines(HDC context, Dice& dice) {
    for (int i = 0; i < 60; ++i) {
        const Selected pen(context, RollPen(dice, 1, 1));
        MoveTo(context, dice.Place(-3000, 3000));
        DrawTo(context, dice.Place(0, 63));
        DrawTo(context, dice.Place(-3000, 3000));
    }
}

void DrawRectangles(HDC context, Dice& dice) {
    for (int i = 0; i < 40; ++i) {
        const HGDIOBJ none = GetStockObject(NULL_PEN), hollow = GetStockObject(NULL_BRUSH);
        const Selected pen(context, dice.Roll(0, 2) == 0 ? none : RollPen(dice, 1, 1));
        const Selected brush(context, dice.Roll(0, 1) == 0 ? hollow : CreateSolidBrush(dice.Color()));
        SetROP2(context, RollOperation(dice));
        const RECT r = RollRectangle(dice, -4, 30);
        Rectangle(context, r.left, r.top, r.right, r.bottom);
    }
}

// Along the axes the square ends of wide pens here and the round ones there differ at the ends alone, which
// lie outside.
void DrawWideLines(HDC context, Dice& dice) {
    for (int i = 0; i < 20; ++i) {
        const Selected pen(context, RollPen(dice, 2, 7));
        const int place = dice.Roll(0, 63);
        const bool upright = dice.Roll(0, 1) == 1;
        MoveTo(context, upright ? POINT{place, -20} : POINT{-20, place});
        DrawTo(context, upright ? POINT{place, 90} : POINT{90, place});
    }
}

void DrawPixels(HDC context, Dice& dice) {
    for (int i = 0; i < 300; ++i) {
        const POINT place = dice.Place(-5, 70);
        const COLORREF before = GetPixel(context, place.x, place.y);
        SetPixel(context, place.x, place.y, dice.Color());
        // What is told of a place outside is part of the picture.
        if (before == CLR_INVALID) SetPixel(context, place.y & 63, 1, 0x123456);
    }
}

void DrawCopies(HDC context, Dice& dice) {
    DrawFills(context, dice);
    const Canvas other(40, 30);
    DrawThinLines(other.Context(), dice);
    for (int i = 0; i < 40; ++i) {
        const HDC source = dice.Roll(0, 2) == 0 ? other.Context() : context;
        const POINT to = dice.Place(-10, 60), extent = dice.Place(0, 40), from = dice.Place(-5, 30);
        BitBlt(context, to.x, to.y, extent.x, extent.y, source, from.x, from.y, SRCCOPY);
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
        const POINT to = dice.Place(-10, 60), extent = dice.Place(1, 25), from = dice.Place(-3, 10);
        SetDIBitsToDevice(context, to.x, to.y, static_cast<DWORD>(extent.x), static_cast<DWORD>(extent.y),
                          from.x, from.y, 0, kHeight, bits.data(), &information, DIB_RGB_COLORS);
    }
}

void DrawWithin(HDC context, Dice& dice, const RECT& clip) {
    const int kind = IntersectClipRect(context, clip.left, clip.top, clip.right, clip.bottom);
    SetROP2(context, R2_XORPEN);
    const Selected pen(context, CreatePen(PS_SOLID, 1, RGB(kind * 10, 0xFF, 0x80)));
    for (int line = 0; line < 5; ++line) DrawTo(context, dice.Place(-20, 84));
    const RECT inside = RollRectangle(dice, 5, 40);
    FillRect(context, &inside, static_cast<HBRUSH>(GetStockObject(dice.Roll(WHITE_BRUSH, BLACK_BRUSH))));
}

void DrawClipped(HDC context, Dice& dice) {
    for (int i = 0; i < 12; ++i) {
        const int state = SaveDC(context);
        for (int depth = dice.Roll(1, 2); depth > 0; --depth) {
            DrawWithin(context, dice, RollRectangle(dice, 5, 40));
            if (depth > 1) SaveDC(context);
        }
        RestoreDC(context, dice.Roll(0, 1) == 0 ? state : -1);
        RestoreDC(context, state);
        POINT position;
        const POINT next = dice.Place(0, 63);
        MoveToEx(context, next.x, next.y, &position);
        SetPixel(context, position.x & 63, position.y & 63, 0xFF);
    }
}

/// The icons of the plug-in, which is a part of the test program.
const std::vector<int> kIconNumbers = {16052, 16251, 16252, 16253, 16257, 16258, 16259, 16260,
                                       16261, 16264, 16265, 16266, 16280, 16281, 16351, 16352,
                                       16353, 16357, 16358, 16359, 16360, 16361};

void DrawIcons(HDC context, Dice& dice) {
    for (int i = 0; i < 25; ++i) {
        const auto which = static_cast<size_t>(dice.Roll(0, static_cast<int>(kIconNumbers.size()) - 1));
        const HICON icon = LoadIconA(ModuleOfTests(), MAKEINTRESOURCEA(kIconNumbers[which]));
        const POINT to = dice.Place(-20, 50);
        if (dice.Roll(0, 1) == 0) {
            DrawIcon(context, to.x, to.y, icon);
        } else {
            const int size = dice.Roll(0, 1) * 64; // its own size, or twice that
            DrawIconEx(context, to.x, to.y, icon, size, size, 0, nullptr, DI_NORMAL);
        }
    }
}

} // namespace

HMODULE ModuleOfTests() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCSTR>(&PixelHash), &module);
    return module;
}

const std::vector<Scene> kScenes = {
    {"fills", DrawFills, 0x18C282BBFA34B2E8},          {"patterns", DrawPatterns, 0x6819A3EE1CC442B4},
    {"thin lines", DrawThinLines, 0x6CE7321E1ECD0CE3}, {"tied lines", DrawTiedLines, 0x8D6C7BDC6FC5410B},
    {"far lines", DrawFarLines, 0x311151ED3DF45E68},   {"rectangles", DrawRectangles, 0x3AC23DD044408F5D},
    {"wide lines", DrawWideLines, 0xD6E0B53270436080}, {"pixels", DrawPixels, 0x4453496A04D46168},
    {"copies", DrawCopies, 0xAAC0D0D700E003B9},        {"bitmaps", DrawBitmaps, 0x09A033E4577D6AE5},
    {"clipped", DrawClipped, 0xC2F24441AB7ABF50},      {"icons", DrawIcons, 0x7AFD4CB37A0A8C21},
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
