#include "plugin/rebuild/art_paint.h"

#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"

void KeepPlainColor(HostColor* color) {
    const bool plain = color->kind == kColorGray || color->kind == kColorFour || color->kind == kColorThree;
    if (plain || (color->kind == kColorCustom && color->u.custom.color)) return;
    *color = HostColor{};
    color->kind = kColorGray;
}

void SetBlend(ArtHandle art, const AidbObjectHeader& header) {
    const AIBlendStyleSuite& blend = BlendStyleSuite();
    blend.SetBlendingMode(art, static_cast<int32_t>(header.blendMode));
    blend.SetOpacity(art, FixedToReal(header.opacity));
    blend.SetIsolated(art, header.isolated);
    blend.SetKnockout(art, header.knockout);
    blend.SetAlphaIsShape(art, header.alphaIsShape);
}

void SetStylePaint(ArtHandle art, const AidbStyle& stored) {
    HostPathStyle paint{};
    HostPoint spot{};
    PathStyleFromRecord(stored, &paint, &spot);
    KeepPlainColor(&paint.fill);
    KeepPlainColor(&paint.stroke);
    ArtStyleHandle style = nullptr;
    if (ArtStyleSuite().NewStyleFromPathStyle(&paint, 0, 0, &style) == kHostNoError)
        ArtStyleSuite().SetArtStyle(art, style);
}
