/// Areas of the screen, or of a window's client area: sets of pixels.
#pragma once

#include <cairo.h>
#include <windows.h>

class Region {
public:
    Region() : region_(cairo_region_create()) {}
    explicit Region(const RECT& rectangle);
    Region(const Region& other) : region_(cairo_region_copy(other.region_)) {}
    Region(Region&& other) noexcept : region_(other.region_) { other.region_ = cairo_region_create(); }
    Region& operator=(Region other) noexcept;
    ~Region() { cairo_region_destroy(region_); }

    void Add(const Region& other) { cairo_region_union(region_, other.region_); }
    void Subtract(const Region& other) { cairo_region_subtract(region_, other.region_); }
    void Subtract(const RECT& rectangle) { Subtract(Region(rectangle)); }
    void Intersect(const Region& other) { cairo_region_intersect(region_, other.region_); }
    void Intersect(const RECT& rectangle) { Intersect(Region(rectangle)); }
    void Move(int dx, int dy) { cairo_region_translate(region_, dx, dy); }
    void Clear() { *this = Region(); }

    bool IsEmpty() const { return cairo_region_is_empty(region_) != 0; }
    bool Contains(int x, int y) const { return cairo_region_contains_point(region_, x, y) != 0; }
    RECT Box() const; ///< all zero if empty

    /// A copy for one who takes it over.
    cairo_region_t* Copy() const { return cairo_region_copy(region_); }

private:
    cairo_region_t* region_;
};
