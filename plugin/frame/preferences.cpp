#include "plugin/frame/preferences.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>

#include "plugin/frame/globals.h"
#include "plugin/frame/line_grammar.h"
#include "plugin/store/store_names.h"

namespace {

constexpr char kFolder[] = "\\Prefs";
constexpr char kFile[] = "\\Velquorne_CC.ini";
constexpr char kNewFile[] = "\\Velquorne_CC.new"; ///< on its way to the file's name
constexpr char kLockFile[] = "\\Velquorne_CC.lck";
constexpr DWORD kMostWaited = 1000; ///< milliseconds
constexpr DWORD kWait = 20;
constexpr int kMoveTries = 5; ///< against a start-up that reads the file just then
constexpr size_t kTokens = 5; ///< of a line; those behind are dropped

enum class Kind { kShort, kLong, kFloat, kDouble, kText, kLanguage };

/// Where a setting lies in the state; `bytes` is the room of a text with its NUL.
struct Setting {
    const char* key;
    Kind kind;
    size_t place;
    size_t bytes = 0;
};

#define PLACE(field) offsetof(Globals, field)
#define TEXT_PLACE(field) offsetof(Globals, field), sizeof(Globals::field)
#define RECENT_ROOT(index) offsetof(Globals, aidbfpathEx) + (index)*size_t{kNameBytes}, kNameBytes

/// In the order of writing.
constexpr Setting kSettings[] = {
    {"toolMode", Kind::kShort, PLACE(toolMode)},         {"sortMode", Kind::kShort, PLACE(sortMode)},
    {"layerOption", Kind::kShort, PLACE(layerOption)},   {"findMode", Kind::kShort, PLACE(findMode)},
    {"browseMode", Kind::kShort, PLACE(browseMode)},     {"browseWidth", Kind::kFloat, PLACE(browseWidth)},
    {"originMode", Kind::kShort, PLACE(originMode)},     {"aidbfpath", Kind::kText, TEXT_PLACE(aidbfpath)},
    {"aidbfname", Kind::kText, TEXT_PLACE(aidbfname)},   {"flUseGrid", Kind::kLong, PLACE(flUseGrid)},
    {"flUseFcur", Kind::kLong, PLACE(flUseFcur)},        {"flUseFcrs", Kind::kLong, PLACE(flUseFcrs)},
    {"flUseFops", Kind::kLong, PLACE(flUseFops)},        {"flGrWidth", Kind::kDouble, PLACE(flGrWidth)},
    {"flGrHeight", Kind::kDouble, PLACE(flGrHeight)},    {"flCnvFnMode", Kind::kShort, PLACE(flCnvFnMode)},
    {"flCnvFnStr", Kind::kText, TEXT_PLACE(flCnvFnStr)}, {"flCnvCase", Kind::kShort, PLACE(flCnvCase)},
    {"flCnvKanji", Kind::kShort, PLACE(flCnvKanji)},     {"flCnvWord", Kind::kShort, PLACE(flCnvWord)},
    {"aidbfpathEx1", Kind::kText, RECENT_ROOT(0)},       {"aidbfpathEx2", Kind::kText, RECENT_ROOT(1)},
    {"aidbfpathEx3", Kind::kText, RECENT_ROOT(2)},       {"aidbfpathEx4", Kind::kText, RECENT_ROOT(3)},
    {"aidbfpathEx5", Kind::kText, RECENT_ROOT(4)},       {"language", Kind::kLanguage, PLACE(language)},
    {"product", Kind::kText, TEXT_PLACE(product)},
};
static_assert(kRecentRoots == 5, "a key for each recent root");

#undef PLACE
#undef TEXT_PLACE
#undef RECENT_ROOT

constexpr const char* kLanguages[] = {"JAPANESE", "ENGLISH", "KOREAN"}; ///< by `language`

char* FieldOf(const Setting& setting) {
    return reinterpret_cast<char*>(globals) + setting.place;
}

template <typename Value>
Value ValueOf(const Setting& setting) {
    Value value;
    std::memcpy(&value, FieldOf(setting), sizeof value);
    return value;
}

template <typename Value>
void SetValue(const Setting& setting, Value value) {
    std::memcpy(FieldOf(setting), &value, sizeof value);
}

// A number beyond the range of the field counts as none.
float SingleOf(double value) {
    return std::abs(value) <= std::numeric_limits<float>::max() ? static_cast<float>(value) : 0.0f;
}

int32_t LanguageOf(std::string_view word) {
    for (int32_t language = 1; language < static_cast<int32_t>(std::size(kLanguages)); ++language) {
        if (word == kLanguages[language]) return language;
    }
    return 0;
}

void SetText(const Setting& setting, std::string_view text) {
    char* field = FieldOf(setting);
    const size_t bytes = text.copy(field, setting.bytes - 1); // a token that isn't there has no address
    std::memset(field + bytes, 0, setting.bytes - bytes);
}

void TakeValue(const Setting& setting, std::string_view value) {
    switch (setting.kind) {
        case Kind::kShort:
            return SetValue(setting, static_cast<int16_t>(DecimalInteger(value)));
        case Kind::kLong:
            return SetValue(setting, DecimalInteger(value));
        case Kind::kFloat:
            return SetValue(setting, SingleOf(DecimalReal(value)));
        case Kind::kDouble:
            return SetValue(setting, DecimalReal(value));
        case Kind::kText:
            return SetText(setting, value);
        case Kind::kLanguage:
            return SetValue(setting, LanguageOf(value));
    }
}

void AppendInteger(std::string& line, int32_t value) {
    line += std::to_string(value);
}

// As "%g" writes it with a decimal point, whatever the locale's is.
void AppendReal(std::string& line, double value) {
    constexpr int kDigits = 6;
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, kDigits).ptr;
    line.append(digits, end);
}

