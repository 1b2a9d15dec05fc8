#include "workbench/svg/style_sheet.h"

#include <algorithm>
#include <iterator>

#include "workbench/svg/svg_limits.h"
#include "workbench/svg/svg_values.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr Text kPropertyNames[] = {"baseline-shift",
                                   "clip-path",
                                   "clip-rule",
                                   "color",
                                   "display",
                                   "fill",
                                   "fill-opacity",
                                   "fill-rule",
                                   "filter",
                                   "font",
                                   "font-family",
                                   "font-size",
                                   "font-stretch",
                                   "font-style",
                                   "font-weight",
                                   "isolation",
                                   "letter-spacing",
                                   "line-height",
                                   "marker",
                                   "marker-end",
                                   "marker-mid",
                                   "marker-start",
                                   "mask",
                                   "mix-blend-mode",
                                   "opacity",
                                   "overflow",
                                   "paint-order",
                                   "stop-color",
                                   "stop-opacity",
                                   "stroke",
                                   "stroke-dasharray",
                                   "stroke-dashoffset",
                                   "stroke-linecap",
                                   "stroke-linejoin",
                                   "stroke-miterlimit",
                                   "stroke-opacity",
                                   "stroke-width",
                                   "text-align",
                                   "text-anchor",
                                   "text-decoration",
                                   "transform",
                                   "vector-effect",
                                   "visibility",
                                   "white-space",
                                   "word-spacing",
                                   "writing-mode"};
static_assert(std::size(kPropertyNames) == static_cast<size_t>(Property::kCount));
static_assert(std::ranges::is_sorted(kPropertyNames));

/// Where the sign `mark` stands outside strings, parentheses and brackets; the text's length if nowhere.
size_t FindOutside(Text text, size_t at, Text marks) {
    int open = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (open == 0 && marks.find(c) != Text::npos) return at;
        if (c == '"' || c == '\'') {
            at = std::min(text.find(c, at + 1), text.size() - 1);
        } else if (c == '(' || c == '[') {
            ++open;
        } else if ((c == ')' || c == ']') && open > 0) {
            --open;
        }
    }
    return text.size();
}

/// Comments, and the marks that hide a sheet from old programs, become blanks.
std::string WithoutComments(std::string text) {
    for (size_t at = 0; (at = text.find("/*", at)) != Text::npos;) {
        const size_t stop = text.find("*/", at + 2);
        const size_t length = stop == Text::npos ? text.size() - at : stop + 2 - at;
        text.replace(at, length, length, ' ');
    }
    for (const Text mark : {"<!--", "-->"})
        for (size_t at = 0; (at = text.find(mark, at)) != Text::npos;)
            text.replace(at, mark.size(), mark.size(), ' ');
    return text;
}

bool IsNameSign(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

Text TakeName(Text text, size_t* at) {
    const size_t start = *at;
    while (*at < text.size() && IsNameSign(text[*at])) ++*at;
    return text.substr(start, *at - start);
}

bool TakesMedia(Text query) {
    return query.empty() || query.find("screen") != Text::npos || query.find("all") != Text::npos;
}

} // namespace

std::optional<Property> FindProperty(Text name) {
    const auto found = std::ranges::lower_bound(kPropertyNames, name);
    if (found == std::end(kPropertyNames) || *found != name) return std::nullopt;
    return static_cast<Property>(found - std::begin(kPropertyNames));
}

void ParseDeclarations(Text text, std::vector<Declaration>* declarations) {
    for (size_t at = 0; at < text.size();) {
        const size_t stop = FindOutside(text, at, ";");
        Text line = Trim(text.substr(at, stop - at));
        at = stop + 1;
        while (line.starts_with("/*")) {
            const size_t close = line.find("*/", 2);
            line = close == Text::npos ? Text{} : Trim(line.substr(close + 2));
        }
        const size_t colon = line.find(':');
        if (colon == Text::npos) continue;
        const auto property = FindProperty(Trim(line.substr(0, colon)));
        if (!property) continue;
        Text value = Trim(line.substr(colon + 1));
        const size_t mark = value.rfind('!');
        const bool important = mark != Text::npos && Trim(value.substr(mark + 1)) == "important";
        if (important) value = Trim(value.substr(0, mark));
        declarations->push_back({*property, important, value});
    }
}

void StyleSheet::Add(std::string text) {
    texts_.push_back(WithoutComments(std::move(text)));
    ParseRules(texts_.back(), 0);
}

