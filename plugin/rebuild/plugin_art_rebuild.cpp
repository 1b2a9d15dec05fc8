#include "plugin/rebuild/plugin_art_rebuild.h"

#include <cstring>
#include <string_view>

#include "plugin/host/suites.h"
#include "plugin/objects/object_stream.h"

constexpr uint32_t kMaxPluginData = 255;

/// The host's plug-in group of that name; none if there is none or the host fails before it.
static PluginGroupHandle FindPluginGroup(std::string_view name) {
    int32_t count = 0;
    PluginGroupSuite().CountPluginGroups(&count);
    for (int32_t index = 0; index < count; ++index) {
        PluginGroupHandle group = nullptr;
        const char* text = nullptr;
        if (PluginGroupSuite().GetNthPluginGroup(index, &group) != kHostNoError || !group) return nullptr;
        if (PluginGroupSuite().GetPluginGroupName(group, &text) != kHostNoError) return nullptr;
        if (text && name == text) return group;
    }
    return nullptr;
}

static HostError FillPluginArt(ArtHandle art, PluginGroupHandle group, ArtHandle edit,
                               const AidbPluginNote& note) {
    const AIPluginGroupSuite& suite = PluginGroupSuite();
    const int32_t bytes = static_cast<int32_t>(note.dataBytes);
    HostError error = suite.SetEditArt(art, edit);
    if (error == kHostNoError) error = suite.UsePluginGroup(art, group);
    if (error == kHostNoError)
        error = suite.SetVersion(art, static_cast<int32_t>(note.major), static_cast<int32_t>(note.minor));
    if (error == kHostNoError) error = suite.SetDataSize(art, bytes);
    if (error == kHostNoError) error = suite.SetDataRange(art, note.data, 0, bytes);
    return error;
}

void LoadArtPluginProcess(LoadState& load, std::span<uint8_t> note) {
    const AidbPluginNote* stored = FindPluginNote(note);
    if (!load.pluginEditGroup || !stored || stored->dataBytes > kMaxPluginData) return;
    const std::string_view name(stored->groupName, strnlen(stored->groupName, sizeof stored->groupName));
    const PluginGroupHandle group = FindPluginGroup(name);
    if (!group) return;

    ArtHandle art = nullptr;
    load.lastResult = ArtSuite().NewArt(kArtPlugin, load.pluginParent ? kPlaceInsideOnTop : kPlaceAboveAll,
                                        load.pluginParent, &art);
    if (load.lastResult == kHostNoError)
        load.lastResult = FillPluginArt(art, group, load.pluginEditGroup, *stored);
}
