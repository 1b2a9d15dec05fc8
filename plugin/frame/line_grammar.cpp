#include "plugin/frame/line_grammar.h"

#include <charconv>
#include <cmath>
#include <limits>

void LineReader::TakeLine(std::string& line) {
    line.clear();
    bool inQuotes = false;
    size_t at = 0;
    for (; at < rest_.size() && rest_[at] != grammar_.lineEnd; ++at) {
        const char byte = rest_[at];
        if (grammar_.dropped.find(byte) != std::string_view::npos) continue;
        if (byte == '"') inQuotes = !inQuotes;
        if (byte == ' ' && !inQuotes) continue;
        if (line.size() < grammar_.lineLimit) line.push_back(byte);
    }
    rest_.remove_prefix(at < rest_.size() ? at + 1 : at);
}

bool LineReader::Next(std::string& line) {
    while (!rest_.empty()) {
        TakeLine(line);
        if (!line.empty() && line.front() != grammar_.commentMark) return true;
    }
    line.clear();
    return false;
}

std::vector<std::string> SplitTokens(std::string_view line, size_t limit) {
    std::vector<std::string> tokens(1);
    bool inQuotes = false;
    for (const char byte : line) {
        if (byte == '"') {
            inQuotes = !inQuotes;
        } else if (!inQuotes && (byte == '=' || byte == ',')) {
            if (tokens.size() == limit) break;
            tokens.emplace_back();
        } else if (inQuotes || byte != ' ') {
            tokens.back().push_back(byte);
        }
    }
    return tokens;
}

std::string_view TokenAt(const std::vector<std::string>& tokens, size_t index, size_t capacity) {
    if (index >= tokens.size()) return {};
    return std::string_view(tokens[index]).substr(0, capacity);
}

/// The text behind leading blanks and a plus sign, which from_chars doesn't take.
static std::string_view NumberStart(std::string_view text) {
    const size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos) return {};
    text.remove_prefix(start);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

int32_t DecimalInteger(std::string_view text) {
    text = NumberStart(text);
    int32_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc::result_out_of_range) return value;
    return text.front() == '-' ? std::numeric_limits<int32_t>::min() : std::numeric_limits<int32_t>::max();
}

double DecimalReal(std::string_view text) {
    text = NumberStart(text);
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && std::isfinite(value) ? value : 0;
}
