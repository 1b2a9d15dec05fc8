/// Which files a drawing may link to, and what is known of them.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "workbench/document/pictures.h"

namespace workbench {

enum class LinkState {
    kPicture,
    kMissing,  ///< nothing there, or nobody looked
    kNoPicture ///< another sort of file, a device, a damaged or oversized picture
};

struct LinkedPicture {
    LinkState state = LinkState::kMissing;
    PictureSize size; ///< of a kPicture
};

/// The picture files of one drawing.  Each file is looked at once.
class PictureLinks {
public:
    /// The links of bytes that come from no file: none leads anywhere.
    PictureLinks() = default;

    /// @param folder  absolute folder of the drawing; relative links start there
    /// @param below   if not empty, an absolute folder that no link may leave, by whatever way
    explicit PictureLinks(std::string folder, std::string below = {})
        : folder_(std::move(folder)), below_(std::move(below)) {}

    /// The full path of a link, percent signs decoded; empty for what names no file here: other schemes than
    /// file, other machines, NUL bytes.  Without a folder a relative link stays as it is.
    std::string PathOf(std::string_view href) const;

    /// False if the file lies, all symbolic links followed, outside the folder that may not be left.
    bool MayFollow(const std::string& path) const;

    const LinkedPicture& LookAt(const std::string& path);

private:
    std::string folder_, below_;
    std::map<std::string, LinkedPicture> seen_;
};

/// Picture files on disk: PNG, JPEG, and SVG without pictures of its own.
class DiskPictures : public PictureFiles {
public:
    std::optional<PictureSize> SizeOf(const std::string& file) override;
};

/// A link from a drawing in `folder` (absolute; empty: unknown) to a file: relative where both are absolute,
/// with percent signs for what an address can't hold.
std::string LinkTo(const std::string& file, const std::string& folder);

} // namespace workbench
