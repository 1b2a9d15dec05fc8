#include "plugin/store/gathered_items.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "plugin/frame/globals.h"
#include "plugin/store/record_index.h"
#include "plugin/store/record_order.h"
#include "plugin/store/store_lock.h"
#include "plugin/store/swap_words.h"

namespace {

constexpr uint32_t kWordBytes = sizeof(uint64_t);

/// Stands in front of the words of an item's name and those of its kind.
struct alignas(kWordBytes) Note {
    const char* groupPath;
    uint32_t recNo;
    uint32_t created;
    uint16_t nameWords;
    uint16_t kindWords;

    const char* name() const { return reinterpret_cast<const char*>(this + 1); }
    const char* kind() const { return name() + nameWords * kWordBytes; }
    uint32_t bytes() const {
        return static_cast<uint32_t>(sizeof(Note)) + (uint32_t{nameWords} + kindWords) * kWordBytes;
    }
};
constexpr uint32_t kMostRoomOfNote = sizeof(Note) + 2 * kRecordNameBytes;
constexpr uint32_t kMostNoteWords = UINT32_MAX - kSmallGrain; ///< a place is a row's number in 32 bits

const Note* NoteAt(const void* notes, uint32_t word) {
    return reinterpret_cast<const Note*>(static_cast<const uint8_t*>(notes) + uint64_t{word} * kWordBytes);
}

// Copies a text of a field, filled up with zeros to whole words; returns how many these are.
uint16_t PutText(const char* field, uint8_t* words) {
    const size_t bytes = strnlen(field, kRecordNameBytes - 1);
    if (bytes == 0) return 0;
    const size_t count = (bytes + kWordBytes - 1) / kWordBytes;
    std::memset(words + (count - 1) * kWordBytes, 0, kWordBytes);
    std::memcpy(words, field, bytes);
    return static_cast<uint16_t>(count);
}

RihKeys KeysOfNote(const Note* note) {
    return {note->name(), note->kind(), note->nameWords, note->kindWords, note->created};
}

void FetchAhead(const Note* note) {
    __builtin_prefetch(note);
    __builtin_prefetch(note->name() + 2 * kWordBytes);
}

// Puts items down in the order of `entries`, into the zero bytes of a new list.
void PutItems(std::span<const SortEntry> entries, const uint8_t* notes, RihItem* item) {
    constexpr size_t kAhead = 12;
    const char* group = nullptr;
    size_t groupBytes = 0;
    for (size_t i = 0; i < entries.size(); ++i, ++item) {
        FetchAhead(NoteAt(notes, entries[std::min(i + kAhead, entries.size() - 1)].row));
        const Note* note = NoteAt(notes, entries[i].row);
        if (note->groupPath != group) {
            group = note->groupPath;
            groupBytes = strnlen(group, kRihPathBytes - 1);
        }
        item->recNo = note->recNo;
        std::memcpy(item->name, note->name(), note->nameWords * kWordBytes);
        std::memcpy(item->kind, note->kind(), note->kindWords * kWordBytes);
        std::memcpy(item->groupPath, group, groupBytes);
        item->created = note->created;
    }
}

} // namespace

bool GatherItem(GatheredItems& items, const char* groupPath, uint32_t recNo, const RecordHeader& header) {
    const uint64_t room = items.noteBytes + kMostRoomOfNote;
    if (BlockSize(items.notes.get()) < room) {
        if (room > kMostNoteWords * uint64_t{kWordBytes}) return StoreFails(StoreTrouble::kMemory);
        const MemoryHandle large = ResizeHandle(items.notes.get(), room, kSmallGrain);
        if (large == nullptr) return StoreFails(StoreTrouble::kMemory);
        items.notes.get() = large;
    }
    uint8_t* place = items.notes.bytes() + items.noteBytes;
    auto* note = reinterpret_cast<Note*>(place);
    note->groupPath = groupPath;
    note->recNo = recNo;
    note->created = SwapLong(header.created);
    note->nameWords = PutText(header.name, place + sizeof(Note));
    note->kindWords = PutText(header.kind, place + sizeof(Note) + note->nameWords * kWordBytes);
    items.noteBytes += note->bytes();
    ++items.count;
    return true;
}

MemoryHandle ListOfGathered(const GatheredItems& items) {
    HandleOwner list(NewRihList(items.count));
    HandleOwner scratch(NewHandle(2 * uint64_t{items.count} * sizeof(SortEntry), kSmallGrain));
    if (list.get() == nullptr || scratch.bytes() == nullptr) {
        StoreFails(StoreTrouble::kMemory);
        return nullptr;
    }
    const std::span both(reinterpret_cast<SortEntry*>(scratch.bytes()), 2 * size_t{items.count});
    const std::span entries = both.first(items.count);
    const uint8_t* notes = items.notes.bytes();
    uint64_t place = 0;
    for (SortEntry& entry : entries) {
        entry.row = static_cast<uint32_t>(place / kWordBytes);
        place += NoteAt(notes, entry.row)->bytes();
    }
    SortRows(
        entries, both.subspan(items.count), [notes](uint32_t row) { return KeysOfNote(NoteAt(notes, row)); },
        globals->sortMode);
    PutItems(entries, notes, RihItemOfRow(list.get(), 0));
    return list.Release();
}
