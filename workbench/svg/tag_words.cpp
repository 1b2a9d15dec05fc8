#include "workbench/svg/tag_words.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

#include "workbench/svg/own_words.h"
#include "workbench/svg/svg_text.h"
#include "workbench/svg/text_encoding.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr Text kData = "data-";
constexpr Text kString = "string";

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.';
}

bool IsDataAttribute(const Tag& tag) {
    return tag.type == kString && !tag.name.empty() && std::ranges::all_of(tag.name, IsPlain) &&
           IsXmlText(tag.value);
}

int HexDigitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// The parts of "NAME=TYPE=VALUE"; one part for "NAME".
std::vector<std::string> PartsOf(Text entry) {
    std::vector<std::string> parts;
    for (;;) {
        const size_t stop = parts.size() < 2 ? entry.find('=') : Text::npos;
        parts.push_back(BytesOfPercentText(entry.substr(0, stop)));
        if (stop == Text::npos) return parts;
        entry.remove_prefix(stop + 1);
    }
}

/// The data attributes of an element, the first of each name.
struct DataAttributes {
    std::vector<std::string> names;
    std::unordered_map<std::string, std::string> values;

    explicit DataAttributes(pugi::xml_node element) {
        for (const pugi::xml_attribute attribute : element.attributes()) {
            const Text name = attribute.name();
            if (!name.starts_with(kData) || name.size() == kData.size()) continue;
            if (values.emplace(name.substr(kData.size()), attribute.value()).second)
                names.emplace_back(name.substr(kData.size()));
        }
    }
};

} // namespace

std::string PercentText(Text bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (IsPlain(c))
            text += c;
        else
            text.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
    return text;
}

std::string BytesOfPercentText(Text text) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && text.size() - i > 2 ? HexDigitOf(text[i + 1]) : -1;
        const int low = high < 0 ? -1 : HexDigitOf(text[i + 2]);
        if (low < 0) {
            bytes += text[i];
            continue;
        }
        bytes += static_cast<char>(high << 4 | low);
        i += 2;
    }
    return bytes;
}

std::string TagAttributes(const std::vector<Tag>& tags) {
    std::string markup, list;
    for (const Tag& tag : tags) {
        if (!list.empty()) list += ' ';
        list += PercentText(tag.name);
        if (IsDataAttribute(tag))
            AppendAttribute(&markup, std::string(kData) + tag.name, tag.value);
        else
            list += '=' + PercentText(tag.type) + '=' + PercentText(tag.value);
    }
    if (!std::ranges::all_of(tags, IsDataAttribute)) AppendOwn(&markup, kOwnTags, list);
    return markup;
}

std::vector<Tag> ReadTags(pugi::xml_node element, const std::string& ownPrefix) {
    const DataAttributes data(element);
    std::vector<Tag> tags;
    std::unordered_set<std::string> taken;
    Text list = ownPrefix.empty() ? Text() : element.attribute((ownPrefix + kOwnTags).c_str()).value();
    while (!list.empty()) {
        const size_t stop = std::min(list.find(' '), list.size());
        const std::vector<std::string> parts = PartsOf(list.substr(0, stop));
        list.remove_prefix(std::min(stop + 1, list.size()));
        if (parts[0].empty() || taken.contains(parts[0])) continue;
        const auto found = data.values.find(parts[0]);
        if (parts.size() == 3)
            tags.push_back({parts[0], parts[1], parts[2]});
        else if (found != data.values.end())
            tags.push_back({parts[0], std::string(kString), found->second});
        else
            continue;
        taken.insert(parts[0]);
    }
    for (const std::string& name : data.names) {
        if (taken.insert(name).second) tags.push_back({name, std::string(kString), data.values.at(name)});
    }
    return tags;
}

} // namespace workbench
