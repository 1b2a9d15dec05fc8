#include "workbench/svg/svg_file.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "workbench/svg/svg_limits.h"

namespace workbench {
namespace {

constexpr size_t kChunk = 1 << 16;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

class Inflater {
public:
    // 15 bits of window, and gzip's frame instead of zlib's.
    Inflater() { ready_ = inflateInit2(&stream_, 15 + 16) == Z_OK; }
    ~Inflater() {
        if (ready_) inflateEnd(&stream_);
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    bool ready() const { return ready_; }
    z_stream& stream() { return stream_; }

private:
    z_stream stream_{};
    bool ready_ = false;
};

} // namespace

bool ReadWholeFile(const std::string& path, std::vector<uint8_t>* bytes, std::string* error) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        *error = "can't open the file: " + std::string(std::strerror(errno));
        return false;
    }
    bytes->clear();
    uint8_t chunk[kChunk];
    while (const size_t got = std::fread(chunk, 1, sizeof chunk, file.get())) {
        if (bytes->size() + got > kMaxFileBytes) {
            *error = "the file is larger than " + std::to_string(kMaxFileBytes >> 20) + " MiB";
            return false;
        }
        bytes->insert(bytes->end(), chunk, chunk + got);
    }
    if (std::ferror(file.get())) {
        *error = "can't read the file: " + std::string(std::strerror(errno));
        return false;
    }
    return true;
}

bool Unpack(std::span<const uint8_t> packed, std::vector<uint8_t>* bytes, std::string* error) {
    Inflater inflater;
    if (!inflater.ready() || packed.size() > kMaxFileBytes) {
        *error = "the packed file can't be unpacked";
        return false;
    }
    z_stream& stream = inflater.stream();
    stream.next_in = const_cast<Bytef*>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    bytes->clear();
    uint8_t chunk[kChunk];
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = chunk;
        stream.avail_out = kChunk;
        result = inflate(&stream, Z_NO_FLUSH);
        const size_t got = kChunk - stream.avail_out;
        if (bytes->size() + got > kMaxFileBytes) {
            *error = "the file unpacks to more than " + std::to_string(kMaxFileBytes >> 20) + " MiB";
            return false;
        }
        bytes->insert(bytes->end(), chunk, chunk + got);
        const bool another = result == Z_STREAM_END && IsPacked({stream.next_in, stream.avail_in});
        if (another) result = inflateReset(&stream);
    }
    if (result == Z_STREAM_END) return true;
    *error = "the packed file is damaged or cut off";
    return false;
}

} // namespace workbench
