#include "plugin/rebuild/custom_color_rebuild.h"

#include <cmath>
#include <cstring>
#include <string>

#include "plugin/frame/globals.h"
#include "plugin/frame/line_grammar.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"
#include "plugin/store/cp932.h"

constexpr size_t kMaxNameBytes = 254; // a NUL fits behind it in the row's field
constexpr int kMaxSuffix = 99;
constexpr double kValueTolerance = 0.001; // stored values are cut to a tenth of a percent

namespace {

/// The number of values that stand for a colour of that kind.
size_t ValueCount(int32_t kind) {
    return kind == kCustomFour ? 4 : 3;
}

/// Kind, flags and values from the note's tokens; false for a form that has no rule.
bool ReadDefinition(const std::vector<std::string>& tokens, customColorEntry* entry) {
    const std::string_view form = TokenAt(tokens, 2, 1);
    if (form == "4")
        entry->kind = kCustomFour;
    else if (form == "3")
        entry->kind = kCustomThree;
    else if (form == "2")
        entry->kind = kCustomLab;
    else
        return false;
    entry->flags = static_cast<int16_t>(DecimalInteger(TokenAt(tokens, 3)));
    const double unit = entry->kind == kCustomLab ? 1.0 : 100.0;
    for (size_t i = 0; i < ValueCount(entry->kind); ++i)
        entry->values[i] = DecimalReal(TokenAt(tokens, 4 + i)) / unit;
    return true;
}

/// As much of `name` as leaves room for `reserved` bytes, without half a character at its end.
std::string CutName(const std::string& name, size_t reserved) {
    size_t length = 0;
    while (length < name.size()) {
        const size_t bytes = CharacterBytes(name.c_str() + length);
        if (bytes == 0 || length + bytes > kMaxNameBytes - reserved) break;
        length += bytes;
    }
    return name.substr(0, length);
}

std::string CandidateName(const std::string& base, int suffix) {
    const std::string digits = suffix == 0 ? std::string() : std::to_string(suffix);
    return CutName(base, digits.size()) + digits;
}

void SetEntryName(customColorEntry* entry, const std::string& name) {
    std::memset(entry->name, 0, sizeof entry->name);
    std::memcpy(entry->name, name.data(), name.size());
    entry->nameLength = static_cast<uint8_t>(name.size());
}

/// The document's colour of that name, or none.
CustomColorHandle FindByName(const HostString& name) {
    CustomColorHandle color = nullptr;
    if (CustomColorSuite().GetCustomColorByName(name.get(), &color) != kHostNoError) return nullptr;
    return color;
}

bool SameDefinition(CustomColorHandle color, const customColorEntry& entry) {
    HostCustomColor definition{};
    if (CustomColorSuite().GetCustomColor(color, &definition) != kHostNoError) return false;
    if (definition.kind != entry.kind || static_cast<int16_t>(definition.flags) != entry.flags) return false;
    for (size_t i = 0; i < ValueCount(entry.kind); ++i) {
        if (!(std::fabs(definition.values[i] - entry.values[i]) < kValueTolerance)) return false;
    }
    return true;
}

bool HasSwatch(SwatchListHandle list, const HostString& name) {
    for (const int32_t kind : {kColorCustom, kColorFour, kColorThree}) {
        SwatchHandle swatch = nullptr;
        if (SwatchListSuite().GetSwatchByName(list, name.get(), kind, &swatch) == kHostNoError && swatch)
            return true;
    }
    return false;
}

void AddSwatch(const HostString& name, CustomColorHandle color) {
    SwatchListHandle list = nullptr;
    if (SwatchListSuite().GetSwatchList(nullptr, &list) != kHostNoError || !list || HasSwatch(list, name))
        return;
    int32_t count = 0;
    SwatchHandle swatch = nullptr;
    SwatchListSuite().CountSwatches(list, &count);
    if (SwatchListSuite().InsertNthSwatch(list, count, &swatch) != kHostNoError || !swatch) return;
    SwatchListSuite().SetSwatchName(swatch, name.get());
    HostColor paint{};
    paint.kind = kColorCustom;
    paint.u.custom = {color, 0.0};
    SwatchListSuite().SetSwatchColor(swatch, &paint);
}

/// None if the host would not make it.
CustomColorHandle NewCustomColor(const customColorEntry& entry, const HostString& name) {
    HostCustomColor definition{};
    definition.kind = entry.kind;
    definition.flags = entry.flags;
    std::memcpy(definition.values, entry.values, sizeof definition.values);
    CustomColorHandle color = nullptr;
    if (CustomColorSuite().NewCustomColor(&definition, name.get(), &color) != kHostNoError) return nullptr;
    if (color) AddSwatch(name, color);
    return color;
}

/// Gives the entry the first name that is free or stands for the same colour.  False if there is none, else
/// `*color` is that colour, or none if the host would not make it.
bool SettleColor(customColorEntry* entry, const std::string& base, CustomColorHandle* color) {
    for (int suffix = 0; suffix <= kMaxSuffix; ++suffix) {
        const std::string candidate = CandidateName(base, suffix);
        SetEntryName(entry, candidate);
        const HostString name(candidate.data(), candidate.size(), kEncodingPlatform);
        *color = nullptr;
        if (!name.get()) return true;
        *color = FindByName(name);
        if (!*color)
            *color = NewCustomColor(*entry, name);
        else if (!SameDefinition(*color, *entry))
            continue;
        return true;
    }
    return false;
}

} // namespace

void LoadCustomColor(std::string_view text) {
    if (globals->customCount >= kCustomColorRows) return;
    const auto tokens = SplitTokens(text, 8);
    const int32_t number = DecimalInteger(TokenAt(tokens, 0));
    const std::string base(TokenAt(tokens, 1, 255));
    customColorEntry entry{};
    if (number < 1 || number > kCustomColorRows || base.empty() || !ReadDefinition(tokens, &entry)) return;

    CustomColorHandle color = nullptr;
    if (!SettleColor(&entry, base, &color)) return;
    globals->customColors[number - 1] = entry;
    globals->customHandles[number - 1] = color;
    if (globals->customCount < number) globals->customCount = number;
}
