/// The state of one load, and the rule where its art goes.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "suites/host_types.h"

constexpr int32_t kContainerLimit = 1024; ///< entries of a container stack; also above all pattern numbers
constexpr double kNoGradientSpot = std::numeric_limits<double>::max(); ///< either coordinate: not stored

/// The open containers, the innermost last.
///
/// Entry 0 is the base, which no bracket opens and none closes.  A stream may nest deeper than there are
/// entries: such brackets only count, and their art goes into the container of the last entry.
struct ContainerStack {
    ArtHandle artStack[kContainerLimit]; ///< none in entry 0 if the layer's group could not be had
    int32_t depth;                       ///< brackets open at the moment; may exceed the last entry
};

/// Starts the stack anew with a base.
void ResetContainers(ContainerStack& stack, ArtHandle base);
ArtHandle InnermostContainer(const ContainerStack& stack);

/// How a load gets at the files of placed art.
enum class LinkedFileUse : uint8_t {
    kPool, ///< a placement: files move on to the image folder
    kLook  ///< files are used where they are, and nothing in the database changes
};

/// Where a record came from, for what lies beside it.
struct RecordSource {
    const char* groupPath = nullptr; ///< cp932; null: the record has no place, so no files either
    int32_t number = -1;
    LinkedFileUse linkedFiles = LinkedFileUse::kLook;
};

struct LoadState {
    RecordSource source;
    ContainerStack page;    ///< containers on the layer
    ContainerStack pattern; ///< containers within the holder of the pattern now being read
    bool inPattern;         ///< art goes into the pattern's holder

    /// The temporary group of each stored pattern by its number; entry 0 is never used.  The holders lie
    /// above all art of the layer until the load ends.
    ArtHandle patternHolders[kContainerLimit];
    std::vector<ArtHandle> replacedHolders; ///< of numbers that the stream opened again

    bool inPluginArt;
    ArtHandle pluginEditGroup; ///< first group opened within the brackets of plug-in art
    ArtHandle pluginParent;    ///< the container in which that group was made

    double originDx, originDy; ///< from the record's lower left corner to the point that lands on placePoint
    ArtHandle scratchGroup;    ///< holds the art of a tag transfer; else none
    HostPoint hardZero;        ///< the page point (0, 0) in hard coordinates
    HostPoint gradientSpot;    ///< stored translation of the present path's gradient, or kNoGradientSpot
    HostError lastResult;      ///< of the last kept step of the present object
};

/// What the walk does after an object.
enum class LoadStep { kGoOn, kStop };

/// The stack that brackets open and close at the moment.
inline ContainerStack& OpenContainers(LoadState& load) {
    return load.inPattern ? load.pattern : load.page;
}

/// Makes art in the innermost open container, on top, or above all art of the layer if there is no container.
/// The result goes into `lastResult` too; `*art` is none after a failure.
HostError NewLoadedArt(LoadState& load, int32_t kind, ArtHandle* art);

/// What is added to a stored coordinate.
HostPoint PlacementOffset(const LoadState& load);

/// Sets originDx and originDy for `globals->originMode` from the record's bounds.
void SetOriginOffset(LoadState& load, const HostRect& bounds);

/// The sound of a refusal.
void Beep();

/// Clears the state, empties the tables in `globals` that a load fills, and ends the load on every way out:
/// no pattern holder and no scratch group stays in the document.
class LoadGuard {
public:
    LoadGuard(LoadState& load, const RecordSource& source);
    ~LoadGuard();
    LoadGuard(const LoadGuard&) = delete;
    LoadGuard& operator=(const LoadGuard&) = delete;

private:
    LoadState& load_;
};

/// Disposes the holders of all patterns.
void DisposePatternHolders(LoadState& load);
void DisposeScratchGroup(LoadState& load);