void StyleSheet::ParseRules(Text text, int depth) {
    for (size_t at = 0; at < text.size();) {
        const size_t open = FindOutside(text, at, "{;");
        if (open == text.size()) return;
        const Text head = Trim(text.substr(at, open - at));
        if (text[open] == ';') { // an at-rule without a block
            at = open + 1;
            continue;
        }
        // Only at-rules have blocks in their block.
        size_t close = open;
        for (int inner = 1; inner > 0 && close < text.size();) {
            close = FindOutside(text, close + 1, "{}");
            if (close < text.size()) inner += text[close] == '{' ? 1 : -1;
        }
        const Text block = text.substr(open + 1, close - open - 1);
        at = close + 1;
        if (head.starts_with("@media") && depth < 4 && TakesMedia(Trim(head.substr(6)))) {
            ParseRules(block, depth + 1);
        } else if (!head.starts_with('@')) {
            const auto first = static_cast<uint32_t>(declarations_.size());
            ParseDeclarations(block, &declarations_);
            const auto count = static_cast<uint32_t>(declarations_.size()) - first;
            if (count > 0) ParseSelectors(head, first, count);
        }
    }
}

void StyleSheet::ParseSelectors(Text text, uint32_t first, uint32_t count) {
    for (size_t at = 0; at < text.size();) {
        const size_t stop = FindOutside(text, at, ",");
        Rule rule;
        rule.order = static_cast<uint32_t>(rules_.size());
        rule.first = first;
        rule.count = count;
        if (ParseSelector(Trim(text.substr(at, stop - at)), &rule)) {
            rules_.push_back(std::move(rule));
            Index(static_cast<uint32_t>(rules_.size() - 1));
        }
        at = stop + 1;
    }
}

bool StyleSheet::ParseSelector(Text text, Rule* rule) {
    Combinator before = Combinator::kNone;
    for (size_t at = 0; at < text.size();) {
        Compound compound;
        compound.before = before;
        if (rule->compounds.size() == kMaxSelectorParts ||
            !ParseCompound(text, &at, &compound, &rule->specificity))
            return false;
        rule->compounds.push_back(std::move(compound));
        before = Combinator::kDescendant;
        for (; at < text.size() && (IsBlank(text[at]) || Text(">+~").find(text[at]) != Text::npos); ++at) {
            if (text[at] == '>') before = Combinator::kChild;
            if (text[at] == '+') before = Combinator::kNext;
            if (text[at] == '~') before = Combinator::kLater;
        }
    }
    return !rule->compounds.empty();
}

bool StyleSheet::ParseCompound(Text text, size_t* at, Compound* compound, uint32_t* specificity) {
    const size_t start = *at;
    if (*at < text.size() && text[*at] == '*') {
        ++*at;
    } else {
        compound->type = TakeName(text, at);
        if (!compound->type.empty()) *specificity += 1;
    }
    while (*at < text.size()) {
        const char sign = text[*at];
        if (sign == '.' || sign == '#') {
            ++*at;
            const Text name = TakeName(text, at);
            if (name.empty()) return false;
            compound->conditions.push_back(
                {sign == '.' ? Condition::Kind::kClass : Condition::Kind::kId, name, {}});
            *specificity += sign == '.' ? 1u << 10 : 1u << 20;
        } else if (sign == '[') {
            const size_t close = text.find(']', *at);
            if (close == Text::npos) return false;
            const Text inside = text.substr(*at + 1, close - *at - 1);
            const size_t equal = inside.find('=');
            const Text name = Trim(inside.substr(0, equal));
            Text value = equal == Text::npos ? Text{} : Trim(inside.substr(equal + 1));
            if (value.size() >= 2 && (value.front() == '"' || value.front() == '\''))
                value = value.substr(1, value.size() - 2);
            if (name.empty() || !std::ranges::all_of(name, [](char c) { return IsNameSign(c) || c == ':'; }))
                return false;
            compound->conditions.push_back(
                {equal == Text::npos ? Condition::Kind::kAttribute : Condition::Kind::kAttributeValue, name,
                 value});
            *specificity += 1u << 10;
            *at = close + 1;
        } else if (text.substr(*at).starts_with(":first-child")) {
            compound->conditions.push_back({Condition::Kind::kFirstChild, {}, {}});
            *specificity += 1u << 10;
            *at += 12;
        } else {
            break;
        }
    }
    const bool ended = *at == text.size() || IsBlank(text[*at]) || Text(">+~").find(text[*at]) != Text::npos;
    return *at > start && ended;
}

