/// Pictures of placed art, ready to be drawn.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "workbench/document/document.h"
#include "workbench/render/cairo_handle.h"

namespace workbench {

/// One of the two, or neither for a file that is missing, damaged or no picture.
struct PictureImage {
    CairoSurface pixels;               ///< rows from the top
    std::unique_ptr<Document> drawing; ///< its page is the picture
};

/// The pictures of one drawing run, each loaded when it is first drawn.  What was loaded stays until the run
/// ends, as long as all of it together stays below a bound; behind that each use loads anew.
class PictureImages {
public:
    /// Stands until the next call.
    const PictureImage& Load(const std::string& file);

private:
    std::map<std::string, PictureImage> kept_;
    PictureImage passing_;
    uint64_t keptBytes_ = 0;
};

} // namespace workbench
