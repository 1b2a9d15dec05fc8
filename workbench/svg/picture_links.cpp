#include "workbench/svg/picture_links.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "workbench/pictures/picture_file.h"
#include "workbench/svg/svg_reader.h"
#include "workbench/svg/tag_words.h"

namespace workbench {
namespace {

namespace fs = std::filesystem;

constexpr size_t kMostPictures = 4096; ///< files that are looked at for one drawing
constexpr char kHexDigits[] = "0123456789ABCDEF";

/// The length of a scheme with its colon; 0 if there is none.
size_t SchemeLength(std::string_view href) {
    const size_t colon = href.find_first_of(":/?#");
    if (colon == std::string_view::npos || colon == 0 || href[colon] != ':') return 0;
    return std::isalpha(static_cast<unsigned char>(href[0])) ? colon + 1 : 0;
}

/// What is left of an address behind its scheme and machine; false if it names no file of this machine.
bool TakePath(std::string_view* href) {
    const size_t scheme = SchemeLength(*href);
    if (scheme > 0) {
        std::string name(href->substr(0, scheme));
        std::ranges::transform(name, name.begin(),
                               [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (name != "file:") return false;
        href->remove_prefix(scheme);
    }
    if (!href->starts_with("//")) return scheme == 0 || href->starts_with('/');
    href->remove_prefix(2);
    if (href->starts_with("localhost/")) href->remove_prefix(9);
    return href->starts_with('/');
}

bool IsUnreserved(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
           c == '.' || c == '_' || c == '~' || c == '/';
}

std::string Encoded(std::string_view path) {
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (IsUnreserved(byte)) {
            text += c;
        } else {
            text += '%';
            text += kHexDigits[byte >> 4];
            text += kHexDigits[byte & 15];
        }
    }
    return text;
}

LinkedPicture LookAtFile(const std::string& path) {
    std::vector<uint8_t> bytes;
    switch (ReadPictureFile(path, &bytes)) {
        case PictureFileState::kMissing:
            return {LinkState::kMissing, {}};
        case PictureFileState::kRefused:
            return {LinkState::kNoPicture, {}};
        case PictureFileState::kRead:
            break;
    }
    if (const auto pixels = SizeOfPixels(bytes)) return {LinkState::kPicture, *pixels};
    if (KindOfPicture(bytes) != PictureKind::kDrawing || bytes.size() > kMaxDrawingBytes)
        return {LinkState::kNoPicture, {}};
    const auto drawing = ReadSvg(bytes, path, nullptr, nullptr);
    if (!drawing) return {LinkState::kNoPicture, {}};
    const HostRect& page = drawing->page;
    return {LinkState::kPicture, {page.right - page.left, page.top - page.bottom}};
}

} // namespace

std::string PictureLinks::PathOf(std::string_view href) const {
    if (!TakePath(&href)) return {};
    const std::string decoded = BytesOfPercentText(href.substr(0, href.find_first_of("?#")));
    if (decoded.empty() || decoded.find('\0') != std::string::npos) return {};
    if (folder_.empty()) return decoded;
    return (fs::path(folder_) / decoded).lexically_normal().string();
}

bool PictureLinks::MayFollow(const std::string& path) const {
    if (below_.empty()) return true;
    std::error_code trouble;
    const fs::path real = fs::weakly_canonical(path, trouble);
    if (trouble) return false;
    const fs::path base = fs::weakly_canonical(below_, trouble);
    if (trouble) return false;
    return std::mismatch(base.begin(), base.end(), real.begin(), real.end()).first == base.end();
}

const LinkedPicture& PictureLinks::LookAt(const std::string& path) {
    const auto [place, fresh] = seen_.try_emplace(path);
    if (fresh && !folder_.empty() && seen_.size() <= kMostPictures) place->second = LookAtFile(path);
    return place->second;
}

std::string LinkTo(const std::string& file, const std::string& folder) {
    const fs::path path(file);
    if (!path.is_absolute()) return Encoded(file);
    std::error_code trouble;
    const fs::path from = fs::weakly_canonical(folder, trouble);
    const fs::path to = trouble ? fs::path() : fs::weakly_canonical(path.parent_path(), trouble);
    if (folder.empty() || trouble) return "file://" + Encoded(file);
    return Encoded((to.lexically_relative(from) / path.filename()).lexically_normal().string());
}

std::optional<PictureSize> DiskPictures::SizeOf(const std::string& file) {
    const LinkedPicture picture = LookAtFile(file);
    if (picture.state != LinkState::kPicture) return std::nullopt;
    return picture.size;
}

} // namespace workbench
