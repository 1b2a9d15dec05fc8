#include "plugin/capture/art_tags.h"

#include <cstring>
#include <string>

#include "plugin/capture/art_walk.h"
#include "plugin/capture/capture_notes.h"
#include "plugin/objects/object_stream.h"
#include "plugin/store/trace.h"

namespace {

constexpr size_t kTagBytes = 461;    // name and value of one tag stay below this
constexpr size_t kNoteBytes = 65000; // of all lines together

std::string TagLine(const std::string& value, const char* type, const std::string& name) {
    return "Tag = \"" + value + "\", " + type + ", " + name + "\r";
}

// The host's texts stand only until the next call of the suite, so the name is taken at once.
bool ReadStringTag(ArtHandle art, int32_t index, std::string& name, std::string& value) {
    const char* text = nullptr;
    if (TagSuite().GetNthTagName(art, index, &text) || !text || !*text) return false;
    name = text;
    const char* type = nullptr;
    if (TagSuite().GetTagType(art, name.c_str(), &type) || !type || std::strcmp(type, "string") != 0) {
        return false;
    }
    const char* content = nullptr;
    if (TagSuite().GetTagString(art, name.c_str(), &content) || !content) return false;
    value = content;
    return name.size() + value.size() < kTagBytes;
}

std::string LayerTitleOf(ArtHandle art) {
    LayerHandle layer = nullptr;
    if (ArtSuite().GetLayerOfArt(art, &layer) || !layer) return {};
    char title[kLayerTitleBytes];
    ReadLayerTitle(layer, title);
    return title;
}

} // namespace

void WriteArtTags(ArtHandle art, bool layerTitle) {
    const TraceScope trace("WriteArtTags");
    int32_t count = 0;
    if (TagSuite().CountTags(art, &count)) count = 0;

    std::string note;
    for (int32_t index = 0; index < count; ++index) {
        std::string name, value;
        if (!ReadStringTag(art, index, name, value)) continue;
        const std::string line = TagLine(value, "string", name);
        if (note.size() + line.size() > kNoteBytes) break;
        note += line;
    }
    if (layerTitle) {
        const std::string title = LayerTitleOf(art);
        const std::string line = TagLine(title, "string", "aidb_layer_title");
        if (!title.empty() && note.size() + line.size() < kNoteBytes) note += line;
    }
    if (!note.empty()) PutNote(note.c_str());
}
