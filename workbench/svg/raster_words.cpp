#include "workbench/svg/raster_words.h"

#include <algorithm>
#include <cmath>

#include "workbench/document/raster_light.h"
#include "workbench/pictures/picture_file.h"
#include "workbench/pictures/pixels.h"
#include "workbench/svg/data_uri.h"
#include "workbench/svg/own_words.h"
#include "workbench/svg/transforms.h"

namespace workbench {
namespace {

using Text = std::string_view;

constexpr size_t kRecordNumbers = 13;

/// Whether PNG has a form for just these channels.
bool IsPngSpace(int32_t space) {
    return IsShownSpace(space) && space != kSpaceFour && space != kSpaceFourAlpha;
}

/// Rows that were never written aren't shown, unless none was.
int64_t RowsShown(const RasterData& raster) {
    return raster.pixels.empty() ? raster.Height() : raster.RowsKept();
}

/// An address of a PNG; `*exact`: its channels are the image's own.  Empty for an image that can't be shown.
std::string PictureOf(const Document& document, const Art& art, bool* exact) {
    const auto& raster = std::get<RasterData>(art.data);
    const int64_t width = raster.Width(), rows = raster.RowsKept();
    const int32_t space = raster.record.colorSpace;
    *exact = IsPngSpace(space) && !(raster.Colorized() && document.Find(art.artStyle)) && rows > 0 &&
             rows == raster.Height() && std::max(width, rows) <= kMaxPictureSide &&
             width * rows <= kMaxPicturePixels;
    const auto file = *exact ? WritePng(raster.pixels, width, rows, space)
                             : WritePng(LitPixels(document, art), width, rows, kSpaceThreeAlpha);
    *exact = *exact && !file.empty();
    return file.empty() ? std::string() : PngDataUri(file);
}

std::string RecordText(const RasterData& raster, Text href) {
    const HostRasterRecord& record = raster.record;
    const HostRect& box = raster.box;
    return MarkOf(href) + " " +
           NumbersText(record.flags, record.left, record.top, record.right, record.bottom, record.byteWidth,
                       record.colorSpace, record.bitsPerPixel, record.originalColorSpace, box.left, box.top,
                       box.right, box.bottom);
}

bool IsWhole(double value, double least, double most) {
    return value >= least && value <= most && value == std::floor(value);
}

bool ParseRecord(Text text, Text href, RasterData* raster) {
    const std::string mark = MarkOf(href);
    if (!text.starts_with(mark)) return false;
    const auto numbers = ParseNumbers(text.substr(mark.size()), kRecordNumbers);
    if (numbers.size() != kRecordNumbers) return false;
    for (size_t i = 0; i < 9; ++i) {
        const bool large = i == 0 || i == 5;
        const bool good = large             ? IsWhole(numbers[i], 0, UINT32_MAX)
                          : i >= 1 && i < 5 ? IsWhole(numbers[i], -kMaxRasterSide, kMaxRasterSide)
                                            : IsWhole(numbers[i], INT32_MIN, INT32_MAX);
        if (!good) return false;
    }
    const auto whole = [&numbers](size_t index) { return static_cast<int32_t>(numbers[index]); };
    raster->record = {static_cast<uint32_t>(numbers[0]), whole(1), whole(2), whole(3), whole(4),
                      static_cast<uint32_t>(numbers[5]), whole(6), whole(7), whole(8)};
    raster->box = {numbers[9], numbers[10], numbers[11], numbers[12]};
    const int64_t width = raster->Width(), height = raster->Height();
    return width >= 0 && height >= 0 && width <= kMaxRasterSide && height <= kMaxRasterSide;
}

/// Whether the element still stands where the record says.
bool AgreesWith(pugi::xml_node element, const RasterData& raster) {
    const auto number = [element](const char* name) { return element.attribute(name).as_double(NAN); };
    const HostRasterRecord& record = raster.record;
    return number("x") == record.left && number("y") == record.top &&
           number("width") == static_cast<double>(raster.Width()) &&
           number("height") == static_cast<double>(RowsShown(raster));
}

/// The picture in a data: address; nothing, and why in `*loss`, if there is none to be had.
std::optional<Pixels> PixelsOf(ReadContext& context, Text href, const char** loss) {
    std::vector<uint8_t> file;
    *loss = "image";
    if (!BytesOfDataUri(href, &file) || !SizeOfPixels(file)) return std::nullopt;
    bool reduced = false;
    std::optional<Pixels> pixels = ReadPixels(file, context.imageBytesLeft, &reduced);
    *loss = pixels ? nullptr : "damaged or oversized image";
    if (!pixels) return pixels;
    context.imageBytesLeft -= pixels->bytes.size();
    if (reduced) context.Lose("image of 16 bits a channel");
    return pixels;
}

bool ReadOwnPixels(ReadContext& context, pugi::xml_node element, Text href, RasterData* raster) {
    const Text own = context.Own(element, kOwnPixels);
    if (!own.empty()) {
        const size_t row = raster->RowBytes();
        const uint64_t whole = uint64_t{row} * static_cast<uint64_t>(raster->Height());
        const auto most = static_cast<size_t>(std::min<uint64_t>(whole, context.imageBytesLeft));
        if (!BytesOfPackedText(own, most, &raster->pixels)) return false;
        context.imageBytesLeft -= raster->pixels.size();
        return row > 0 && raster->pixels.size() % row == 0;
    }
    if (href.empty()) return true;
    const char* loss = nullptr;
    std::optional<Pixels> pixels = PixelsOf(context, href, &loss);
    if (!pixels || pixels->space != raster->record.colorSpace || pixels->width != raster->Width() ||
        pixels->height != raster->Height())
        return false;
    raster->pixels = std::move(pixels->bytes);
    return true;
}

} // namespace

void WriteRaster(WriteContext& context, const Art& art, const std::string& nature, std::string* markup) {
    const auto& raster = std::get<RasterData>(art.data);
    const HostMatrix& m = raster.matrix;
    const bool linked = !raster.file.empty();
    bool exact = false;
    const std::string href =
        linked ? LinkTo(raster.file, context.folder) : PictureOf(context.document, art, &exact);
    std::string text = "<image" + nature;
    AppendAttribute(&text, "x", NumbersText(raster.record.left));
    AppendAttribute(&text, "y", NumbersText(raster.record.top));
    AppendAttribute(&text, "width", NumbersText(static_cast<double>(raster.Width())));
    AppendAttribute(&text, "height", NumbersText(static_cast<double>(RowsShown(raster))));
    AppendAttribute(&text, "preserveAspectRatio", "none");
    // Pixels count downward, the layer's y upward.
    AppendAttribute(&text, "transform", MatrixText({m.a, m.b, -m.c, -m.d, m.tx, m.ty}));
    AppendOwn(&text, kOwnRaster, RecordText(raster, href));
    if (!linked && !exact && !raster.pixels.empty()) AppendOwn(&text, kOwnPixels, PackedText(raster.pixels));
    if (!href.empty()) AppendAttribute(&text, "xlink:href", href);
    *markup += text + "/>\n";
}

bool ReadOwnRaster(ReadContext& context, pugi::xml_node element, const HostMatrix& toArt,
                   RasterData* raster) {
    const Text own = context.Own(element, kOwnRaster);
    const Text href = Href(element);
    if (own.empty() || !ParseRecord(own, href, raster)) return false;
    if (!href.empty() && !IsDataUri(href)) {
        raster->file = context.links.PathOf(href);
        if (raster->file.empty() || !context.links.MayFollow(raster->file)) return false;
    } else if (!ReadOwnPixels(context, element, href, raster)) {
        return false;
    }
    raster->matrix = PixelsToArt(toArt);
    return AgreesWith(element, *raster) && IsFinite(raster->matrix);
}

bool ReadDataImage(ReadContext& context, Text href, RasterData* raster) {
    const char* loss = nullptr;
    std::optional<Pixels> pixels = PixelsOf(context, href, &loss);
    if (!pixels) {
        context.Lose(loss);
        return false;
    }
    raster->record = NewRasterRecord(pixels->width, pixels->height, pixels->space);
    raster->box = {0, 0, static_cast<double>(pixels->width), -static_cast<double>(pixels->height)};
    raster->pixels = std::move(pixels->bytes);
    return true;
}

} // namespace workbench
