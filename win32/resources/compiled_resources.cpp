#include "win32/resources/compiled_resources.h"

#include "win32/resources/byte_reader.h"

namespace {

constexpr uint16_t kNumberFollows = 0xFFFF;

char Capital(uint16_t letter) {
    if (letter >= 'a' && letter <= 'z') return static_cast<char>(letter - 0x20);
    return letter < 0x80 ? static_cast<char>(letter) : '?';
}

ResourceId ReadId(ByteReader& reader) {
    ResourceId id;
    uint16_t letter = reader.Word();
    if (letter == kNumberFollows) {
        id.number = reader.Word();
        return id;
    }
    for (; letter != 0; letter = reader.Word()) id.text += Capital(letter);
    return id;
}

} // namespace

std::deque<ResourceEntry> ReadCompiledResources(std::span<const uint8_t> bytes) {
    std::deque<ResourceEntry> entries;
    ByteReader reader(bytes);
    while (reader.Rest() > 0) {
        const uint32_t dataBytes = reader.Long(), headerBytes = reader.Long();
        constexpr uint32_t kSizesBytes = 8;
        if (headerBytes < kSizesBytes) break;
        // What follows the names in a header, version and language, is of no use here.
        ByteReader header(reader.Take(headerBytes - kSizesBytes));
        ResourceEntry entry;
        entry.type = ReadId(header);
        entry.name = ReadId(header);
        entry.data = reader.Take(dataBytes);
        if (reader.Failed() || header.Failed()) break;
        reader.Align();
        const bool filler = entry.type == ResourceId{}; // the empty one that every such file begins with
        if (!filler) entries.push_back(std::move(entry));
    }
    return entries;
}
