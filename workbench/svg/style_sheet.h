/// CSS: declarations, and style sheets with their selectors.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace workbench {

/// The properties that the reader knows, in the order of their names in style_sheet.cpp.
enum class Property : uint8_t {
    kBaselineShift,
    kClipPath,
    kClipRule,
    kColor,
    kDisplay,
    kFill,
    kFillOpacity,
    kFillRule,
    kFilter,
    kFont,
    kFontFamily,
    kFontSize,
    kFontStretch,
    kFontStyle,
    kFontWeight,
    kIsolation,
    kLetterSpacing,
    kLineHeight,
    kMarker,
    kMarkerEnd,
    kMarkerMid,
    kMarkerStart,
    kMask,
    kMixBlendMode,
    kOpacity,
    kOverflow,
    kPaintOrder,
    kStopColor,
    kStopOpacity,
    kStroke,
    kStrokeDasharray,
    kStrokeDashoffset,
    kStrokeLinecap,
    kStrokeLinejoin,
    kStrokeMiterlimit,
    kStrokeOpacity,
    kStrokeWidth,
    kTextAlign,
    kTextAnchor,
    kTextDecoration,
    kTransform,
    kVectorEffect,
    kVisibility,
    kWhiteSpace,
    kWordSpacing,
    kWritingMode,
    kCount
};

std::optional<Property> FindProperty(std::string_view name);

struct Declaration {
    Property property;
    bool important;
    std::string_view value; ///< trimmed, without "!important"; points into the text it was read from
};

/// Reads "name: value; ..." and adds what is known.  Comments are skipped; strings and parentheses may hold
/// semicolons.
void ParseDeclarations(std::string_view text, std::vector<Declaration>* declarations);

/// The last part of a prefixed name.
inline std::string_view LocalName(std::string_view name) {
    const size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// The style sheets of a document.
///
/// Selectors: types, *, .class, #id, [attribute], [attribute=value], :first-child and the combinators
/// blank, >, + and ~.  A selector with anything else matches nothing.  Of the at-rules, @media is taken for
/// screen and all; the others are skipped.
class StyleSheet {
public:
    void Add(std::string text);
    bool empty() const { return rules_.empty(); }

    /// The declarations for an element, the weakest first; important ones after all others.
    void Match(pugi::xml_node element, std::vector<Declaration>* declarations);

    /// True if the rules are so many or so tangled that matching was given up.
    bool exhausted() const { return exhausted_; }

private:
    enum class Combinator : uint8_t { kNone, kDescendant, kChild, kNext, kLater };
    struct Condition {
        enum class Kind : uint8_t { kClass, kId, kAttribute, kAttributeValue, kFirstChild } kind;
        std::string_view name, value;
    };
    struct Compound {
        std::string_view type; ///< empty: any
        std::vector<Condition> conditions;
        Combinator before = Combinator::kNone; ///< how it hangs on the compound before it
    };
    struct Rule {
        std::vector<Compound> compounds;
        uint32_t specificity = 0;
        uint32_t order = 0;
        uint32_t first = 0, count = 0; ///< of declarations_
    };

    void ParseRules(std::string_view text, int depth);
    void ParseSelectors(std::string_view text, uint32_t first, uint32_t count);
    static bool ParseSelector(std::string_view text, Rule* rule);
    static bool ParseCompound(std::string_view text, size_t* at, Compound* compound, uint32_t* specificity);
    void Index(uint32_t rule);
    bool MatchCompound(const Compound& compound, pugi::xml_node element);
    bool MatchFrom(const Rule& rule, size_t compound, pugi::xml_node element);
    void AddCandidates(const std::unordered_map<std::string_view, std::vector<uint32_t>>& table,
                       std::string_view key, pugi::xml_node element);

    std::deque<std::string> texts_;
    std::vector<Declaration> declarations_;
    std::vector<Rule> rules_;
    std::unordered_map<std::string_view, std::vector<uint32_t>> byId_, byClass_, byType_;
    std::vector<uint32_t> others_;
    std::vector<uint32_t> matched_; ///< of the element in hand
    size_t steps_ = 0;
    bool exhausted_ = false;
};

/// Calls `visit` with each word of a class attribute.
template <typename Visit>
void ForEachWord(std::string_view text, Visit&& visit) {
    constexpr std::string_view kBlanks = " \t\r\n\f";
    for (size_t at = text.find_first_not_of(kBlanks); at != std::string_view::npos;) {
        const size_t stop = text.find_first_of(kBlanks, at);
        visit(text.substr(at, stop == std::string_view::npos ? stop : stop - at));
        at = stop == std::string_view::npos ? stop : text.find_first_not_of(kBlanks, stop);
    }
}

} // namespace workbench
