#include "plugin/objects/conversions.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>

#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

namespace {

constexpr double kFixedOne = 65536.0;
constexpr double kAbsentReal = std::numeric_limits<double>::max();
constexpr double kTintSteps = 200.0; ///< the stored tint of 1.0
constexpr size_t kCustomNameLimit = 254;
constexpr int32_t kNoDefinition = -1; ///< kind of an entry that couldn't be read

double RealFromFixed(Fixed value) {
    return static_cast<double>(FixedToReal(value));
}

/// The low 16 bits of a number that is only carried.
uint16_t Low16(int32_t value) {
    return static_cast<uint16_t>(static_cast<uint32_t>(value));
}
int32_t SignExtended(uint16_t value) {
    return static_cast<int16_t>(value);
}

/// The low 32 bits of a host handle, and a handle that is nothing but such a number.
uint32_t NumberOf(const void* handle) {
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(handle));
}
template <typename Handle>
Handle AsHandle(uint32_t number) {
    return reinterpret_cast<Handle>(static_cast<uintptr_t>(number));
}

std::span<const customColorEntry> CustomColorTable() {
    return {globals->customColors,
            static_cast<size_t>(std::clamp(globals->customCount, 0, kCustomColorRows))};
}

/// How many of an entry's values tell custom colours of its kind apart; 0: it never equals another.
int ComparedValues(int32_t kind) {
    switch (kind) {
        case kCustomFour:
            return 4;
        case kCustomThree:
        case kCustomLab:
            return 3;
        default:
            return 0;
    }
}

bool SameInk(const customColorEntry& a, const customColorEntry& b) {
    return a.kind == b.kind && a.flags == b.flags && a.nameLength == b.nameLength &&
           std::memcmp(a.name, b.name, sizeof a.name) == 0;
}

uint8_t TintByte(double tint) {
    const double steps = tint * kTintSteps + 0.5;
    if (!(std::fabs(steps) < static_cast<double>(INT32_MAX))) return 0;
    return static_cast<uint8_t>(static_cast<uint32_t>(static_cast<int32_t>(steps)));
}

/// The stored reference of a custom colour; 0 if the table doesn't have it.  Only the first row of the same
/// ink counts: a later one with the right values would be reached under the first one's definition.
uint16_t ReferenceTo(const customColorEntry& entry, double tint) {
    const auto rows = CustomColorTable();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const customColorEntry& candidate) {
        return SameInk(candidate, entry);
    });
    const int compared = ComparedValues(entry.kind);
    if (row == rows.end() || compared == 0) return 0;
    if (!std::equal(entry.values, entry.values + compared, row->values)) return 0;
    const auto number = static_cast<uint32_t>(row - rows.begin()) + 1;
    return static_cast<uint16_t>(number << 8 | TintByte(tint));
}

/// The nearest paint without a name.  A kind that has none leaves `stored` as it is.
void StoreProcessEquivalent(const customColorEntry& entry, double tint, AidbColor* stored) {
    const double* v = entry.values;
    const auto ink = [&](double c) { return HostRealToFixed(c * (1.0 - tint)); };
    const auto light = [&](double c) { return HostRealToFixed(1.0 - (1.0 - c) * (1.0 - tint)); };
    switch (entry.kind) {
        case kCustomFour:
            stored->kind = kStoredFour;
            stored->u.four = {ink(v[0]), ink(v[1]), ink(v[2]), ink(v[3])};
            return;
        case kCustomThree:
            stored->kind = kStoredThree;
            stored->u.three = {light(v[0]), light(v[1]), light(v[2])};
            return;
        case kCustomLab:
            stored->kind = kStoredGray;
            stored->u.gray = 0;
            return;
        default:
            return;
    }
}

void StoreCustom(CustomColorHandle color, double tint, AidbColor* stored) {
    customColorEntry entry;
    FetchCustomColor(color, &entry);
    StoreProcessEquivalent(entry, tint, stored);
    stored->reference = ReferenceTo(entry, tint);
}

void StorePattern(const HostPatternUse& use, AidbPatternUse* stored) {
    stored->number = NumberOf(use.pattern);
    stored->shiftDistance = HostRealToFixed(use.shiftDistance);
    stored->shiftAngle = HostRealToFixed(use.shiftAngle);
    PointToRecord(use.scale, &stored->scale);
    stored->rotation = HostRealToFixed(use.rotation);
    stored->reflect = Low16(use.reflect);
    stored->reflectAngle = HostRealToFixed(use.reflectAngle);
    stored->shearAngle = HostRealToFixed(use.shearAngle);
    stored->shearAxis = HostRealToFixed(use.shearAxis);
    MatrixToRecord(use.matrix, &stored->matrix);
}

