#include "plugin/rebuild/paint_rebuild.h"

#include <algorithm>

#include "plugin/frame/globals.h"
#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/rebuild/art_paint.h"

static void MakeGray(HostColor* color) {
    *color = HostColor{};
    color->kind = kColorGray;
}

static void ReadStop(const AidbGradientStop& stored, HostGradientStop* stop) {
    *stop = HostGradientStop{};
    GradientStopFromRecord(stored, stop);
    stop->opacity = 1.0;
    KeepPlainColor(&stop->color);
}

/// A new gradient has two stops already: they take the first and the last one, the others go in between.
static void SetStops(GradientHandle gradient, const AidbGradientRamp& ramp) {
    const int32_t count = std::min<int32_t>(ramp.stopCount, kMaxStops);
    if (count == 0) return;
    HostGradientStop stop;
    ReadStop(ramp.stops[0], &stop);
    GradientSuite().SetNthStop(gradient, 0, &stop);
    ReadStop(ramp.stops[count - 1], &stop);
    GradientSuite().SetNthStop(gradient, 1, &stop);
    for (int32_t index = 1; index < count - 1; ++index) {
        ReadStop(ramp.stops[index], &stop);
        GradientSuite().InsertStop(gradient, index, &stop);
    }
}

static void MoveGradient(const LoadState& load, HostGradientUse* use) {
    if (load.gradientSpot.x == kNoGradientSpot || load.gradientSpot.y == kNoGradientSpot) {
        use->matrix.tx -= load.hardZero.x;
        use->matrix.ty += load.hardZero.y;
    } else {
        use->matrix.tx = load.gradientSpot.x;
        use->matrix.ty = load.gradientSpot.y;
    }
    HostPoint onPage;
    RealMathSuite().TransformPoint(&use->matrix, &use->origin, &onPage);
    const HostPoint offset = PlacementOffset(load);
    onPage.x += offset.x;
    onPage.y += offset.y;
    HostMatrix inverse = use->matrix;
    if (RealMathSuite().InvertMatrix(&inverse) == kHostNoError)
        RealMathSuite().TransformPoint(&inverse, &onPage, &use->origin);
}

void RebuildGradient(LoadState& load, HostPathStyle* style, const AidbGradientBlock& block) {
    GradientHandle gradient = nullptr;
    if (GradientSuite().NewGradient(&gradient) != kHostNoError || !gradient) {
        // The style with the stored number in place of a handle would be refused, and the load would end.
        MakeGray(&style->fill);
        return;
    }
    GradientSuite().SetGradientType(gradient, static_cast<int16_t>(block.ramp.type));
    SetStops(gradient, block.ramp);
    style->fill.u.gradient.gradient = gradient;
    MoveGradient(load, &style->fill.u.gradient);
}

/// The host's pattern of a holder, or none.
static PatternHandle NewPattern(ArtHandle holder) {
    PatternHandle pattern = nullptr;
    if (PatternSuite().NewPattern(&pattern) != kHostNoError || !pattern) return nullptr;
    PatternSuite().SetPatternArt(pattern, holder);
    return pattern;
}

void LinkPattern(LoadState& load, HostColor* color, int32_t* paintFlag) {
    const auto number = reinterpret_cast<uintptr_t>(color->u.pattern.pattern);
    const ArtHandle holder = number < kContainerLimit ? load.patternHolders[number] : nullptr;
    color->u.pattern.pattern = holder ? NewPattern(holder) : nullptr;
    if (color->u.pattern.pattern) return;
    *paintFlag = 0;
    MakeGray(color);
}

void RebuildPaints(LoadState& load, HostPathStyle* style, const AidbGradientBlock& block) {
    if (style->fillPaint && style->fill.kind == kColorGradient)
        RebuildGradient(load, style, block);
    else if (style->fillPaint && style->fill.kind == kColorPattern)
        LinkPattern(load, &style->fill, &style->fillPaint);
    else
        KeepPlainColor(&style->fill);

    if (style->strokePaint && style->stroke.kind == kColorPattern)
        LinkPattern(load, &style->stroke, &style->strokePaint);
    else
        KeepPlainColor(&style->stroke);
}