void StyleSheet::Index(uint32_t rule) {
    const Compound& last = rules_[rule].compounds.back();
    for (const auto kind : {Condition::Kind::kId, Condition::Kind::kClass}) {
        for (const Condition& condition : last.conditions) {
            if (condition.kind != kind) continue;
            (kind == Condition::Kind::kId ? byId_ : byClass_)[condition.name].push_back(rule);
            return;
        }
    }
    if (last.type.empty())
        others_.push_back(rule);
    else
        byType_[last.type].push_back(rule);
}

bool StyleSheet::MatchCompound(const Compound& compound, pugi::xml_node element) {
    if (++steps_ > kMaxSelectorSteps) exhausted_ = true;
    if (exhausted_ || element.type() != pugi::node_element) return false;
    if (!compound.type.empty() && LocalName(element.name()) != compound.type) return false;
    for (const Condition& condition : compound.conditions) {
        bool holds = false;
        switch (condition.kind) {
            case Condition::Kind::kClass:
                ForEachWord(element.attribute("class").value(), [&](Text word) {
                    holds = holds || word == condition.name;
                    ++steps_;
                });
                break;
            case Condition::Kind::kId:
                holds = element.attribute("id").value() == condition.name;
                break;
            case Condition::Kind::kAttribute:
            case Condition::Kind::kAttributeValue:
                for (const pugi::xml_attribute attribute : element.attributes()) {
                    if (attribute.name() != condition.name) continue;
                    holds =
                        condition.kind == Condition::Kind::kAttribute || attribute.value() == condition.value;
                    break;
                }
                break;
            case Condition::Kind::kFirstChild: {
                pugi::xml_node sibling = element.previous_sibling();
                while (sibling && sibling.type() != pugi::node_element) sibling = sibling.previous_sibling();
                holds = !sibling;
                break;
            }
        }
        if (!holds) return false;
    }
    return true;
}

/// Whether the compounds up to `compound` match, the last of them on `element`.
bool StyleSheet::MatchFrom(const Rule& rule, size_t compound, pugi::xml_node element) {
    if (!MatchCompound(rule.compounds[compound], element)) return false;
    if (compound == 0) return true;
    const auto previous = [](pugi::xml_node node) {
        do node = node.previous_sibling();
        while (node && node.type() != pugi::node_element);
        return node;
    };
    switch (rule.compounds[compound].before) {
        case Combinator::kChild:
            return MatchFrom(rule, compound - 1, element.parent());
        case Combinator::kNext:
            return MatchFrom(rule, compound - 1, previous(element));
        case Combinator::kLater:
            for (pugi::xml_node node = previous(element); node && !exhausted_; node = previous(node))
                if (MatchFrom(rule, compound - 1, node)) return true;
            return false;
        default:
            for (pugi::xml_node node = element.parent(); node && !exhausted_; node = node.parent())
                if (MatchFrom(rule, compound - 1, node)) return true;
            return false;
    }
}

void StyleSheet::AddCandidates(const std::unordered_map<Text, std::vector<uint32_t>>& table, Text key,
                               pugi::xml_node element) {
    const auto found = table.find(key);
    if (found == table.end()) return;
    for (const uint32_t rule : found->second)
        if (MatchFrom(rules_[rule], rules_[rule].compounds.size() - 1, element)) matched_.push_back(rule);
}

void StyleSheet::Match(pugi::xml_node element, std::vector<Declaration>* declarations) {
    if (exhausted_ || rules_.empty()) return;
    matched_.clear();
    if (!byId_.empty()) AddCandidates(byId_, element.attribute("id").value(), element);
    if (!byClass_.empty())
        ForEachWord(element.attribute("class").value(),
                    [&](Text word) { AddCandidates(byClass_, word, element); });
    if (!byType_.empty()) AddCandidates(byType_, LocalName(element.name()), element);
    for (const uint32_t rule : others_)
        if (MatchFrom(rules_[rule], rules_[rule].compounds.size() - 1, element)) matched_.push_back(rule);
    if (exhausted_ || matched_.empty()) return;
    std::ranges::sort(matched_, {},
                      [&](uint32_t rule) { return std::pair(rules_[rule].specificity, rules_[rule].order); });
    matched_.erase(std::unique(matched_.begin(), matched_.end()), matched_.end());
    for (const uint32_t rule : matched_) steps_ += rules_[rule].count;
    exhausted_ = steps_ > kMaxSelectorSteps;
    if (exhausted_) return;
    for (const bool important : {false, true})
        for (const uint32_t rule : matched_)
            for (uint32_t i = rules_[rule].first; i < rules_[rule].first + rules_[rule].count; ++i)
                if (declarations_[i].important == important) declarations->push_back(declarations_[i]);
}

} // namespace workbench
