#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>

#include "app/commands.h"
#include "app/database_view.h"
#include "app/documents.h"
#include "app/exit_code.h"
#include "app/open_database.h"
#include "app/record_json.h"
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
    const OpenedDatabase database(options.database, options.group);
    if (database.trouble() != kDone) return database.trouble();
    const std::string& group = database.group();
    std::string error;
    AidbReadRecord(group.c_str(), options.number, nullptr, kReadWhole, true);
    if (!globals->curRecord) {
        Complain(options.group + ": record " + std::to_string(options.number) +
                 " can't be read: there is none of that number, or the file is damaged before it");
        return kRefusedOrDiffers;
    }
    Json json = {{"schema", 1}, {"group", GroupForPeople(group)}, {"number", options.number}};
    json.update(RecordToJson(globals->curRecord));
    if (options.json) {
        PrintJson(json);
    } else {
        PrintText(json, 0);
    }
    if (options.preview.empty() || SavePreview(group, options, &error)) return kDone;
    Complain(options.preview + ": " + error);
    return kFileTrouble;
}
