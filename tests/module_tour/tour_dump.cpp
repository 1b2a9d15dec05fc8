#include "tests/module_tour/tour_dump.h"

#include <fstream>

#include "workbench/shell/document_json.h"

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

void ShortenFiles(Json& json, const fs::path& folder) {
    if (json.is_object() && json.contains("file")) {
        const fs::path file = fs::u8path(json["file"].get<std::string>());
        json["file"] = file.lexically_relative(folder).generic_u8string();
    }
    if (json.is_structured()) {
        for (Json& member : json) ShortenFiles(member, folder);
    }
}

} // namespace

void DumpDocument(const workbench::Document& document, const fs::path& folder, const fs::path& file) {
    Json json = workbench::DocumentJson(document);
    ShortenFiles(json, folder);
    // Tags are bytes, of whatever encoding.
    std::ofstream(file, std::ios::binary) << json.dump(1, ' ', false, Json::error_handler_t::replace) << '\n';
}
