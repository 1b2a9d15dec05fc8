/// The one grammar of the preferences file and of the notes that hold settings or tags.
///
/// A double quote turns quoting on and off.  Outside quotes blanks are dropped and `=` and `,` separate
/// tokens; inside them every byte stands for itself.  There is no escape, so a backslash is a byte like any
/// other and a quote can't be part of a value.  None of the bytes that the grammar knows can be the second
/// byte of a cp932 character, so texts are taken byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What differs between the texts that share the grammar.
struct LineGrammar {
    char lineEnd;             ///< ends a line; the end of the text does too
    std::string_view dropped; ///< bytes dropped wherever they stand, in quotes too
    size_t lineLimit;         ///< bytes kept of a line; the rest is read and dropped
    char commentMark;         ///< a line whose first kept byte is this one is skipped
};

constexpr LineGrammar kPreferencesGrammar = {'\n', "\t\r", 256, '\''};
constexpr LineGrammar kPlacedNoteGrammar = {'\r', "\t\n", 256, '\''};
constexpr LineGrammar kTagNoteGrammar = {'\r', "\t\n", 512, '\''};

/// Takes a text apart into lines.  The text must outlive the reader.
class LineReader {
public:
    LineReader(std::string_view text, const LineGrammar& grammar) : rest_(text), grammar_(grammar) {}

    /// The next line that is neither empty nor a comment, without its blanks outside quotes but with its
    /// quotes.  False at the end of the text.
    bool Next(std::string& line);

private:
    void TakeLine(std::string& line);

    std::string_view rest_;
    LineGrammar grammar_;
};

/// The tokens of one line, quotes dropped: one more than there are separators outside quotes, so at least
/// one.  Those behind the `limit`-th are passed over.
std::vector<std::string> SplitTokens(std::string_view line, size_t limit);

/// Token number `index`, cut to `capacity` bytes; empty if there are not that many.
std::string_view TokenAt(const std::vector<std::string>& tokens, size_t index,
                         size_t capacity = std::string_view::npos);

/// The decimal number at the start of `text`: leading blanks are skipped, one sign is accepted, the first
/// byte that is no digit ends it.  0 if there is none; numbers beyond the range give the range's end.
int32_t DecimalInteger(std::string_view text);

/// As `DecimalInteger` for a decimal fraction with an optional exponent; always finite, 0 for a number
/// beyond the range.
double DecimalReal(std::string_view text);
