/// The text engine's objects as values: each method is one call of a suite (suites/text_engine.h tells what
/// it does), each object one use of a reference, and each failure an ATE::Exception.
#pragma once

#include "plugin/host/text_feature_classes.h"
#include "plugin/host/text_reference.h"

namespace ATE {

class IStory : public Counted<StoryRef, EngineStorySuite> {
public:
    using Counted::Counted;
    int32_t GetSize() const { return Got(EngineStorySuite().GetSize, get()); }
    void SetKerning(int32_t at, int32_t kerning) { Check(EngineStorySuite().SetKerning(get(), at, kerning)); }

    /// Kerning at the start of a range of this story.
    template <typename Range>
    int32_t GetKerning(const Range& at) const {
        int32_t kerning = 0;
        Check(EngineStorySuite().GetKerning(get(), at.get(), &kerning));
        return kerning;
    }
};

class ITextRange : public Counted<TextRangeRef, EngineTextRangeSuite> {
public:
    using Counted::Counted;

    /// What a text frame shows.
    static ITextRange OfFrame(ArtHandle frame) {
        return ITextRange(Got(TextFrameSuite().GetTextRange, frame));
    }

    void SetRange(int32_t start, int32_t end) { Check(EngineTextRangeSuite().SetRange(get(), start, end)); }
    int32_t GetStart() const { return Got(EngineTextRangeSuite().GetStart, get()); }
    int32_t GetSize() const { return Got(EngineTextRangeSuite().GetSize, get()); }
    IStory GetStory() const { return IStory(Got(EngineTextRangeSuite().GetStory, get())); }

    /// Bytes of the whole text, of which `capacity` less one came into `text`.
    int32_t GetContents(char* text, int32_t capacity) const {
        int32_t length = 0;
        Check(EngineTextRangeSuite().GetContents(get(), text, capacity, &length));
        return length;
    }
    ICharFeatures GetLocalCharFeatures() const {
        return ICharFeatures(Got(EngineTextRangeSuite().GetLocalCharFeatures, get()));
    }
    IParaFeatures GetLocalParaFeatures() const {
        return IParaFeatures(Got(EngineTextRangeSuite().GetLocalParaFeatures, get()));
    }
    void SetLocalCharFeatures(const ICharFeatures& features) {
        Check(EngineTextRangeSuite().SetLocalCharFeatures(get(), features.get()));
    }
    void SetLocalParaFeatures(const IParaFeatures& features) {
        Check(EngineTextRangeSuite().SetLocalParaFeatures(get(), features.get()));
    }
    void Remove() { Check(EngineTextRangeSuite().Remove(get())); }
    void InsertAfter(const char16_t* text, int32_t count) {
        Check(EngineTextRangeSuite().InsertAfter(get(), text, count));
    }
};

class ITextFrame : public Counted<TextFrameRef, EngineTextFrameSuite> {
public:
    using Counted::Counted;
    static ITextFrame OfFrame(ArtHandle frame) {
        return ITextFrame(Got(TextFrameSuite().GetTextFrame, frame));
    }

    /// In the engine's orientation, with its own translation.
    HostMatrix GetMatrix() const { return Got(EngineTextFrameSuite().GetMatrix, get()); }
};

class IKinsokuSet : public Counted<KinsokuSetRef, EngineKinsokuSetSuite> {
public:
    using Counted::Counted;
    int32_t GetSize() const { return Got(EngineKinsokuSetSuite().GetSize, get()); }
    IKinsoku Item(int32_t index) const {
        KinsokuRef kinsoku = nullptr;
        Check(EngineKinsokuSetSuite().GetNth(get(), index, &kinsoku));
        return IKinsoku(kinsoku);
    }
};

class IApplicationTextResources
    : public Counted<ApplicationTextResourcesRef, EngineApplicationTextResourcesSuite> {
public:
    using Counted::Counted;
    static IApplicationTextResources OfApplication() {
        ApplicationTextResourcesRef resources = nullptr;
        Check(ATETextUtilSuite().GetApplicationTextResources(&resources));
        return IApplicationTextResources(resources);
    }
    IKinsokuSet GetKinsokuSet() const {
        return IKinsokuSet(Got(EngineApplicationTextResourcesSuite().GetKinsokuSet, get()));
    }
};

} // namespace ATE
