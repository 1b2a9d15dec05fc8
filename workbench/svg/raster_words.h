/// Images whose data lies in the drawing, to SVG and back.
///
/// Others see an `image` element with a PNG of what the image looks like.  Our own reader takes the rest from
/// two attributes: `vlq:raster` is a mark of the href, then as numbers flags, left, top, right and bottom of
/// the pixels, byte width, colour space, bits of a pixel, original colour space, and the box's left, top,
/// right and bottom; `vlq:pixels` holds the pixels themselves where the PNG doesn't have just them, packed by
/// deflate, in base64.
#pragma once

#include "workbench/svg/read_context.h"
#include "workbench/svg/svg_text.h"

namespace workbench {

/// From the user space of an element that shows pixels, to art: pixels count downward there, and upward in
/// a document's matrix.
inline HostMatrix PixelsToArt(const HostMatrix& m) {
    return {m.a, m.b, 0 - m.c, 0 - m.d, m.tx, m.ty};
}

/// @param nature  what stands in the element's tag besides
void WriteRaster(WriteContext& context, const Art& art, const std::string& nature, std::string* markup);

/// Fills `raster` from an element of our own writing; false, with `*raster` unspecified, if it is none, or if
/// another program gave it another picture or place.
/// @param toArt  the element's own user space to art coordinates
bool ReadOwnRaster(ReadContext& context, pugi::xml_node element, const HostMatrix& toArt, RasterData* raster);

/// The picture in a data: address as an image whose pixels start at (0, 0); what can't be read or is too
/// large is counted.
bool ReadDataImage(ReadContext& context, std::string_view href, RasterData* raster);

} // namespace workbench
