/// Pictures made of the same calls on every platform, so that their pixels can be compared.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

/// A bitmap to draw on, with its context.
class Canvas {
public:
    Canvas(int width, int height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC Context() const { return context_; }
    int Width() const { return width_; }
    int Height() const { return height_; }
    /// 0x00BBGGRR, row by row.
    std::vector<COLORREF> Pixels() const;

private:
    int width_, height_;
    HDC context_;
    HBITMAP bitmap_;
    HGDIOBJ oldBitmap_;
};

/// The same numbers on every platform, as long as no two rolls are arguments of one call, whose order is
/// open.
class Dice {
public:
    explicit Dice(uint32_t seed) : state_(seed) {}
    /// From `low` to `high`, both included.
    int Roll(int low, int high) {
        state_ = state_ * 1664525 + 1013904223;
        return low + static_cast<int>((state_ >> 8) % static_cast<uint32_t>(high - low + 1));
    }
    POINT Place(int low, int high) {
        POINT place;
        place.x = Roll(low, high);
        place.y = Roll(low, high);
        return place;
    }
    COLORREF Color() { return static_cast<COLORREF>(Roll(0, 0xFFFFFF)); }

private:
    uint32_t state_;
};

struct Scene {
    const char* name;
    void (*draw)(HDC context, Dice& dice);
    uint64_t pixels; ///< what Windows' own calls give: PixelHash of a canvas of 64 by 64
};
extern const std::vector<Scene> kScenes;

/// The plug-in is a part of the test program.
HMODULE ModuleOfTests();

uint64_t PixelHash(const std::vector<COLORREF>& pixels);

/// How a scene comes out.
uint64_t DrawScene(const Scene& scene);
