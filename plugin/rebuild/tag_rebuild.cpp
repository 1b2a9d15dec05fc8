#include "plugin/rebuild/tag_rebuild.h"

#include <cstring>
#include <string>

#include "plugin/frame/globals.h"
#include "plugin/frame/line_grammar.h"
#include "plugin/host/host_string.h"
#include "plugin/host/suites.h"

constexpr int32_t kMaxPendingTags = 500;
constexpr char kStringTagType[] = "string";
constexpr char kLayerTitleTag[] = "aidb_layer_title";

template <size_t capacity>
static void CopyText(char (&field)[capacity], std::string_view text) {
    text = text.substr(0, capacity - 1);
    std::memcpy(field, text.data(), text.size());
    field[text.size()] = 0;
}

static void AddPendingTag(const std::vector<std::string>& tokens) {
    const uint64_t row = static_cast<uint64_t>(globals->pendingTagCount);
    const MemoryHandle grown =
        ResizeHandle(globals->pendingTags, (row + 1) * sizeof(pendingTag), kSmallGrain);
    if (!grown) return;
    globals->pendingTags = grown;
    pendingTag& tag = reinterpret_cast<pendingTag*>(BlockBytes(grown))[row];
    CopyText(tag.value, TokenAt(tokens, 1));
    CopyText(tag.type, TokenAt(tokens, 2));
    CopyText(tag.name, TokenAt(tokens, 3));
    ++globals->pendingTagCount;
}

void LoadArtTagProcess(std::string_view noteText) {
    globals->pendingTagCount = 0;
    FreeHandle(globals->pendingTags);

    LineReader reader(noteText, kTagNoteGrammar);
    for (std::string line; globals->pendingTagCount < kMaxPendingTags && reader.Next(line);) {
        const auto tokens = SplitTokens(line, 4);
        if (TokenAt(tokens, 0) == "Tag" && !TokenAt(tokens, 3).empty()) AddPendingTag(tokens);
    }
}

/// Puts the waiting tags on `art` and gives the layer title among them, empty if there is none.
static std::string SetPendingTags(ArtHandle art) {
    std::string title;
    const auto* tags = reinterpret_cast<const pendingTag*>(BlockBytes(globals->pendingTags));
    for (int32_t row = 0; tags && row < globals->pendingTagCount; ++row) {
        if (std::strcmp(tags[row].type, kStringTagType) != 0) continue;
        if (std::strcmp(tags[row].name, kLayerTitleTag) == 0)
            title = tags[row].value;
        else
            TagSuite().SetTag(art, tags[row].name, tags[row].type, tags[row].value);
    }
    FreeHandle(globals->pendingTags);
    return title;
}

/// The first layer of that title, or none.
static LayerHandle FindLayer(const std::string& title) {
    int32_t count = 0;
    LayerSuite().CountLayers(&count);
    for (int32_t index = 0; index < count; ++index) {
        LayerHandle layer = nullptr;
        if (LayerSuite().GetNthLayer(index, &layer) != kHostNoError || !layer) continue;
        const HostString text;
        char bytes[kHostStringCapacity];
        if (!text.get() || LayerSuite().GetLayerTitle(layer, text.get()) != kHostNoError) continue;
        if (title == std::string_view(bytes, HostStringBytes(text.get(), kEncodingPlatform, bytes)))
            return layer;
    }
    return nullptr;
}

static LayerHandle NewLayer(const std::string& title) {
    LayerHandle layer = nullptr;
    if (LayerSuite().InsertLayer(nullptr, kPlaceAboveAll, &layer) != kHostNoError || !layer) return nullptr;
    const HostString text(title.data(), title.size(), kEncodingPlatform);
    if (text.get()) LayerSuite().SetLayerTitle(layer, text.get());
    return layer;
}

static void MoveToLayer(ArtHandle art, const std::string& title) {
    LayerHandle layer = FindLayer(title);
    if (!layer) layer = NewLayer(title);
    ArtHandle root = nullptr;
    if (!layer || ArtSuite().GetFirstArtOfLayer(layer, &root) != kHostNoError || !root) return;
    ArtSuite().ReorderArt(art, kPlaceInsideOnTop, root);
}

void ApplyPendingTags(ArtHandle art, LayerTitles titles) {
    if (globals->pendingTagCount == 0) return;
    const std::string title = SetPendingTags(art);
    if (globals->layerOption != 0 && titles == LayerTitles::kFollow && !title.empty())
        MoveToLayer(art, title);
    globals->pendingTagCount = 0;
}

/// Name of tag `index` if that tag is a string, else empty.  Copied: the host's text ends with the next call.
static std::string StringTagName(ArtHandle art, int32_t index) {
    const char* text = nullptr;
    if (TagSuite().GetNthTagName(art, index, &text) != kHostNoError || !text) return {};
    std::string name = text;
    const char* type = nullptr;
    if (name.empty() || TagSuite().GetTagType(art, name.c_str(), &type) != kHostNoError || !type) return {};
    return std::strcmp(type, kStringTagType) == 0 ? name : std::string();
}

static int32_t CountTags(ArtHandle art) {
    int32_t count = 0;
    TagSuite().CountTags(art, &count);
    return count;
}

void CopyStringTags(ArtHandle target, ArtHandle source) {
    for (int32_t index = CountTags(target) - 1; index >= 0; --index) {
        const std::string name = StringTagName(target, index);
        if (!name.empty()) TagSuite().RemoveTag(target, name.c_str());
    }
    const int32_t count = CountTags(source);
    for (int32_t index = 0; index < count; ++index) {
        const std::string name = StringTagName(source, index);
        const char* text = nullptr;
        if (name.empty() || TagSuite().GetTagString(source, name.c_str(), &text) != kHostNoError || !text)
            continue;
        const std::string value = text;
        TagSuite().SetTag(target, name.c_str(), kStringTagType, value.c_str());
    }
}

/// Visits the objects of a tree in their order.  The way back up lies in a list, not on the call stack, so
/// that art of any depth can be walked.
template <typename Visitor>
static void WalkArtTree(ArtHandle root, ArtHandle stop, Visitor&& visit) {
    std::vector<ArtHandle> next = {root};
    while (!next.empty()) {
        const ArtHandle art = next.back();
        next.pop_back();
        if (art != root) {
            ArtHandle sibling = nullptr;
            if (ArtSuite().GetNextSibling(art, &sibling) == kHostNoError && sibling) next.push_back(sibling);
        }
        int32_t kind = 0;
        if (art == stop || ArtSuite().GetArtKind(art, &kind) != kHostNoError) continue;
        visit(art);
        ArtHandle child = nullptr;
        if (kind == kArtGroup && ArtSuite().GetFirstChild(art, &child) == kHostNoError && child)
            next.push_back(child);
    }
}

std::vector<ArtHandle> ListArtTree(ArtHandle root, ArtHandle stop) {
    std::vector<ArtHandle> list;
    WalkArtTree(root, stop, [&](ArtHandle art) { list.push_back(art); });
    return list;
}

size_t CountArtTree(ArtHandle root, ArtHandle stop) {
    size_t count = 0;
    WalkArtTree(root, stop, [&](ArtHandle) { ++count; });
    return count;
}
