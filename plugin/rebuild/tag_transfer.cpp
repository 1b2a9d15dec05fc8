#include "plugin/rebuild/tag_transfer.h"

#include "plugin/frame/globals.h"
#include "plugin/host/alerts.h"
#include "plugin/host/suites.h"
#include "plugin/rebuild/tag_rebuild.h"

static void AlertCountDiffers() {
    ShowMessageAlert(moduleBasic,
                     globals->language == 0 ? "オブジェクトの個数が一致しません。"
                                            : "The number of objects does not accord.",
                     kEncodingCp932);
}

static void AlertKindDiffers() {
    ShowMessageAlert(moduleBasic,
                     globals->language == 0 ? "オブジェクトのタイプが一致しません。"
                                            : "The type of object does not accord.",
                     kEncodingCp932);
}

/// The only member of the group, or the group itself if it has not exactly one.
static ArtHandle OnlyMember(ArtHandle group) {
    ArtHandle first = nullptr, second = nullptr;
    if (ArtSuite().GetFirstChild(group, &first) != kHostNoError || !first) return group;
    if (ArtSuite().GetNextSibling(first, &second) != kHostNoError || second) return group;
    return first;
}

static ArtHandle ParentOf(ArtHandle art) {
    ArtHandle parent = nullptr;
    return ArtSuite().GetParent(art, &parent) == kHostNoError ? parent : nullptr;
}

static bool SameKind(ArtHandle a, ArtHandle b) {
    int32_t kindA = 0, kindB = 0;
    return ArtSuite().GetArtKind(a, &kindA) == kHostNoError &&
           ArtSuite().GetArtKind(b, &kindB) == kHostNoError && kindA == kindB;
}

static void CopyTagsByPosition(const std::vector<ArtHandle>& targets, const std::vector<ArtHandle>& sources) {
    bool mismatch = false;
    for (size_t i = 0; i < sources.size(); ++i) {
        if (SameKind(targets[i], sources[i]))
            CopyStringTags(targets[i], sources[i]);
        else
            mismatch = true;
    }
    if (mismatch) AlertKindDiffers();
}

void TransferTags(ArtHandle scratchGroup, ArtHandle target) {
    const ArtHandle source = OnlyMember(scratchGroup);
    const auto sources = ListArtTree(source, nullptr);
    if (sources.empty()) return;
    if (sources.size() == 1) {
        CopyStringTags(target, sources.front());
        return;
    }

    // The record's own art hangs in the same layer while it is being compared, so it is left out.
    ArtHandle ancestor = ParentOf(target);
    while (ancestor && CountArtTree(ancestor, source) != sources.size()) ancestor = ParentOf(ancestor);
    if (!ancestor) {
        AlertCountDiffers();
        return;
    }
    const auto targets = ListArtTree(ancestor, source);
    if (targets.size() == sources.size()) CopyTagsByPosition(targets, sources);
}
