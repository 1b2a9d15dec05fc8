#include <windows.h>

#include <cstring>
#include <string>
#include <string_view>

#include "win32/codepage_932.h"
#include "win32/utf8.h"

namespace {

constexpr UINT kJapanese = 932;
constexpr char16_t kDefaultWide = 0x30FB; // what code page 932 shows for undefined bytes: a middle dot

int Refuse(DWORD code) {
    SetLastError(code);
    return 0;
}

// Collects a result up to the caller's room, or only counts when there is none.
template <typename Unit>
class Target {
public:
    Target(Unit* units, int size) : units_(units), size_(size) {}
    void Put(Unit unit) {
        if (size_ > 0 && used_ < size_) units_[used_] = unit;
        ++used_;
    }
    int Result() const { return size_ > 0 && used_ > size_ ? Refuse(ERROR_INSUFFICIENT_BUFFER) : used_; }

private:
    Unit* units_;
    int size_;
    int used_ = 0;
};

bool IsSurrogate(char16_t unit) {
    return (unit & 0xF800) == 0xD800;
}
bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

int WideOfUtf8(std::string_view text, bool strict, Target<char16_t> target) {
    while (!text.empty()) {
        char32_t character = TakeUtf8(text);
        if (character == kInvalidUtf8) {
            if (strict) return Refuse(ERROR_NO_UNICODE_TRANSLATION);
            character = kReplacementCharacter;
        }
        if (character < 0x10000) {
            target.Put(static_cast<char16_t>(character));
        } else {
            target.Put(static_cast<char16_t>(0xD7C0 + (character >> 10)));
            target.Put(static_cast<char16_t>(0xDC00 | (character & 0x3FF)));
        }
    }
    return target.Result();
}

int WideOf932(std::string_view text, bool strict, Target<char16_t> target) {
    while (!text.empty()) {
        size_t bytes = Cp932UnitBytes(text);
        if (bytes == 2 && text[1] == '\0') bytes = 1; // a NUL ends a text, whatever stands before it
        const uint16_t unit = Cp932UnitCode(text.substr(0, bytes));
        char16_t wide = UnicodeOfCp932(unit);
        const bool undefined = unit != 0 && wide == 0;
        if (strict && (undefined || (wide >= 0xF8F0 && wide <= 0xF8F3)))
            return Refuse(ERROR_NO_UNICODE_TRANSLATION);
        if (undefined) wide = kDefaultWide;
        target.Put(wide);
        text.remove_prefix(bytes);
    }
    return target.Result();
}

int Utf8OfWide(std::u16string_view wide, bool strict, Target<char> target) {
    for (size_t i = 0; i < wide.size(); ++i) {
        char32_t character = wide[i];
        if (IsHighSurrogate(wide[i]) && i + 1 < wide.size() && IsLowSurrogate(wide[i + 1])) {
            character = 0x10000 + ((character & 0x3FF) << 10 | (wide[++i] & 0x3FFu));
        } else if (IsSurrogate(wide[i])) {
            if (strict) return Refuse(ERROR_NO_UNICODE_TRANSLATION);
            character = kReplacementCharacter;
        }
        std::string bytes;
        AppendUtf8(bytes, character);
        for (const char byte : bytes) target.Put(byte);
    }
    return target.Result();
}

int Cp932OfWide(std::u16string_view wide, bool bestFit, std::string_view fallback, BOOL* usedFallback,
                Target<char> target) {
    for (const char16_t character : wide) {
        uint16_t unit = Cp932OfUnicode(character);
        if (unit == 0 && bestFit) unit = Cp932BestFit(character);
        if (unit == 0 && character != 0) {
            if (usedFallback != nullptr) *usedFallback = TRUE;
            for (const char byte : fallback) target.Put(byte);
            continue;
        }
        if (unit > 0xFF) target.Put(static_cast<char>(unit >> 8));
        target.Put(static_cast<char>(unit));
    }
    return target.Result();
}

} // namespace

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCCH text, int bytes, LPWSTR wide, int wideSize) {
    if (text == nullptr || bytes == 0 || bytes < -1 || wideSize < 0 || (wideSize > 0 && wide == nullptr)) {
        return Refuse(ERROR_INVALID_PARAMETER);
    }
    const std::string_view source(text, bytes < 0 ? std::strlen(text) + 1 : static_cast<size_t>(bytes));
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    const Target<char16_t> target(wide, wideSize);
    if (codePage == CP_UTF8) {
        if ((flags & ~DWORD{MB_ERR_INVALID_CHARS}) != 0) return Refuse(ERROR_INVALID_FLAGS);
        return WideOfUtf8(source, strict, target);
    }
    if (codePage != kJapanese && codePage != CP_ACP) return Refuse(ERROR_INVALID_PARAMETER);
    if ((flags & ~DWORD{MB_ERR_INVALID_CHARS | MB_PRECOMPOSED}) != 0) return Refuse(ERROR_INVALID_FLAGS);
    return WideOf932(source, strict, target);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH wide, int wideLength, LPSTR text, int textSize,
                        LPCCH defaultCharacter, LPBOOL usedDefault) {
    if (wide == nullptr || wideLength == 0 || wideLength < -1 || textSize < 0 ||
        (textSize > 0 && text == nullptr)) {
        return Refuse(ERROR_INVALID_PARAMETER);
    }
    const std::u16string_view source =
        wideLength < 0 ? std::u16string_view(wide, std::char_traits<char16_t>::length(wide) + 1)
                       : std::u16string_view(wide, static_cast<size_t>(wideLength));
    const Target<char> target(text, textSize);
    if (codePage == CP_UTF8) {
        if ((flags & ~DWORD{WC_ERR_INVALID_CHARS}) != 0) return Refuse(ERROR_INVALID_FLAGS);
        if (defaultCharacter != nullptr || usedDefault != nullptr) return Refuse(ERROR_INVALID_PARAMETER);
        return Utf8OfWide(source, (flags & WC_ERR_INVALID_CHARS) != 0, target);
    }
    if (codePage != kJapanese && codePage != CP_ACP) return Refuse(ERROR_INVALID_PARAMETER);
    if ((flags & ~DWORD{WC_NO_BEST_FIT_CHARS}) != 0) return Refuse(ERROR_INVALID_FLAGS);
    if (usedDefault != nullptr) *usedDefault = FALSE;
    std::string_view fallback = defaultCharacter != nullptr ? defaultCharacter : "?";
    fallback = fallback.substr(0, Cp932UnitBytes(fallback));
    return Cp932OfWide(source, (flags & WC_NO_BEST_FIT_CHARS) == 0, fallback, usedDefault, target);
}
