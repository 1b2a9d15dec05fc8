#include "workbench/svg/shapes.h"

#include <algorithm>

#include "workbench/svg/own_words.h"
#include "workbench/svg/svg_values.h"

namespace workbench {
namespace {

/// The share of the radius at which a quarter circle's handles lie.
constexpr double kQuarterHandle = 0.55228474983079339;

struct LengthReader {
    pugi::xml_node element;
    const Surroundings& here;
    double X(const char* name) const {
        return LengthAttribute(element, name, here.style.fontSize, here.viewWidth, 0);
    }
    double Y(const char* name) const {
        return LengthAttribute(element, name, here.style.fontSize, here.viewHeight, 0);
    }
    double Radius(const char* name) const {
        return LengthAttribute(element, name, here.style.fontSize, ViewDiagonal(here), 0);
    }
    bool Has(const char* name) const {
        Length length;
        return ParseLength(element.attribute(name).value(), &length);
    }
};

void Ellipse(double x, double y, double rx, double ry, PathBuilder& builder) {
    const double hx = rx * kQuarterHandle, hy = ry * kQuarterHandle;
    builder.MoveTo({x + rx, y});
    builder.CurveTo({x + rx, y + hy}, {x + hx, y + ry}, {x, y + ry});
    builder.CurveTo({x - hx, y + ry}, {x - rx, y + hy}, {x - rx, y});
    builder.CurveTo({x - rx, y - hy}, {x - hx, y - ry}, {x, y - ry});
    builder.CurveTo({x + hx, y - ry}, {x + rx, y - hy}, {x + rx, y});
    builder.Close();
}

void Rectangle(double x, double y, double width, double height, double rx, double ry, PathBuilder& builder) {
    const double right = x + width, bottom = y + height;
    if (rx <= 0 || ry <= 0) {
        builder.MoveTo({x, y});
        builder.LineTo({right, y});
        builder.LineTo({right, bottom});
        builder.LineTo({x, bottom});
        builder.Close();
        return;
    }
    const double hx = rx * (1 - kQuarterHandle), hy = ry * (1 - kQuarterHandle);
    // Sides that the rounded corners use up are left out, so that no anchor is doubled.
    const bool wide = width > 2 * rx, high = height > 2 * ry;
    builder.MoveTo({x + rx, y});
    if (wide) builder.LineTo({right - rx, y});
    builder.CurveTo({right - hx, y}, {right, y + hy}, {right, y + ry});
    if (high) builder.LineTo({right, bottom - ry});
    builder.CurveTo({right, bottom - hy}, {right - hx, bottom}, {right - rx, bottom});
    if (wide) builder.LineTo({x + rx, bottom});
    builder.CurveTo({x + hx, bottom}, {x, bottom - hy}, {x, bottom - ry});
    if (high) builder.LineTo({x, y + ry});
    builder.CurveTo({x, y + hy}, {x + hx, y}, {x + rx, y});
    builder.Close();
}

void ReadRectangle(const LengthReader& read, PathBuilder& builder) {
    const double width = read.X("width"), height = read.Y("height");
    if (!(width > 0) || !(height > 0)) return;
    double rx = read.X("rx"), ry = read.Y("ry");
    if (!read.Has("rx") || rx < 0) rx = ry;
    if (!read.Has("ry") || ry < 0) ry = rx;
    Rectangle(read.X("x"), read.Y("y"), width, height, std::min(rx, width / 2), std::min(ry, height / 2),
              builder);
}

void ReadEllipse(const LengthReader& read, bool circle, PathBuilder& builder) {
    double rx = circle ? read.Radius("r") : read.X("rx");
    double ry = circle ? rx : read.Y("ry");
    if (!circle && !read.Has("rx")) rx = ry;
    if (!circle && !read.Has("ry")) ry = rx;
    if (rx > 0 && ry > 0) Ellipse(read.X("cx"), read.Y("cy"), rx, ry, builder);
}

/// False if the list of points has a fault; the points before it count.
bool ReadPoints(std::string_view text, bool closed, PathBuilder& builder) {
    TextCursor cursor(text);
    HostPoint point{};
    bool first = true;
    cursor.SkipBlanks();
    while (!cursor.AtEnd() && !builder.overflow()) {
        const bool good = cursor.Number(&point.x) && (cursor.SkipSeparators(), cursor.Number(&point.y));
        if (!good) break;
        first ? builder.MoveTo(point) : builder.LineTo(point);
        first = false;
        cursor.SkipSeparators();
    }
    if (closed && !first) builder.Close();
    return cursor.AtEnd();
}

Subpaths ReadPath(ReadContext& context, pugi::xml_node element, bool* damaged, bool* overflow) {
    const std::string_view data = element.attribute("d").value();
    Subpaths exact;
    const std::string_view own = context.Own(element, kOwnSegments);
    if (!own.empty() && ParseSegmentsText(own, data, context.segmentsLeft, &exact)) return exact;
    return ParsePathData(data, context.segmentsLeft, damaged, overflow);
}

} // namespace

Subpaths ShapeGeometry(ReadContext& context, pugi::xml_node element, ElementKind kind,
                       const Surroundings& here) {
    bool damaged = false, overflow = false;
    Subpaths subpaths;
    if (kind == ElementKind::kPath) {
        subpaths = ReadPath(context, element, &damaged, &overflow);
    } else {
        PathBuilder builder(context.segmentsLeft);
        const LengthReader read{element, here};
        switch (kind) {
            case ElementKind::kRect:
                ReadRectangle(read, builder);
                break;
            case ElementKind::kCircle:
                ReadEllipse(read, true, builder);
                break;
            case ElementKind::kEllipse:
                ReadEllipse(read, false, builder);
                break;
            case ElementKind::kLine:
                builder.MoveTo({read.X("x1"), read.Y("y1")});
                builder.LineTo({read.X("x2"), read.Y("y2")});
                break;
            default:
                damaged =
                    !ReadPoints(element.attribute("points").value(), kind == ElementKind::kPolygon, builder);
                break;
        }
        overflow = builder.overflow();
        subpaths = builder.Finish();
    }
    if (damaged) context.Lose("damaged path data");
    size_t used = 0;
    for (const Subpath& subpath : subpaths) used += subpath.segments.size();
    // The anchor that starts a subpath isn't counted by the builder, so what is used may pass what was left.
    if (overflow || used > context.segmentsLeft) {
        context.refusal = "the file's paths have more than " + std::to_string(kMaxSegments) + " anchors";
        return {};
    }
    context.segmentsLeft -= used;
    return subpaths;
}

} // namespace workbench
