/// What all parts of a reading share: the document being made, the file's tree with its ids and sheets, the
/// bounds that keep hostile files small, and what was lost.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "workbench/document/document.h"
#include "workbench/svg/computed_style.h"
#include "workbench/svg/picture_links.h"
#include "workbench/svg/style_sheet.h"
#include "workbench/svg/svg_limits.h"
#include "workbench/svg/svg_reader.h"

namespace workbench {

/// What an element of SVG is to the reader.
enum class ElementKind : uint8_t {
    kForeign, ///< of another namespace: editors' own data
    kUnknown,
    kDefinition, ///< shows only where something refers to it
    kGroup,
    kSwitch,
    kUse,
    kSvg,
    kSymbol,
    kPath,
    kRect,
    kCircle,
    kEllipse,
    kLine,
    kPolyline,
    kPolygon,
    kText,
    kImage,
    kForeignObject,
    kLinearGradient,
    kRadialGradient,
    kStop,
    kPattern,
    kClipPath,
    kStyle,
    kAnimation
};

inline bool IsShape(ElementKind kind) {
    return kind >= ElementKind::kPath && kind <= ElementKind::kPolygon;
}

/// What an element finds around it.
struct Surroundings {
    HostMatrix toArt{1, 0, 0, 1, 0, 0};   ///< user space to art coordinates
    HostMatrix outerToArt = toArt;        ///< the same without the element's own transform
    ComputedStyle style;                  ///< of the element in hand, or of its parent before it is computed
    double viewWidth = 0, viewHeight = 0; ///< user units, for percentages
    bool instance = false;                ///< drawn through a reference: its id belongs to the original
};

struct OwnStories;

struct ReadContext {
    Document& document;
    ReadReport& report;
    PictureLinks& links;
    pugi::xml_node root;
    StyleSheet sheet;
    std::unordered_map<std::string_view, pugi::xml_node> ids; ///< the first element of each id
    std::vector<std::string> svgPrefixes;                     ///< with their colon
    std::string ownPrefix; ///< of kDocumentNamespace, with its colon; empty: the file has none of its words
    size_t visitsLeft = 0, artLeft = kMaxArt, segmentsLeft = kMaxSegments, textLeft = kMaxTextUnits;
    size_t imageBytesLeft = kMaxImageBytes;
    int depth = 0;
    std::string refusal;                ///< why the file is given up; nothing more is read once it is set
    std::vector<pugi::xml_node> inHand; ///< containers and references being drawn, against cycles
    size_t references = 0;              ///< how many of them are references

    // What was made already, by the element and whatever else decides what it looks like.
    std::map<std::pair<const void*, int32_t>, GradientHandle> gradients;
    std::unordered_map<std::string, PatternHandle> patterns;
    std::unordered_map<std::string, std::string> fonts;        ///< by all that a style wishes
    std::shared_ptr<OwnStories> ownStories;                    ///< see text_words.h; null: none was asked for
    std::unordered_map<std::string, ArtStyleHandle> artStyles; ///< by id; none for an id that names nothing

    ReadContext(Document& madeDocument, ReadReport& madeReport, PictureLinks& pictureLinks)
        : document(madeDocument), report(madeReport), links(pictureLinks) {}

    void Lose(const char* what) { ++report.losses[what]; }
    bool refused() const { return !refusal.empty(); }

    /// Takes the tree's ids, namespaces and style sheets in; counts its elements.
    void Index(pugi::xml_node svg);

    ElementKind KindOf(pugi::xml_node element) const;
    pugi::xml_node Find(std::string_view id) const;      ///< null if there is none
    pugi::xml_node Target(pugi::xml_node element) const; ///< of its href, in this file

    /// An attribute of our own namespace; empty if absent.
    std::string_view Own(pugi::xml_node element, const char* name) const;

    std::string NameOf(pugi::xml_node element) const; ///< our own word for it, or the id

    /// New art on top of a container, or free-standing; null once the bounds are reached.
    Art* NewArt(int32_t kind, Art* container);
};

/// Counts an element on the way down; false if it is too deep or too many were drawn.
class Visit {
public:
    explicit Visit(ReadContext& context);
    ~Visit() { --context_.depth; }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    explicit operator bool() const { return good_; }

private:
    ReadContext& context_;
    bool good_ = true;
};

/// Marks a container as being drawn.
class InHand {
public:
    InHand(ReadContext& context, pugi::xml_node element) : context_(context) {
        context.inHand.push_back(element);
    }
    ~InHand() { context_.inHand.pop_back(); }
    InHand(const InHand&) = delete;
    InHand& operator=(const InHand&) = delete;

private:
    ReadContext& context_;
};

/// Marks a referenced element as being drawn; false if it is so already, or too deep within others.
class Reference {
public:
    Reference(ReadContext& context, pugi::xml_node element);
    ~Reference();
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;
    explicit operator bool() const { return good_; }

private:
    ReadContext& context_;
    bool good_;
};

/// The href of an element, whatever the prefix.
std::string_view Href(pugi::xml_node element);

/// The style that an element has at its own place in the file, for what is drawn through references.
ComputedStyle StyleInPlace(ReadContext& context, pugi::xml_node element);

/// The transform attribute or property of an element.
HostMatrix OwnTransform(pugi::xml_node element, const ComputedStyle& style,
                        const char* attribute = "transform");

/// A length attribute in user units.
/// @param percentOf  what 100 % are
double LengthAttribute(pugi::xml_node element, const char* name, double fontSize, double percentOf,
                       double absent);

/// What percentages of lengths without a direction refer to.
double ViewDiagonal(const Surroundings& here);

} // namespace workbench
