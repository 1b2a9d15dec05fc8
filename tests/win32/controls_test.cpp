#include <gtest/gtest.h>
#include <windows.h>

#include <random>
#include <string>
#include <vector>

#include "control_scripts.h"
#include "script_places.h"
#include "win32/controls/edit_text.h"
#include "win32/headless/headless_display.h"
#include "win32/object_counts.h"

namespace {

struct ControlCase {
    const char* name;
    std::string (*script)(const ControlPlace&);
};

class ControlsTest : public testing::TestWithParam<ControlCase> {};

// What a control tells its parent, and when, is what programs are built on.
TEST_P(ControlsTest, TellsItsParentWhatARealOneTells) {
    const HeadlessDisplay display(640, 480);
    const ObjectCounts before = CountObjects();
    EXPECT_EQ(GetParam().script(kScriptPlace), ExpectedLog(GetParam().name));
    EXPECT_TRUE(CountObjects() == before);
}

INSTANTIATE_TEST_SUITE_P(, ControlsTest,
                         testing::Values(ControlCase{"button", ButtonScript}, ControlCase{"edit", EditScript},
                                         ControlCase{"multi", MultilineScript},
                                         ControlCase{"list", DropDownListScript},
                                         ControlCase{"drop", DropDownScript},
                                         ControlCase{"bar", ScrollBarScript}),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- Lines
// --------------------------------------------------------------------------------------------------

/// Every byte is as wide as any other.
class EvenFit : public TextFit {
public:
    explicit EvenFit(size_t width) : width_(width) {}
    size_t BytesThatFit(std::string_view text) const override { return WholePlace(text, width_); }

private:
    size_t width_;
};

// What is left of a line without the blanks at its end.
std::string WithoutBlanks(const std::string& line) {
    size_t end = 0;
    for (size_t place = 0; place < line.size(); place = NextPlace(line, place))
        if (line[place] != ' ' && line.compare(place, 2, "\x81\x40") != 0) end = NextPlace(line, place);
    return line.substr(0, end);
}

TEST(EditTest, WrappedLinesHoldAllOfTheTextAndFit) {
    const std::vector<std::string> characters = {"a", "b", " ", "\x83\x5C", "\x81\x40", "\r\n"};
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (unsigned i = random() % 40; i > 0; --i) text += characters[random() % characters.size()];
        const size_t width = 1 + random() % 12;
        const EvenFit fit(width);
        size_t next = 0;
        for (const EditLine& line : BreakLines(text, &fit)) {
            if (line.start != next) {
                ASSERT_EQ(text.substr(next, 2), "\r\n");
                ASSERT_EQ(line.start, next + 2);
            }
            ASSERT_EQ(WholePlace(text, line.start), line.start);
            next = line.end;
            // A character that is too wide for any line has one of its own.
            const std::string shown = WithoutBlanks(text.substr(line.start, line.end - line.start));
            ASSERT_TRUE(shown.size() <= width || NextPlace(shown, 0) == shown.size()) << text;
        }
        ASSERT_EQ(next, text.size());
    }
}

// ---- Edits against a list of characters -------------------------------------------------------------------

/// The simplest edit there is: characters in a list, two places between them, a clipboard.
struct EditModel {
    std::vector<std::string> characters;
    size_t anchor = 0, caret = 0;
    std::vector<std::string> clipboard;
    size_t limit;

    size_t From() const { return std::min(anchor, caret); }
    size_t To() const { return std::max(anchor, caret); }
    size_t BytesBefore(size_t place) const {
        size_t bytes = 0;
        for (size_t i = 0; i < place; ++i) bytes += characters[i].size();
        return bytes;
    }
    void Erase() {
        characters.erase(characters.begin() + static_cast<int>(From()),
                         characters.begin() + static_cast<int>(To()));
        anchor = caret = From();
    }
    void Put(const std::vector<std::string>& more) {
        Erase();
        for (const std::string& character : more) {
            if (BytesBefore(characters.size()) + character.size() > limit) break;
            characters.insert(characters.begin() + static_cast<int>(caret++), character);
        }
        anchor = caret;
    }
    void MoveTo(size_t place, bool extend) {
        caret = place;
        if (!extend) anchor = place;
    }
    void Copy() {
        if (anchor != caret)
            clipboard.assign(characters.begin() + static_cast<int>(From()),
                             characters.begin() + static_cast<int>(To()));
    }
    std::string Text() const {
        std::string text;
        for (const std::string& character : characters) text += character;
        return text;
    }
};

class EditHands {
public:
    EditHands(HWND edit, EditModel& model) : edit_(edit), model_(model) {}

