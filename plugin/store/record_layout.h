/// The layout of a record, on disk and in memory.
///
/// A record in memory is one block in one of three shapes, told apart by the packed lengths:
///
/// | shape       | content                                                       | packed lengths       |
/// |-------------|---------------------------------------------------------------|----------------------|
/// | file image  | the stored bytes; every number big-endian                     | as stored, not 0     |
/// | expanded    | numbers in host order; preview at 424, object stream at 65960 | both 0               |
/// | header only | numbers in host order; 428 bytes                              | as stored, big-endian |
///
/// The size word counts 428 bytes plus the two bodies, packed or not; the last four bytes are filler.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr uint32_t kRecordHeaderBytes = 416;   ///< what an in-place rewrite writes and the index reads
constexpr uint32_t kSmallestRecordBytes = 428; ///< a stored record with two empty bodies; a header read
constexpr uint32_t kPreviewOffset = 424;       ///< also where the packed preview begins in a file image
constexpr uint32_t kFillerBytes =
    kSmallestRecordBytes - kPreviewOffset;  ///< behind both bodies; written as zeros
constexpr uint32_t kPreviewBytes = 0x10000; ///< 128 by 128 pixels from the top: unused, red, green, blue
constexpr uint32_t kObjectsOffset = kPreviewOffset + kPreviewBytes; ///< 65960
constexpr uint32_t kEmptyRecordBytes =
    kSmallestRecordBytes + kPreviewBytes; ///< 65964, an empty expanded record

constexpr uint32_t kCountBytes = 4;           ///< the count word in front of a group's records
constexpr uint32_t kRecordNameBytes = 64;     ///< with the NUL; also of a kind
constexpr uint32_t kRecordCommentBytes = 256; ///< with the NUL

#pragma pack(push, 1)
/// The header of a record.  Texts are cp932 with a NUL; bounds are Fixed, in points.
struct RecordHeader {
    uint32_t objectCount;              // 0
    uint32_t size;                     // 4, of the whole record
    int32_t boundsLeft;                // 8, always 0
    int32_t boundsTop;                 // 12, the art's height
    int32_t boundsRight;               // 16, the art's width
    int32_t boundsBottom;              // 20, always 0
    char name[kRecordNameBytes];       // 24
    char kind[kRecordNameBytes];       // 88
    char comment[kRecordCommentBytes]; // 152
    uint32_t created;                  // 408, seconds since 1904-01-01 00:00, UTC
    uint32_t modified;                 // 412, the same until an in-place rewrite puts local time here
};

/// The header and the two words that tell the shape.
struct RecordStart {
    RecordHeader header;
    uint32_t packedPreview; // 416, bytes
    uint32_t packedObjects; // 420, bytes
};
#pragma pack(pop)
static_assert(sizeof(RecordHeader) == kRecordHeaderBytes && offsetof(RecordHeader, name) == 24 &&
              offsetof(RecordHeader, comment) == 152 && offsetof(RecordHeader, created) == 408);
static_assert(sizeof(RecordStart) == kPreviewOffset && kObjectsOffset == 65960 && kEmptyRecordBytes == 65964);
