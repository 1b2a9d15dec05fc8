// The text engine's attributes of characters.

#include "workbench/suites/text_attributes.h"

namespace workbench {

namespace {

using C = CharacterAttributes;

template <typename Which>
HostError GetPaint(SuiteCall& call, EngineCharFeatures& features, ApplicationPaintRef& paint) {
    const HostColor* color = features.values.Get<Which>();
    if (!color) return kHostNotFound;
    EnginePaint made;
    made.color = *color;
    paint = LendReference(call, made);
    return kHostNoError;
}

template <typename Which>
HostError SetPaint(SuiteCall&, EngineCharFeatures& features, EnginePaint& paint) {
    features.values.Set<Which>(paint.color);
    return kHostNoError;
}

template <typename Which>
HostError GetEngineNumber(SuiteCall&, EngineCharFeatures& features, int32_t& number) {
    const int32_t* value = features.values.Get<Which>();
    if (!value) return kHostNotFound;
    number = *value + kEngineNumberBase;
    return kHostNoError;
}

template <typename Which>
HostError SetEngineNumber(SuiteCall& call, EngineCharFeatures& features, int32_t number) {
    if (number < kEngineNumberBase || number >= kEngineNumberBase + kCapsOrJoins)
        return call.Fault(kHostBadParameter, "a cap or join in other than the engine's numbers");
    features.values.Set<Which>(number - kEngineNumberBase);
    return kHostNoError;
}

HostError GetDashes(SuiteCall& call, EngineCharFeatures& features, ArrayRealRef& lengths) {
    const std::vector<double>* dashes = features.values.Get<Field<&C::dashes>>();
    if (!dashes) return kHostNotFound;
    EngineRealArray made;
    made.values = *dashes;
    lengths = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError SetDashes(SuiteCall&, EngineCharFeatures& features, EngineRealArray& lengths) {
    features.values.Set<Field<&C::dashes>>(lengths.values);
    return kHostNoError;
}

HostError GetFont(SuiteCall& call, EngineCharFeatures& features, FontRef& font) {
    const std::string* name = features.values.Get<Field<&C::font>>();
    if (!name) return kHostNotFound;
    EngineFont made;
    made.name = *name;
    if (name->empty() && call.host().fonts && call.host().fonts->Count() > 0)
        made.name = call.host().fonts->At(0).name;
    font = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError SetFont(SuiteCall&, EngineCharFeatures& features, EngineFont& font) {
    features.values.Set<Field<&C::font>>(font.name);
    return kHostNoError;
}

HostError GetLeading(SuiteCall&, EngineCharFeatures& features, double& leading) {
    const double* value = features.values.Get<Field<&C::leading>>();
    const bool* automatic = features.values.Get<Field<&C::autoLeading>>();
    if (!value || !automatic) return kHostNotFound;
    leading = *automatic ? 0 : *value;
    return kHostNoError;
}

} // namespace

const void* EngineCharFeaturesSuiteTable() {
    static constexpr ATECharFeaturesSuite table{
        Entry<"ATE CharFeatures Suite", "AddRef", AddReference<EngineCharFeatures>>::Run,
        Entry<"ATE CharFeatures Suite", "Release", ReleaseReference<EngineCharFeatures>,
              EntryKind::kDisposal>::Run,
        Entry<"ATE CharFeatures Suite", "GetFill", GetFlag<EngineCharFeatures, Field<&C::fill>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetFillColor", GetPaint<Field<&C::fillColor>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetStroke", GetFlag<EngineCharFeatures, Field<&C::stroke>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetStrokeColor", GetPaint<Field<&C::strokeColor>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetFillOverprint",
              GetFlag<EngineCharFeatures, Field<&C::fillOverprint>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetStrokeOverprint",
              GetFlag<EngineCharFeatures, Field<&C::strokeOverprint>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetLineCap", GetEngineNumber<Field<&C::lineCap>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetLineJoin", GetEngineNumber<Field<&C::lineJoin>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetLineWidth",
              GetReal<EngineCharFeatures, Field<&C::lineWidth>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetMiterLimit",
              GetReal<EngineCharFeatures, Field<&C::miterLimit>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetLineDashOffset",
              GetReal<EngineCharFeatures, Field<&C::dashOffset>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetLineDashArray", GetDashes>::Run,
        Entry<"ATE CharFeatures Suite", "GetFont", GetFont>::Run,
        Entry<"ATE CharFeatures Suite", "GetFontSize", GetReal<EngineCharFeatures, Field<&C::fontSize>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetLeading", GetLeading>::Run,
        Entry<"ATE CharFeatures Suite", "GetBaselineShift",
              GetReal<EngineCharFeatures, Field<&C::baselineShift>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetTracking",
              GetInteger<EngineCharFeatures, Field<&C::tracking>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetHorizontalScale",
              GetReal<EngineCharFeatures, Field<&C::horizontalScale>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetVerticalScale",
              GetReal<EngineCharFeatures, Field<&C::verticalScale>>>::Run,
        Entry<"ATE CharFeatures Suite", "GetJapaneseAlternate",
              GetInteger<EngineCharFeatures, Field<&C::japaneseAlternate>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetFill", SetFlag<EngineCharFeatures, Field<&C::fill>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetFillColor", SetPaint<Field<&C::fillColor>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetStroke", SetFlag<EngineCharFeatures, Field<&C::stroke>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetStrokeColor", SetPaint<Field<&C::strokeColor>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetFillOverprint",
              SetFlag<EngineCharFeatures, Field<&C::fillOverprint>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetStrokeOverprint",
              SetFlag<EngineCharFeatures, Field<&C::strokeOverprint>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetLineCap", SetEngineNumber<Field<&C::lineCap>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetLineJoin", SetEngineNumber<Field<&C::lineJoin>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetLineWidth",
              SetReal<EngineCharFeatures, Field<&C::lineWidth>, IsNotNegative>>::Run,
        Entry<"ATE CharFeatures Suite", "SetMiterLimit",
              SetReal<EngineCharFeatures, Field<&C::miterLimit>, IsAnyReal>>::Run,
        Entry<"ATE CharFeatures Suite", "SetLineDashOffset",
              SetReal<EngineCharFeatures, Field<&C::dashOffset>, IsAnyReal>>::Run,
        Entry<"ATE CharFeatures Suite", "SetLineDashArray", SetDashes>::Run,
        Entry<"ATE CharFeatures Suite", "SetFont", SetFont>::Run,
        Entry<"ATE CharFeatures Suite", "SetFontSize",
              SetReal<EngineCharFeatures, Field<&C::fontSize>, IsPositive>>::Run,
        Entry<"ATE CharFeatures Suite", "SetLeading",
              SetReal<EngineCharFeatures, Field<&C::leading>, IsAnyReal>>::Run,
        Entry<"ATE CharFeatures Suite", "SetAutoLeading",
              SetFlag<EngineCharFeatures, Field<&C::autoLeading>>>::Run,
        Entry<"ATE CharFeatures Suite", "SetBaselineShift",
              SetReal<EngineCharFeatures, Field<&C::baselineShift>, IsAnyReal>>::Run,
        Entry<"ATE CharFeatures Suite", "SetTracking",
              SetInteger<EngineCharFeatures, Field<&C::tracking>, INT32_MIN, INT32_MAX>>::Run,
        Entry<"ATE CharFeatures Suite", "SetHorizontalScale",
              SetReal<EngineCharFeatures, Field<&C::horizontalScale>, IsNotZero>>::Run,
        Entry<"ATE CharFeatures Suite", "SetVerticalScale",
              SetReal<EngineCharFeatures, Field<&C::verticalScale>, IsNotZero>>::Run,
        Entry<"ATE CharFeatures Suite", "SetJapaneseAlternate",
              SetInteger<EngineCharFeatures, Field<&C::japaneseAlternate>, 0, 4>>::Run,
    };
    return &table;
}

} // namespace workbench
