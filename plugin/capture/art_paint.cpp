#include "plugin/capture/art_paint.h"

#include "plugin/capture/custom_colors.h"
#include "plugin/capture/path_capture.h"
#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"

static void MakeStorable(int32_t paints, HostColor& color) {
    if (!paints) {
        ForgetHandle(color);
    } else if (color.kind == kColorGradient || color.kind == kColorPattern) {
        color = HostColor{};
        color.kind = kColorGray;
    } else if (color.kind == kColorCustom) {
        RegisterCustomColor(color.u.custom.color);
    }
}

void CaptureBlend(ArtHandle art, AidbObjectHeader* header) {
    const AIBlendStyleSuite& suite = BlendStyleSuite();
    int32_t value = 0;
    double opacity = 0;
    if (!suite.GetBlendingMode(art, &value)) header->blendMode = static_cast<uint32_t>(value);
    if (!suite.GetOpacity(art, &opacity)) header->opacity = HostRealToFixed(opacity);
    if (!suite.GetIsolated(art, &value)) header->isolated = static_cast<uint16_t>(value);
    if (!suite.GetKnockout(art, &value)) header->knockout = static_cast<uint16_t>(value);
    if (!suite.GetAlphaIsShape(art, &value)) header->alphaIsShape = static_cast<uint16_t>(value);
}

bool ReadStylePaint(ArtHandle art, HostPathStyle* paint) {
    ArtStyleHandle style = nullptr;
    HostPathStyle read{};
    if (ArtStyleSuite().GetArtStyle(art, &style) || !style) return false;
    if (ArtStyleSuite().GetPaintAttributes(style, &read)) return false;
    *paint = read;
    return true;
}

void StoreStylePaint(HostPathStyle paint, AidbStyle* stored) {
    MakeStorable(paint.fillPaint, paint.fill);
    MakeStorable(paint.strokePaint, paint.stroke);
    PathStyleToRecord(paint, stored);
}
