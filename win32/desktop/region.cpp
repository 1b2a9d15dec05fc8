#include "win32/desktop/region.h"

#include <utility>

Region::Region(const RECT& rectangle) {
    if (rectangle.right <= rectangle.left || rectangle.bottom <= rectangle.top) {
        region_ = cairo_region_create();
        return;
    }
    const cairo_rectangle_int_t box = {rectangle.left, rectangle.top, rectangle.right - rectangle.left,
                                       rectangle.bottom - rectangle.top};
    region_ = cairo_region_create_rectangle(&box);
}

Region& Region::operator=(Region other) noexcept {
    std::swap(region_, other.region_);
    return *this;
}

RECT Region::Box() const {
    cairo_rectangle_int_t box;
    cairo_region_get_extents(region_, &box);
    return {box.x, box.y, box.x + box.width, box.y + box.height};
}
