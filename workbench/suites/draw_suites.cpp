// The tables of suites/draw.h: off-screen ports over the host's painter, and plane mathematics.

#include "suites/draw.h"

#include <cmath>

#include "workbench/document/color.h"
#include "workbench/document/matrix.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

namespace {

// AI Draw Art Suite

constexpr uint32_t kDrawVersion = 11;
constexpr int32_t kLargestPort = 0x4000; ///< pixels on a side

/// A port of a host without a painter: it can be filled and read, and nothing can be drawn.
class BlankSurface : public PaintSurface {
public:
    BlankSurface(int32_t width, int32_t height)
        : width_(width), pixels_(static_cast<size_t>(width) * static_cast<size_t>(height) * 4) {}

    void Fill(const Document& document, const HostColor& color) override {
        const Light light = LightOf(document, color);
        for (size_t i = 0; i < pixels_.size(); i += 4) {
            pixels_[i + 1] = Byte(light.red);
            pixels_[i + 2] = Byte(light.green);
            pixels_[i + 3] = Byte(light.blue);
        }
    }
    void Draw(const Document&, const Art&, const HostMatrix&) override {}
    const uint8_t* Pixels(int32_t* rowPixels) override {
        *rowPixels = width_;
        return pixels_.data();
    }

private:
    static uint8_t Byte(double light) { return static_cast<uint8_t>(std::lround(light * 255)); }

    int32_t width_;
    std::vector<uint8_t> pixels_;
};

HostError NewOffscreenPort(SuiteCall& call, int32_t width, int32_t height, PortHandle& port) {
    if (width < 1 || height < 1 || width > kLargestPort || height > kLargestPort) return kHostBadParameter;
    auto made = std::make_unique<HostPort>();
    made->width = width;
    made->height = height;
    made->canDraw = call.host().painter != nullptr;
    if (made->canDraw)
        made->surface = call.host().painter->NewSurface(width, height);
    else
        made->surface = std::make_unique<BlankSurface>(width, height);
    if (!made->surface) return kHostOutOfMemory;
    port = call.host().Lend<PortHandle>(HandleType::kPort, std::move(made));
    return kHostNoError;
}

HostError FillPort(SuiteCall& call, HostPort& port, const HostColor& color) {
    if (const HostError error = NeedDocument(call)) return error;
    if (!call.document().Knows(color)) return call.Fault(kHostBadHandle, "a colour that names nothing");
    port.surface->Fill(call.document(), color);
    return kHostNoError;
}

/// From art coordinates to the port's pixels, whose y grows downward.
HostMatrix ArtToPixels(const HostDrawData& data) {
    const HostMatrix& m = data.matrix;
    const HostPoint& o = data.origin;
    return {m.a, -m.b, m.c, -m.d, m.tx - (m.a * o.x + m.c * o.y), -(m.ty - (m.b * o.x + m.d * o.y))};
}

HostError DrawArt(SuiteCall& call, const HostDrawData& data) {
    if (data.version != kDrawVersion || data.outputKind != kDrawOutputPort) {
        return call.Fault(kHostBadParameter, "draw data of another version or output");
    }
    const Art* art = LookUp<Art>(call, data.art, false);
    HostPort* port = LookUp<HostPort>(call, data.port, false);
    if (call.error()) return call.error();
    if (!port->canDraw) return kHostRefused;
    const HostMatrix m = ArtToPixels(data);
    for (const double value : {m.a, m.b, m.c, m.d, m.tx, m.ty}) {
        if (!std::isfinite(value)) return kHostBadParameter;
    }
    port->surface->Draw(call.document(), *art, m);
    return kHostNoError;
}

HostError GetPortPixels(SuiteCall&, HostPort& port, const uint8_t*& pixels, int32_t& rowPixels) {
    int32_t row = 0;
    const uint8_t* found = port.surface->Pixels(&row);
    if (!found) return kHostOutOfMemory;
    pixels = found;
    rowPixels = row;
    return kHostNoError;
}

HostError ReleasePort(SuiteCall& call, HostPort& port) {
    call.host().TakeBack(port);
    return kHostNoError;
}

// AI Real Math Suite

void SetScaleMatrix(SuiteCall&, HostMatrix& matrix, double x, double y) {
    matrix = {x, 0, 0, y, 0, 0};
}

void SetTranslationMatrix(SuiteCall&, HostMatrix& matrix, double x, double y) {
    matrix = {1, 0, 0, 1, x, y};
}

void TransformPoint(SuiteCall&, const HostMatrix& m, const HostPoint& from, HostPoint& to) {
    to = {m.a * from.x + m.c * from.y + m.tx, m.b * from.x + m.d * from.y + m.ty};
}

HostError InvertMatrix(SuiteCall&, HostMatrix& matrix) {
    const HostMatrix m = matrix;
    const double determinant = m.a * m.d - m.b * m.c;
    const HostMatrix inverse{m.d / determinant,
                             -m.b / determinant,
                             -m.c / determinant,
                             m.a / determinant,
                             (m.c * m.ty - m.d * m.tx) / determinant,
                             (m.b * m.tx - m.a * m.ty) / determinant};
    for (const double value : {inverse.a, inverse.b, inverse.c, inverse.d, inverse.tx, inverse.ty}) {
        if (!std::isfinite(value)) return kHostBadParameter;
    }
    matrix = inverse;
    return kHostNoError;
}

int32_t PointsEqual(SuiteCall&, const HostPoint& a, const HostPoint& b) {
    return a.x == b.x && a.y == b.y;
}

void InsetRect(SuiteCall&, HostRect& rect, float x, float y) {
    rect.left += x;
    rect.right -= x;
    rect.top -= y;
    rect.bottom += y;
}

int32_t PointInRect(SuiteCall&, const HostPoint& point, const HostRect& rect) {
    return point.x >= rect.left && point.x <= rect.right && point.y >= rect.bottom && point.y <= rect.top;
}

void OffsetHostRect(SuiteCall&, HostRect& rect, double x, double y) {
    rect = {rect.left + x, rect.top + y, rect.right + x, rect.bottom + y};
}

void ConcatTranslation(SuiteCall&, HostMatrix& matrix, double x, double y) {
    matrix.tx += x;
    matrix.ty += y;
}

void ConcatScale(SuiteCall&, HostMatrix& matrix, double x, double y) {
    matrix = Concat({x, 0, 0, y, 0, 0}, matrix);
}

void ConcatRotation(SuiteCall&, HostMatrix& matrix, double radians) {
    const double c = std::cos(radians), s = std::sin(radians);
    matrix = Concat({c, s, -s, c, 0, 0}, matrix);
}

void ConcatMatrix(SuiteCall&, HostMatrix& matrix, const HostMatrix& last) {
    matrix = Concat(last, matrix);
}

} // namespace

