#include <filesystem>

#include "app/commands.h"
#include "app/documents.h"
#include "app/exit_code.h"

int RunConvert(const ConvertOptions& options) {
    std::string error;
    for (const std::string& out : options.out) {
        if (KnownExtension(out, &error)) continue;
        Complain(error);
        return kUsage;
    }
    workbench::ReadReport report;
    const auto document = OpenDocument(options.in, &report, &error);
    if (!document) {
        Complain(error);
        return std::filesystem::exists(options.in) ? kRefusedOrDiffers : kFileTrouble;
    }
    const std::string losses = LossesLine(report);
    if (!losses.empty()) Complain(options.in + ": not taken from the file: " + losses);
    for (const std::string& note : report.notes) Complain(options.in + ": " + note);
    for (const std::string& out : options.out) {
        if (SaveDocument(*document, out, &error)) continue;
        Complain(error);
        return kFileTrouble;
    }
    return kDone;
}
