#include "plugin/capture/preview.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "plugin/capture/art_walk.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record_layout.h"
#include "plugin/store/trace.h"

namespace {

constexpr int32_t kSupersampling = 2;
constexpr int32_t kPortSide = kPreviewSide * kSupersampling;
constexpr double kDrawThreshold = 10.0;
static_assert(kPreviewBytes == kPreviewSide * kPreviewSide * 4);

// An art list: a 32-bit count, 4 spare bytes, the handles.
constexpr uint64_t kListHead = 8;

uint32_t ListCount(MemoryHandle list) {
    uint32_t count = 0;
    if (list) std::memcpy(&count, BlockBytes(list), sizeof count);
    return count;
}

ArtHandle ListEntry(MemoryHandle list, uint32_t index) {
    ArtHandle art = nullptr;
    std::memcpy(&art, BlockBytes(list) + kListHead + uint64_t{index} * sizeof art, sizeof art);
    return art;
}

bool AppendToList(MemoryHandle& list, ArtHandle art) {
    const uint32_t count = ListCount(list);
    const uint64_t offset = kListHead + uint64_t{count} * sizeof art;
    const MemoryHandle grown = ResizeHandle(list, offset + sizeof art, kSmallGrain);
    if (!grown) return false;
    list = grown;
    std::memcpy(BlockBytes(list) + offset, &art, sizeof art);
    const uint32_t newCount = count + 1;
    std::memcpy(BlockBytes(list), &newCount, sizeof newCount);
    return true;
}

enum class Drawing { kNone, kWhole, kMembers };

Drawing DrawingOf(ArtHandle art, int32_t kind, int32_t depth) {
    switch (kind) {
        case kArtGroup:
            return depth >= 1 && IsSelected(art) && IsClipped(art) ? Drawing::kWhole : Drawing::kMembers;
        case kArtCompoundPath:
            return IsSelected(art) ? Drawing::kWhole : Drawing::kMembers;
        case kArtPath:
            return IsSelected(art) && !IsGuide(art) ? Drawing::kWhole : Drawing::kNone;
        case kArtPlaced:
        case kArtRaster:
        case kArtPlugin:
        case kArtMesh:
        case kArtTextFrame:
            return IsSelected(art) ? Drawing::kWhole : Drawing::kNone;
        default:
            return Drawing::kNone;
    }
}

/// Pixels for each point, and the art point of the picture's upper left corner.
struct Framing {
    double scale;
    HostPoint origin;
};

Framing FrameSelection(const HostRect& selection) {
    const double width = std::fabs(selection.right - selection.left);
    const double height = std::fabs(selection.top - selection.bottom);
    const double longer = std::max(width, height);
    Framing framing{longer > 0 ? kPreviewSide / longer : 1.0, {selection.left, selection.top}};
    if (height > width) framing.origin.x -= static_cast<float>((height - width) / 2);
    if (width > height) framing.origin.y += static_cast<float>((width - height) / 2);
    return framing;
}

/// An off-screen port of the host, given back at the end of the scope.
class Port {
public:
    Port() {
        if (DrawArtSuite().NewOffscreenPort(kPortSide, kPortSide, &port_)) port_ = nullptr;
    }
    ~Port() {
        if (port_) DrawArtSuite().ReleasePort(port_);
    }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    PortHandle get() const { return port_; }

private:
    PortHandle port_ = nullptr;
};

// The art found first paints last.
void DrawList(MemoryHandle list, const Framing& framing, PortHandle port) {
    HostDrawData data{};
    data.version = 11;
    data.options = 15;
    data.outputKind = kDrawOutputPort;
    data.origin = framing.origin;
    const double scale = kSupersampling * framing.scale;
    RealMathSuite().SetScaleMatrix(&data.matrix, scale, scale);
    data.threshold = kDrawThreshold;
    constexpr uint16_t kColors[4] = {0, 0x4F00, 0x8000, 0xFF00};
    std::copy(std::begin(kColors), std::end(kColors), data.colors);
    data.port = port;
    for (uint32_t index = ListCount(list); index-- > 0;) {
        data.art = ListEntry(list, index);
        DrawArtSuite().DrawArt(&data);
    }
}

/// The mean of one channel (1 red, 2 green, 3 blue) over four pixels, truncated.
uint8_t MeanOf(const uint8_t* upper, const uint8_t* lower, int channel) {
    return static_cast<uint8_t>((upper[channel] + upper[channel + 4] + lower[channel] + lower[channel + 4]) /
                                4);
}

void Reduce(const uint8_t* pixels, int32_t rowPixels, uint8_t* preview) {
    const size_t rowBytes = static_cast<size_t>(rowPixels) * 4;
    for (size_t y = 0; y < kPreviewSide; ++y) {
        const uint8_t* upper = pixels + 2 * y * rowBytes;
        const uint8_t* lower = upper + rowBytes;
        for (size_t x = 0; x < kPreviewSide; ++x, upper += 8, lower += 8, preview += 4) {
            const uint32_t pixel =
                PackPreviewPixel(MeanOf(upper, lower, 1), MeanOf(upper, lower, 2), MeanOf(upper, lower, 3));
            std::memcpy(preview, &pixel, sizeof pixel);
        }
    }
}

} // namespace

uint32_t PackPreviewPixel(uint8_t red, uint8_t green, uint8_t blue) {
    const uint32_t r = red, g = green, b = blue;
    return globals->swapBytes ? r << 8 | g << 16 | b << 24 : r << 16 | g << 8 | b;
}

HostError CreatePictImageProcess(ArtHandle art, MemoryHandle& list, int32_t depth) {
    const TraceScope trace("CreatePictImageProcess");
    bool full = false;
    const HostError error = WalkArt(art, depth, [&](ArtHandle member, int32_t kind, int32_t memberDepth) {
        const Drawing drawing = DrawingOf(member, kind, memberDepth);
        if (drawing == Drawing::kWhole) full = full || !AppendToList(list, member);
        return drawing == Drawing::kMembers;
    });
    return error || !full ? error : kHostOutOfMemory;
}

HostError CreatePreviewImage(MemoryHandle& preview, const HostRect& selection) {
    const TraceScope trace("CreatePreviewImage");
    preview = nullptr;
    HandleOwner list;
    ForEachLayerRoot([&](ArtHandle root) { return CreatePictImageProcess(root, list.get(), 0); });

    const Port port;
    if (!port.get()) return kHostNoError;
    HostColor paper{};
    paper.kind = kColorGray;
    DrawArtSuite().FillPort(port.get(), &paper);
    DrawList(list.get(), FrameSelection(selection), port.get());

    const uint8_t* pixels = nullptr;
    int32_t rowPixels = 0;
    if (DrawArtSuite().GetPortPixels(port.get(), &pixels, &rowPixels) || !pixels || rowPixels < kPortSide) {
        return kHostNoError;
    }
    preview = NewHandle(kPreviewBytes, kSmallGrain);
    if (preview) Reduce(pixels, rowPixels, BlockBytes(preview));
    return kHostNoError;
}
