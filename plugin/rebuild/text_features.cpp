#include "plugin/rebuild/text_features.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "plugin/objects/conversions.h"
#include "plugin/objects/kinsoku_names.h"
#include "plugin/rebuild/art_paint.h"
#include "plugin/rebuild/font_match.h"
#include "plugin/rebuild/paint_rebuild.h"

namespace {

/// Each feature stands for itself: one that the host refuses is passed over.
template <typename Step>
void Try(const Step& step) {
    try {
        step();
    } catch (const ATE::Exception&) {
    }
}

template <typename Features, typename Parameter, typename Value>
void Set(Features& features, void (Features::*setter)(Parameter), Value value) {
    Try([&] { (features.*setter)(static_cast<Parameter>(value)); });
}

double Real(Fixed stored) {
    return static_cast<double>(FixedToReal(stored));
}

int32_t Flag(uint16_t stored) {
    return stored != 0 ? 1 : 0;
}

// ---- Paragraph ----

double Share(Fixed percent) {
    return Real(percent) / 100.0;
}

int32_t HostJustification(uint16_t stored) {
    constexpr int32_t kJustifications[] = {0, 0, 2, 1, 3, 6};
    return stored < std::size(kJustifications) ? kJustifications[stored] : 0;
}

int32_t HostBurasagari(const AidbTextPara& stored) {
    if (!stored.burasagari) return 0;
    return stored.burasagariForced ? 2 : 1;
}

void SetKinsoku(ATE::IParaFeatures& features, const AidbTextPara& stored) {
    if (!stored.kinsoku) return features.SetKinsoku(ATE::IKinsoku::Null());
    const auto set = ATE::IApplicationTextResources::OfApplication().GetKinsokuSet();
    const int32_t count = set.GetSize();
    for (int32_t index = 0; index < count; ++index) {
        const ATE::IKinsoku kinsoku = set.Item(index);
        if (kinsoku.IsNull()) continue;
        char16_t name[64] = {};
        kinsoku.GetName(name, 64);
        if (IsKinsokuName(name, stored.kinsokuKind)) return features.SetKinsoku(kinsoku);
    }
}

// ---- Paint ----

/// The stored colour as one that the host takes; clears `*flag` if what it paints with isn't there.
HostColor TextColor(LoadState& load, const AidbColor& stored, int32_t* flag) {
    HostColor color{};
    ColorFromRecord(stored, &color);
    if (*flag && color.kind == kColorPattern)
        LinkPattern(load, &color, flag);
    else
        KeepPlainColor(&color);
    return color;
}

using Features = ATE::ICharFeatures;

void SetPaint(LoadState& load, Features& features, const AidbStyle& stored) {
    int32_t fill = Flag(stored.fillFlag), stroke = Flag(stored.strokeFlag);
    const HostColor fillColor = TextColor(load, stored.fill, &fill);
    const HostColor strokeColor = TextColor(load, stored.stroke, &stroke);
    Set(features, &Features::SetFill, fill);
    Try([&] { features.SetFillColor(ATE::IApplicationPaint::OfColor(fillColor)); });
    Set(features, &Features::SetStroke, stroke);
    Try([&] { features.SetStrokeColor(ATE::IApplicationPaint::OfColor(strokeColor)); });
    Set(features, &Features::SetFillOverprint, Flag(stored.fillOverprint));
    Set(features, &Features::SetStrokeOverprint, Flag(stored.strokeOverprint));
}

void SetLine(Features& features, const AidbStyle& stored) {
    int32_t number = 0;
    if (ATEPaintSuite().LineCapToEngine(stored.lineCap, &number) == kHostNoError)
        Set(features, &Features::SetLineCap, number);
    if (ATEPaintSuite().LineJoinToEngine(stored.lineJoin, &number) == kHostNoError)
        Set(features, &Features::SetLineJoin, number);
    Set(features, &Features::SetLineWidth, Real(stored.lineWidth));
    Set(features, &Features::SetMiterLimit, Real(stored.miterLimit));
    Set(features, &Features::SetLineDashOffset, Real(stored.dashOffset));
    HostTextDash dash{};
    dash.count = static_cast<int16_t>(std::clamp<int>(static_cast<int16_t>(stored.dashCount), 0, kMaxDashes));
    dash.offset = FixedToReal(stored.dashOffset);
    for (int i = 0; i < kMaxDashes; ++i) dash.lengths[i] = FixedToReal(stored.dashes[i]);
    Try([&] { features.SetLineDashArray(ATE::IArrayReal::OfDash(dash)); });
}

// ---- Character ----

void SetFont(Features& features, const AidbFontRef& stored, FoundFonts& fonts) {
    const std::string bytes(reinterpret_cast<const char*>(&stored), sizeof stored);
    const auto [found, isNew] = fonts.try_emplace(bytes, -1);
    if (isNew) found->second = FindStoredFont(stored);
    if (found->second < 0) return;
    FontKey key = nullptr;
    ATE::Check(FontSuite().GetNthFont(found->second, &key));
    features.SetFont(ATE::IFont::OfKey(key));
}

/// A scale of next to nothing is a record's way to say nothing.
double Scale(Fixed percent) {
    constexpr double kLeastScale = 0.01;
    const double scale = Share(percent);
    return std::fabs(scale) < kLeastScale ? 1.0 : scale;
}

int32_t HostAlternateForm(const AidbCharacter& stored) {
    constexpr uint32_t kForms = 4;
    if (!stored.hasAlternateForm || stored.alternateForm >= kForms) return 0;
    return static_cast<int32_t>(kForms - stored.alternateForm);
}

void SetShape(Features& features, const AidbCharacter& stored) {
    Set(features, &Features::SetFontSize, Real(stored.fontSize));
    Set(features, &Features::SetLeading, Real(stored.leading));
    Set(features, &Features::SetAutoLeading, stored.leading == 0 ? 1 : 0);
    Set(features, &Features::SetBaselineShift, Real(stored.baselineShift));
    Set(features, &Features::SetTracking, static_cast<int32_t>(FixedToReal(stored.tracking)));
    Set(features, &Features::SetHorizontalScale, Scale(stored.horizontalScale));
    Set(features, &Features::SetVerticalScale, Scale(stored.verticalScale));
    Set(features, &Features::SetJapaneseAlternate, HostAlternateForm(stored));
}

} // namespace

