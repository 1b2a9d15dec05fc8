#include "plugin/panel/origin_cells.h"

namespace {

constexpr int kCellSide = 6;
constexpr int kCellPitch = 8;

} // namespace

RECT OriginCell(const RECT& control, int cell) {
    const int left = control.left + cell / 3 * kCellPitch;
    const int top = control.top + cell % 3 * kCellPitch;
    return {left, top, left + kCellSide, top + kCellSide};
}

int OriginCellAt(const RECT& control, POINT point) {
    for (int cell = 0; cell < kOriginCells; ++cell) {
        const RECT place = OriginCell(control, cell);
        if (point.x >= place.left && point.x <= place.right && point.y >= place.top &&
            point.y <= place.bottom) {
            return cell;
        }
    }
    return -1;
}
