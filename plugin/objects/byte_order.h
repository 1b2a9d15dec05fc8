/// The byte order of a whole record: host order in memory, big-endian on disk.
///
/// A record here is in its expanded shape (store/record_layout.h).  Each structure is swapped field by
/// field; texts, font names, raster tiles, markers, the numbers of plug-in notes, gaps, and what lies in a
/// colour beyond the fields of its kind stay as they are.  Words go through SwapShort and SwapLong, so
/// with `swapBytes` clear nothing changes.
///
/// Damage never leads outside the record, and is carried through unchanged:
/// - an object that is shorter than its header or leads outside the stream ends the swap behind its
///   header, and so does a stream that ends before its count;
/// - an inner count or size is swapped, then clipped to the structures that wholly fit;
/// - an object too short for its kind's fixed part, and one of an unknown type, has its header swapped.
/// What is swapped is decided by the same host-order values in both directions, so a read undoes a write
/// and a write undoes a read, byte for byte, whatever the bytes are.
#pragma once

#include "plugin/store/memory_handle.h"

/// Converts objects and then the record header from host order to stored order.
void SwapRecordToStore(MemoryHandle record);

/// Converts the record header from stored order to host order, and the objects too if `objects` is set.
void SwapRecordFromStore(MemoryHandle record, bool objects);
