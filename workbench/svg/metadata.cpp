#include "workbench/svg/metadata.h"

#include "workbench/svg/svg_values.h"

namespace workbench {
namespace {

using Text = std::string_view;

pugi::xml_node ChildNamed(pugi::xml_node parent, Text name) {
    for (const pugi::xml_node child : parent.children())
        if (child.type() == pugi::node_element && LocalName(child.name()) == name) return child;
    return {};
}

/// All the character data directly in an element.
std::string TextOf(pugi::xml_node element) {
    std::string text;
    for (const pugi::xml_node child : element.children())
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
    return std::string(Trim(text));
}

/// What the metadata say about the file as a whole: the Work, or the resource described first.
pugi::xml_node FindWork(pugi::xml_node root) {
    const pugi::xml_node description = ChildNamed(ChildNamed(root, "metadata"), "RDF");
    const pugi::xml_node work = ChildNamed(description, "Work");
    return work ? work : ChildNamed(description, "Description");
}

/// The members of a bag, or the text itself.
std::string ListOf(pugi::xml_node element) {
    for (const char* name : {"Bag", "Seq", "Alt"}) {
        const pugi::xml_node bag = ChildNamed(element, name);
        if (!bag) continue;
        std::string list;
        for (const pugi::xml_node item : bag.children()) {
            const std::string text = TextOf(item);
            if (!text.empty()) list += (list.empty() ? "" : ", ") + text;
        }
        return list;
    }
    return TextOf(element);
}

} // namespace

std::string TitleOf(pugi::xml_node element) {
    return TextOf(ChildNamed(element, "title"));
}

void ReadMetadata(ReadContext& context) {
    const pugi::xml_node work = FindWork(context.root);
    std::string title = ListOf(ChildNamed(work, "title"));
    if (title.empty()) title = TitleOf(context.root);
    if (!title.empty()) context.document.title = title;
    context.document.subject = ListOf(ChildNamed(work, "subject"));
    context.document.description = ListOf(ChildNamed(work, "description"));
    if (context.document.description.empty())
        context.document.description = TextOf(ChildNamed(context.root, "desc"));
}

} // namespace workbench
