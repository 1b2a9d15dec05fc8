/// What tells the host about picture files.  The suites are given one, so that they need no file formats.
#pragma once

#include <optional>
#include <string>

namespace workbench {

/// The natural size of a picture: one unit for each pixel, or the points of a drawing's page.
struct PictureSize {
    double width = 0, height = 0;
};

class PictureFiles {
public:
    virtual ~PictureFiles() = default;

    /// Nothing if `file` (UTF-8) can't be read or is no picture that can be placed.
    virtual std::optional<PictureSize> SizeOf(const std::string& file) = 0;
};

} // namespace workbench
