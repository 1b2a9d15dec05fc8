#include "win32/codepage_932.h"

#include <iconv.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

// The C library's converter, one unit at a time.  It differs from Windows in few places: it refuses the
// single bytes below, and it takes characters that have no unit of their own in Windows' table.
class Converter {
public:
    Converter(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {
        if (descriptor_ == reinterpret_cast<iconv_t>(-1)) {
            std::fputs("win32: the C library's converter for code page 932 is missing\n", stderr);
            std::abort();
        }
    }
    ~Converter() { iconv_close(descriptor_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Bytes written to `out`; 0 if `in` is no complete, defined unit.
    size_t Convert(const void* in, size_t inBytes, void* out, size_t outBytes) {
        char* source = const_cast<char*>(static_cast<const char*>(in));
        char* target = static_cast<char*>(out);
        size_t room = outBytes;
        iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
        const size_t result = iconv(descriptor_, &source, &inBytes, &target, &room);
        return result == static_cast<size_t>(-1) || inBytes != 0 ? 0 : outBytes - room;
    }

private:
    iconv_t descriptor_;
};

struct SingleByte {
    uint8_t byte;
    char16_t character;
};
constexpr SingleByte kWindowsSingleBytes[] = {
    {0x80, 0x0080}, {0xA0, 0xF8F0}, {0xFD, 0xF8F1}, {0xFE, 0xF8F2}, {0xFF, 0xF8F3}};

struct Tables {
    std::array<char16_t, 0x10000> toUnicode{};
    std::array<uint16_t, 0x10000> fromUnicode{};
};

void FillUnit(Tables& tables, uint16_t unit, Converter& decoder, Converter& encoder) {
    unsigned char bytes[2] = {static_cast<unsigned char>(unit >> 8), static_cast<unsigned char>(unit)};
    char16_t wide[2] = {};
    const bool pair = unit > 0xFF;
    if (decoder.Convert(pair ? bytes : bytes + 1, pair ? 2 : 1, wide, sizeof wide) != sizeof(char16_t))
        return;
    tables.toUnicode[unit] = wide[0];
    const size_t length = encoder.Convert(wide, sizeof(char16_t), bytes, sizeof bytes);
    if (length == 0) return;
    tables.fromUnicode[wide[0]] = Cp932UnitCode({reinterpret_cast<const char*>(bytes), length});
}

std::unique_ptr<Tables> BuildTables() {
    auto tables = std::make_unique<Tables>();
    Converter decoder("UTF-16LE", "CP932");
    Converter encoder("CP932", "UTF-16LE");
    for (unsigned first = 1; first < 0x100; ++first) {
        if (!IsCp932LeadByte(static_cast<unsigned char>(first))) {
            FillUnit(*tables, static_cast<uint16_t>(first), decoder, encoder);
            continue;
        }
        for (unsigned second = 1; second < 0x100; ++second) {
            FillUnit(*tables, static_cast<uint16_t>(first << 8 | second), decoder, encoder);
        }
    }
    for (const SingleByte& single : kWindowsSingleBytes) {
        tables->toUnicode[single.byte] = single.character;
        tables->fromUnicode[single.character] = single.byte;
    }
    return tables;
}

const Tables& TheTables() {
    static const std::unique_ptr<Tables> tables = BuildTables();
    return *tables;
}

// U+00A0 to U+00FF; '_' has no single byte that is similar.
constexpr char kLatinBestFit[] =
    "_!___\\|__ca__-R___23_____1o____"
    "_AAAAAAACEEEEIIIIDNOOOOO_OUUUUYTsaaaaaaaceeeeiiiidnooooo_ouuuuyty";
static_assert(sizeof kLatinBestFit == 0x60 + 1);

} // namespace

char16_t UnicodeOfCp932(uint16_t unit) {
    return TheTables().toUnicode[unit];
}

uint16_t Cp932OfUnicode(char16_t character) {
    return TheTables().fromUnicode[character];
}

uint16_t Cp932BestFit(char16_t character) {
    switch (character) {
        case 0x00A2:
            return 0x8191;
        case 0x00A3:
            return 0x8192;
        case 0x00AB:
            return 0x81E1;
        case 0x00AC:
            return 0x81CA;
        case 0x00AF:
            return 0x8150;
        case 0x00B5:
            return 0x83CA;
        case 0x00B7:
            return 0x8145;
        case 0x00B8:
            return 0x8143;
        case 0x00BB:
            return 0x81E2;
        case 0x3094:
            return 0x8394;
        default:
            break;
    }
    if (character < 0xA0 || character > 0xFF) return 0;
    const char similar = kLatinBestFit[character - 0xA0];
    return similar == '_' ? uint16_t{0} : static_cast<uint16_t>(similar);
}
