#include "app/compare_rasters.h"

#include <algorithm>

using workbench::RasterData;

namespace {

uint8_t ByteAt(const std::vector<uint8_t>& pixels, size_t index) {
    return index < pixels.size() ? pixels[index] : 0;
}

size_t DifferentBytes(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
    size_t count = 0;
    const size_t end = std::max(a.size(), b.size());
    for (size_t i = 0; i < end; ++i) count += ByteAt(a, i) != ByteAt(b, i);
    return count;
}

struct NumberOf {
    const char* what;
    double expected, actual, origin;
};

} // namespace

void CompareRasters(const RasterData& expected, const RasterData& actual, const HostPoint& origin,
                    const std::string& place, DifferenceList* differences) {
    const HostRasterRecord &a = expected.record, &b = actual.record;
    const auto same = [&](int64_t x, int64_t y, const char* what) {
        if (x != y) differences->Report(place, what, static_cast<double>(x), static_cast<double>(y));
    };
    same(a.flags, b.flags, "image flags");
    same(a.left, b.left, "pixels' left");
    same(a.top, b.top, "pixels' top");
    same(a.right, b.right, "pixels' right");
    same(a.bottom, b.bottom, "pixels' bottom");
    same(a.byteWidth, b.byteWidth, "byte width");
    same(a.colorSpace, b.colorSpace, "colour space");
    same(a.bitsPerPixel, b.bitsPerPixel, "bits of a pixel");
    same(a.originalColorSpace, b.originalColorSpace, "original colour space");
    const HostMatrix &m = expected.matrix, &n = actual.matrix;
    const HostRect &r = expected.box, &s = actual.box;
    const NumberOf numbers[] = {
        {"image matrix a", m.a, n.a, 0},          {"image matrix b", m.b, n.b, 0},
        {"image matrix c", m.c, n.c, 0},          {"image matrix d", m.d, n.d, 0},
        {"image x", m.tx, n.tx, origin.x},        {"image y", m.ty, n.ty, origin.y},
        {"image box left", r.left, s.left, 0},    {"image box top", r.top, s.top, 0},
        {"image box right", r.right, s.right, 0}, {"image box bottom", r.bottom, s.bottom, 0}};
    for (const NumberOf& number : numbers) {
        const double room = ToleranceOf(number.expected - number.origin);
        differences->Near(number.expected, number.actual, room, place, number.what);
    }
    if (const size_t count = DifferentBytes(expected.pixels, actual.pixels))
        differences->Add(place + ": " + std::to_string(count) + " bytes of the image became others");
}
