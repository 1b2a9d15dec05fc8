#include "workbench/svg/svg_reader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "workbench/svg/clip_paths.h"
#include "workbench/svg/element_reader.h"
#include "workbench/svg/metadata.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/path_art.h"
#include "workbench/svg/svg_file.h"
#include "workbench/svg/tag_words.h"
#include "workbench/svg/text_encoding.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

using Text = std::string_view;

/// The page of a file that tells no size, until what it draws was measured.
constexpr double kUnknownSize = 100;

struct Page {
    double width = 0, height = 0;                ///< points
    HostMatrix inPoints{0.75, 0, 0, 0.75, 0, 0}; ///< user space to points from the page's upper left corner
    double viewWidth = 0, viewHeight = 0;        ///< user units
    bool measured = true;                        ///< false: the file tells no size
};

/// A side of the page: by its attribute, else by the view box, else `fallback`.
double PageSide(pugi::xml_node root, const char* name, double box, double fallback, bool* told) {
    Length length;
    const bool given = ParseLength(root.attribute(name).value(), &length) && length.unit != Unit::kPercent &&
                       length.value > 0;
    *told = given || box > 0;
    if (given) return ToPoints(length, 16, 0);
    return box > 0 ? box * 0.75 : fallback;
}

Page ReadPage(ReadContext& context, double unknownWidth, double unknownHeight) {
    const pugi::xml_node root = context.root;
    ViewBox view;
    const bool hasView = ParseViewBox(root.attribute("viewBox").value(), &view);
    if (!hasView && root.attribute("viewBox"))
        context.report.notes.push_back("the view box is no box and was left out");
    Page page;
    bool wide = false, high = false;
    page.width = PageSide(root, "width", view.width, unknownWidth, &wide);
    page.height = PageSide(root, "height", view.height, unknownHeight, &high);
    // One side told and a view box: the other side follows from the box's proportions.
    Length ignored;
    const bool widthGiven =
        ParseLength(root.attribute("width").value(), &ignored) && ignored.unit != Unit::kPercent;
    const bool heightGiven =
        ParseLength(root.attribute("height").value(), &ignored) && ignored.unit != Unit::kPercent;
    if (hasView && widthGiven && !heightGiven) page.height = page.width * view.height / view.width;
    if (hasView && heightGiven && !widthGiven) page.width = page.height * view.width / view.height;
    page.measured = wide && high;

    page.viewWidth = page.width / 0.75;
    page.viewHeight = page.height / 0.75;
    if (hasView) {
        page.inPoints =
            FitViewBox(view, {0, 0, page.width, page.height}, root.attribute("preserveAspectRatio").value());
        page.viewWidth = view.width;
        page.viewHeight = view.height;
    }
    return page;
}

/// Sets the document's page; those of our own files may begin elsewhere than at (0, 0).
HostMatrix PlacePage(ReadContext& context, const Page& page) {
    HostRect& rect = context.document.page;
    rect = {0, page.height, page.width, 0};
    const auto own = ParseNumbers(context.Own(context.root, kOwnPage), 4);
    const bool agrees = own.size() == 4 && std::abs(own[2] - own[0] - page.width) <= 1e-6 * page.width &&
                        std::abs(own[1] - own[3] - page.height) <= 1e-6 * page.height;
    if (agrees) rect = {own[0], own[1], own[2], own[3]};
    return Concat({1, 0, 0, -1, rect.left, rect.top}, page.inPoints);
}

Text LocalAttribute(pugi::xml_node element, Text name) {
    for (const pugi::xml_attribute attribute : element.attributes())
        if (LocalName(attribute.name()) == name) return attribute.value();
    return {};
}

bool IsLayer(ReadContext& context, pugi::xml_node element) {
    return context.KindOf(element) == ElementKind::kGroup && LocalAttribute(element, "groupmode") == "layer";
}

bool NeedsGroup(const Surroundings& here) {
    const ComputedStyle& style = here.style;
    return style.opacity < 1 || style.blendMode != 0 || style.isolated || !style.clipPath.empty();
}

/// An editor's layer.  What changes it as a whole goes into a group of its own inside.
void ReadLayer(ReadContext& context, pugi::xml_node element, const Surroundings& around, Layer& layer) {
    const Surroundings here = Enter(context, element, around);
    layer.visible = here.style.displayed;
    layer.locked = LocalAttribute(element, "insensitive") == "true";
    layer.root->name = element.attribute("id").value();
    layer.root->tags = ReadTags(element, context.ownPrefix);
    if (NeedsGroup(here)) {
        Art* art = ReadElement(context, element, around, layer.root);
        if (!art) return;
        art->hidden = art->locked = false;
        art->name.clear();
        art->tags.clear();
        return;
    }
    const Visit visit(context);
    if (!visit) return;
    if (here.style.filtered) context.Lose("filter");
    if (here.style.masked) context.Lose("mask");
    ReadMembers(context, element, here, layer.root);
}

