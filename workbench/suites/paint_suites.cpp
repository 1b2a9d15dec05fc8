// The tables of suites/paint.h over the front document.

#include "suites/paint.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "workbench/suites/color_check.h"
#include "workbench/suites/finite.h"
#include "workbench/suites/suite_call.h"

namespace workbench {

namespace {

// AI Path Style Suite

HostError GetPathStyle(SuiteCall&, Of<PathData> path, HostPathStyle& style) {
    style = path.data.style;
    return kHostNoError;
}

HostError CheckStyle(SuiteCall& call, const HostPathStyle& style) {
    if (style.dash.count < 0 || style.dash.count > 6) return kHostBadParameter;
    if (!AllFinite({style.lineWidth, style.miterLimit, style.dash.offset})) return kHostBadParameter;
    for (int i = 0; i < style.dash.count; ++i) {
        if (!std::isfinite(style.dash.lengths[i])) return kHostBadParameter;
    }
    if (style.fillPaint) {
        if (const HostError error = CheckColor(call, style.fill)) return error;
    }
    return style.strokePaint ? CheckColor(call, style.stroke) : kHostNoError;
}

HostError SetPathStyle(SuiteCall& call, Of<PathData> path, const HostPathStyle& style) {
    if (const HostError error = CheckStyle(call, style)) return error;
    HostPathStyle& own = path.data.style;
    own = style;
    // Paint that isn't shown may hold anything; it must not come out again as a living handle.
    if (!style.fillPaint && !call.document().Knows(style.fill)) own.fill = GrayColor(0);
    if (!style.strokePaint && !call.document().Knows(style.stroke)) own.stroke = GrayColor(0);
    return kHostNoError;
}

// AI Gradient Suite

HostError NewGradient(SuiteCall& call, GradientHandle& gradient) {
    if (const HostError error = NeedDocument(call)) return error;
    gradient = call.document().NewGradient("").handle;
    return kHostNoError;
}

HostError GetGradientType(SuiteCall&, Gradient& gradient, int32_t& type) {
    type = gradient.type;
    return kHostNoError;
}

HostError SetGradientType(SuiteCall&, Gradient& gradient, int32_t type) {
    if (type != kGradientLinear && type != kGradientRadial) return kHostBadParameter;
    gradient.type = type;
    return kHostNoError;
}

HostError GetStopCount(SuiteCall&, Gradient& gradient, int32_t& count) {
    count = static_cast<int32_t>(gradient.stops.size());
    return kHostNoError;
}

HostError CheckStopNumber(SuiteCall& call, const Gradient& gradient, int32_t index, size_t greatest) {
    if (index >= 0 && static_cast<size_t>(index) <= greatest) return kHostNoError;
    return call.FaultUnlessRefused(
        kHostBadParameter, "stop " + std::to_string(index) + " of " + std::to_string(gradient.stops.size()));
}

HostError CheckStop(SuiteCall& call, const HostGradientStop& stop) {
    if (!AllFinite({stop.midpoint, stop.location})) return kHostBadParameter;
    if (!(stop.opacity >= 0 && stop.opacity <= 1)) return kHostBadParameter;
    if (stop.color.kind == kColorPattern || stop.color.kind == kColorGradient) return kHostBadParameter;
    return CheckColor(call, stop.color);
}

HostError GetNthStop(SuiteCall& call, Gradient& gradient, int32_t index, HostGradientStop& stop) {
    const HostError error = CheckStopNumber(call, gradient, index, gradient.stops.size() - 1);
    if (error) return error;
    stop = gradient.stops[static_cast<size_t>(index)];
    return kHostNoError;
}

HostError SetNthStop(SuiteCall& call, Gradient& gradient, int32_t index, const HostGradientStop& stop) {
    HostError error = CheckStopNumber(call, gradient, index, gradient.stops.size() - 1);
    if (!error) error = CheckStop(call, stop);
    if (!error) gradient.stops[static_cast<size_t>(index)] = stop;
    return error;
}

HostError InsertStop(SuiteCall& call, Gradient& gradient, int32_t index, const HostGradientStop& stop) {
    HostError error = CheckStopNumber(call, gradient, index, gradient.stops.size());
    if (!error) error = CheckStop(call, stop);
    if (!error) gradient.stops.insert(gradient.stops.begin() + index, stop);
    return error;
}

// AI Pattern Suite

HostError NewPattern(SuiteCall& call, PatternHandle& pattern) {
    if (const HostError error = NeedDocument(call)) return error;
    pattern = call.document().NewPattern("").handle;
    return kHostNoError;
}

HostError GetPatternArt(SuiteCall&, Pattern& pattern, ArtHandle& art) {
    art = pattern.art ? pattern.art->handle : nullptr;
    return kHostNoError;
}

/// True if `art` is painted with `pattern`, directly or through other patterns: drawing it would never end.
bool Uses(const Document& document, const Art& art, const Pattern& pattern) {
    std::set<const Pattern*> met;
    std::vector<const Art*> waiting{&art};
    const auto meet = [&](const HostColor& color) {
        const Pattern* used = color.kind == kColorPattern ? document.Find(color.u.pattern.pattern) : nullptr;
        if (used && met.insert(used).second && used->art) waiting.push_back(used->art);
    };
    while (!waiting.empty()) {
        const Art* root = waiting.back();
        waiting.pop_back();
        ForEachArt(*root, [&](const Art& each) {
            if (!each.path()) return;
            meet(each.path()->style.fill);
            meet(each.path()->style.stroke);
        });
    }
    return met.count(&pattern) != 0;
}

HostError SetPatternArt(SuiteCall& call, Pattern& pattern, Art& art) {
    Document& document = call.document();
    if (Uses(document, art, pattern)) return kHostRefused;
    Art* copy = document.CopyArt(art);
    if (copy->kind != kArtGroup) {
        Art* group = document.AppendArt(kArtGroup, nullptr);
        document.AdoptArt(*copy, *group);
        copy = group;
    }
    if (pattern.art) document.DisposeArt(pattern.art);
    pattern.art = copy;
    return kHostNoError;
}

// AI Custom Color Suite

HostError GetCustomColor(SuiteCall&, CustomColor& color, HostCustomColor& definition) {
    definition = color.definition;
    return kHostNoError;
}

HostError GetCustomColorName(SuiteCall&, CustomColor& color, HostText& name) {
    name.utf8 = color.name;
    return kHostNoError;
}

HostError GetCustomColorByName(SuiteCall& call, HostText& name, CustomColorHandle& color) {
    if (const HostError error = NeedDocument(call)) return error;
    const CustomColor* found = call.document().FindCustomColor(name.utf8);
    if (!found) return kHostNotFound;
    color = found->handle;
    return kHostNoError;
}

HostError NewCustomColor(SuiteCall& call, const HostCustomColor& definition, HostText& name,
                         CustomColorHandle& color) {
    if (const HostError error = NeedDocument(call)) return error;
    if (name.utf8.empty() || call.document().FindCustomColor(name.utf8)) return kHostRefused;
    const auto& values = definition.values;
    const bool finite = AllFinite({values[0], values[1], values[2], values[3]});
    if (definition.kind < kCustomFour || definition.kind > kCustomOne || !finite) return kHostBadParameter;
    color = call.document().NewCustomColor(name.utf8, definition).handle;
    return kHostNoError;
}

// AI Swatch List Suite

HostError CheckList(SuiteCall& call, SwatchListHandle list) {
    if (!call.host().document) return kHostNotFound;
    if (!list) return call.FaultUnlessRefused(kHostBadHandle, "no swatch list");
    if (list == call.document().swatchList()) return kHostNoError;
    return call.Fault(kHostBadHandle, BadHandleText("swatch list", list));
}

HostError GetSwatchList(SuiteCall& call, DocumentHandle document, SwatchListHandle& list) {
    if (const HostError error = NeedDocument(call)) return error;
    if (document && document != call.document().handle()) {
        return call.Fault(kHostBadHandle, BadHandleText("document", document));
    }
    list = call.document().swatchList();
    return kHostNoError;
}

HostError GetSwatchByName(SuiteCall& call, SwatchListHandle list, HostText& name, int32_t colorKind,
                          SwatchHandle& swatch) {
    if (const HostError error = CheckList(call, list)) return error;
    Document& document = call.document();
    for (size_t i = 0; i < document.SwatchCount(); ++i) {
        const Swatch& each = document.SwatchAt(i);
        if (each.color.kind != colorKind || each.name != name.utf8) continue;
        swatch = each.handle;
        return kHostNoError;
    }
    return kHostNotFound;
}

HostError CountSwatches(SuiteCall& call, SwatchListHandle list, int32_t& count) {
    if (const HostError error = CheckList(call, list)) return error;
    count = static_cast<int32_t>(call.document().SwatchCount());
    return kHostNoError;
}

HostError InsertNthSwatch(SuiteCall& call, SwatchListHandle list, int32_t index, SwatchHandle& swatch) {
    if (const HostError error = CheckList(call, list)) return error;
    if (index < 0 || static_cast<size_t>(index) > call.document().SwatchCount()) {
        return call.FaultUnlessRefused(kHostBadParameter, "a place beyond the list");
    }
    swatch = call.document().InsertSwatch(static_cast<size_t>(index)).handle;
    return kHostNoError;
}

HostError SetSwatchName(SuiteCall&, Swatch& swatch, HostText& name) {
    swatch.name = name.utf8;
    return kHostNoError;
}

HostError SetSwatchColor(SuiteCall& call, Swatch& swatch, const HostColor& color) {
    const HostError error = CheckColor(call, color);
    if (!error) swatch.color = color;
    return error;
}

} // namespace

const void* PathStyleSuiteTable() {
    static constexpr AIPathStyleSuite table{
        Entry<"AI Path Style Suite", "GetPathStyle", GetPathStyle>::Run,
        Entry<"AI Path Style Suite", "SetPathStyle", SetPathStyle>::Run,
    };
    return &table;
}

const void* GradientSuiteTable() {
    static constexpr AIGradientSuite table{
        Entry<"AI Gradient Suite", "NewGradient", NewGradient>::Run,
        Entry<"AI Gradient Suite", "GetGradientType", GetGradientType>::Run,
        Entry<"AI Gradient Suite", "SetGradientType", SetGradientType>::Run,
        Entry<"AI Gradient Suite", "GetStopCount", GetStopCount>::Run,
        Entry<"AI Gradient Suite", "GetNthStop", GetNthStop>::Run,
        Entry<"AI Gradient Suite", "SetNthStop", SetNthStop>::Run,
        Entry<"AI Gradient Suite", "InsertStop", InsertStop>::Run,
    };
    return &table;
}

const void* PatternSuiteTable() {
    static constexpr AIPatternSuite table{
        Entry<"AI Pattern Suite", "NewPattern", NewPattern>::Run,
        Entry<"AI Pattern Suite", "GetPatternArt", GetPatternArt>::Run,
        Entry<"AI Pattern Suite", "SetPatternArt", SetPatternArt>::Run,
    };
    return &table;
}

const void* CustomColorSuiteTable() {
    static constexpr AICustomColorSuite table{
        Entry<"AI Custom Color Suite", "GetCustomColor", GetCustomColor>::Run,
        Entry<"AI Custom Color Suite", "GetCustomColorName", GetCustomColorName>::Run,
        Entry<"AI Custom Color Suite", "GetCustomColorByName", GetCustomColorByName>::Run,
        Entry<"AI Custom Color Suite", "NewCustomColor", NewCustomColor>::Run,
    };
    return &table;
}

const void* SwatchListSuiteTable() {
    static constexpr AISwatchListSuite table{
        Entry<"AI Swatch List Suite", "GetSwatchList", GetSwatchList>::Run,
        Entry<"AI Swatch List Suite", "GetSwatchByName", GetSwatchByName>::Run,
        Entry<"AI Swatch List Suite", "CountSwatches", CountSwatches>::Run,
        Entry<"AI Swatch List Suite", "InsertNthSwatch", InsertNthSwatch>::Run,
        Entry<"AI Swatch List Suite", "SetSwatchName", SetSwatchName>::Run,
        Entry<"AI Swatch List Suite", "SetSwatchColor", SetSwatchColor>::Run,
    };
    return &table;
}

} // namespace workbench