void ReadPattern(const AidbPatternUse& stored, HostPatternUse* use) {
    use->pattern = AsHandle<PatternHandle>(stored.number);
    use->shiftDistance = RealFromFixed(stored.shiftDistance);
    use->shiftAngle = RealFromFixed(stored.shiftAngle);
    PointFromRecord(stored.scale, &use->scale);
    use->rotation = RealFromFixed(stored.rotation);
    use->reflect = stored.reflect;
    use->reflectAngle = RealFromFixed(stored.reflectAngle);
    use->shearAngle = RealFromFixed(stored.shearAngle);
    use->shearAxis = RealFromFixed(stored.shearAxis);
    MatrixFromRecord(stored.matrix, &use->matrix);
}

void StoreGradient(const HostGradientUse& use, AidbGradientUse* stored, const HostPoint* translation) {
    stored->number = NumberOf(use.gradient);
    PointToRecord(use.origin, &stored->origin);
    stored->angle = HostRealToFixed(use.angle);
    stored->length = HostRealToFixed(use.length);
    MatrixToRecord(use.matrix, &stored->matrix);
    stored->highlightAngle = HostRealToFixed(use.highlightAngle);
    stored->highlightLength = HostRealToFixed(use.highlightLength);
    if (translation && translation->x != kAbsentReal && translation->y != kAbsentReal)
        PointToRecord(*translation, &stored->translation);
    else
        stored->translation = {kAbsentFixed, kAbsentFixed};
}

void ReadGradient(const AidbGradientUse& stored, HostGradientUse* use, HostPoint* translation) {
    use->gradient = AsHandle<GradientHandle>(stored.number);
    PointFromRecord(stored.origin, &use->origin);
    use->angle = RealFromFixed(stored.angle);
    use->length = RealFromFixed(stored.length);
    MatrixFromRecord(stored.matrix, &use->matrix);
    use->highlightAngle = RealFromFixed(stored.highlightAngle);
    use->highlightLength = RealFromFixed(stored.highlightLength);
    if (!translation) return;
    if (stored.translation.x != kAbsentFixed && stored.translation.y != kAbsentFixed)
        PointFromRecord(stored.translation, translation);
    else
        *translation = {kAbsentReal, kAbsentReal};
}

/// The host's colour behind a reference; null if there is none.
CustomColorHandle ResolveReference(uint16_t reference) {
    const size_t row = reference >> 8;
    if (row == 0 || row > CustomColorTable().size()) return nullptr;
    return globals->customHandles[row - 1];
}

} // namespace

Fixed RealToFixed(float value) {
    const double scaled = static_cast<double>(value) * kFixedOne;
    if (std::isnan(scaled)) return 0;
    if (scaled >= static_cast<double>(INT32_MAX)) return INT32_MAX;
    if (scaled <= -static_cast<double>(INT32_MAX)) return -INT32_MAX;
    return static_cast<Fixed>(scaled);
}

float FixedToReal(Fixed value) {
    return static_cast<float>(static_cast<double>(value) / kFixedOne);
}

Fixed HostRealToFixed(double value) {
    // Narrowing beyond the range of a float is infinity in IEEE arithmetic but undefined in the language.
    constexpr double kLargest = static_cast<double>(std::numeric_limits<float>::max());
    if (!std::isnan(value)) value = std::clamp(value, -kLargest, kLargest);
    return RealToFixed(static_cast<float>(value));
}

void PointToRecord(const HostPoint& point, FixedPoint* stored) {
    *stored = {HostRealToFixed(point.x), HostRealToFixed(point.y)};
}

void PointFromRecord(const FixedPoint& stored, HostPoint* point) {
    *point = {RealFromFixed(stored.x), RealFromFixed(stored.y)};
}

void RectToRecord(const HostRect& rect, FixedRect* stored) {
    *stored = {HostRealToFixed(rect.left), HostRealToFixed(rect.top), HostRealToFixed(rect.right),
               HostRealToFixed(rect.bottom)};
}

void RectFromRecord(const FixedRect& stored, HostRect* rect) {
    *rect = {RealFromFixed(stored.left), RealFromFixed(stored.top), RealFromFixed(stored.right),
             RealFromFixed(stored.bottom)};
}

