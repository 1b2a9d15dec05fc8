#include "plugin/capture/character_capture.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "plugin/capture/custom_colors.h"
#include "plugin/capture/pattern_capture.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/kinsoku_names.h"

namespace {

// ---- Font ----

void CaptureFont(const ATE::ICharFeatures& features, AidbFontRef* stored) {
    const FontKey key = features.GetFont().GetKey();
    char name[256] = {};
    ATE::Check(FontSuite().GetFontName(key, name, sizeof name));
    HostFontRecord record{};
    ATE::Check(FontSuite().GetFontRecord(key, &record));

    // The last byte of the field stays 0, and what a longer name left behind is cleared.
    const size_t length = std::min(std::strlen(name), sizeof stored->name - 1);
    stored->nameLength = static_cast<uint8_t>(length);
    std::memset(stored->name, 0, sizeof stored->name);
    std::memcpy(stored->name, name, length);
    const auto classNumber = [&](size_t number) {
        constexpr size_t kFirstWord = 2; // the record's third word
        return static_cast<uint16_t>(static_cast<uint32_t>(record.words[kFirstWord + number]));
    };
    for (size_t i = 0; i < std::size(stored->classFirst); ++i) stored->classFirst[i] = classNumber(i);
    for (size_t i = 0; i < std::size(stored->classRest); ++i)
        stored->classRest[i] = classNumber(std::size(stored->classFirst) + i);
}

// ---- Paragraph ----

Fixed Percent(double share) {
    return HostRealToFixed(share * 100.0);
}

uint16_t Low16(int32_t number) {
    return static_cast<uint16_t>(static_cast<uint32_t>(number));
}

uint16_t StoredJustification(int32_t justification) {
    switch (justification) {
        case 1: // right
            return 3;
        case 2: // centre
            return 2;
        case 3: // last line left
            return 4;
        case 4:
        case 5:
        case 6:
            return 5;
        default:
            return 1;
    }
}

void CaptureKinsoku(const ATE::IParaFeatures& features, AidbTextPara* stored) {
    const ATE::IKinsoku kinsoku = features.GetKinsoku();
    stored->kinsoku = 0;
    stored->kinsokuKind = kStoredKinsokuSoft;
    if (kinsoku.IsNull()) return;
    stored->kinsoku = 1;
    char16_t name[64] = {};
    kinsoku.GetName(name, 64);
    if (IsKinsokuName(name, kStoredKinsokuHard)) stored->kinsokuKind = kStoredKinsokuHard;
}

void CaptureParagraph(const ATE::IParaFeatures& features, AidbTextPara* stored) {
    stored->wordSpacing[0] = Percent(features.GetMinimumWordSpacing());
    stored->wordSpacing[1] = Percent(features.GetDesiredWordSpacing());
    stored->wordSpacing[2] = Percent(features.GetMaximumWordSpacing());
    stored->letterSpacing[0] = Percent(features.GetMinimumLetterSpacing());
    stored->letterSpacing[1] = Percent(features.GetDesiredLetterSpacing());
    stored->letterSpacing[2] = Percent(features.GetMaximumLetterSpacing());
    stored->firstLineIndent = HostRealToFixed(features.GetFirstLineIndent());
    stored->startIndent = HostRealToFixed(features.GetStartIndent());
    stored->endIndent = HostRealToFixed(features.GetEndIndent());
    stored->justification = StoredJustification(features.GetJustification());
    const int32_t burasagari = features.GetBurasagari();
    stored->burasagari = burasagari == 0 ? 0 : 1;
    stored->burasagariForced = burasagari == 1 ? 0 : 1;
    CaptureKinsoku(features, stored);
    stored->autoHyphenation = Low16(features.GetAutoHyphenation());
    stored->hyphenBefore = Low16(features.GetHyphenationBefore());
    stored->hyphenAfter = Low16(features.GetHyphenationAfter());
    stored->hyphenLimit = Low16(features.GetHyphenLimit());
    stored->constant25 = RealToFixed(25.0f);
    stored->repeatedCharacters = Low16(features.GetRepeatedCharacters());
    stored->constant1 = 1;
    stored->bunriKinshi = Low16(features.GetBunriKinshi());
    stored->constant2 = 1;
}

// ---- Character ----

void CaptureShape(const ATE::ICharFeatures& features, AidbCharacter* stored) {
    stored->fontSize = HostRealToFixed(features.GetFontSize());
    stored->baselineShift = HostRealToFixed(features.GetBaselineShift());
    stored->leading = HostRealToFixed(features.GetLeading());
    stored->tracking = RealToFixed(static_cast<float>(features.GetTracking()));
    stored->horizontalScale = Percent(features.GetHorizontalScale());
    stored->verticalScale = Percent(features.GetVerticalScale());
    constexpr int32_t kForms = 4;
    const int32_t form = features.GetJapaneseAlternate();
    const bool known = form >= 1 && form <= kForms;
    stored->hasAlternateForm = known ? 1 : 0;
    stored->alternateForm = known ? static_cast<uint32_t>(kForms - form) : 0;
}

// ---- Paint ----

void CaptureColor(HostColor color, AidbColor* stored) {
    if (color.kind == kColorGradient) {
        color = HostColor{};
        color.kind = kColorGray;
    } else if (color.kind == kColorCustom) {
        RegisterCustomColor(color.u.custom.color);
    } else if (color.kind == kColorPattern) {
        color.u.pattern.pattern = CapturePatternPaint(color.u.pattern.pattern);
    }
    ColorToRecord(color, stored);
}

void CaptureDash(const ATE::ICharFeatures& features, AidbStyle* stored) {
    const HostTextDash dash = features.GetLineDashArray().GetDash();
    stored->dashCount = static_cast<uint16_t>(dash.count);
    for (int i = 0; i < kMaxDashes; ++i) stored->dashes[i] = RealToFixed(dash.lengths[i]);
}

void CapturePaint(const ATE::ICharFeatures& features, AidbStyle* stored) {
    stored->fillFlag = Low16(features.GetFill());
    if (stored->fillFlag) CaptureColor(features.GetFillColor().GetColor(), &stored->fill);
    stored->strokeFlag = Low16(features.GetStroke());
    if (stored->strokeFlag) CaptureColor(features.GetStrokeColor().GetColor(), &stored->stroke);
    stored->fillOverprint = Low16(features.GetFillOverprint());
    stored->strokeOverprint = Low16(features.GetStrokeOverprint());
    int32_t number = 0;
    ATE::Check(ATEPaintSuite().LineCapFromEngine(features.GetLineCap(), &number));
    stored->lineCap = Low16(number);
    ATE::Check(ATEPaintSuite().LineJoinFromEngine(features.GetLineJoin(), &number));
    stored->lineJoin = Low16(number);
    stored->lineWidth = HostRealToFixed(features.GetLineWidth());
    stored->miterLimit = HostRealToFixed(features.GetMiterLimit());
    stored->dashOffset = HostRealToFixed(features.GetLineDashOffset());
    CaptureDash(features, stored);
}

} // namespace

void CaptureCharacter(const ATE::ITextRange& range, AidbTextRun* attributes) {
    const ATE::ICharFeatures features = range.GetLocalCharFeatures();
    const ATE::IParaFeatures paragraph = range.GetLocalParaFeatures();
    CaptureFont(features, &attributes->font);
    CaptureParagraph(paragraph, &attributes->para);
    CaptureShape(features, &attributes->character);
    CapturePaint(features, &attributes->style);
}
