/// The attributes of characters and paragraphs, and what some of them are made of; see text_classes.h.
#pragma once

#include "plugin/host/text_reference.h"

namespace ATE {

class IFont : public Counted<FontRef, EngineFontSuite> {
public:
    using Counted::Counted;
    static IFont OfKey(FontKey key) { return IFont(Got(FontSuite().GetEngineFont, key)); }
    FontKey GetKey() const { return Got(FontSuite().GetFontKey, get()); }
};

class IApplicationPaint : public Counted<ApplicationPaintRef, EngineApplicationPaintSuite> {
public:
    using Counted::Counted;
    static IApplicationPaint OfColor(const HostColor& color) {
        ApplicationPaintRef paint = nullptr;
        Check(ATEPaintSuite().NewPaint(&color, &paint));
        return IApplicationPaint(paint);
    }
    HostColor GetColor() const { return Got(ATEPaintSuite().GetColor, get()); }
};

class IArrayReal : public Counted<ArrayRealRef, EngineArrayRealSuite> {
public:
    using Counted::Counted;
    static IArrayReal OfDash(const HostTextDash& dash) {
        ArrayRealRef lengths = nullptr;
        Check(ATEPaintSuite().DashToEngine(&dash, &lengths));
        return IArrayReal(lengths);
    }
    HostTextDash GetDash() const { return Got(ATEPaintSuite().DashFromEngine, get()); }
};

class IKinsoku : public Counted<KinsokuRef, EngineKinsokuSuite> {
public:
    using Counted::Counted;
    static IKinsoku Null() {
        KinsokuRef kinsoku = nullptr;
        Check(EngineKinsokuSuite().NewNull(&kinsoku));
        return IKinsoku(kinsoku);
    }
    bool IsNull() const { return Got(EngineKinsokuSuite().IsNull, get()) != 0; }
    void GetName(char16_t* name, int32_t capacity) const {
        Check(EngineKinsokuSuite().GetName(get(), name, capacity));
    }
};

class ICharFeatures : public Counted<CharFeaturesRef, EngineCharFeaturesSuite> {
public:
    using Counted::Counted;

    int32_t GetFill() const { return Got(EngineCharFeaturesSuite().GetFill, get()); }
    IApplicationPaint GetFillColor() const {
        return IApplicationPaint(Got(EngineCharFeaturesSuite().GetFillColor, get()));
    }
    int32_t GetStroke() const { return Got(EngineCharFeaturesSuite().GetStroke, get()); }
    IApplicationPaint GetStrokeColor() const {
        return IApplicationPaint(Got(EngineCharFeaturesSuite().GetStrokeColor, get()));
    }
    int32_t GetFillOverprint() const { return Got(EngineCharFeaturesSuite().GetFillOverprint, get()); }
    int32_t GetStrokeOverprint() const { return Got(EngineCharFeaturesSuite().GetStrokeOverprint, get()); }
    int32_t GetLineCap() const { return Got(EngineCharFeaturesSuite().GetLineCap, get()); }
    int32_t GetLineJoin() const { return Got(EngineCharFeaturesSuite().GetLineJoin, get()); }
    double GetLineWidth() const { return Got(EngineCharFeaturesSuite().GetLineWidth, get()); }
    double GetMiterLimit() const { return Got(EngineCharFeaturesSuite().GetMiterLimit, get()); }
    double GetLineDashOffset() const { return Got(EngineCharFeaturesSuite().GetLineDashOffset, get()); }
    IArrayReal GetLineDashArray() const {
        return IArrayReal(Got(EngineCharFeaturesSuite().GetLineDashArray, get()));
    }
    IFont GetFont() const { return IFont(Got(EngineCharFeaturesSuite().GetFont, get())); }
    double GetFontSize() const { return Got(EngineCharFeaturesSuite().GetFontSize, get()); }
    double GetLeading() const { return Got(EngineCharFeaturesSuite().GetLeading, get()); }
    double GetBaselineShift() const { return Got(EngineCharFeaturesSuite().GetBaselineShift, get()); }
    int32_t GetTracking() const { return Got(EngineCharFeaturesSuite().GetTracking, get()); }
    double GetHorizontalScale() const { return Got(EngineCharFeaturesSuite().GetHorizontalScale, get()); }
    double GetVerticalScale() const { return Got(EngineCharFeaturesSuite().GetVerticalScale, get()); }
    int32_t GetJapaneseAlternate() const {
        return Got(EngineCharFeaturesSuite().GetJapaneseAlternate, get());
    }