void MatrixToRecord(const HostMatrix& matrix, FixedMatrix* stored) {
    *stored = {HostRealToFixed(matrix.a), HostRealToFixed(matrix.b),  HostRealToFixed(matrix.c),
               HostRealToFixed(matrix.d), HostRealToFixed(matrix.tx), HostRealToFixed(matrix.ty)};
}

void MatrixFromRecord(const FixedMatrix& stored, HostMatrix* matrix) {
    *matrix = {RealFromFixed(stored.a), RealFromFixed(stored.b),  RealFromFixed(stored.c),
               RealFromFixed(stored.d), RealFromFixed(stored.tx), RealFromFixed(stored.ty)};
}

void SegmentToRecord(const HostPathSegment& segment, AidbSegment* stored) {
    PointToRecord(segment.anchor, &stored->anchor);
    PointToRecord(segment.in, &stored->in);
    PointToRecord(segment.out, &stored->out);
    stored->corner = Low16(segment.corner);
}

void SegmentFromRecord(const AidbSegment& stored, HostPathSegment* segment) {
    PointFromRecord(stored.anchor, &segment->anchor);
    PointFromRecord(stored.in, &segment->in);
    PointFromRecord(stored.out, &segment->out);
    segment->corner = stored.corner;
}

void ColorToRecord(const HostColor& color, AidbColor* stored, const HostPoint* translation) {
    stored->kind = Low16(color.kind);
    stored->reference = 0;
    switch (color.kind) {
        case kColorGray:
            stored->u.gray = HostRealToFixed(color.u.gray.gray);
            return;
        case kColorFour:
            stored->u.four = {HostRealToFixed(color.u.four.cyan), HostRealToFixed(color.u.four.magenta),
                              HostRealToFixed(color.u.four.yellow), HostRealToFixed(color.u.four.black)};
            return;
        case kColorPattern:
            return StorePattern(color.u.pattern, &stored->u.pattern);
        case kColorCustom:
            return StoreCustom(color.u.custom.color, color.u.custom.tint, stored);
        case kColorGradient:
            return StoreGradient(color.u.gradient, &stored->u.gradient, translation);
        case kColorThree:
            stored->u.three = {HostRealToFixed(color.u.three.red), HostRealToFixed(color.u.three.green),
                               HostRealToFixed(color.u.three.blue)};
            return;
        default:
            return;
    }
}

void ColorFromRecord(const AidbColor& stored, HostColor* color, HostPoint* translation) {
    std::memset(color, 0, sizeof *color);
    if (const CustomColorHandle ink = ResolveReference(stored.reference)) {
        color->kind = kColorCustom;
        color->u.custom = {ink, (stored.reference & 0xFF) / kTintSteps};
        return;
    }
    color->kind = stored.kind;
    switch (color->kind) {
        case kColorGray:
            color->u.gray = {RealFromFixed(stored.u.gray)};
            return;
        case kColorFour:
            color->u.four = {RealFromFixed(stored.u.four.cyan), RealFromFixed(stored.u.four.magenta),
                             RealFromFixed(stored.u.four.yellow), RealFromFixed(stored.u.four.black)};
            return;
        case kColorPattern:
            return ReadPattern(stored.u.pattern, &color->u.pattern);
        case kColorGradient:
            return ReadGradient(stored.u.gradient, &color->u.gradient, translation);
        case kColorThree:
            color->u.three = {RealFromFixed(stored.u.three.red), RealFromFixed(stored.u.three.green),
                              RealFromFixed(stored.u.three.blue)};
            return;
        default:
            return;
    }
}

void PathStyleToRecord(const HostPathStyle& style, AidbStyle* stored, const HostPoint* translation) {
    stored->fillFlag = Low16(style.fillPaint);
    stored->strokeFlag = Low16(style.strokePaint);
    ColorToRecord(style.fill, &stored->fill, translation);
    stored->fillOverprint = Low16(style.fillOverprint);
    ColorToRecord(style.stroke, &stored->stroke);
    stored->strokeOverprint = Low16(style.strokeOverprint);
    stored->lineWidth = HostRealToFixed(style.lineWidth);
    stored->dashCount = Low16(style.dash.count);
    stored->dashOffset = HostRealToFixed(style.dash.offset);
    for (int i = 0; i < kMaxDashes; ++i) stored->dashes[i] = HostRealToFixed(style.dash.lengths[i]);
    stored->lineCap = Low16(style.lineCap);
    stored->lineJoin = Low16(style.lineJoin);
    stored->miterLimit = HostRealToFixed(style.miterLimit);
    stored->clip = Low16(style.clip);
    stored->lockClip = Low16(style.lockClip);
    stored->evenOdd = Low16(style.evenOdd);
    stored->resolution = HostRealToFixed(style.resolution);
}

