#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/record_json.h"
#include "app/session.h"
#include "app/texts.h"
#include "plugin/frame/globals.h"
#include "plugin/store/record.h"
#include "workbench/render/page_files.h"

namespace {

using Json = nlohmann::ordered_json;

/// Values on one line each; what nests is indented below its name.
void PrintText(const Json& json, int indent) {
    const std::string blanks(static_cast<size_t>(indent), ' ');
    size_t index = 0;
    for (const auto& [key, value] : json.items()) {
        std::cout << blanks << (json.is_array() ? std::to_string(index++) : key);
        const bool nests = value.is_object() || (value.is_array() && !value.empty() &&
                                                 value[0].is_structured() && !value[0].is_array());
        if (nests) {
            std::cout << "\n";
            PrintText(value, indent + 2);
        } else {
            std::cout << ": "
                      << (value.is_string() ? value.get<std::string>()
                                            : value.dump(-1, ' ', false, Json::error_handler_t::replace))
                      << "\n";
        }
    }
}

bool SavePreview(const std::string& group, const ShowOptions& options, std::string* error) {
    workbench::PagePicture picture{128, 128, ReadPreview(group, options.number)};
    const std::vector<uint8_t> png = workbench::PngOfPicture(picture, error);
    return !png.empty() && SaveBytes(options.preview, png.data(), png.size(), error);
}

} // namespace

int RunShow(const ShowOptions& options) {
    Session session;
    if (!session.ok()) return kRefusedOrDiffers;
    std::string error;
    if (!session.OpenDatabase(options.database, false, &error)) {
        Complain(error);
        return kFileTrouble;
    }
    const auto group = GroupNameOfUtf8(options.group, &error);
    if (!group) {
        Complain(options.group + ": " + error);
        return kRefusedOrDiffers;
    }
    const SuitesHeld held(session.host());
    if (!GroupFileExists(group->c_str())) {
        Complain(options.group + ": there is no such group");
        return kFileTrouble;
    }
    AidbReadRecord(group->c_str(), options.number, nullptr, kReadWhole, true);
    if (!globals->curRecord) {
        Complain(options.group + ": record " + std::to_string(options.number) +
                 " can't be read: there is none of that number, or the file is damaged before it");
        return kRefusedOrDiffers;
    }
    Json json = {{"schema", 1}, {"group", GroupForPeople(*group)}, {"number", options.number}};
    json.update(RecordToJson(globals->curRecord));
    if (options.json) {
        PrintJson(json);
    } else {
        PrintText(json, 0);
    }
    if (options.preview.empty() || SavePreview(*group, options, &error)) return kDone;
    Complain(options.preview + ": " + error);
    return kFileTrouble;
}
