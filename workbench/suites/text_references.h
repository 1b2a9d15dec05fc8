/// What stands behind the references of suites/text_engine.h; for the tables of the text suites.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "suites/text.h"
#include "workbench/document/story.h"
#include "workbench/suites/attribute_set.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

/// `uses` are what the plug-in has to release.
template <typename Reference>
struct TextObject {
    Reference handle = nullptr;
    uint64_t madeBy = 0;
    int32_t uses = 1;
};

struct EngineTextRange : TextObject<TextRangeRef> {
    std::shared_ptr<Story> story; ///< lives on with the range if the document goes
    size_t first = 0, end = 0;
    AttributeSet<CharacterAttributes> nextCharacters; ///< of an empty range: for what is inserted
    AttributeSet<ParagraphAttributes> nextParagraphs;
};

struct EngineTextFrame : TextObject<TextFrameRef> {
    ArtHandle frame = nullptr;
};

struct EngineStory : TextObject<StoryRef> {
    std::shared_ptr<Story> story;
};

struct EngineCharFeatures : TextObject<CharFeaturesRef> {
    AttributeSet<CharacterAttributes> values;
};

struct EngineParaFeatures : TextObject<ParaFeaturesRef> {
    AttributeSet<ParagraphAttributes> values;
};

struct EngineFont : TextObject<FontRef> {
    std::string name;
};

struct EngineKinsoku : TextObject<KinsokuRef> {
    std::optional<std::u16string> name; ///< nothing: the null kinsoku
};

struct EngineKinsokuSet : TextObject<KinsokuSetRef> {};

struct EnginePaint : TextObject<ApplicationPaintRef> {
    HostColor color{};
};

struct EngineTextResources : TextObject<ApplicationTextResourcesRef> {};

struct EngineRealArray : TextObject<ArrayRealRef> {
    std::vector<double> values;
};

// clang-format off
template <> struct ObjectTraits<EngineTextRange> : HostObject<EngineTextRange, TextRangeRef, HandleType::kTextRange> { static constexpr const char* name = "text range"; };
template <> struct ObjectTraits<EngineTextFrame> : HostObject<EngineTextFrame, TextFrameRef, HandleType::kTextFrame> { static constexpr const char* name = "text frame"; };
template <> struct ObjectTraits<EngineStory> : HostObject<EngineStory, StoryRef, HandleType::kStory> { static constexpr const char* name = "story"; };
template <> struct ObjectTraits<EngineCharFeatures> : HostObject<EngineCharFeatures, CharFeaturesRef, HandleType::kCharFeatures> { static constexpr const char* name = "character features"; };
template <> struct ObjectTraits<EngineParaFeatures> : HostObject<EngineParaFeatures, ParaFeaturesRef, HandleType::kParaFeatures> { static constexpr const char* name = "paragraph features"; };
template <> struct ObjectTraits<EngineFont> : HostObject<EngineFont, FontRef, HandleType::kFont> { static constexpr const char* name = "font"; };
template <> struct ObjectTraits<EngineKinsoku> : HostObject<EngineKinsoku, KinsokuRef, HandleType::kKinsoku> { static constexpr const char* name = "kinsoku"; };
template <> struct ObjectTraits<EngineKinsokuSet> : HostObject<EngineKinsokuSet, KinsokuSetRef, HandleType::kKinsokuSet> { static constexpr const char* name = "kinsoku set"; };
template <> struct ObjectTraits<EnginePaint> : HostObject<EnginePaint, ApplicationPaintRef, HandleType::kTextPaint> { static constexpr const char* name = "text paint"; };
template <> struct ObjectTraits<EngineTextResources> : HostObject<EngineTextResources, ApplicationTextResourcesRef, HandleType::kTextResources> { static constexpr const char* name = "text resources"; };
template <> struct ObjectTraits<EngineRealArray> : HostObject<EngineRealArray, ArrayRealRef, HandleType::kRealArray> { static constexpr const char* name = "array of numbers"; };
template <> struct ObjectTraits<HostFontKey> : HostObject<HostFontKey, FontKey, HandleType::kFontKey> { static constexpr const char* name = "font key"; };
// clang-format on

/// Gives the plug-in a first use of `object`.
template <typename Object>
typename ObjectTraits<Object>::Handle LendReference(SuiteCall& call, Object object) {
    using Traits = ObjectTraits<Object>;
    return call.host().template Lend<typename Traits::Handle>(Traits::handleType,
                                                              std::make_unique<Object>(std::move(object)));
}

template <typename Object>
HostError AddReference(SuiteCall&, Object& object) {
    ++object.uses;
    return kHostNoError;
}

template <typename Object>
HostError ReleaseReference(SuiteCall& call, Object& object) {
    if (--object.uses == 0) call.host().TakeBack(object);
    return kHostNoError;
}

/// The key of a font by its name, also of one that this machine doesn't have.
/// @param entry  the list's, if it is at hand; else it is looked for
FontKey KeyOfFont(HostState& host, const std::string& name, const FontEntry* entry = nullptr);

} // namespace workbench
