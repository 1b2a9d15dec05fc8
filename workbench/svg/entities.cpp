#include <map>
#include <string>
#include <string_view>

#include "workbench/svg/svg_limits.h"
#include "workbench/svg/svg_values.h"
#include "workbench/svg/text_encoding.h"

namespace workbench {
namespace {

using Entities = std::map<std::string, std::string, std::less<>>;
using Text = std::string_view;

/// The place of a document type declaration; `start == end` if there is none.
struct DocumentType {
    size_t start = 0, end = 0;
    Text subset; ///< between the brackets
};

size_t SkipQuoted(Text text, size_t at) {
    const size_t close = text.find(text[at], at + 1);
    return close == Text::npos ? text.size() : close + 1;
}

/// Where the markup that begins with "<!" and is no comment ends; quotes may hold any sign.
size_t SkipMarkup(Text text, size_t at) {
    while (at < text.size() && text[at] != '>')
        at = text[at] == '"' || text[at] == '\'' ? SkipQuoted(text, at) : at + 1;
    return at < text.size() ? at + 1 : at;
}

size_t SkipTo(Text text, Text mark, size_t at) {
    const size_t found = text.find(mark, at);
    return found == Text::npos ? text.size() : found + mark.size();
}

DocumentType FindDocumentType(Text text) {
    size_t at = 0;
    for (;;) {
        at = text.find('<', at);
        if (at == Text::npos) return {};
        const Text rest = text.substr(at);
        if (rest.starts_with("<!--"))
            at = SkipTo(text, "-->", at + 4);
        else if (rest.starts_with("<?"))
            at = SkipTo(text, "?>", at);
        else
            break;
    }
    if (!text.substr(at).starts_with("<!DOCTYPE")) return {};
    DocumentType found{at, 0, {}};
    while (at < text.size() && text[at] != '>' && text[at] != '[')
        at = text[at] == '"' || text[at] == '\'' ? SkipQuoted(text, at) : at + 1;
    if (at < text.size() && text[at] == '[') {
        const size_t open = ++at;
        while (at < text.size() && text[at] != ']') {
            const Text rest = text.substr(at);
            if (rest.starts_with("<!--"))
                at = SkipTo(text, "-->", at + 4);
            else if (rest.starts_with("<?"))
                at = SkipTo(text, "?>", at);
            else if (rest.starts_with("<!"))
                at = SkipMarkup(text, at);
            else
                ++at;
        }
        found.subset = text.substr(open, at - open);
        at = SkipMarkup(text, at);
    } else if (at < text.size()) {
        ++at;
    }
    found.end = at;
    return found;
}

Text TakeName(TextCursor& cursor) {
    const char* start = cursor.at;
    while (!cursor.AtEnd() && !IsBlank(*cursor.at) && *cursor.at != '>' && *cursor.at != '"' &&
           *cursor.at != '\'')
        ++cursor.at;
    return {start, static_cast<size_t>(cursor.at - start)};
}

/// The general entities of an internal subset; the first declaration of a name counts.
Entities ReadEntities(Text subset) {
    Entities entities;
    for (size_t at = 0; (at = subset.find("<!", at)) != Text::npos;) {
        if (subset.substr(at).starts_with("<!--")) {
            at = SkipTo(subset, "-->", at + 4);
            continue;
        }
        const size_t end = SkipMarkup(subset, at);
        TextCursor cursor(subset.substr(at, end - at));
        at = end;
        if (!cursor.TakeWord("<!ENTITY")) continue;
        cursor.SkipBlanks();
        if (cursor.Peek() == '%') continue;
        const Text name = TakeName(cursor);
        cursor.SkipBlanks();
        const char quote = cursor.Peek();
        std::string value;
        if (quote == '"' || quote == '\'') {
            const Text rest = cursor.Rest().substr(1);
            value = rest.substr(0, rest.find(quote));
        }
        if (!name.empty()) entities.emplace(name, std::move(value));
    }
    return entities;
}

class Expander {
public:
    Expander(const Entities& entities, std::string* out) : entities_(entities), out_(out) {}

    /// Copies `text` with its entities replaced; an entity's own text is markup like any other.
    bool Copy(Text text, int depth) {
        if (depth > kMaxEntityDepth) return false;
        for (size_t at = 0; at < text.size();) {
            const size_t mark = text.find_first_of("&<", at);
            Put(text.substr(at, mark - at), depth);
            if (mark == Text::npos) break;
            const Text rest = text.substr(mark);
            at = mark;
            if (depth == 0 && rest.starts_with("<!--"))
                at = SkipTo(text, "-->", mark + 4);
            else if (depth == 0 && rest.starts_with("<![CDATA["))
                at = SkipTo(text, "]]>", mark);
            if (at != mark) {
                Put(text.substr(mark, at - mark), depth);
                continue;
            }
            if (text[mark] == '&' && !CopyReference(rest, &at, depth)) return false;
            if (at == mark) Put(text.substr(at++, 1), depth);
            if (grown_ > kMaxEntityGrowth) return false;
        }
        return grown_ <= kMaxEntityGrowth;
    }

private:
    void Put(Text text, int depth) {
        out_->append(text);
        if (depth > 0) grown_ += text.size();
    }

    bool CopyReference(Text rest, size_t* at, int depth) {
        constexpr size_t kLongestName = 256;
        const size_t stop = rest.substr(0, kLongestName).find(';');
        if (stop == Text::npos) return true;
        const auto entity = entities_.find(rest.substr(1, stop - 1));
        if (entity == entities_.end()) return true;
        *at += stop + 1;
        grown_ += 1; // so that entities without a text are bounded as well
        return Copy(entity->second, depth + 1);
    }

    const Entities& entities_;
    std::string* out_;
    size_t grown_ = 0;
};

} // namespace

bool ExpandEntities(std::string* text, std::string* error) {
    const DocumentType declaration = FindDocumentType(*text);
    if (declaration.start == declaration.end) return true;
    const Entities entities = ReadEntities(declaration.subset);
    if (entities.empty()) {
        text->replace(declaration.start, declaration.end - declaration.start,
                      declaration.end - declaration.start, ' ');
        return true;
    }
    std::string expanded;
    expanded.reserve(text->size());
    expanded.assign(*text, 0, declaration.start);
    if (!Expander(entities, &expanded).Copy(Text(*text).substr(declaration.end), 0)) {
        *error = "the file's entities contain themselves or grow beyond all bounds";
        return false;
    }
    *text = std::move(expanded);
    return true;
}

} // namespace workbench
