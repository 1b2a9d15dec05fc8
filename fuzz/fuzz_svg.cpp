/// Any bytes as an SVG file: the answer is a document or a reason, and what is written of the document is
/// read again without a loss of structure.
#include <cstdint>
#include <cstdlib>

#include "workbench/svg/svg_reader.h"
#include "workbench/svg/svg_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string error;
    const auto document = workbench::ReadSvg({data, size}, "fuzz.svg", nullptr, &error);
    if (!document) {
        if (error.empty()) std::abort();
        return 0;
    }
    const std::string text = workbench::WriteSvg(*document);
    const auto again = workbench::ReadSvg({reinterpret_cast<const uint8_t*>(text.data()), text.size()},
                                          "fuzz.svg", nullptr, &error);
    if (!again || again->LayerCount() != document->LayerCount()) std::abort();
    return 0;
}