/// Fills the document's layers.  Elements between the layers of a file get layers of their own, so that
/// everything keeps its place in the stack.
void ReadLayers(ReadContext& context, const Surroundings& inside) {
    Document& document = context.document;
    bool any = false;
    for (const pugi::xml_node child : context.root.children()) any = any || IsLayer(context, child);
    if (!any) {
        ReadMembers(context, context.root, inside, document.LayerAt(0).root);
        return;
    }
    bool first = true, open = false;
    int number = 0;
    const auto next = [&](std::string title) -> Layer& {
        ++number;
        if (title.empty()) title = "Layer " + std::to_string(number);
        Layer& layer = first ? document.LayerAt(0) : document.InsertLayer(0, title);
        layer.title = title;
        first = false;
        return layer;
    };
    for (const pugi::xml_node child : context.root.children()) {
        if (context.refused()) return;
        if (child.type() != pugi::node_element) continue;
        if (IsLayer(context, child)) {
            ReadLayer(context, child, inside, next(std::string(LocalAttribute(child, "label"))));
            open = false;
        } else if (open) {
            ReadElement(context, child, inside, document.LayerAt(0).root);
        } else {
            // A layer of its own only if the element draws.
            Art* holder = context.NewArt(kArtGroup, nullptr);
            if (!holder) return;
            const bool draws = ReadElement(context, child, inside, holder) != nullptr;
            if (draws) {
                Layer& layer = next({});
                document.ReorderArt(holder->firstChild, kPlaceInsideOnTop, layer.root);
                open = true;
            }
            document.DisposeArt(holder);
        }
    }
    document.SetCurrentLayer(0);
}

/// Custom colours of our own files.
void ReadCustomColors(ReadContext& context) {
    if (context.ownPrefix.empty()) return;
    const std::string name = context.ownPrefix + kOwnColor;
    for (const pugi::xml_node child : context.root.child("defs").children(name.c_str())) {
        HostCustomColor definition;
        if (ParseDefinitionText(child.attribute("definition").value(), &definition))
            context.document.NewCustomColor(child.attribute("name").value(), definition);
    }
}

void ReadSheets(ReadContext& context) {
    // All sheets count for the whole file, wherever they stand.
    pugi::xml_node node = context.root;
    while (node) {
        if (node.type() == pugi::node_element && LocalName(node.name()) == "style" &&
            context.KindOf(node) == ElementKind::kStyle) {
            const Text type = Trim(node.attribute("type").value());
            std::string text;
            for (const pugi::xml_node part : node.children())
                if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) text += part.value();
            if (type.empty() || type == "text/css") context.sheet.Add(std::move(text));
        }
        if (node.first_child()) {
            node = node.first_child();
            continue;
        }
        while (node && node != context.root && !node.next_sibling()) node = node.parent();
        node = node == context.root ? pugi::xml_node{} : node.next_sibling();
    }
}

std::string TitleByFileName(const std::string& fileName) {
    std::string name = fileName.substr(fileName.find_last_of("/\\") + 1);
    for (const Text suffix : {".svg", ".svgz", ".SVG", ".SVGZ"})
        if (Text(name).ends_with(suffix) && name.size() > suffix.size())
            name.resize(name.size() - suffix.size());
    return name.empty() ? "Untitled" : name;
}

/// One pass over the file's tree.
struct Pass {
    std::unique_ptr<Document> document = std::make_unique<Document>();
    ReadReport report;
    std::string refusal;
    bool measured = true;
};

Pass ReadTree(pugi::xml_node root, const std::string& fileName, PictureLinks& links, double unknownWidth,
              double unknownHeight) {
    Pass pass;
    ReadContext context(*pass.document, pass.report, links);
    context.Index(root);
    ReadSheets(context);
    ReadCustomColors(context);
    pass.document->title = TitleByFileName(fileName);
    ReadMetadata(context);
    const Page page = ReadPage(context, unknownWidth, unknownHeight);
    Surroundings inside;
    inside.viewWidth = page.viewWidth;
    inside.viewHeight = page.viewHeight;
    inside.toArt = PlacePage(context, page);
    inside = Enter(context, root, inside);
    ReadLayers(context, inside);
    if (context.sheet.exhausted()) context.Lose("style sheet");
    if (std::ranges::any_of(pass.report.losses,
                            [](const auto& loss) { return loss.first == "damaged path data"; }))
        pass.report.notes.push_back("path data has faults; what comes before each was kept");
    pass.refusal = context.refusal;
    pass.measured = page.measured;
    return pass;
}

