#include "app/hands_file.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <charconv>

#include "app/texts.h"

namespace {

struct Token {
    std::string text;
    bool quoted = false;
};

/// The words of a line; false if a quote isn't closed.
bool Split(std::string_view line, std::vector<Token>* tokens) {
    size_t at = 0;
    while (at < line.size()) {
        if (std::isspace(static_cast<unsigned char>(line[at]))) {
            ++at;
            continue;
        }
        if (line[at] == '#') return true;
        Token token;
        if (line[at] == '"') {
            token.quoted = true;
            for (++at; at < line.size() && line[at] != '"'; ++at) {
                const bool escape =
                    line[at] == '\\' && at + 1 < line.size() && (line[at + 1] == '"' || line[at + 1] == '\\');
                if (escape) ++at;
                token.text += line[at];
            }
            if (at++ >= line.size()) return false;
        } else {
            while (at < line.size() && !std::isspace(static_cast<unsigned char>(line[at])))
                token.text += line[at++];
        }
        tokens->push_back(std::move(token));
    }
    return true;
}

/// n: a whole number; c: one from 0 on; t: a text; w: a word that is a file's name; y: an answer; k: a key.
struct Grammar {
    const char *word, *second; ///< null: one word
    Hand hand;
    const char* shape;
};
constexpr Grammar kGrammar[] = {
    {"move", nullptr, Hand::kMove, "nn"},
    {"press", nullptr, Hand::kPress, ""},
    {"release", nullptr, Hand::kRelease, ""},
    {"click", nullptr, Hand::kClick, "nn"},
    {"doubleclick", nullptr, Hand::kDoubleClick, "nn"},
    {"drag", nullptr, Hand::kDrag, "nnnnc"},
    {"wheel", nullptr, Hand::kWheel, "n"},
    {"key", nullptr, Hand::kKey, "k"},
    {"type", nullptr, Hand::kType, "t"},
    {"pause", nullptr, Hand::kPause, "c"},
    {"picture", nullptr, Hand::kPicture, "w"},
    {"pick", "flyout", Hand::kPickFlyout, "c"},
    {"pick", "menu", Hand::kPickMenu, "tt"},
    {"answer", nullptr, Hand::kAnswer, "y"},
    {"control", nullptr, Hand::kControl, "c"},
    {"control", nullptr, Hand::kControlAt, "cnn"},
    {"doublecontrol", nullptr, Hand::kDoubleControlAt, "cnn"},
    {"dialog", nullptr, Hand::kDialog, "c"},
};

struct NamedKey {
    const char* name;
    int key;
};
constexpr NamedKey kKeys[] = {
    {"Return", VK_RETURN}, {"Escape", VK_ESCAPE}, {"Tab", VK_TAB},   {"Space", VK_SPACE},
    {"Back", VK_BACK},     {"Delete", VK_DELETE}, {"Left", VK_LEFT}, {"Right", VK_RIGHT},
    {"Up", VK_UP},         {"Down", VK_DOWN},     {"Home", VK_HOME}, {"End", VK_END},
    {"PageUp", VK_PRIOR},  {"PageDown", VK_NEXT}, {"F4", VK_F4},
};
constexpr NamedKey kModifiers[] = {{"Control+", VK_CONTROL}, {"Shift+", VK_SHIFT}, {"Alt+", VK_MENU}};

bool ParseKey(std::string_view name, HandStep* step) {
    for (const NamedKey& modifier : kModifiers) {
        const std::string_view prefix = modifier.name;
        if (!name.starts_with(prefix)) continue;
        step->modifier = modifier.key;
        name.remove_prefix(prefix.size());
        break;
    }
    const auto known =
        std::ranges::find(kKeys, name, [](const NamedKey& key) { return std::string_view(key.name); });
    if (known != std::end(kKeys)) {
        step->key = known->key;
    } else if (name.size() == 1 && (std::isupper(static_cast<unsigned char>(name[0])) ||
                                    std::isdigit(static_cast<unsigned char>(name[0])))) {
        step->key = name[0]; // letters and digits are their own numbers
    }
    return step->key != 0;
}

constexpr std::string_view kAnswers[] = {"no", "yes", "cancel"}; ///< by HandStep's number

bool ParseNumber(const std::string& text, bool negative, HandStep* step) {
    constexpr int kLargest = 1000000;
    int number = 0;
    const auto [end, trouble] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (trouble != std::errc() || end != text.data() + text.size()) return false;
    if (number > kLargest || number < (negative ? -kLargest : 0)) return false;
    step->numbers.push_back(number);
    return true;
}

bool IsFileName(const std::string& text) {
    return !text.empty() && text.front() != '.' && std::ranges::all_of(text, [](unsigned char c) {
        return std::isalnum(c) || c == '-' || c == '_' || c == '.';
    });
}

bool ParseAnswer(const std::string& text, HandStep* step) {
    const auto answer = std::ranges::find(kAnswers, text);
    step->numbers.push_back(static_cast<int>(answer - std::begin(kAnswers)));
    return answer != std::end(kAnswers);
}

bool ParseValue(char shape, const Token& token, HandStep* step) {
    std::string ignored;
    switch (shape) {
        case 'n':
        case 'c':
            return !token.quoted && ParseNumber(token.text, shape == 'n', step);
        case 'k':
            return !token.quoted && ParseKey(token.text, step);
        case 'y':
            return !token.quoted && ParseAnswer(token.text, step);
        case 'w':
            step->texts.push_back(token.text);
            return IsFileName(token.text);
        default:
            step->texts.push_back(token.text);
            return token.quoted && Cp932OfUtf8(token.text, &ignored).has_value();
    }
}

/// Whether the words follow this rule.  *closest becomes the number of words that did.
bool Follows(const Grammar& rule, const std::vector<Token>& tokens, HandStep* step, size_t* closest) {
    size_t at = 0;
    for (const char* word : {rule.word, rule.second}) {
        if (!word) continue;
        if (at >= tokens.size() || tokens[at].quoted || tokens[at].text != word) return false;
        *closest = std::max(*closest, ++at);
    }
    HandStep found{.line = step->line, .hand = rule.hand, .numbers = {}, .texts = {}};
    for (const char* shape = rule.shape; *shape; ++shape, ++at) {
        if (at >= tokens.size() || !ParseValue(*shape, tokens[at], &found)) return false;
        *closest = std::max(*closest, at + 1);
    }
    if (at != tokens.size()) return false;
    *step = std::move(found);
    return true;
}

} // namespace

std::optional<std::vector<HandStep>> ParseHands(std::string_view text, std::string* error) {
    std::vector<HandStep> steps;
    int number = 0;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        ++number;
        std::vector<Token> tokens;
        const std::string where = "line " + std::to_string(number) + ": ";
        if (!Split(line, &tokens)) {
            *error = where + "a quote isn't closed";
            return std::nullopt;
        }
        if (tokens.empty()) continue;
        HandStep step{.line = number, .hand = Hand::kMove, .numbers = {}, .texts = {}};
        size_t closest = 0;
        const bool known = std::ranges::any_of(
            kGrammar, [&](const Grammar& rule) { return Follows(rule, tokens, &step, &closest); });
        if (!known) {
            *error =
                where + (closest == 0               ? "there is no step '" + tokens[0].text + "'"
                         : closest >= tokens.size() ? "something is missing at the end"
                                                    : "'" + tokens[closest].text + "' can't stand there");
            return std::nullopt;
        }
        steps.push_back(std::move(step));
    }
    return steps;
}
