#include "app/documents.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "workbench/render/page_files.h"
#include "workbench/shell/document_json.h"
#include "workbench/svg/svg_writer.h"

using workbench::Document;

namespace {

/// Pixels for each point of a PNG: twice the screen's.
constexpr double kPngScale = 2;

std::string ExtensionOf(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

std::string FolderOf(const std::string& path) {
    std::error_code trouble;
    return std::filesystem::absolute(path, trouble).parent_path().string();
}

} // namespace

std::unique_ptr<Document> OpenDocument(const std::string& path, workbench::ReadReport* report,
                                       std::string* error, const std::string& picturesBelow) {
    std::string why;
    auto document = workbench::ReadSvgFile(path, report, &why, picturesBelow);
    if (!document) *error = path + ": " + why;
    return document;
}

int LeaveOutMissingPictures(Document& document) {
    std::vector<ArtHandle> missing;
    for (size_t i = 0; i < document.LayerCount(); ++i) {
        workbench::ForEachArt(*document.LayerAt(i).root, [&](const workbench::Art& art) {
            const auto* placed = std::get_if<workbench::PlacedData>(&art.data);
            std::error_code ignored;
            if (placed && !std::filesystem::is_regular_file(placed->file, ignored))
                missing.push_back(art.handle);
        });
    }
    for (const ArtHandle art : missing) document.DisposeArt(document.Find(art));
    return static_cast<int>(missing.size());
}

bool KnownExtension(const std::string& path, std::string* error) {
    const std::string extension = ExtensionOf(path);
    for (const char* known : {".svg", ".pdf", ".png", ".json"}) {
        if (extension == known) return true;
    }
    *error = path + ": the name must end in .svg, .pdf, .png or .json";
    return false;
}

bool SaveBytes(const std::string& path, const void* bytes, size_t count, std::string* error) {
    const std::string temporary = path + ".part";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (!file) {
        *error = path + ": " + std::strerror(errno);
        return false;
    }
    bool good = std::fwrite(bytes, 1, count, file) == count;
    good = std::fclose(file) == 0 && good;
    if (good && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
    *error = path + ": " + std::strerror(errno);
    std::remove(temporary.c_str());
    return false;
}

bool SaveDocument(const Document& document, const std::string& path, std::string* error) {
    if (!KnownExtension(path, error)) return false;
    const std::string extension = ExtensionOf(path);
    if (extension == ".svg" || extension == ".json") {
        const std::string text = extension == ".svg"
                                     ? workbench::WriteSvg(document, nullptr, FolderOf(path))
                                     : workbench::DocumentJson(document).dump(
                                           1, ' ', false, nlohmann::json::error_handler_t::replace) +
                                           "\n";
        return SaveBytes(path, text.data(), text.size(), error);
    }
    std::string why;
    const std::vector<uint8_t> bytes = extension == ".pdf" ? workbench::PdfOfPage(document, &why)
                                                           : workbench::PngOfPage(document, kPngScale, &why);
    if (bytes.empty()) {
        *error = path + ": " + why;
        return false;
    }
    return SaveBytes(path, bytes.data(), bytes.size(), error);
}

std::string LossesLine(const workbench::ReadReport& report) {
    std::string line;
    for (const auto& [what, count] : report.losses) {
        line += (line.empty() ? "" : ", ") + what + " " + std::to_string(count);
    }
    for (const auto& [missing, standIn] : report.missingFonts) {
        line += (line.empty() ? "" : ", ") + ("font '" + missing) + "' missing (" +
                (standIn.empty() ? "nothing" : standIn) + " stands in)";
    }
    // A family's name is the file's own: it may hold anything.
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return line;
}
