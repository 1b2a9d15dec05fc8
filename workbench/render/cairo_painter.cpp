#include "workbench/render/cairo_painter.h"

#include <vector>

#include "workbench/document/color.h"
#include "workbench/render/art_renderer.h"
#include "workbench/render/cairo_pixels.h"

namespace workbench {
namespace {

class CairoPaintSurface : public PaintSurface {
public:
    explicit CairoPaintSurface(CairoSurface surface)
        : surface_(std::move(surface)), context_(cairo_create(surface_.get())) {}

    void Fill(const Document& document, const HostColor& color) override {
        const Light light = LightOf(document, color);
        cairo_set_source_rgb(context_.get(), light.red, light.green, light.blue);
        cairo_paint(context_.get());
    }

    void Draw(const Document& document, const Art& art, const HostMatrix& artToPixels) override {
        const cairo_matrix_t matrix = CairoMatrix(artToPixels);
        cairo_matrix_t check = matrix;
        // A matrix without an inverse would put the context into an error for good.
        if (cairo_matrix_invert(&check) != CAIRO_STATUS_SUCCESS) return;
        cairo_save(context_.get());
        cairo_set_matrix(context_.get(), &matrix);
        DrawArt(context_.get(), document, art);
        cairo_restore(context_.get());
    }

    const uint8_t* Pixels(int32_t* rowPixels) override {
        pixels_ = BytesOfImage(surface_.get());
        *rowPixels = cairo_image_surface_get_width(surface_.get());
        return pixels_.data();
    }

private:
    CairoSurface surface_;
    CairoContext context_;
    std::vector<uint8_t> pixels_;
};

} // namespace

std::unique_ptr<PaintSurface> CairoPainter::NewSurface(int32_t width, int32_t height) {
    if (width <= 0 || height <= 0) return nullptr;
    CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    return std::make_unique<CairoPaintSurface>(std::move(surface));
}

} // namespace workbench