    void Do(unsigned action, const std::string& character, bool shift) {
        const size_t last = model_.characters.size(), caret = model_.caret;
        switch (action) {
            case 0:
                Key(VK_LEFT, shift), model_.MoveTo(caret > 0 ? caret - 1 : 0, shift);
                break;
            case 1:
                Key(VK_RIGHT, shift), model_.MoveTo(std::min(caret + 1, last), shift);
                break;
            case 2:
                Key(VK_HOME, shift), model_.MoveTo(0, shift);
                break;
            case 3:
                Key(VK_END, shift), model_.MoveTo(last, shift);
                break;
            case 4:
                Letter(VK_BACK), EraseBeside(caret > 0 ? caret - 1 : 0);
                break;
            case 5:
                Key(VK_DELETE, false), EraseBeside(std::min(caret + 1, last));
                break;
            case 6:
                Letter(1), model_.anchor = 0, model_.caret = last;
                break;
            case 7:
                Letter(3), model_.Copy();
                break;
            case 8:
                Letter(24), model_.Copy(), model_.Erase();
                break;
            case 9:
                Letter(22), Paste();
                break;
            default:
                for (const char byte : character) Letter(static_cast<BYTE>(byte));
                model_.Put({character});
                break;
        }
    }

private:
    void Key(int key, bool shift) {
        if (shift) kScriptPlace.holdKey(VK_SHIFT, true);
        SendMessageA(edit_, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
        if (shift) kScriptPlace.holdKey(VK_SHIFT, false);
    }
    void Letter(unsigned byte) { SendMessageA(edit_, WM_CHAR, byte, 1); }
    void EraseBeside(size_t place) {
        if (model_.anchor == model_.caret) model_.caret = place;
        model_.Erase();
    }
    void Paste() {
        if (!model_.clipboard.empty()) model_.Put(model_.clipboard);
    }

    HWND edit_;
    EditModel& model_;
};

// Double-byte characters whose second byte is a backslash, a letter or a lead byte too.
TEST(EditTest, KeysNeverTearACharacter) {
    const HeadlessDisplay display(320, 200);
    const HWND edit = CreateWindowExA(0, "EDIT", "", WS_POPUP | WS_VISIBLE | ES_AUTOHSCROLL, 10, 10, 60, 20,
                                      nullptr, nullptr, nullptr, nullptr);
    SetFocus(edit);
    SendMessageA(edit, EM_LIMITTEXT, 40, 0);
    EditModel model;
    model.limit = 40;
    EditHands hands(edit, model);
    const std::vector<std::string> characters = {"a",        " ",        "\x83\x5C", "\x83\x41",
                                                 "\x82\xA0", "\x89\x81", "\xB1"};
    std::mt19937 random(5);
    for (int step = 0; step < 4000; ++step) {
        const unsigned action = random() % 18;
        hands.Do(action, characters[random() % characters.size()], random() % 2 != 0);
        DWORD from = 0, to = 0;
        SendMessageA(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
        char text[64];
        GetWindowTextA(edit, text, sizeof text);
        ASSERT_EQ(text, model.Text()) << step << " action " << action;
        ASSERT_EQ(from, model.BytesBefore(model.From())) << step << " action " << action;
        ASSERT_EQ(to, model.BytesBefore(model.To())) << step << " action " << action;
    }
    DestroyWindow(edit);
}

} // namespace