void AppendText(std::string& line, std::string_view text) {
    line += '"';
    for (const char byte : text) {
        if (byte != '"' && byte != '\r' && byte != '\n') line += byte;
    }
    line += '"';
}

void AppendValue(std::string& line, const Setting& setting) {
    switch (setting.kind) {
        case Kind::kShort:
            return AppendInteger(line, ValueOf<int16_t>(setting));
        case Kind::kLong:
            return AppendInteger(line, ValueOf<int32_t>(setting));
        case Kind::kFloat:
            return AppendReal(line, ValueOf<float>(setting));
        case Kind::kDouble:
            return AppendReal(line, ValueOf<double>(setting));
        case Kind::kText:
            return AppendText(line, {FieldOf(setting), strnlen(FieldOf(setting), setting.bytes)});
        case Kind::kLanguage: {
            const auto language = static_cast<uint32_t>(ValueOf<int32_t>(setting));
            line += kLanguages[language < std::size(kLanguages) ? language : 0];
        }
    }
}

} // namespace

std::string PreferencesText() {
    std::string text;
    for (const Setting& setting : kSettings) {
        text += setting.key;
        text += " = ";
        AppendValue(text, setting);
        text += "\r\n";
    }
    return text;
}

void TakePreferences(std::string_view text) {
    LineReader reader(text.substr(0, text.find('\0')), kPreferencesGrammar);
    for (std::string line; reader.Next(line);) {
        const auto tokens = SplitTokens(line, kTokens);
        for (const Setting& setting : kSettings) {
            if (tokens[0] == setting.key) TakeValue(setting, TokenAt(tokens, 1));
        }
    }
}

