#include <filesystem>
#include <iostream>

#include "app/art_selection.h"
#include "app/commands.h"
#include "app/database_view.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/linked_pictures.h"
#include "app/record_texts.h"
#include "app/registration.h"
#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record_layout.h"

namespace {

bool TextFor(const char* what, const std::string& utf8, size_t capacity, std::string* out) {
    const auto text = StoredText(what, utf8, capacity);
    if (text) *out = *text;
    return text.has_value();
}

int RegisterFile(Session& session, const RegisterOptions& options, const std::string& file,
                 const std::string& group, RecordTexts texts) {
    workbench::ReadReport report;
    std::string error;
    auto document = OpenDocument(file, &report, &error);
    if (!document) {
        Complain(error);
        return std::filesystem::exists(file) ? kRefusedOrDiffers : kFileTrouble;
    }
    LeaveOutMissingPictures(*document);
    if (options.select.empty()) document->SelectAll();
    if (!options.select.empty() && !SelectNamedArt(*document, options.select)) {
        Complain(file + ": no art bears the name '" + options.select + "'");
        return kRefusedOrDiffers;
    }
    if (options.name.empty()) texts.name = CutCp932(Cp932OfUtf8OrMark(document->title), kRecordNameBytes - 1);
    session.host().Open(std::move(document));
    Registered registered;
    if (!RegisterFrontDocument(session, group, texts, &registered, &error)) {
        Complain(file + ": " + error);
        return kRefusedOrDiffers;
    }
    if (!registered.lostPictures.empty())
        Complain(file + ": linked pictures that couldn't be stored: " + JoinedNames(registered.lostPictures));
    const std::string losses = LossesLine(report);
    if (!losses.empty()) Complain(file + ": not taken from the file: " + losses);
    std::cout << GroupForPeople(group) << "\t" << registered.number << "\t" << Utf8OfCp932(texts.name) << "\t"
              << registered.objects << " objects\t" << registered.bytes << " bytes\n";
    return kDone;
}

} // namespace

int RunRegister(const RegisterOptions& options) {
    Session session;
    if (!session.ok()) return kRefusedOrDiffers;
    if (options.trace) session.Trace();
    if (options.layers) globals->layerOption = *options.layers ? 1 : 0;
    std::string error;
    if (!session.OpenDatabase(options.database, true, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    const auto group = GroupNameOfUtf8(options.group, &error);
    if (!group) {
        Complain(options.group + ": " + error);
        return kRefusedOrDiffers;
    }
    RecordTexts texts;
    if (!TextFor("--name", options.name, kRecordNameBytes, &texts.name) ||
        !TextFor("--kind", options.kind, kRecordNameBytes, &texts.kind) ||
        !TextFor("--comment", options.comment, kRecordCommentBytes, &texts.comment))
        return kRefusedOrDiffers;
    if (!session.MakeFolders(*group, &error)) {
        Complain(options.group + ": " + error);
        return kFileTrouble;
    }
    int worst = kDone;
    for (const std::string& file : options.files) {
        worst = std::max(worst, RegisterFile(session, options, file, *group, texts));
    }
    return session.faulty() ? std::max<int>(worst, kRefusedOrDiffers) : worst;
}
