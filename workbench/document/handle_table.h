/// Handles that are given out once.
///
/// All tables of a process share one id space that only grows, so a handle of a closed document, of
/// another table or of an object that is gone never names something else by chance.  Values are multiples
/// of 16 from 0x10000 on, and their low 32 bits never lie below 0x10000 either, for callers that look at
/// those alone.  A look-up costs the same however many handles there are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace workbench {

enum class HandleType : uint8_t {
    kNone,
    kDocument,
    kLayer,
    kArt,
    kGradient,
    kPattern,
    kCustomColor,
    kArtStyle,
    kSwatch,
    kSwatchList,
    kView,
    kText,
    kFilePath,
    kPort,
    kPluginGroup,
    kMeshVertex,
    kMeshSegment,
    kTextRange,
    kTextFrame,
    kStory,
    kCharFeatures,
    kParaFeatures,
    kFont,
    kFontKey,
    kKinsoku,
    kKinsokuSet,
    kTextPaint,
    kTextResources,
    kRealArray,
    kPluginAccess,
    kMenuGroup,
    kMenuItem,
    kTimer,
    kNotifier,
    kFlyout,
    kPanel,
    kParameterTypes,
    kParameters
};

class HandleTable {
public:
    HandleTable();
    ~HandleTable();
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    /// A new handle for `object`, which stays the caller's.
    uintptr_t Add(HandleType type, void* object);

    /// The handle names nothing from now on.
    void Remove(uintptr_t handle);

    /// Null if the handle isn't one of this table, names something of another type, or its object is gone.
    void* Find(HandleType type, uintptr_t handle) const;

    /// The type with which the handle was given out, also if its object is gone; kNone if it isn't one of
    /// this table.
    HandleType TypeOf(uintptr_t handle) const;

    /// Visits every living object in the order of their handles.
    template <typename Visitor>
    void ForEach(Visitor&& visit) const {
        for (const auto& chunk : chunks_) {
            if (!chunk) continue;
            for (const Entry& entry : *chunk) {
                if (entry.object) visit(entry.type, entry.object);
            }
        }
    }

private:
    struct Entry {
        void* object = nullptr;
        HandleType type = HandleType::kNone;
    };
    static constexpr size_t kChunkEntries = 256;
    using Chunk = std::array<Entry, kChunkEntries>;

    const Entry* EntryOf(uintptr_t handle) const;

    std::vector<std::unique_ptr<Chunk>> chunks_; ///< null: another table's
    uint64_t firstChunk_ = 0;                    ///< number of chunks_[0]
    size_t used_ = kChunkEntries;                ///< entries given out of the last chunk
};

} // namespace workbench