/// The extent of all art, from the page's upper left corner.
Box DrawnBox(const Document& document) {
    Box box;
    for (size_t i = 0; i < document.LayerCount(); ++i)
        AddExtentOf(*document.LayerAt(i).root, {1, 0, 0, -1, 0, document.page.top}, &box);
    return box;
}

bool CheckSigns(Text text, std::string* error) {
    const auto markup = static_cast<size_t>(std::ranges::count(text, '<'));
    const auto attributes = static_cast<size_t>(std::ranges::count(text, '='));
    if (markup <= kMaxMarkupSigns && attributes <= kMaxAttributeSigns) return true;
    *error = "the file has too many elements";
    return false;
}

pugi::xml_node FindRoot(const pugi::xml_document& tree) {
    for (const pugi::xml_node node : tree.children())
        if (node.type() == pugi::node_element)
            return LocalName(node.name()) == "svg" ? node : pugi::xml_node{};
    return {};
}

std::unique_ptr<Document> ReadLinked(std::span<const uint8_t> bytes, const std::string& fileName,
                                     PictureLinks& links, ReadReport* report, std::string* error) {
    std::string why;
    const auto refuse = [&](std::string reason) {
        if (error) *error = std::move(reason);
        return nullptr;
    };
    std::vector<uint8_t> unpacked;
    if (IsPacked(bytes)) {
        if (!Unpack(bytes, &unpacked, &why)) return refuse(why);
        bytes = unpacked;
    }
    if (bytes.size() > kMaxFileBytes)
        return refuse("the file is larger than " + std::to_string(kMaxFileBytes >> 20) + " MiB");
    std::string text;
    bool damaged = false;
    if (!DecodeXml(bytes, &text, &damaged, &why) || !ExpandEntities(&text, &why) || !CheckSigns(text, &why))
        return refuse(why);

    pugi::xml_document tree;
    // Blanks between elements count in text alone; elsewhere they would only cost memory.
    const bool hasText = text.find("text") != std::string::npos || text.find("flow") != std::string::npos;
    const unsigned options = pugi::parse_default | (hasText ? pugi::parse_ws_pcdata : 0u);
    const pugi::xml_parse_result parsed =
        tree.load_buffer_inplace(text.data(), text.size(), options, pugi::encoding_utf8);
    if (!parsed)
        return refuse("no XML at byte " + std::to_string(parsed.offset) + ": " + parsed.description());
    const pugi::xml_node root = FindRoot(tree);
    if (!root) return refuse("no SVG: the outermost element is not svg");

    Pass pass = ReadTree(root, fileName, links, kUnknownSize, kUnknownSize);
    if (!pass.measured && pass.refusal.empty()) {
        const Box box = DrawnBox(*pass.document);
        const double width = box.empty || !(box.right > 0) ? kUnknownSize : box.right;
        const double height = box.empty || !(box.bottom > 0) ? kUnknownSize : box.bottom;
        pass = ReadTree(root, fileName, links, width, height);
    }
    if (!pass.refusal.empty()) return refuse(pass.refusal);
    if (damaged) pass.report.notes.push_back("bytes that are no text in the file's encoding were replaced");
    if (report) *report = std::move(pass.report);
    return std::move(pass.document);
}

} // namespace

std::unique_ptr<Document> ReadSvg(std::span<const uint8_t> bytes, const std::string& fileName,
                                  ReadReport* report, std::string* error) {
    PictureLinks none;
    return ReadLinked(bytes, fileName, none, report, error);
}

std::unique_ptr<Document> ReadSvgFile(const std::string& path, ReadReport* report, std::string* error,
                                      const std::string& picturesBelow) {
    std::vector<uint8_t> bytes;
    std::string why;
    if (!ReadWholeFile(path, &bytes, &why)) {
        if (error) *error = why;
        return nullptr;
    }
    std::error_code trouble;
    const auto whole = std::filesystem::absolute(path, trouble);
    PictureLinks links(whole.parent_path().string(), picturesBelow);
    return ReadLinked(bytes, path, links, report, error);
}

} // namespace workbench
