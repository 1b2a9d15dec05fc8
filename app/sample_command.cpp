#include <filesystem>

#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/sample_document.h"
#include "app/sample_pictures.h"
#include "app/texts.h"

int RunSample(const SampleOptions& options) {
    std::string error;
    if (!KnownExtension(options.out, &error)) {
        Complain(error);
        return kUsage;
    }
    // The pictures lie beside the document, under its name.
    const std::filesystem::path out = std::filesystem::absolute(options.out);
    const std::string stem = (out.parent_path() / out.stem()).string();
    const SamplePictures pictures{stem + "-placed.png", stem + "-placed.jpg"};
    if (!WriteSamplePictures(pictures, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    const auto document = MakeSampleDocument(pictures);
    if (!SaveDocument(*document, options.out, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    return kDone;
}
