#include "workbench/render/contact_sheet.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "workbench/render/cairo_pixels.h"

namespace workbench {
namespace {

constexpr int kSourceSize = 128;
constexpr int kMargin = 16;
constexpr int kHeadingHeight = 30;

struct Metrics {
    int size, columns, cellWidth, cellHeight, labelHeight;
};

Metrics MetricsOf(int cellSize) {
    Metrics metrics{};
    metrics.size = cellSize;
    metrics.columns = cellSize <= 32 ? 16 : cellSize <= 64 ? 12 : 8;
    metrics.labelHeight = cellSize <= 32 ? 14 : 18;
    metrics.cellWidth = std::max(cellSize, 72) + 12;
    metrics.cellHeight = cellSize + metrics.labelHeight + 10;
    return metrics;
}

/// One line of a sheet: a heading, or up to `columns` cells.
struct Line {
    const SheetSection* heading = nullptr;
    const SheetCell* first = nullptr;
    size_t count = 0;
};

std::vector<std::vector<Line>> SplitIntoSheets(const std::vector<SheetSection>& sections,
                                               const Metrics& metrics, int rowsPerSheet) {
    std::vector<std::vector<Line>> sheets(1);
    int rows = 0;
    for (const SheetSection& section : sections) {
        bool headed = section.heading.empty();
        for (size_t i = 0; i < section.cells.size(); i += static_cast<size_t>(metrics.columns)) {
            if (rows == rowsPerSheet) {
                sheets.emplace_back();
                rows = 0;
                headed = section.heading.empty();
            }
            if (!headed) sheets.back().push_back({&section, nullptr, 0});
            headed = true;
            sheets.back().push_back(
                {nullptr, &section.cells[i],
                 std::min(section.cells.size() - i, static_cast<size_t>(metrics.columns))});
            ++rows;
        }
    }
    return sheets;
}

void DrawText(cairo_t* context, const std::string& text, double x, double y, int width, double points,
              bool bold) {
    PangoLayout* layout = pango_cairo_create_layout(context);
    PangoFontDescription* font = pango_font_description_from_string(bold ? "Sans Bold" : "Sans");
    pango_font_description_set_absolute_size(font, points * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_font_description_free(font);
    pango_layout_set_width(layout, width * PANGO_SCALE);
    pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    pango_layout_set_single_paragraph_mode(layout, TRUE);
    pango_layout_set_alignment(layout, bold ? PANGO_ALIGN_LEFT : PANGO_ALIGN_CENTER);
    pango_layout_set_text(layout, text.c_str(), static_cast<int>(text.size()));
    cairo_set_source_rgb(context, 0.1, 0.1, 0.1);
    cairo_move_to(context, x, y);
    pango_cairo_show_layout(context, layout);
    g_object_unref(layout);
}

void DrawCell(cairo_t* context, const SheetCell& cell, const Metrics& metrics, double x, double y) {
    const double left = x + (metrics.cellWidth - metrics.size) / 2.0;
    if (const CairoSurface picture = ImageOfBytes(cell.pixels, kSourceSize, kSourceSize)) {
        cairo_save(context);
        cairo_translate(context, left, y);
        cairo_scale(context, static_cast<double>(metrics.size) / kSourceSize,
                    static_cast<double>(metrics.size) / kSourceSize);
        cairo_set_source_surface(context, picture.get(), 0, 0);
        cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_GOOD);
        cairo_paint(context);
        cairo_restore(context);
    }
    cairo_set_source_rgb(context, 0.8, 0.8, 0.8);
    cairo_set_line_width(context, 1);
    cairo_rectangle(context, left - 0.5, y - 0.5, metrics.size + 1, metrics.size + 1);
    cairo_stroke(context);
    DrawText(context, cell.name, x + 2, y + metrics.size + 2, metrics.cellWidth - 4,
             metrics.size <= 32 ? 9 : 11, false);
}

PagePicture DrawSheet(const std::vector<Line>& lines, const Metrics& metrics) {
    const int width = 2 * kMargin + metrics.columns * metrics.cellWidth;
    int height = 2 * kMargin;
    for (const Line& line : lines) height += line.heading ? kHeadingHeight : metrics.cellHeight;
    PagePicture sheet;
    const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    const CairoContext context(cairo_create(surface.get()));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
    double y = kMargin;
    for (const Line& line : lines) {
        if (line.heading) {
            DrawText(context.get(), line.heading->heading, kMargin, y + 6, width - 2 * kMargin, 16, true);
            y += kHeadingHeight;
            continue;
        }
        for (size_t i = 0; i < line.count; ++i) {
            DrawCell(context.get(), line.first[i], metrics,
                     kMargin + static_cast<double>(i) * metrics.cellWidth, y);
        }
        y += metrics.cellHeight;
    }
    sheet.width = width;
    sheet.height = height;
    sheet.pixels = BytesOfImage(surface.get());
    return sheet;
}

} // namespace

std::vector<PagePicture> DrawContactSheets(const std::vector<SheetSection>& sections, int cellSize,
                                           int rowsPerSheet) {
    const Metrics metrics = MetricsOf(cellSize);
    std::vector<PagePicture> sheets;
    for (const auto& lines : SplitIntoSheets(sections, metrics, rowsPerSheet)) {
        sheets.push_back(DrawSheet(lines, metrics));
    }
    return sheets;
}

} // namespace workbench
