#include "win32/controls/dialog_template.h"

#include <array>
#include <climits>
#include <cstdint>
#include <cstring>

#include "win32/controls/control_classes.h"

namespace {

/// Reads little-endian words.  The first one that isn't there makes all that follow fail too.
class TemplateReader {
public:
    TemplateReader(const void* bytes, size_t count)
        : bytes_(static_cast<const uint8_t*>(bytes)), count_(count) {}

    bool failed() const { return failed_; }
    void Fail() { failed_ = true; }

    bool Has(size_t bytes) {
        if (bytes > count_ - at_) failed_ = true;
        return !failed_;
    }
    void Skip(size_t bytes) {
        if (Has(bytes)) at_ += bytes;
    }
    uint16_t Word() {
        if (!Has(2)) return 0;
        const auto value = static_cast<uint16_t>(bytes_[at_] | bytes_[at_ + 1] << 8);
        at_ += 2;
        return value;
    }
    uint32_t Long() {
        const uint32_t low = Word();
        return low | static_cast<uint32_t>(Word()) << 16;
    }
    int Coordinate() { return static_cast<int16_t>(Word()); }
    void AlignToLong() { Skip((4 - at_ % 4) % 4); }

    /// A text of UTF-16 up to its NUL.
    std::string Text() {
        std::vector<WCHAR> wide;
        for (uint16_t letter = Word(); letter != 0 && !failed_; letter = Word())
            wide.push_back(static_cast<WCHAR>(letter));
        if (failed_ || wide.empty() || wide.size() > INT_MAX / 4) return "";
        std::string text(wide.size() * 2, '\0');
        const int bytes = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                              text.data(), static_cast<int>(text.size()), nullptr, nullptr);
        if (bytes <= 0) failed_ = true;
        text.resize(bytes > 0 ? static_cast<size_t>(bytes) : 0);
        return text;
    }

    /// A text, or 0xFFFF and a number.
    std::string NameOrNumber(WORD& number) {
        number = 0;
        if (!Has(2)) return "";
        if (bytes_[at_] != 0xFF || bytes_[at_ + 1] != 0xFF) return Text();
        Skip(2);
        number = Word();
        return "";
    }

private:
    const uint8_t* bytes_;
    size_t count_;
    size_t at_ = 0;
    bool failed_ = false;
};

std::string ClassOfNumber(WORD number) {
    constexpr WORD kFirst = 0x80;
    constexpr std::array<const char*, 6> kNames = {kButtonClass, kEditClass,      kStaticClass,
                                                   nullptr,      kScrollBarClass, kComboClass};
    const size_t index = static_cast<size_t>(number) - kFirst;
    return index < kNames.size() && kNames[index] != nullptr ? kNames[index] : "";
}

void ReadFont(TemplateReader& reader, bool extended, DialogTemplate& dialog) {
    dialog.pointSize = reader.Word();
    if (extended) {
        dialog.weight = reader.Word();
        const uint16_t looks = reader.Word();
        dialog.isItalic = (looks & 0xFF) != 0;
        dialog.charset = static_cast<BYTE>(looks >> 8);
    }
    dialog.face = reader.Text();
}

void ReadPlace(TemplateReader& reader, int& x, int& y, int& width, int& height) {
    x = reader.Coordinate();
    y = reader.Coordinate();
    width = reader.Coordinate();
    height = reader.Coordinate();
    if (width < 0 || height < 0) reader.Fail();
}

DialogItem ReadItem(TemplateReader& reader, bool extended) {
    DialogItem item;
    reader.AlignToLong();
    if (extended) reader.Skip(4); // help
    const uint32_t first = reader.Long(), second = reader.Long();
    item.style = extended ? second : first;
    item.extendedStyle = extended ? first : second;
    ReadPlace(reader, item.x, item.y, item.width, item.height);
    item.id = extended ? static_cast<int>(reader.Long()) : static_cast<int16_t>(reader.Word());
    WORD classNumber = 0;
    item.className = reader.NameOrNumber(classNumber);
    if (classNumber != 0) item.className = ClassOfNumber(classNumber);
    if (item.className.empty()) reader.Fail();
    item.title = reader.NameOrNumber(item.titleNumber);
    // Creation data, whose size word counts itself in a plain template; no control here takes any.
    const size_t data = reader.Word();
    reader.Skip(extended || data < 2 ? data : data - 2);
    return item;
}

} // namespace

bool ReadDialogTemplate(const void* bytes, size_t count, DialogTemplate& dialog) {
    dialog = {};
    TemplateReader reader(bytes, count);
    const uint32_t signature = TemplateReader(reader).Long();
    const bool extended = signature == 0xFFFF0001;
    if (extended) reader.Skip(8); // signature and help
    const uint32_t first = reader.Long(), second = reader.Long();
    dialog.style = extended ? second : first;
    dialog.extendedStyle = extended ? first : second;
    const size_t items = reader.Word();
    ReadPlace(reader, dialog.x, dialog.y, dialog.width, dialog.height);
    WORD menu = 0, classNumber = 0;
    const bool hasMenu = !reader.NameOrNumber(menu).empty() || menu != 0;
    const bool hasClass = !reader.NameOrNumber(classNumber).empty() || classNumber != 0;
    if (hasMenu || hasClass) reader.Fail();
    dialog.title = reader.Text();
    if ((dialog.style & DS_SETFONT) != 0) ReadFont(reader, extended, dialog);
    while (!reader.failed() && dialog.items.size() < items)
        dialog.items.push_back(ReadItem(reader, extended));
    return !reader.failed();
}
