#include "tests/workbench/svg/svg_helpers.h"

#include <charconv>

namespace workbench {
namespace {

std::string Exact(double value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value + 0.0).ptr};
}

} // namespace

ReadFile ReadText(const std::string& text) {
    ReadFile file;
    file.document = ReadSvg({reinterpret_cast<const uint8_t*>(text.data()), text.size()},
                            "some/where/file.svg", &file.report, &file.error);
    return file;
}

ReadFile ReadBody(const std::string& body) {
    ReadFile file = ReadText(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        "width='100pt' height='100pt' viewBox='0 0 100 100'>" +
        body + "</svg>");
    EXPECT_TRUE(file.document) << file.error;
    if (!file.document) file.document = std::make_unique<Document>();
    return file;
}

const Art* OnlyArt(const Document& document) {
    static const Art nothing{};
    const Art* root = document.LayerAt(0).root;
    const bool one = document.LayerCount() == 1 && root->firstChild && root->firstChild == root->lastChild;
    EXPECT_TRUE(one) << Structure(document);
    return one ? root->firstChild : &nothing;
}

const Art* Named(const Document& document, const std::string& name) {
    const Art* found = nullptr;
    for (size_t i = 0; i < document.LayerCount(); ++i)
        ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            if (!found && art.name == name) found = &art;
        });
    return found;
}

std::string Structure(const Art& art) {
    if (art.kind == kArtPath) return "p";
    if (art.kind == kArtTextFrame) return "t";
    const bool clipped = art.group() && art.group()->clipped;
    std::string text = art.kind == kArtCompoundPath ? "c(" : clipped ? "clip(" : "g(";
    for (const Art* child = art.firstChild; child; child = child->below)
        text += Structure(*child) + (child->below ? "," : "");
    return text + ")";
}

std::string Structure(const Document& document) {
    std::string text;
    for (size_t i = 0; i < document.LayerCount(); ++i)
        text += (i ? " " : "") + Structure(*document.LayerAt(i).root);
    return text;
}

std::string ColorOf(const Document& document, const HostColor& color) {
    switch (color.kind) {
        case kColorGray:
            return "gray " + Exact(color.u.gray.gray);
        case kColorFour:
            return "four " + Exact(color.u.four.cyan) + " " + Exact(color.u.four.magenta) + " " +
                   Exact(color.u.four.yellow) + " " + Exact(color.u.four.black);
        case kColorThree:
            return "three " + Exact(color.u.three.red) + " " + Exact(color.u.three.green) + " " +
                   Exact(color.u.three.blue);
        case kColorCustom: {
            const CustomColor* custom = document.Find(color.u.custom.color);
            if (!custom) return "no custom colour";
            std::string text = "custom " + custom->name + " " + Exact(color.u.custom.tint) + " of " +
                               std::to_string(custom->definition.kind);
            for (const double value : custom->definition.values) text += " " + Exact(value);
            return text + " " + std::to_string(custom->definition.flags);
        }
        default:
            return "other";
    }
}

} // namespace workbench