void SetParagraphFeatures(ATE::IParaFeatures& features, const AidbTextPara& stored) {
    using Paragraph = ATE::IParaFeatures;
    constexpr double kAutoLeading = 1.2;
    Set(features, &Paragraph::SetFirstLineIndent, Real(stored.firstLineIndent));
    Set(features, &Paragraph::SetStartIndent, Real(stored.startIndent));
    Set(features, &Paragraph::SetEndIndent, Real(stored.endIndent));
    Set(features, &Paragraph::SetAutoHyphenation, Flag(stored.autoHyphenation));
    Set(features, &Paragraph::SetHyphenationBefore, stored.hyphenBefore);
    Set(features, &Paragraph::SetHyphenationAfter, stored.hyphenAfter);
    Set(features, &Paragraph::SetHyphenLimit, stored.hyphenLimit);
    Set(features, &Paragraph::SetDesiredWordSpacing, Share(stored.wordSpacing[1]));
    Set(features, &Paragraph::SetMaximumWordSpacing, Share(stored.wordSpacing[2]));
    Set(features, &Paragraph::SetMinimumWordSpacing, Share(stored.wordSpacing[0]));
    Set(features, &Paragraph::SetDesiredLetterSpacing, Share(stored.letterSpacing[1]));
    Set(features, &Paragraph::SetMaximumLetterSpacing, Share(stored.letterSpacing[2]));
    Set(features, &Paragraph::SetMinimumLetterSpacing, Share(stored.letterSpacing[0]));
    Set(features, &Paragraph::SetHangingRoman, Flag(stored.burasagari));
    Set(features, &Paragraph::SetJustification, HostJustification(stored.justification));
    Set(features, &Paragraph::SetAutoLeadingPercentage, kAutoLeading);
    Set(features, &Paragraph::SetRepeatedCharacters, Flag(stored.repeatedCharacters));
    Set(features, &Paragraph::SetBunriKinshi, Flag(stored.bunriKinshi));
    Set(features, &Paragraph::SetBurasagari, HostBurasagari(stored));
    Try([&] { SetKinsoku(features, stored); });
}

void SetCharacterFeatures(LoadState& load, ATE::ICharFeatures& features, const AidbTextRun& run,
                          FoundFonts& fonts) {
    SetPaint(load, features, run.style);
    SetLine(features, run.style);
    Try([&] { SetFont(features, run.font, fonts); });
    SetShape(features, run.character);
}