    void SetFill(int32_t value) { Check(EngineCharFeaturesSuite().SetFill(get(), value)); }
    void SetFillColor(const IApplicationPaint& value) {
        Check(EngineCharFeaturesSuite().SetFillColor(get(), value.get()));
    }
    void SetStroke(int32_t value) { Check(EngineCharFeaturesSuite().SetStroke(get(), value)); }
    void SetStrokeColor(const IApplicationPaint& value) {
        Check(EngineCharFeaturesSuite().SetStrokeColor(get(), value.get()));
    }
    void SetFillOverprint(int32_t value) { Check(EngineCharFeaturesSuite().SetFillOverprint(get(), value)); }
    void SetStrokeOverprint(int32_t value) {
        Check(EngineCharFeaturesSuite().SetStrokeOverprint(get(), value));
    }
    void SetLineCap(int32_t value) { Check(EngineCharFeaturesSuite().SetLineCap(get(), value)); }
    void SetLineJoin(int32_t value) { Check(EngineCharFeaturesSuite().SetLineJoin(get(), value)); }
    void SetLineWidth(double value) { Check(EngineCharFeaturesSuite().SetLineWidth(get(), value)); }
    void SetMiterLimit(double value) { Check(EngineCharFeaturesSuite().SetMiterLimit(get(), value)); }
    void SetLineDashOffset(double value) { Check(EngineCharFeaturesSuite().SetLineDashOffset(get(), value)); }
    void SetLineDashArray(const IArrayReal& value) {
        Check(EngineCharFeaturesSuite().SetLineDashArray(get(), value.get()));
    }
    void SetFont(const IFont& value) { Check(EngineCharFeaturesSuite().SetFont(get(), value.get())); }
    void SetFontSize(double value) { Check(EngineCharFeaturesSuite().SetFontSize(get(), value)); }
    void SetLeading(double value) { Check(EngineCharFeaturesSuite().SetLeading(get(), value)); }
    void SetAutoLeading(int32_t value) { Check(EngineCharFeaturesSuite().SetAutoLeading(get(), value)); }
    void SetBaselineShift(double value) { Check(EngineCharFeaturesSuite().SetBaselineShift(get(), value)); }
    void SetTracking(int32_t value) { Check(EngineCharFeaturesSuite().SetTracking(get(), value)); }
    void SetHorizontalScale(double value) {
        Check(EngineCharFeaturesSuite().SetHorizontalScale(get(), value));
    }
    void SetVerticalScale(double value) { Check(EngineCharFeaturesSuite().SetVerticalScale(get(), value)); }
    void SetJapaneseAlternate(int32_t value) {
        Check(EngineCharFeaturesSuite().SetJapaneseAlternate(get(), value));
    }
};

class IParaFeatures : public Counted<ParaFeaturesRef, EngineParaFeaturesSuite> {
public:
    using Counted::Counted;