void PathStyleFromRecord(const AidbStyle& stored, HostPathStyle* style, HostPoint* translation) {
    style->fillPaint = SignExtended(stored.fillFlag);
    style->strokePaint = SignExtended(stored.strokeFlag);
    ColorFromRecord(stored.fill, &style->fill, translation);
    style->fillOverprint = SignExtended(stored.fillOverprint);
    ColorFromRecord(stored.stroke, &style->stroke);
    style->strokeOverprint = SignExtended(stored.strokeOverprint);
    style->lineWidth = RealFromFixed(stored.lineWidth);
    style->dash.count = std::clamp(SignExtended(stored.dashCount), 0, kMaxDashes);
    style->dash.offset = RealFromFixed(stored.dashOffset);
    for (int i = 0; i < kMaxDashes; ++i) style->dash.lengths[i] = RealFromFixed(stored.dashes[i]);
    style->lineCap = SignExtended(stored.lineCap);
    style->lineJoin = SignExtended(stored.lineJoin);
    style->miterLimit = RealFromFixed(stored.miterLimit);
    style->clip = SignExtended(stored.clip);
    style->lockClip = SignExtended(stored.lockClip);
    style->evenOdd = SignExtended(stored.evenOdd);
    style->resolution = RealFromFixed(stored.resolution);
}

void GradientStopToRecord(const HostGradientStop& stop, AidbGradientStop* stored) {
    stored->midpoint = HostRealToFixed(stop.midpoint);
    stored->location = HostRealToFixed(stop.location);
    ColorToRecord(stop.color, &stored->color);
}

void GradientStopFromRecord(const AidbGradientStop& stored, HostGradientStop* stop) {
    stop->midpoint = RealFromFixed(stored.midpoint);
    stop->location = RealFromFixed(stored.location);
    ColorFromRecord(stored.color, &stop->color);
    stop->opacity = 1.0;
}

void RasterInfoToRecord(const HostRasterRecord& raster, AidbRasterInfo* stored) {
    const auto bound = [](int32_t value) { return static_cast<int16_t>(Low16(value)); };
    stored->flags = static_cast<uint16_t>(raster.flags);
    stored->left = bound(raster.left);
    stored->top = bound(raster.top);
    stored->right = bound(raster.right);
    stored->bottom = bound(raster.bottom);
    stored->byteWidth = raster.byteWidth;
    stored->colorSpace = Low16(raster.colorSpace);
    stored->bitsPerPixel = Low16(raster.bitsPerPixel);
    stored->originalColorSpace = Low16(raster.originalColorSpace);
}

void RasterInfoFromRecord(const AidbRasterInfo& stored, HostRasterRecord* raster) {
    raster->flags = stored.flags;
    raster->left = stored.left;
    raster->top = stored.top;
    raster->right = stored.right;
    raster->bottom = stored.bottom;
    raster->byteWidth = stored.byteWidth;
    raster->colorSpace = stored.colorSpace;
    raster->bitsPerPixel = stored.bitsPerPixel;
    raster->originalColorSpace = stored.originalColorSpace;
}

HostError FetchCustomColor(CustomColorHandle color, customColorEntry* entry) {
    std::memset(entry, 0, sizeof *entry);
    entry->kind = kNoDefinition;
    HostCustomColor definition;
    HostError error = CustomColorSuite().GetCustomColor(color, &definition);
    if (error != kHostNoError) return error;
    const HostString name;
    if (!name.get()) return kHostOutOfMemory;
    error = CustomColorSuite().GetCustomColorName(color, name.get());
    if (error != kHostNoError) return error;

    entry->kind = definition.kind;
    std::copy_n(definition.values, 4, entry->values);
    entry->flags = static_cast<int16_t>(Low16(definition.flags));
    char text[kHostStringCapacity];
    const size_t length = std::min(HostStringBytes(name.get(), kEncodingPlatform, text), kCustomNameLimit);
    std::memcpy(entry->name, text, length);
    entry->nameLength = static_cast<uint8_t>(length);
    return kHostNoError;
}
