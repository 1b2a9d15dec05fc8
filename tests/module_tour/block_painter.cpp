#include "tests/module_tour/block_painter.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using workbench::Art;
using workbench::Document;

/// Some colour for each kind of paint and of art.
uint32_t LightOf(int32_t kind) {
    return 0x305070u * static_cast<uint32_t>(kind + 1) & 0xFFFFFFu;
}

class Blocks : public workbench::PaintSurface {
public:
    Blocks(int32_t width, int32_t height)
        : width_(width),
          height_(height),
          bytes_(static_cast<size_t>(width) * static_cast<size_t>(height) * 4) {}

    void Fill(const Document&, const HostColor&) override { FillBlock(0, 0, width_, height_, 0xFFFFFF); }

    void Draw(const Document& document, const Art& art, const HostMatrix& artToPixels) override {
        if (art.IsContainer()) {
            for (const Art* member = art.lastChild; member; member = member->above)
                Draw(document, *member, artToPixels);
            return;
        }
        HostRect bounds{};
        if (art.hidden || !document.Bounds(art, &bounds)) return;
        const auto x = [&](double left, double top) {
            return static_cast<int>(std::floor(artToPixels.a * left + artToPixels.c * top + artToPixels.tx));
        };
        const auto y = [&](double left, double top) {
            return static_cast<int>(std::floor(artToPixels.b * left + artToPixels.d * top + artToPixels.ty));
        };
        const workbench::PathData* path = art.path();
        const uint32_t light =
            path ? LightOf(-(path->style.fillPaint ? path->style.fill : path->style.stroke).kind)
                 : LightOf(art.kind);
        FillBlock(x(bounds.left, bounds.top), y(bounds.left, bounds.top), x(bounds.right, bounds.bottom) + 1,
                  y(bounds.right, bounds.bottom) + 1, light);
    }

    const uint8_t* Pixels(int32_t* rowPixels) override {
        *rowPixels = width_;
        return bytes_.data();
    }

private:
    void FillBlock(int left, int top, int right, int bottom, uint32_t light) {
        for (int y = std::max(top, 0); y < std::min(bottom, height_); ++y) {
            for (int x = std::max(left, 0); x < std::min(right, width_); ++x) {
                uint8_t* pixel =
                    &bytes_[(static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)) *
                            4];
                pixel[1] = static_cast<uint8_t>(light >> 16);
                pixel[2] = static_cast<uint8_t>(light >> 8);
                pixel[3] = static_cast<uint8_t>(light);
            }
        }
    }

    int32_t width_, height_;
    std::vector<uint8_t> bytes_;
};

} // namespace

std::unique_ptr<workbench::PaintSurface> BlockPainter::NewSurface(int32_t width, int32_t height) {
    if (width <= 0 || height <= 0) return nullptr;
    return std::make_unique<Blocks>(width, height);
}
