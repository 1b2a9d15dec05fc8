#include "workbench/pictures/picture_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace workbench {
namespace {

constexpr std::array<uint8_t, 8> kPngStart = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

class OpenFile {
public:
    // Without the flag the opening of a pipe would wait for somebody to write to it.
    explicit OpenFile(const char* path) : file_(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {}
    ~OpenFile() {
        if (file_ >= 0) close(file_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int get() const { return file_; }

private:
    int file_;
};

/// A place in big-endian bytes; the first get beyond the end fails, and all behind it.
class BigEndianBytes {
public:
    explicit BigEndianBytes(std::span<const uint8_t> bytes) : rest_(bytes) {}
    bool good() const { return good_; }

    uint32_t Get(size_t count) {
        uint32_t value = 0;
        if (count > rest_.size()) good_ = false;
        if (!good_) return 0;
        for (size_t i = 0; i < count; ++i) value = value << 8 | rest_[i];
        rest_ = rest_.subspan(count);
        return value;
    }

    void Skip(size_t count) {
        if (count > rest_.size()) good_ = false;
        if (good_) rest_ = rest_.subspan(count);
    }

private:
    std::span<const uint8_t> rest_;
    bool good_ = true;
};

std::optional<PictureSize> Checked(uint32_t width, uint32_t height) {
    const bool fits = width > 0 && height > 0 && width <= kMaxPictureSide && height <= kMaxPictureSide &&
                      int64_t{width} * int64_t{height} <= kMaxPicturePixels;
    if (!fits) return std::nullopt;
    return PictureSize{static_cast<double>(width), static_cast<double>(height)};
}

std::optional<PictureSize> SizeOfPng(std::span<const uint8_t> bytes) {
    BigEndianBytes reader(bytes);
    reader.Skip(kPngStart.size());
    const uint32_t length = reader.Get(4), name = reader.Get(4);
    const uint32_t width = reader.Get(4), height = reader.Get(4);
    constexpr uint32_t kHeaderChunk = 0x49484452; // 'IHDR'
    if (!reader.good() || length != 13 || name != kHeaderChunk) return std::nullopt;
    return Checked(width, height);
}

/// A marker that begins a frame of any coding; C4, C8 and CC are tables.
bool IsFrame(uint32_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

std::optional<PictureSize> SizeOfJpeg(std::span<const uint8_t> bytes) {
    BigEndianBytes reader(bytes);
    reader.Skip(2);
    while (reader.good()) {
        if (reader.Get(1) != 0xFF) return std::nullopt;
        uint32_t marker = 0xFF;
        while (reader.good() && marker == 0xFF) marker = reader.Get(1);
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8)) continue; // no segment behind these
        const uint32_t length = reader.Get(2);
        if (length < 2 || marker == 0xD9 || marker == 0xDA) return std::nullopt;
        if (IsFrame(marker)) {
            reader.Skip(1);
            const uint32_t height = reader.Get(2), width = reader.Get(2);
            return reader.good() ? Checked(width, height) : std::nullopt;
        }
        reader.Skip(length - 2);
    }
    return std::nullopt;
}

} // namespace

PictureFileState ReadPictureFile(const std::string& path, std::vector<uint8_t>* bytes) {
    bytes->clear();
    const OpenFile file(path.c_str());
    // A socket or a device without a driver can't be opened at all.
    if (file.get() < 0) return errno == ENXIO ? PictureFileState::kRefused : PictureFileState::kMissing;
    struct stat about {};
    if (fstat(file.get(), &about) != 0) return PictureFileState::kMissing;
    if (!S_ISREG(about.st_mode) || about.st_size < 0 ||
        static_cast<uint64_t>(about.st_size) > kMaxPictureBytes)
        return PictureFileState::kRefused;
    // The file may change its length while it is read: what was there at first is what counts.
    bytes->resize(static_cast<size_t>(about.st_size));
    size_t done = 0;
    while (done < bytes->size()) {
        const ssize_t got = read(file.get(), bytes->data() + done, bytes->size() - done);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return PictureFileState::kMissing;
        if (got == 0) break;
        done += static_cast<size_t>(got);
    }
    bytes->resize(done);
    return PictureFileState::kRead;
}

PictureKind KindOfPicture(std::span<const uint8_t> bytes) {
    if (bytes.size() >= kPngStart.size() && std::equal(kPngStart.begin(), kPngStart.end(), bytes.begin()))
        return PictureKind::kPng;
    if (bytes.size() >= 3 && bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF)
        return PictureKind::kJpeg;
    const bool packed = bytes.size() >= 2 && bytes[0] == 0x1F && bytes[1] == 0x8B;
    // UTF-16 files begin with a mark or a zero byte beside the bracket.
    const auto start = bytes.first(std::min<size_t>(bytes.size(), 64));
    const bool markup = std::ranges::find(start, uint8_t{'<'}) != start.end();
    return packed || markup ? PictureKind::kDrawing : PictureKind::kNone;
}

std::optional<PictureSize> SizeOfPixels(std::span<const uint8_t> bytes) {
    switch (KindOfPicture(bytes)) {
        case PictureKind::kPng:
            return SizeOfPng(bytes);
        case PictureKind::kJpeg:
            return SizeOfJpeg(bytes);
        default:
            return std::nullopt;
    }
}

} // namespace workbench