const void* DrawArtSuiteTable() {
    static constexpr AIDrawArtSuite table{
        Entry<"AI Draw Art Suite", "NewOffscreenPort", NewOffscreenPort>::Run,
        Entry<"AI Draw Art Suite", "FillPort", FillPort>::Run,
        Entry<"AI Draw Art Suite", "DrawArt", DrawArt>::Run,
        Entry<"AI Draw Art Suite", "GetPortPixels", GetPortPixels>::Run,
        Entry<"AI Draw Art Suite", "ReleasePort", ReleasePort, EntryKind::kDisposal>::Run,
    };
    return &table;
}

const void* RealMathSuiteTable() {
    static constexpr AIRealMathSuite table{
        Entry<"AI Real Math Suite", "SetScaleMatrix", SetScaleMatrix>::Run,
        Entry<"AI Real Math Suite", "SetTranslationMatrix", SetTranslationMatrix>::Run,
        Entry<"AI Real Math Suite", "TransformPoint", TransformPoint>::Run,
        Entry<"AI Real Math Suite", "InvertMatrix", InvertMatrix>::Run,
        Entry<"AI Real Math Suite", "PointsEqual", PointsEqual, EntryKind::kPlain>::Run,
        Entry<"AI Real Math Suite", "InsetRect", InsetRect>::Run,
        Entry<"AI Real Math Suite", "PointInRect", PointInRect, EntryKind::kPlain>::Run,
        Entry<"AI Real Math Suite", "OffsetRect", OffsetHostRect>::Run,
        Entry<"AI Real Math Suite", "ConcatTranslation", ConcatTranslation>::Run,
        Entry<"AI Real Math Suite", "ConcatScale", ConcatScale>::Run,
        Entry<"AI Real Math Suite", "ConcatRotation", ConcatRotation>::Run,
        Entry<"AI Real Math Suite", "ConcatMatrix", ConcatMatrix>::Run,
    };
    return &table;
}

} // namespace workbench
