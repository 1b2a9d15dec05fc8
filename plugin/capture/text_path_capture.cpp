#include "plugin/capture/text_path_capture.h"

#include "plugin/capture/path_capture.h"
#include "plugin/objects/conversions.h"
#include "plugin/objects/object_stream.h"

namespace {

/// Room for a text path of `segments` segments, its matrix and count filled in.
uint8_t* AppendPath(const CapturedFrame& frame, const HostPoint& origin, int32_t segments,
                    MemoryHandle& object, uint64_t& used) {
    if (segments < 0 || segments > UINT16_MAX) throw ATE::Exception(kHostBadParameter);
    const uint64_t bytes = sizeof(AidbTextPath) + static_cast<uint64_t>(segments) * sizeof(AidbSegment);
    uint8_t* place = GrowObject(object, used, bytes, kSmallGrain);
    if (!place) throw ATE::Exception(kHostOutOfMemory);
    auto* path = reinterpret_cast<AidbTextPath*>(place);
    HostMatrix matrix = frame.matrix;
    matrix.b = -matrix.b;
    matrix.c = -matrix.c;
    matrix.tx = frame.anchor.x - origin.x;
    matrix.ty = frame.anchor.y - origin.y;
    MatrixToRecord(matrix, &path->matrix);
    path->segmentCount = static_cast<uint16_t>(segments);
    return place;
}

AidbSegment* SegmentsOf(uint8_t* path) {
    return reinterpret_cast<AidbSegment*>(path + sizeof(AidbTextPath));
}

void CaptureAnchor(const CapturedFrame& frame, const HostPoint& origin, MemoryHandle& object,
                   uint64_t& used) {
    HostPoint anchor = frame.anchor;
    Subtract(anchor, origin);
    SegmentToRecord({anchor, anchor, anchor, 0}, SegmentsOf(AppendPath(frame, origin, 1, object, used)));
}

} // namespace

void CaptureTextPath(const CapturedFrame& frame, const HostPoint& origin, MemoryHandle& object,
                     uint64_t& used) {
    if (frame.kind == kTextFramePoint) return CaptureAnchor(frame, origin, object, used);
    const ArtHandle path = ATE::Got(TextFrameSuite().GetPath, frame.art);
    if (!path) return;
    const int32_t closed = ATE::Got(PathSuite().GetPathClosed, path);
    const int32_t count = ATE::Got(PathSuite().GetPathSegmentCount, path);
    uint8_t* place = AppendPath(frame, origin, count, object, used);
    reinterpret_cast<AidbTextPath*>(place)->closed = static_cast<uint16_t>(closed);
    for (int32_t index = 0; index < count; ++index) {
        HostPathSegment segment{};
        ATE::Check(PathSuite().GetPathSegments(path, index, 1, &segment));
        Subtract(segment.anchor, origin);
        Subtract(segment.in, origin);
        Subtract(segment.out, origin);
        SegmentToRecord(segment, SegmentsOf(place) + index);
    }
}
