/// How the sample's page is cut up, and the small things that all its art is made of.
#pragma once

#include <initializer_list>
#include <string>

#include "workbench/document/document.h"

namespace sample {

inline constexpr double kPageWidth = 595, kPageHeight = 842;
inline constexpr int kColumns = 4, kRows = 6;

/// The part of a cell that art fills, in points, counted from the upper left cell.
inline HostRect Cell(int column, int row) {
    constexpr double kMargin = 30, kGap = 14;
    constexpr double kWidth = (kPageWidth - 2 * kMargin) / kColumns;
    constexpr double kHeight = (kPageHeight - 2 * kMargin) / kRows;
    const double left = kMargin + column * kWidth, top = kPageHeight - kMargin - row * kHeight;
    return {left + kGap / 2, top - kGap / 2, left + kWidth - kGap / 2, top - kHeight + kGap / 2};
}

inline HostRect Part(const HostRect& cell, double left, double bottom, double right, double top) {
    const double width = cell.right - cell.left, height = cell.top - cell.bottom;
    return {cell.left + left * width, cell.bottom + top * height, cell.left + right * width,
            cell.bottom + bottom * height};
}

/// On top of `parent`; without paint.
workbench::Art& AddRectangle(workbench::Document& document, workbench::Art* parent, const HostRect& rect);
workbench::Art& AddEllipse(workbench::Document& document, workbench::Art* parent, const HostRect& rect);
workbench::Art& AddLine(workbench::Document& document, workbench::Art* parent,
                        std::initializer_list<HostPoint> points);

void SetFill(workbench::Art& path, const HostColor& color);
void SetStroke(workbench::Art& path, const HostColor& color, double width);

// The rooms of the sample, each filling its own cells.
void AddPaint(workbench::Document& document, workbench::Art* layer);
void AddGroups(workbench::Document& document, workbench::Art* layer);
void AddImages(workbench::Document& document, workbench::Art* layer);
void AddMeshes(workbench::Document& document, workbench::Art* layer);
void AddTexts(workbench::Document& document, workbench::Art* layer);

} // namespace sample
