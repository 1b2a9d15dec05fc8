#include "plugin/capture/custom_colors.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "plugin/capture/capture_notes.h"
#include "plugin/capture/note_text.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"

namespace {

/// How a kind of custom colour is written, and how many of its values tell two colours apart.
struct ColorForm {
    int32_t kind;
    int number;   ///< behind the name; counts the values, but for Lab
    int values;   ///< in the note
    int compared; ///< 0: no two colours of this kind are ever the same
    bool percent;
};
constexpr ColorForm kForms[] = {
    {kCustomFour, 4, 4, 4, true},
    {kCustomThree, 3, 3, 3, true},
    {kCustomLab, 2, 3, 0, false},
    {kCustomOne, 1, 1, 0, true},
};

const ColorForm* FormOf(int32_t kind) {
    for (const ColorForm& form : kForms) {
        if (form.kind == kind) return &form;
    }
    return nullptr;
}

bool IsPresent(const customColorEntry& entry) {
    for (int32_t row = 0; row < globals->customCount; ++row) {
        const customColorEntry& known = globals->customColors[row];
        if (known.kind != entry.kind || known.flags != entry.flags) continue;
        const int compared = FormOf(entry.kind)->compared;
        for (int i = 0; i < compared; ++i) {
            if (known.values[i] != entry.values[i]) return false;
        }
        return compared > 0;
    }
    return false;
}

std::string NoteOf(const customColorEntry& entry, const ColorForm& form, int32_t number) {
    char head[32];
    std::snprintf(head, sizeof head, "CustomColor%3.3d = \"", number);
    std::string note = head;
    note.append(entry.name, entry.nameLength);
    note += "\", " + std::to_string(form.number) + ", " + std::to_string(entry.flags);
    for (int i = 0; i < form.values; ++i) {
        // One decimal place, cut and not rounded.
        const double value = entry.values[i];
        note += ", ";
        AppendReal(note, form.percent ? std::trunc(value * 1000) / 10 : std::trunc(value * 10) / 10);
    }
    return note;
}

} // namespace

void AddCustomColor(const customColorEntry& entry) {
    if (!FormOf(entry.kind) || IsPresent(entry)) return;
    if (globals->customCount < kCustomColorRows) globals->customColors[globals->customCount++] = entry;
}

void RegisterCustomColor(CustomColorHandle color) {
    customColorEntry entry{};
    if (!FetchCustomColor(color, &entry)) AddCustomColor(entry);
}

void WriteCustomColorNotes() {
    for (int32_t row = 0; row < globals->customCount; ++row) {
        const customColorEntry& entry = globals->customColors[row];
        PutNote(NoteOf(entry, *FormOf(entry.kind), row + 1).c_str());
    }
}