namespace {

/// An open file, closed at the end of a scope.
class OpenFile {
public:
    /// Waits up to a second for another program that has the file.
    OpenFile(const char* path, DWORD access, DWORD sharing, DWORD disposition) {
        for (DWORD waited = 0;; waited += kWait) {
            file_ = CreateFileA(path, access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
            if (file_ != INVALID_HANDLE_VALUE || GetLastError() != ERROR_SHARING_VIOLATION) return;
            if (waited >= kMostWaited) return;
            Sleep(kWait);
        }
    }
    ~OpenFile() { Close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool open() const { return file_ != INVALID_HANDLE_VALUE; }
    HANDLE handle() const { return file_; }
    HFILE file() const { return static_cast<HFILE>(reinterpret_cast<intptr_t>(file_)); }

    bool Close() {
        const bool closed = !open() || CloseHandle(file_);
        file_ = INVALID_HANDLE_VALUE;
        return closed;
    }

private:
    HANDLE file_;
};

// The path of a file in the preferences' folder, which is made if missing.  Empty if there is no such folder.
void PathOf(const char* file, char* out /*kFullPathBytes*/) {
    char folder[kNameBytes];
    GetHostDataFolder(folder);
    out[0] = '\0';
    if (folder[0] == '\0') return;
    std::strcat(folder, kFolder); // the host's data folder leaves room for it
    CreateDirectoryA(folder, nullptr);
    JoinRootAndPath(folder, file, out);
}

// The whole file in a block that ends with a NUL; null if it isn't there, can't be read or finds no memory.
MemoryHandle ReadWholeFile(const char* path) {
    const OpenFile file(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING);
    if (!file.open()) return nullptr;
    const LONG size = _llseek(file.file(), 0, FILE_END);
    if (size < 0 || _llseek(file.file(), 0, FILE_BEGIN) != 0) return nullptr;
    const auto bytes = static_cast<UINT>(size);
    HandleOwner block(NewHandle(uint64_t{bytes} + 1, kSmallGrain));
    if (block.bytes() == nullptr || _lread(file.file(), block.bytes(), bytes) != bytes) return nullptr;
    return block.Release();
}

bool FileSays(const char* path, const std::string& text) {
    const HandleOwner block(ReadWholeFile(path));
    return block.bytes() != nullptr && text == reinterpret_cast<const char*>(block.bytes());
}

// Makes a file anew, with its bytes on the disk when this returns true.
bool WriteWholeFile(const char* path, const std::string& text) {
    if (!DeleteFileA(path) && GetLastError() != ERROR_FILE_NOT_FOUND) return false;
    OpenFile file(path, GENERIC_READ | GENERIC_WRITE, 0, CREATE_NEW);
    if (!file.open()) return false;
    const auto bytes = static_cast<UINT>(text.size());
    return _lwrite(file.file(), text.data(), bytes) == bytes &&
           _llseek(file.file(), 0, FILE_END) == static_cast<LONG>(bytes) && FlushFileBuffers(file.handle()) &&
           file.Close();
}

// In one step.
bool PutInPlace(const char* from, const char* to) {
    for (int tries = 1; !MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH); ++tries) {
        const DWORD reason = GetLastError();
        const bool inUse = reason == ERROR_SHARING_VIOLATION || reason == ERROR_ACCESS_DENIED;
        if (!inUse || tries == kMoveTries) return false;
        Sleep(kWait);
    }
    return true;
}

void PutFileInPlace(const char* path, const std::string& text) {
    char newPath[kFullPathBytes], lockPath[kFullPathBytes];
    PathOf(kNewFile, newPath);
    PathOf(kLockFile, lockPath);
    // Two programs that end at once must not write into one new file.
    const OpenFile lock(lockPath, GENERIC_READ | GENERIC_WRITE, 0, OPEN_ALWAYS);
    if (!lock.open()) return;
    if (!WriteWholeFile(newPath, text) || !PutInPlace(newPath, path)) DeleteFileA(newPath);
}

} // namespace

// Texts throw when memory runs out, which must not reach the host.
void ReadPreferences() {
    char path[kFullPathBytes];
    PathOf(kFile, path);
    const HandleOwner block(ReadWholeFile(path));
    if (block.bytes() == nullptr) return;
    const Globals before = *globals;
    try {
        TakePreferences(reinterpret_cast<const char*>(block.bytes()));
    } catch (const std::bad_alloc&) {
        *globals = before; // and not half of what the file says
    }
}

void WritePreferences() try {
    const std::string text = PreferencesText();
    char path[kFullPathBytes];
    PathOf(kFile, path);
    if (path[0] != '\0' && !FileSays(path, text)) PutFileInPlace(path, text);
} catch (const std::bad_alloc&) {
}
