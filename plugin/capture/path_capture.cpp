#include "plugin/capture/path_capture.h"

#include <algorithm>
#include <limits>
#include <span>

#include "plugin/capture/art_paint.h"
#include "plugin/capture/art_walk.h"
#include "plugin/capture/custom_colors.h"
#include "plugin/capture/pattern_capture.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/trace.h"

namespace {

constexpr double kNoTranslation = std::numeric_limits<double>::max();

bool IsStopColor(int32_t kind) {
    return kind == kColorGray || kind == kColorFour || kind == kColorThree || kind == kColorCustom;
}

// Stops that a record can't hold are left out, and those behind them close up.
void CaptureStops(GradientHandle gradient, AidbGradientRamp* ramp) {
    int32_t type = 0;
    if (!GradientSuite().GetGradientType(gradient, &type)) ramp->type = static_cast<uint16_t>(type);
    int32_t count = 0;
    if (GradientSuite().GetStopCount(gradient, &count)) return;
    for (int32_t index = 0; index < count; ++index) {
        HostGradientStop stop{};
        if (GradientSuite().GetNthStop(gradient, index, &stop) || !IsStopColor(stop.color.kind)) continue;
        if (stop.color.kind == kColorCustom) RegisterCustomColor(stop.color.u.custom.color);
        if (ramp->stopCount < kMaxStops) GradientStopToRecord(stop, &ramp->stops[ramp->stopCount++]);
    }
}

// Moves the gradient's origin, which is given in the space of the matrix, by what the art moves.  A matrix
// without an inverse shows nothing of its origin, which then stays.
void MoveGradientOrigin(HostGradientUse& use, const HostPoint& origin) {
    HostPoint placed{};
    RealMathSuite().TransformPoint(&use.matrix, &use.origin, &placed);
    placed.x -= origin.x;
    placed.y -= origin.y;
    HostMatrix inverse = use.matrix;
    if (!RealMathSuite().InvertMatrix(&inverse)) {
        RealMathSuite().TransformPoint(&inverse, &placed, &use.origin);
    }
}

// Returns the gradient's translation as the host gives it; the stored matrix has the hard origin in it.
HostPoint CaptureGradient(HostGradientUse& use, AidbGradientRamp* ramp, const HostPoint& origin) {
    if (use.gradient) CaptureStops(use.gradient, ramp);
    use.gradient = nullptr;
    MoveGradientOrigin(use, origin);
    const HostPoint translation{use.matrix.tx, use.matrix.ty};
    HostPoint hardOrigin{0, 0};
    if (HardSoftSuite().HardenPoint(&hardOrigin)) hardOrigin = {0, 0};
    use.matrix.tx += hardOrigin.x;
    use.matrix.ty -= hardOrigin.y;
    return translation;
}

void CaptureStyle(ArtHandle path, AidbPathObject* stored, const HostPoint& origin) {
    HostPathStyle style{};
    if (PathStyleSuite().GetPathStyle(path, &style)) style = {};
    HostPoint translation{kNoTranslation, kNoTranslation};

    if (!style.fillPaint) {
        ForgetHandle(style.fill);
    } else if (style.fill.kind == kColorGradient) {
        translation = CaptureGradient(style.fill.u.gradient, &stored->block.ramp, origin);
    } else if (style.fill.kind == kColorCustom) {
        RegisterCustomColor(style.fill.u.custom.color);
    } else if (style.fill.kind == kColorPattern) {
        style.fill.u.pattern.pattern = CapturePatternPaint(style.fill.u.pattern.pattern);
    }

    if (!style.strokePaint) {
        ForgetHandle(style.stroke);
    } else if (style.stroke.kind == kColorGradient) {
        style.stroke = HostColor{};
        style.stroke.kind = kColorGray;
    } else if (style.stroke.kind == kColorCustom) {
        RegisterCustomColor(style.stroke.u.custom.color);
    } else if (style.stroke.kind == kColorPattern) {
        style.stroke.u.pattern.pattern = CapturePatternPaint(style.stroke.u.pattern.pattern);
    }
    PathStyleToRecord(style, &stored->style, &translation);
}

void CaptureSegments(ArtHandle path, std::span<AidbSegment> stored, const HostPoint& origin) {
    int32_t index = 0;
    for (AidbSegment& target : stored) {
        HostPathSegment segment{};
        if (PathSuite().GetPathSegments(path, index++, 1, &segment)) continue;
        Subtract(segment.anchor, origin);
        Subtract(segment.in, origin);
        Subtract(segment.out, origin);
        SegmentToRecord(segment, &target);
    }
}

} // namespace

void ForgetHandle(HostColor& color) {
    if (color.kind == kColorPattern) color.u.pattern.pattern = nullptr;
    if (color.kind == kColorGradient) color.u.gradient.gradient = nullptr;
}

HostError PostArtPathProcess(ArtHandle path, MemoryHandle& object, const HostPoint* origin) {
    const TraceScope trace("PostArtPathProcess");
    int32_t count = 0;
    const HostError error = PathSuite().GetPathSegmentCount(path, &count);
    if (error || count < 1 || IsGuide(path)) return error;

    const int32_t kept = std::min(count, kMaxPathSegments);
    const uint32_t size = kPathBaseBytes + static_cast<uint32_t>(kept) * uint32_t{sizeof(AidbSegment)};
    const MemoryHandle grown = ResizeHandle(object, size, kSmallGrain);
    if (!grown) return kHostOutOfMemory;
    object = grown;
    const std::span<uint8_t> bytes(BlockBytes(object), size);
    auto* stored = ViewAt<AidbPathObject>(bytes);
    stored->header.type = kPathObject;
    stored->header.size = size;
    CaptureStyle(path, stored, *origin);
    stored->segmentCount = static_cast<int16_t>(kept);
    CaptureBlend(path, &stored->header);
    CaptureSegments(path, PathSegments(bytes), *origin);

    int32_t closed = 0;
    const HostError last = PathSuite().GetPathClosed(path, &closed);
    if (!last) stored->closed = static_cast<uint16_t>(closed);
    return kept < count ? kHostBadParameter : last;
}
