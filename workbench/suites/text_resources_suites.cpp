// Fonts, paint, kinsoku and what else the text engine shares with the rest of the host.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "workbench/suites/color_check.h"
#include "workbench/suites/text_attributes.h"
#include "workbench/suites/text_references.h"

namespace workbench {

namespace {

// AI Font Suite

HostError CountFonts(SuiteCall& call, int32_t& count) {
    count = call.host().fonts ? static_cast<int32_t>(call.host().fonts->Count()) : 0;
    return kHostNoError;
}

HostError GetNthFont(SuiteCall& call, int32_t index, FontKey& font) {
    FontList* list = call.host().fonts;
    if (!list || index < 0 || static_cast<size_t>(index) >= list->Count())
        return call.FaultUnlessRefused(kHostBadParameter, "no font of this number");
    const FontEntry& entry = list->At(static_cast<size_t>(index));
    font = KeyOfFont(call.host(), entry.name, &entry);
    return kHostNoError;
}

HostError GetFontName(SuiteCall& call, HostFontKey& font, char* name, int32_t capacity) {
    if (!name || capacity < 1) return call.Fault(kHostBadParameter, "no room for a name");
    const size_t copied = std::min(font.name.size(), static_cast<size_t>(capacity) - 1);
    std::memcpy(name, font.name.data(), copied);
    name[copied] = 0;
    return kHostNoError;
}

HostError GetFontRecord(SuiteCall&, HostFontKey& font, HostFontRecord& record) {
    std::copy(font.words.begin(), font.words.end(), record.words);
    return kHostNoError;
}

HostError GetEngineFont(SuiteCall& call, HostFontKey& font, FontRef& engineFont) {
    EngineFont made;
    made.name = font.name;
    engineFont = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError GetFontKey(SuiteCall& call, EngineFont& font, FontKey& key) {
    key = KeyOfFont(call.host(), font.name);
    return kHostNoError;
}

// AIATE Paint Suite

HostError GetPaintColor(SuiteCall&, EnginePaint& paint, HostColor& color) {
    color = paint.color;
    return kHostNoError;
}

HostError NewPaint(SuiteCall& call, const HostColor& color, ApplicationPaintRef& paint) {
    if (const HostError error = NeedDocument(call)) return error;
    if (const HostError error = CheckColor(call, color)) return error;
    EnginePaint made;
    made.color = color;
    paint = LendReference(call, made);
    return kHostNoError;
}

HostError FromEngine(SuiteCall&, int32_t engineNumber, int32_t& number) {
    if (engineNumber < kEngineNumberBase || engineNumber >= kEngineNumberBase + kCapsOrJoins)
        return kHostBadParameter;
    number = engineNumber - kEngineNumberBase;
    return kHostNoError;
}

HostError ToEngine(SuiteCall&, int32_t number, int32_t& engineNumber) {
    if (number < 0 || number >= kCapsOrJoins) return kHostBadParameter;
    engineNumber = number + kEngineNumberBase;
    return kHostNoError;
}

HostError DashFromEngine(SuiteCall&, EngineRealArray& lengths, HostTextDash& dash) {
    const size_t count = std::min(lengths.values.size(), std::size(dash.lengths));
    dash.count = static_cast<int16_t>(count);
    for (size_t i = 0; i < count; ++i) dash.lengths[i] = static_cast<float>(lengths.values[i]);
    return kHostNoError;
}

HostError DashToEngine(SuiteCall& call, const HostTextDash& dash, ArrayRealRef& lengths) {
    if (dash.count < 0 || static_cast<size_t>(dash.count) > std::size(dash.lengths)) return kHostBadParameter;
    EngineRealArray made;
    for (int i = 0; i < dash.count; ++i) {
        if (!std::isfinite(dash.lengths[i])) return kHostBadParameter;
        made.values.push_back(static_cast<double>(dash.lengths[i]));
    }
    lengths = LendReference(call, std::move(made));
    return kHostNoError;
}

// AI ATE Text Util Suite, ATE ApplicationTextResources Suite

HostError GetApplicationTextResources(SuiteCall& call, ApplicationTextResourcesRef& resources) {
    resources = LendReference(call, EngineTextResources{});
    return kHostNoError;
}

HostError GetKinsokuSet(SuiteCall& call, EngineTextResources&, KinsokuSetRef& set) {
    set = LendReference(call, EngineKinsokuSet{});
    return kHostNoError;
}

// ATE KinsokuSet Suite, ATE Kinsoku Suite

/// The application's rules, of which the first entry is none.
constexpr std::u16string_view kKinsokuNames[] = {u"", u"House rules", u"Hard", u"Soft"};

HostError GetKinsokuSetSize(SuiteCall&, EngineKinsokuSet&, int32_t& size) {
    size = static_cast<int32_t>(std::size(kKinsokuNames));
    return kHostNoError;
}

HostError GetNthKinsoku(SuiteCall& call, EngineKinsokuSet&, int32_t index, KinsokuRef& kinsoku) {
    if (index < 0 || static_cast<size_t>(index) >= std::size(kKinsokuNames))
        return call.FaultUnlessRefused(kHostBadParameter, "no kinsoku of this number");
    EngineKinsoku made;
    const std::u16string_view name = kKinsokuNames[index];
    if (!name.empty()) made.name = name;
    kinsoku = LendReference(call, std::move(made));
    return kHostNoError;
}

HostError NewNullKinsoku(SuiteCall& call, KinsokuRef& kinsoku) {
    kinsoku = LendReference(call, EngineKinsoku{});
    return kHostNoError;
}

HostError IsNullKinsoku(SuiteCall&, EngineKinsoku& kinsoku, int32_t& null) {
    null = kinsoku.name ? 0 : 1;
    return kHostNoError;
}

HostError GetKinsokuName(SuiteCall& call, EngineKinsoku& kinsoku, char16_t* name, int32_t capacity) {
    if (!name || capacity < 1) return call.Fault(kHostBadParameter, "no room for a name");
    if (!kinsoku.name) return kHostNotFound;
    const size_t copied = std::min(kinsoku.name->size(), static_cast<size_t>(capacity) - 1);
    std::copy_n(kinsoku.name->begin(), copied, name);
    name[copied] = 0;
    return kHostNoError;
}

} // namespace

const void* FontSuiteTable() {
    static constexpr AIFontSuite table{
        Entry<"AI Font Suite", "CountFonts", CountFonts>::Run,
        Entry<"AI Font Suite", "GetNthFont", GetNthFont>::Run,
        Entry<"AI Font Suite", "GetFontName", GetFontName>::Run,
        Entry<"AI Font Suite", "GetFontRecord", GetFontRecord>::Run,
        Entry<"AI Font Suite", "GetEngineFont", GetEngineFont>::Run,
        Entry<"AI Font Suite", "GetFontKey", GetFontKey>::Run,
    };
    return &table;
}

const void* EnginePaintSuiteTable() {
    static constexpr AIATEPaintSuite table{
        Entry<"AIATE Paint Suite", "GetColor", GetPaintColor>::Run,
        Entry<"AIATE Paint Suite", "NewPaint", NewPaint>::Run,
        Entry<"AIATE Paint Suite", "LineCapFromEngine", FromEngine>::Run,
        Entry<"AIATE Paint Suite", "LineCapToEngine", ToEngine>::Run,
        Entry<"AIATE Paint Suite", "LineJoinFromEngine", FromEngine>::Run,
        Entry<"AIATE Paint Suite", "LineJoinToEngine", ToEngine>::Run,
        Entry<"AIATE Paint Suite", "DashFromEngine", DashFromEngine>::Run,
        Entry<"AIATE Paint Suite", "DashToEngine", DashToEngine>::Run,
    };
    return &table;
}

const void* TextUtilSuiteTable() {
    static constexpr AIATETextUtilSuite table{
        Entry<"AI ATE Text Util Suite", "GetApplicationTextResources", GetApplicationTextResources>::Run,
    };
    return &table;
}

const void* EngineTextResourcesSuiteTable() {
    using Object = EngineTextResources;
    static constexpr ATEApplicationTextResourcesSuite table{
        Entry<"ATE ApplicationTextResources Suite", "AddRef", AddReference<Object>>::Run,
        Entry<"ATE ApplicationTextResources Suite", "Release", ReleaseReference<Object>,
              EntryKind::kDisposal>::Run,
        Entry<"ATE ApplicationTextResources Suite", "GetKinsokuSet", GetKinsokuSet>::Run,
    };
    return &table;
}

const void* EngineKinsokuSetSuiteTable() {
    static constexpr ATEKinsokuSetSuite table{
        Entry<"ATE KinsokuSet Suite", "AddRef", AddReference<EngineKinsokuSet>>::Run,
        Entry<"ATE KinsokuSet Suite", "Release", ReleaseReference<EngineKinsokuSet>,
              EntryKind::kDisposal>::Run,
        Entry<"ATE KinsokuSet Suite", "GetSize", GetKinsokuSetSize>::Run,
        Entry<"ATE KinsokuSet Suite", "GetNth", GetNthKinsoku>::Run,
    };
    return &table;
}

const void* EngineKinsokuSuiteTable() {
    static constexpr ATEKinsokuSuite table{
        Entry<"ATE Kinsoku Suite", "AddRef", AddReference<EngineKinsoku>>::Run,
        Entry<"ATE Kinsoku Suite", "Release", ReleaseReference<EngineKinsoku>, EntryKind::kDisposal>::Run,
        Entry<"ATE Kinsoku Suite", "NewNull", NewNullKinsoku>::Run,
        Entry<"ATE Kinsoku Suite", "IsNull", IsNullKinsoku>::Run,
        Entry<"ATE Kinsoku Suite", "GetName", GetKinsokuName>::Run,
    };
    return &table;
}

const void* EngineApplicationPaintSuiteTable() {
    static constexpr ATEApplicationPaintSuite table{
        Entry<"ATE ApplicationPaint Suite", "AddRef", AddReference<EnginePaint>>::Run,
        Entry<"ATE ApplicationPaint Suite", "Release", ReleaseReference<EnginePaint>,
              EntryKind::kDisposal>::Run,
    };
    return &table;
}

const void* EngineFontSuiteTable() {
    static constexpr ATEFontSuite table{
        Entry<"ATE Font Suite", "AddRef", AddReference<EngineFont>>::Run,
        Entry<"ATE Font Suite", "Release", ReleaseReference<EngineFont>, EntryKind::kDisposal>::Run,
    };
    return &table;
}

const void* EngineArrayRealSuiteTable() {
    static constexpr ATEArrayRealSuite table{
        Entry<"ATE ArrayReal Suite", "AddRef", AddReference<EngineRealArray>>::Run,
        Entry<"ATE ArrayReal Suite", "Release", ReleaseReference<EngineRealArray>, EntryKind::kDisposal>::Run,
    };
    return &table;
}

} // namespace workbench
