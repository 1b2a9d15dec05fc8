// The text engine's attributes of paragraphs.

#include "workbench/suites/text_attributes.h"

namespace workbench {

namespace {

using P = ParagraphAttributes;

HostError GetKinsoku(SuiteCall& call, EngineParaFeatures& features, KinsokuRef& kinsoku) {
    const auto* name = features.values.Get<Field<&P::kinsoku>>();
    if (!name) return kHostNotFound;
    EngineKinsoku made;
    made.name = *name;
    kinsoku = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError SetKinsoku(SuiteCall&, EngineParaFeatures& features, EngineKinsoku& kinsoku) {
    features.values.Set<Field<&P::kinsoku>>(kinsoku.name);
    return kHostNoError;
}

} // namespace

const void* EngineParaFeaturesSuiteTable() {
    static constexpr ATEParaFeaturesSuite table{
        Entry<"ATE ParaFeatures Suite", "AddRef", AddReference<EngineParaFeatures>>::Run,
        Entry<"ATE ParaFeatures Suite", "Release", ReleaseReference<EngineParaFeatures>,
              EntryKind::kDisposal>::Run,
        Entry<"ATE ParaFeatures Suite", "GetFirstLineIndent",
              GetReal<EngineParaFeatures, Field<&P::firstLineIndent>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetStartIndent",
              GetReal<EngineParaFeatures, Field<&P::startIndent>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetEndIndent",
              GetReal<EngineParaFeatures, Field<&P::endIndent>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetJustification",
              GetInteger<EngineParaFeatures, Field<&P::justification>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetAutoHyphenation",
              GetFlag<EngineParaFeatures, Field<&P::autoHyphenation>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetHyphenationBefore",
              GetInteger<EngineParaFeatures, Field<&P::hyphenBefore>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetHyphenationAfter",
              GetInteger<EngineParaFeatures, Field<&P::hyphenAfter>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetHyphenLimit",
              GetInteger<EngineParaFeatures, Field<&P::hyphenLimit>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetMinimumWordSpacing",
              GetReal<EngineParaFeatures, Field<&P::wordSpacing, 0>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetDesiredWordSpacing",
              GetReal<EngineParaFeatures, Field<&P::wordSpacing, 1>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetMaximumWordSpacing",
              GetReal<EngineParaFeatures, Field<&P::wordSpacing, 2>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetMinimumLetterSpacing",
              GetReal<EngineParaFeatures, Field<&P::letterSpacing, 0>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetDesiredLetterSpacing",
              GetReal<EngineParaFeatures, Field<&P::letterSpacing, 1>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetMaximumLetterSpacing",
              GetReal<EngineParaFeatures, Field<&P::letterSpacing, 2>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetRepeatedCharacters",
              GetFlag<EngineParaFeatures, Field<&P::repeatedCharacters>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetBunriKinshi",
              GetFlag<EngineParaFeatures, Field<&P::bunriKinshi>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetBurasagari",
              GetInteger<EngineParaFeatures, Field<&P::burasagari>>>::Run,
        Entry<"ATE ParaFeatures Suite", "GetKinsoku", GetKinsoku>::Run,
        Entry<"ATE ParaFeatures Suite", "SetFirstLineIndent",
              SetReal<EngineParaFeatures, Field<&P::firstLineIndent>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetStartIndent",
              SetReal<EngineParaFeatures, Field<&P::startIndent>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetEndIndent",
              SetReal<EngineParaFeatures, Field<&P::endIndent>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetJustification",
              SetInteger<EngineParaFeatures, Field<&P::justification>, 0, 6>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetAutoHyphenation",
              SetFlag<EngineParaFeatures, Field<&P::autoHyphenation>>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetHyphenationBefore",
              SetInteger<EngineParaFeatures, Field<&P::hyphenBefore>, 0, INT32_MAX>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetHyphenationAfter",
              SetInteger<EngineParaFeatures, Field<&P::hyphenAfter>, 0, INT32_MAX>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetHyphenLimit",
              SetInteger<EngineParaFeatures, Field<&P::hyphenLimit>, 0, INT32_MAX>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetMinimumWordSpacing",
              SetReal<EngineParaFeatures, Field<&P::wordSpacing, 0>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetDesiredWordSpacing",
              SetReal<EngineParaFeatures, Field<&P::wordSpacing, 1>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetMaximumWordSpacing",
              SetReal<EngineParaFeatures, Field<&P::wordSpacing, 2>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetMinimumLetterSpacing",
              SetReal<EngineParaFeatures, Field<&P::letterSpacing, 0>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetDesiredLetterSpacing",
              SetReal<EngineParaFeatures, Field<&P::letterSpacing, 1>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetMaximumLetterSpacing",
              SetReal<EngineParaFeatures, Field<&P::letterSpacing, 2>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetHangingRoman",
              SetFlag<EngineParaFeatures, Field<&P::hangingRoman>>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetAutoLeadingPercentage",
              SetReal<EngineParaFeatures, Field<&P::autoLeading>, IsAnyReal>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetRepeatedCharacters",
              SetFlag<EngineParaFeatures, Field<&P::repeatedCharacters>>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetBunriKinshi",
              SetFlag<EngineParaFeatures, Field<&P::bunriKinshi>>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetBurasagari",
              SetInteger<EngineParaFeatures, Field<&P::burasagari>, 0, 2>>::Run,
        Entry<"ATE ParaFeatures Suite", "SetKinsoku", SetKinsoku>::Run,
    };
    return &table;
}

} // namespace workbench
