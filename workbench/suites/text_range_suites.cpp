// The text engine's ranges and stories.

#include <algorithm>
#include <cstring>

#include "workbench/suites/text_encoding.h"
#include "workbench/suites/text_references.h"

namespace workbench {

namespace {

/// Where the range lies now: another range may have made the story shorter.
StoryRange PlaceOf(const EngineTextRange& range) {
    const size_t size = range.story->text.size();
    return {std::min(range.first, size), std::min(range.end, size)};
}

/// What text that is inserted behind the range would have.
CharacterStyle StyleForInsertion(const EngineTextRange& range) {
    const size_t at = PlaceOf(range).end;
    CharacterStyle style = StyleOf(*range.story, at > 0 ? at - 1 : 0);
    style.character = range.nextCharacters.Over(style.character);
    style.paragraph = range.nextParagraphs.Over(style.paragraph);
    return style;
}

// ATE TextRange Suite

HostError SetRange(SuiteCall& call, EngineTextRange& range, int32_t start, int32_t end) {
    if (start < 0 || end < start || static_cast<size_t>(end) > range.story->text.size()) {
        return call.FaultUnlessRefused(kHostBadParameter, std::to_string(start) + " to " +
                                                              std::to_string(end) + " of a story of " +
                                                              std::to_string(range.story->text.size()));
    }
    range.first = static_cast<size_t>(start);
    range.end = static_cast<size_t>(end);
    range.nextCharacters = {};
    range.nextParagraphs = {};
    return kHostNoError;
}

HostError GetStart(SuiteCall&, EngineTextRange& range, int32_t& start) {
    start = static_cast<int32_t>(PlaceOf(range).first);
    return kHostNoError;
}

HostError GetSize(SuiteCall&, EngineTextRange& range, int32_t& size) {
    const StoryRange place = PlaceOf(range);
    size = static_cast<int32_t>(place.end - place.first);
    return kHostNoError;
}

HostError GetStory(SuiteCall& call, EngineTextRange& range, StoryRef& story) {
    EngineStory made;
    made.story = range.story;
    story = LendReference(call, std::move(made));
    return kHostNoError;
}

bool IsFirstHalf(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool IsSecondHalf(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

std::string Utf8Of(char16_t unit) {
    if (unit < 0x80) return {static_cast<char>(unit)};
    std::string utf8;
    if (unit < 0x800) {
        utf8 += static_cast<char>(0xC0 | unit >> 6);
    } else {
        utf8 += static_cast<char>(0xE0 | unit >> 12);
        utf8 += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    }
    return utf8 + static_cast<char>(0x80 | (unit & 0x3F));
}

void AppendPlatformText(const std::u16string& text, size_t at, std::string* bytes) {
    const char16_t unit = text[at];
    const bool second = IsSecondHalf(unit) && at > 0 && IsFirstHalf(text[at - 1]);
    if (second) return;
    const auto encoded =
        unit == 0 || (unit & 0xF800) == 0xD800 ? std::nullopt : EncodeText(Utf8Of(unit), kEncodingPlatform);
    *bytes += encoded && !encoded->empty() ? *encoded : "?";
}

HostError GetContents(SuiteCall& call, EngineTextRange& range, char* text, int32_t capacity,
                      int32_t& length) {
    if (!text || capacity < 1) return call.Fault(kHostBadParameter, "no room for a text");
    std::string bytes;
    const StoryRange place = PlaceOf(range);
    for (size_t at = place.first; at < place.end; ++at) AppendPlatformText(range.story->text, at, &bytes);
    const size_t copied = std::min(bytes.size(), static_cast<size_t>(capacity) - 1);
    std::memcpy(text, bytes.data(), copied);
    text[copied] = 0;
    length = static_cast<int32_t>(bytes.size());
    return kHostNoError;
}

/// What the units of a range have alike of the attributes that `part` names.
template <typename Attributes>
AttributeSet<Attributes> CommonOf(const EngineTextRange& range,
                                  std::shared_ptr<const Attributes> CharacterStyle::*part) {
    const StoryRange place = PlaceOf(range);
    if (place.first == place.end) return AttributeSet<Attributes>(StyleForInsertion(range).*part);
    AttributeSet<Attributes> common(StyleOf(*range.story, place.first).*part);
    for (size_t at = place.first + 1; at < place.end; ++at)
        common.KeepCommon(StyleOf(*range.story, at).*part);
    return common;
}

/// Lays `values` over each unit of a range; neighbours of the same attributes share the new ones too.
template <typename Attributes>
void LayOver(EngineTextRange& range, const AttributeSet<Attributes>& values,
             std::shared_ptr<const Attributes> CharacterStyle::*part) {
    const StoryRange place = PlaceOf(range);
    size_t first = place.first;
    while (first < place.end) {
        const auto base = StyleOf(*range.story, first).*part;
        size_t end = first + 1;
        while (end < place.end && StyleOf(*range.story, end).*part == base) ++end;
        CharacterStyle style;
        style.*part = values.Over(base);
        SetStyle(*range.story, first, end, style);
        first = end;
    }
}

HostError GetLocalCharFeatures(SuiteCall& call, EngineTextRange& range, CharFeaturesRef& features) {
    EngineCharFeatures made;
    made.values = CommonOf(range, &CharacterStyle::character);
    features = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError GetLocalParaFeatures(SuiteCall& call, EngineTextRange& range, ParaFeaturesRef& features) {
    EngineParaFeatures made;
    made.values = CommonOf(range, &CharacterStyle::paragraph);
    features = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError SetLocalCharFeatures(SuiteCall&, EngineTextRange& range, EngineCharFeatures& features) {
    if (range.first == range.end)
        range.nextCharacters.Add(features.values);
    else
        LayOver(range, features.values, &CharacterStyle::character);
    return kHostNoError;
}

HostError SetLocalParaFeatures(SuiteCall&, EngineTextRange& range, EngineParaFeatures& features) {
    if (range.first == range.end)
        range.nextParagraphs.Add(features.values);
    else
        LayOver(range, features.values, &CharacterStyle::paragraph);
    return kHostNoError;
}

HostError Remove(SuiteCall&, EngineTextRange& range) {
    const StoryRange place = PlaceOf(range);
    RemoveText(*range.story, place.first, place.end);
    range.first = range.end = place.first;
    return kHostNoError;
}

HostError InsertAfter(SuiteCall& call, EngineTextRange& range, const char16_t* text, int32_t count) {
    if (count < 0 || !text) return call.Fault(kHostBadParameter, "no text to insert");
    const StoryRange place = PlaceOf(range);
    if (range.story->text.size() + static_cast<size_t>(count) > INT32_MAX) return kHostRefused;
    const std::u16string_view units(text, static_cast<size_t>(count));
    InsertText(*range.story, place.end, units, StyleForInsertion(range));
    range.first = place.first;
    range.end = place.end + units.size();
    return kHostNoError;
}

// ATE Story Suite

HostError GetStorySize(SuiteCall&, EngineStory& story, int32_t& size) {
    size = static_cast<int32_t>(story.story->text.size());
    return kHostNoError;
}

HostError GetKerning(SuiteCall& call, EngineStory& story, EngineTextRange& at, int32_t& kerning) {
    if (at.story != story.story) return call.Fault(kHostBadParameter, "a range of another story");
    const auto found = story.story->kerning.find(PlaceOf(at).first);
    kerning = found == story.story->kerning.end() ? 0 : found->second;
    return kHostNoError;
}

HostError SetStoryKerning(SuiteCall& call, EngineStory& story, int32_t at, int32_t kerning) {
    if (at < 0 || static_cast<size_t>(at) > story.story->text.size())
        return call.FaultUnlessRefused(kHostBadParameter, "kerning beyond the story");
    SetKerning(*story.story, static_cast<size_t>(at), kerning);
    return kHostNoError;
}

} // namespace

const void* EngineTextRangeSuiteTable() {
    static constexpr ATETextRangeSuite table{
        Entry<"ATE TextRange Suite", "AddRef", AddReference<EngineTextRange>>::Run,
        Entry<"ATE TextRange Suite", "Release", ReleaseReference<EngineTextRange>, EntryKind::kDisposal>::Run,
        Entry<"ATE TextRange Suite", "SetRange", SetRange>::Run,
        Entry<"ATE TextRange Suite", "GetStart", GetStart>::Run,
        Entry<"ATE TextRange Suite", "GetSize", GetSize>::Run,
        Entry<"ATE TextRange Suite", "GetStory", GetStory>::Run,
        Entry<"ATE TextRange Suite", "GetContents", GetContents>::Run,
        Entry<"ATE TextRange Suite", "GetLocalCharFeatures", GetLocalCharFeatures>::Run,
        Entry<"ATE TextRange Suite", "GetLocalParaFeatures", GetLocalParaFeatures>::Run,
        Entry<"ATE TextRange Suite", "SetLocalCharFeatures", SetLocalCharFeatures>::Run,
        Entry<"ATE TextRange Suite", "SetLocalParaFeatures", SetLocalParaFeatures>::Run,
        Entry<"ATE TextRange Suite", "Remove", Remove>::Run,
        Entry<"ATE TextRange Suite", "InsertAfter", InsertAfter>::Run,
    };
    return &table;
}

const void* EngineStorySuiteTable() {
    static constexpr ATEStorySuite table{
        Entry<"ATE Story Suite", "AddRef", AddReference<EngineStory>>::Run,
        Entry<"ATE Story Suite", "Release", ReleaseReference<EngineStory>, EntryKind::kDisposal>::Run,
        Entry<"ATE Story Suite", "GetSize", GetStorySize>::Run,
        Entry<"ATE Story Suite", "GetKerning", GetKerning>::Run,
        Entry<"ATE Story Suite", "SetKerning", SetStoryKerning>::Run,
    };
    return &table;
}

} // namespace workbench
