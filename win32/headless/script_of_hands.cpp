#include <cstdio>
#include <cstdlib>

#include "win32/codepage_932.h"
#include "win32/headless/headless_display.h"

namespace {

std::string Cp932OfUtf8(std::string_view utf8) {
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(),
                                           static_cast<int>(utf8.size()), nullptr, 0);
    std::u16string wide(static_cast<size_t>(length), u'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), length);
    std::string text(wide.size() * 2, '\0');
    BOOL lost = FALSE;
    const int bytes = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), length, text.data(),
                                          static_cast<int>(text.size()), nullptr, &lost);
    if (lost != FALSE || (bytes == 0 && !utf8.empty())) {
        std::fprintf(stderr, "headless: \"%s\" can't be typed in cp932\n", std::string(utf8).c_str());
        std::abort();
    }
    text.resize(static_cast<size_t>(bytes));
    return text;
}

// The key that makes a letter, or 0.
int KeyOfLetter(char letter) {
    if (letter >= 'a' && letter <= 'z') return letter - 'a' + 'A';
    const bool same = (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') || letter == ' ';
    return same ? letter : 0;
}

std::string Place(const char* what, int x, int y) {
    return std::string(what) + " " + std::to_string(x) + ", " + std::to_string(y);
}

} // namespace

HeadlessDisplay& HeadlessDisplay::Add(std::string name, std::function<void()> action) {
    steps_.push_back({std::move(name), std::move(action), 0});
    return *this;
}

HeadlessDisplay& HeadlessDisplay::Move(int x, int y) {
    return Add(Place("move to", x, y), [x, y] { InputPointer(x, y); });
}

HeadlessDisplay& HeadlessDisplay::Press(int button) {
    return Add("press", [button] { InputButton(button, true); });
}

HeadlessDisplay& HeadlessDisplay::Release(int button) {
    return Add("release", [button] { InputButton(button, false); });
}

HeadlessDisplay& HeadlessDisplay::Click(int x, int y, int button) {
    return Move(x, y).Press(button).Release(button);
}

HeadlessDisplay& HeadlessDisplay::DoubleClick(int x, int y) {
    return Click(x, y).Press().Release();
}

HeadlessDisplay& HeadlessDisplay::Drag(POINT from, POINT to, int steps) {
    Move(from.x, from.y).Press();
    for (int step = 1; step <= steps; ++step)
        Move(from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps);
    return Release();
}

HeadlessDisplay& HeadlessDisplay::Wheel(int steps) {
    return Add("wheel", [steps] { InputWheel(steps); });
}

HeadlessDisplay& HeadlessDisplay::KeyDown(int virtualKey) {
    return Add("key " + std::to_string(virtualKey) + " down", [virtualKey] { InputKey(virtualKey, true); });
}

HeadlessDisplay& HeadlessDisplay::KeyUp(int virtualKey) {
    return Add("key " + std::to_string(virtualKey) + " up", [virtualKey] { InputKey(virtualKey, false); });
}

HeadlessDisplay& HeadlessDisplay::Key(int virtualKey) {
    return KeyDown(virtualKey).KeyUp(virtualKey);
}

HeadlessDisplay& HeadlessDisplay::KeyWith(int modifier, int virtualKey) {
    return KeyDown(modifier).Key(virtualKey).KeyUp(modifier);
}

HeadlessDisplay& HeadlessDisplay::Type(std::u8string_view text) {
    return TypeBytes(Cp932OfUtf8({reinterpret_cast<const char*>(text.data()), text.size()}));
}

HeadlessDisplay& HeadlessDisplay::TypeBytes(std::string_view cp932) {
    while (const size_t bytes = Cp932UnitBytes(cp932)) {
        const std::string letter(cp932.substr(0, bytes));
        const int key = bytes == 1 ? KeyOfLetter(letter[0]) : 0;
        Add("letter \"" + letter + "\"", [key, letter] {
            if (key != 0) InputKey(key, true);
            InputText(letter.c_str());
            if (key != 0) InputKey(key, false);
        });
        cp932.remove_prefix(bytes);
    }
    return *this;
}

HeadlessDisplay& HeadlessDisplay::Pause(uint32_t milliseconds) {
    if (milliseconds > 0) steps_.push_back({"pause", [] {}, milliseconds});
    return *this;
}

HeadlessDisplay& HeadlessDisplay::Do(std::function<void()> action) {
    return Add("an action", std::move(action));
}

HeadlessDisplay& HeadlessDisplay::Picture(const std::string& path) {
    return Add("picture " + path, [this, path] {
        if (!SavePng(path)) std::fprintf(stderr, "headless: %s can't be written\n", path.c_str());
    });
}
