#include "plugin/rebuild/load_art.h"

#include <span>
#include <string_view>

#include "plugin/frame/globals.h"
#include "plugin/frame/line_grammar.h"
#include "plugin/host/suites.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"
#include "plugin/rebuild/custom_color_rebuild.h"
#include "plugin/rebuild/load_state.h"
#include "plugin/rebuild/mesh_rebuild.h"
#include "plugin/rebuild/path_rebuild.h"
#include "plugin/rebuild/placed_rebuild.h"
#include "plugin/rebuild/plugin_art_rebuild.h"
#include "plugin/rebuild/raster_rebuild.h"
#include "plugin/rebuild/tag_rebuild.h"
#include "plugin/rebuild/tag_transfer.h"
#include "plugin/rebuild/text_rebuild.h"
#include "plugin/rebuild/undo_texts.h"
#include "plugin/store/record.h"
#include "plugin/store/record_layout.h"

namespace {

/// A note on its way through the rules.
struct Note {
    std::span<uint8_t> object;
    std::string_view text;
    std::string_view behind; ///< the text behind the rule's word
};

constexpr std::string_view kCustomColorWord = "CustomColor";

constexpr size_t kPatternDigits = 5;

// ---- Containers ----

/// The tags that wait belong to a container that isn't made: no other art may get them.
void DropPendingTags() {
    globals->pendingTagCount = 0;
    FreeHandle(globals->pendingTags);
}

LoadStep OpenContainer(LoadState& load, int32_t kind) {
    ContainerStack& stack = OpenContainers(load);
    if (stack.depth >= kContainerLimit - 1) {
        ++stack.depth;
        DropPendingTags();
        return LoadStep::kGoOn;
    }
    const ArtHandle parent = InnermostContainer(stack);
    ArtHandle container = nullptr;
    if (NewLoadedArt(load, kind, &container) != kHostNoError) {
        Beep();
        return LoadStep::kStop;
    }
    stack.artStack[++stack.depth] = container;
    if (kind == kArtGroup && load.inPluginArt && !load.pluginEditGroup) {
        load.pluginParent = parent;
        load.pluginEditGroup = container;
    }
    ApplyPendingTags(container, load.inPattern ? LayerTitles::kIgnore : LayerTitles::kFollow);
    return LoadStep::kGoOn;
}

LoadStep OpenGroup(LoadState& load, const Note&) {
    return OpenContainer(load, kArtGroup);
}
LoadStep OpenCompoundPath(LoadState& load, const Note&) {
    return OpenContainer(load, kArtCompoundPath);
}

/// A stream that closes more than it opens leaves the base open.
LoadStep CloseContainer(LoadState& load, const Note&) {
    ContainerStack& stack = OpenContainers(load);
    if (stack.depth > 0) --stack.depth;
    return LoadStep::kGoOn;
}

void ClipGroup(ArtHandle art) {
    // In a damaged stream the innermost container may be a compound path, which can't clip.
    int32_t kind = 0;
    if (ArtSuite().GetArtKind(art, &kind) == kHostNoError && kind == kArtGroup)
        GroupSuite().SetGroupClipped(art, 1);
}

/// Clipping and opacity come last, when all members are there.
LoadStep CloseGroup(LoadState& load, const Note& note) {
    const ContainerStack& stack = OpenContainers(load);
    if (stack.depth > 0 && stack.depth < kContainerLimit) {
        constexpr std::string_view kOpacity = "Opacity=";
        const ArtHandle group = stack.artStack[stack.depth];
        if (note.text.find("Clipped=TRUE") != std::string_view::npos) ClipGroup(group);
        const size_t at = note.text.find(kOpacity);
        if (at != std::string_view::npos)
            BlendStyleSuite().SetOpacity(group,
                                         DecimalInteger(note.text.substr(at + kOpacity.size())) / 100.0);
    }
    return CloseContainer(load, note);
}

// ---- Patterns ----

/// Other numbers than those of holders open nothing: what follows is taken as ordinary art.
LoadStep OpenPattern(LoadState& load, const Note& note) {
    const int32_t number = DecimalInteger(note.behind.substr(0, kPatternDigits));
    if (number < 1 || number >= kContainerLimit) return LoadStep::kGoOn;
    ArtHandle& holder = load.patternHolders[number];
    if (holder) load.replacedHolders.push_back(holder);
    holder = nullptr;
    load.inPattern = true;
    load.lastResult = ArtSuite().NewArt(kArtGroup, kPlaceAboveAll, nullptr, &holder);
    if (load.lastResult != kHostNoError) {
        Beep();
        return LoadStep::kStop;
    }
    ResetContainers(load.pattern, holder);
    return LoadStep::kGoOn;
}

/// Drops what is still open in the run.
LoadStep ClosePattern(LoadState& load, const Note&) {
    load.inPattern = false;
    return LoadStep::kGoOn;
}

// ---- Plug-in art ----

LoadStep OpenPluginArt(LoadState& load, const Note&) {
    load.inPluginArt = true;
    load.pluginEditGroup = nullptr;
    return LoadStep::kGoOn;
}

LoadStep ClosePluginArt(LoadState& load, const Note& note) {
    LoadArtPluginProcess(load, note.object);
    load.inPluginArt = false;
    return LoadStep::kGoOn;
}

// ---- Files, tags ----

LoadStep PassOver(LoadState&, const Note&) {
    return LoadStep::kGoOn;
}

LoadStep PlaceFile(LoadState& load, const Note& note) {
    const HostPoint offset = PlacementOffset(load);
    const ArtHandle prep = InnermostContainer(OpenContainers(load));
    load.lastResult =
        LoadArtPlacedProcess(load.source, note.object, prep ? kPlaceInsideOnTop : kPlaceAboveAll, prep,
                             static_cast<float>(offset.x), static_cast<float>(offset.y));
    return LoadStep::kGoOn;
}

LoadStep TakeTags(LoadState&, const Note& note) {
    LoadArtTagProcess(note.text);
    return LoadStep::kGoOn;
}

// ---- The rules ----

bool Always(const LoadState&) {
    return true;
}
bool InPattern(const LoadState& load) {
    return load.inPattern;
}
bool InPluginArt(const LoadState& load) {
    return load.inPluginArt;
}

struct NoteRule {
    std::string_view word;
    bool (*applies)(const LoadState&);
    LoadStep (*action)(LoadState&, const Note&);
};

/// The first rule whose word stands anywhere in the note takes it, so their order matters.  The walk goes
/// backwards: of a pair of brackets it meets the one with the leading slash first.
constexpr NoteRule kNoteRules[] = {
    {"/ GroupArt", Always, OpenGroup},
    {"GroupArt /", Always, CloseGroup},
    {"/ CompoundPathArt", Always, OpenCompoundPath},
    {"CompoundPathArt /", Always, CloseContainer},
    {"/ PatternArt", Always, OpenPattern},
    {"PatternArt", InPattern, ClosePattern},
    {"/ PluginArt", Always, OpenPluginArt},
    {kPluginNoteText, InPluginArt, ClosePluginArt},
    {kCustomColorWord, Always, PassOver}, // see LoadCustomColors
    {"PlacedFile", Always, PlaceFile},
    {"Tag", Always, TakeTags},
};

/// The rule that takes the note, or null; `note->behind` is what stands behind its word.
const NoteRule* FindRule(const LoadState& load, Note* note) {
    for (const NoteRule& rule : kNoteRules) {
        const size_t at = note->text.find(rule.word);
        if (at == std::string_view::npos || !rule.applies(load)) continue;
        note->behind = note->text.substr(at + rule.word.size());
        return &rule;
    }
    return nullptr;
}

LoadStep LoadArtNoteProcess(LoadState& load, std::span<uint8_t> object) {
    Note note = {object, NoteText(object), {}};
    const NoteRule* rule = FindRule(load, &note);
    return rule ? rule->action(load, note) : LoadStep::kGoOn;
}

LoadStep LoadObject(LoadState& load, std::span<uint8_t> object) {
    load.lastResult = kHostNoError;
    switch (HeaderOf(object)->type) {
        case kNoteObject:
            return LoadArtNoteProcess(load, object);
        case kMeshObject:
            return LoadArtMeshProcess(load, object);
        case kPathObject:
            return LoadArtPathProcess(load, object);
        case kRasterObject:
            return LoadArtRasterProcess(load, object);
        case kTextObject:
            load.lastResult = LoadArtTextProcess(load, object);
            return LoadStep::kGoOn;
        default:
            return LoadStep::kGoOn;
    }
}

// ---- The driver ----

bool IsOpenForArt(LayerHandle layer) {
    int32_t visible = 0, editable = 0;
    LayerSuite().GetLayerVisible(layer, &visible);
    LayerSuite().GetLayerEditable(layer, &editable);
    return visible && editable;
}

/// Opens the container of everything that the load builds on the page.
bool OpenBase(LoadState& load) {
    LayerHandle layer = nullptr;
    if (LayerSuite().GetCurrentLayer(&layer) != kHostNoError || !layer || !IsOpenForArt(layer)) {
        Beep();
        return false;
    }
    ArtHandle base = nullptr;
    if (ArtSuite().GetFirstArtOfLayer(layer, &base) != kHostNoError) base = nullptr;
    ResetContainers(load.page, base);
    if (globals->trackState != 2 || !globals->trackTarget) return true;
    if (NewLoadedArt(load, kArtGroup, &load.scratchGroup) != kHostNoError) return false;
    ResetContainers(load.page, load.scratchGroup);
    return true;
}

void ReadOriginOffset(LoadState& load) {
    const auto* header = reinterpret_cast<const RecordHeader*>(BlockBytes(globals->curRecord));
    const FixedRect stored = {header->boundsLeft, header->boundsTop, header->boundsRight,
                              header->boundsBottom};
    HostRect bounds{};
    RectFromRecord(stored, &bounds);
    SetOriginOffset(load, bounds);
}

/// Makes the custom colours, the last one first.  They stand behind the art but before the patterns, and the
/// walk meets the patterns first: their art would come out in process colours.
void LoadCustomColors(const LoadState& load, const ObjectOffsets& objects) {
    for (uint32_t index = objects.count(); index-- > 0;) {
        const auto object = objects.Object(globals->curRecord, index);
        if (HeaderOf(object)->type != kNoteObject) continue;
        Note note = {object, NoteText(object), {}};
        const NoteRule* rule = FindRule(load, &note);
        if (rule && rule->word == kCustomColorWord) LoadCustomColor(note.behind);
    }
}

void BuildRecord(LoadState& load) {
    HostPoint zero{0, 0};
    if (HardSoftSuite().HardenPoint(&zero) == kHostNoError) load.hardZero = zero;
    if (!globals->curRecord) return;
    SetPlacementUndoTexts();
    ReadOriginOffset(load);
    if (!OpenBase(load)) return;

    const ObjectOffsets objects(globals->curRecord);
    LoadCustomColors(load, objects);
    for (uint32_t index = objects.count(); index-- > 0;) {
        if (LoadObject(load, objects.Object(globals->curRecord, index)) == LoadStep::kStop) return;
    }
}

} // namespace

HostError AidbLoadArt(const char* groupPath, int32_t recordNumber, LinkedFileUse linkedFiles) {
    AidbReadRecord(groupPath, recordNumber, nullptr, kReadWhole, true);
    return RebuildCurrentRecord({groupPath, recordNumber, linkedFiles});
}

HostError RebuildCurrentRecord(const RecordSource& source) {
    LoadState load;
    const LoadGuard guard(load, source);
    BuildRecord(load);

    // The holders lie in the layer too and would count as its objects.
    DisposePatternHolders(load);
    if (load.scratchGroup) TransferTags(load.scratchGroup, globals->trackTarget);
    DisposeScratchGroup(load);
    return load.lastResult;
}
