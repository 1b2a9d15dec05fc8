#include <filesystem>

#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "app/record_loading.h"
#include "plugin/frame/globals.h"

using workbench::Art;
using workbench::Document;

namespace {

/// The art that bears `id`; layers' own groups are no art to drop on.
std::vector<ArtHandle> ArtOfId(const Document& document, const std::string& id) {
    std::vector<ArtHandle> found;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        workbench::ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            if (!art.layer && art.name == id) found.push_back(art.handle);
        });
    }
    return found;
}

/// All tags of a document, for the question whether any changed.
std::vector<std::string> TagsOf(const Document& document) {
    std::vector<std::string> texts;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        workbench::ForEachArt(*document.LayerAt(i).root, [&](const Art& art) {
            for (const workbench::Tag& tag : art.tags)
                texts.insert(texts.end(), {tag.name, tag.type, tag.value});
            texts.emplace_back();
        });
    }
    return texts;
}

/// The load builds on the current layer, which has to be open for it.
void MakeLayerCurrent(Document& document, const Art& art) {
    const workbench::Layer* layer = document.LayerOf(art);
    for (size_t i = 0; i < document.LayerCount(); ++i)
        if (&document.LayerAt(i) == layer) document.SetCurrentLayer(i);
}

std::unique_ptr<Document> OpenTarget(const TagsOptions& options, ArtHandle* target, int* code) {
    workbench::ReadReport report;
    std::string error;
    auto document = OpenDocument(options.onto, &report, &error);
    if (!document) {
        Complain(error);
        *code = std::filesystem::exists(options.onto) ? kRefusedOrDiffers : kFileTrouble;
        return nullptr;
    }
    const std::string losses = LossesLine(report);
    if (!losses.empty()) Complain(options.onto + ": not taken from the file: " + losses);
    const auto found = ArtOfId(*document, options.target);
    if (found.size() == 1) {
        *target = found.front();
        MakeLayerCurrent(*document, *document->Find(*target));
        return document;
    }
    Complain(options.onto +
             (found.empty() ? ": no art bears the name '" : ": more than one art bears the name '") +
             options.target + "'");
    *code = kRefusedOrDiffers;
    return nullptr;
}

} // namespace

int RunTags(const TagsOptions& options) {
    std::string error;
    if (!KnownExtension(options.out, &error)) {
        Complain(error);
        return kUsage;
    }
    OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    if (options.trace) database.session().Trace();
    int code = kDone;
    ArtHandle target = nullptr;
    auto document = OpenTarget(options, &target, &code);
    if (!document) return code;
    const auto before = TagsOf(*document);
    database.host().Open(std::move(document));
    globals->language = 1; // of the alerts that become messages
    if (!TransferRecordTags(database.group(), options.number, target, &error)) {
        Complain(options.group + ": " + error);
        return kRefusedOrDiffers;
    }
    // A transfer that the plug-in objects to may have handed over some of the tags all the same.
    for (const workbench::Alert& alert : database.host().alerts()) {
        Complain(options.group + ": " + alert.text);
        code = kRefusedOrDiffers;
    }
    if (code != kDone && TagsOf(*database.host().front()) == before) return code;
    if (!SaveDocument(*database.host().front(), options.out, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    return database.Ended(code);
}