    double GetFirstLineIndent() const { return Got(EngineParaFeaturesSuite().GetFirstLineIndent, get()); }
    double GetStartIndent() const { return Got(EngineParaFeaturesSuite().GetStartIndent, get()); }
    double GetEndIndent() const { return Got(EngineParaFeaturesSuite().GetEndIndent, get()); }
    int32_t GetJustification() const { return Got(EngineParaFeaturesSuite().GetJustification, get()); }
    int32_t GetAutoHyphenation() const { return Got(EngineParaFeaturesSuite().GetAutoHyphenation, get()); }
    int32_t GetHyphenationBefore() const {
        return Got(EngineParaFeaturesSuite().GetHyphenationBefore, get());
    }
    int32_t GetHyphenationAfter() const { return Got(EngineParaFeaturesSuite().GetHyphenationAfter, get()); }
    int32_t GetHyphenLimit() const { return Got(EngineParaFeaturesSuite().GetHyphenLimit, get()); }
    double GetMinimumWordSpacing() const {
        return Got(EngineParaFeaturesSuite().GetMinimumWordSpacing, get());
    }
    double GetDesiredWordSpacing() const {
        return Got(EngineParaFeaturesSuite().GetDesiredWordSpacing, get());
    }
    double GetMaximumWordSpacing() const {
        return Got(EngineParaFeaturesSuite().GetMaximumWordSpacing, get());
    }
    double GetMinimumLetterSpacing() const {
        return Got(EngineParaFeaturesSuite().GetMinimumLetterSpacing, get());
    }
    double GetDesiredLetterSpacing() const {
        return Got(EngineParaFeaturesSuite().GetDesiredLetterSpacing, get());
    }
    double GetMaximumLetterSpacing() const {
        return Got(EngineParaFeaturesSuite().GetMaximumLetterSpacing, get());
    }
    int32_t GetRepeatedCharacters() const {
        return Got(EngineParaFeaturesSuite().GetRepeatedCharacters, get());
    }
    int32_t GetBunriKinshi() const { return Got(EngineParaFeaturesSuite().GetBunriKinshi, get()); }
    int32_t GetBurasagari() const { return Got(EngineParaFeaturesSuite().GetBurasagari, get()); }
    IKinsoku GetKinsoku() const { return IKinsoku(Got(EngineParaFeaturesSuite().GetKinsoku, get())); }

    void SetFirstLineIndent(double value) {
        Check(EngineParaFeaturesSuite().SetFirstLineIndent(get(), value));
    }
    void SetStartIndent(double value) { Check(EngineParaFeaturesSuite().SetStartIndent(get(), value)); }
    void SetEndIndent(double value) { Check(EngineParaFeaturesSuite().SetEndIndent(get(), value)); }
    void SetJustification(int32_t value) { Check(EngineParaFeaturesSuite().SetJustification(get(), value)); }
    void SetAutoHyphenation(int32_t value) {
        Check(EngineParaFeaturesSuite().SetAutoHyphenation(get(), value));
    }
    void SetHyphenationBefore(int32_t value) {
        Check(EngineParaFeaturesSuite().SetHyphenationBefore(get(), value));
    }
    void SetHyphenationAfter(int32_t value) {
        Check(EngineParaFeaturesSuite().SetHyphenationAfter(get(), value));
    }
    void SetHyphenLimit(int32_t value) { Check(EngineParaFeaturesSuite().SetHyphenLimit(get(), value)); }
    void SetMinimumWordSpacing(double value) {
        Check(EngineParaFeaturesSuite().SetMinimumWordSpacing(get(), value));
    }
    void SetDesiredWordSpacing(double value) {
        Check(EngineParaFeaturesSuite().SetDesiredWordSpacing(get(), value));
    }
    void SetMaximumWordSpacing(double value) {
        Check(EngineParaFeaturesSuite().SetMaximumWordSpacing(get(), value));
    }
    void SetMinimumLetterSpacing(double value) {
        Check(EngineParaFeaturesSuite().SetMinimumLetterSpacing(get(), value));
    }
    void SetDesiredLetterSpacing(double value) {
        Check(EngineParaFeaturesSuite().SetDesiredLetterSpacing(get(), value));
    }
    void SetMaximumLetterSpacing(double value) {
        Check(EngineParaFeaturesSuite().SetMaximumLetterSpacing(get(), value));
    }
    void SetHangingRoman(int32_t value) { Check(EngineParaFeaturesSuite().SetHangingRoman(get(), value)); }
    void SetAutoLeadingPercentage(double value) {
        Check(EngineParaFeaturesSuite().SetAutoLeadingPercentage(get(), value));
    }
    void SetRepeatedCharacters(int32_t value) {
        Check(EngineParaFeaturesSuite().SetRepeatedCharacters(get(), value));
    }
    void SetBunriKinshi(int32_t value) { Check(EngineParaFeaturesSuite().SetBunriKinshi(get(), value)); }
    void SetBurasagari(int32_t value) { Check(EngineParaFeaturesSuite().SetBurasagari(get(), value)); }
    void SetKinsoku(const IKinsoku& value) {
        Check(EngineParaFeaturesSuite().SetKinsoku(get(), value.get()));
    }
};

} // namespace ATE
