/// Conversions between the host's structures and the stored ones (in host order).
///
/// Every real that is stored passes through a 32-bit float and then becomes a Fixed, so a stored
/// coordinate has the precision of a 32-bit float and a step of 1/65536.  Numbers that are only carried
/// (flags, caps, joins, kinds) are cut to the field's width.  Each ...ToRecord writes the fields that its
/// structure has and leaves gaps and reserved fields alone.
#pragma once

#include "plugin/frame/globals.h"
#include "plugin/objects/object_layout.h"
#include "suites/host_types.h"

/// Truncates toward zero.  Beyond the range: +-0x7FFFFFFF, never kAbsentFixed; not-a-number: 0.
Fixed RealToFixed(float value);
float FixedToReal(Fixed value);

/// The host's 64-bit real, narrowed to a 32-bit float on its way.
Fixed HostRealToFixed(double value);

void PointToRecord(const HostPoint& point, FixedPoint* stored);
void PointFromRecord(const FixedPoint& stored, HostPoint* point);
void RectToRecord(const HostRect& rect, FixedRect* stored);
void RectFromRecord(const FixedRect& stored, HostRect* rect);
void MatrixToRecord(const HostMatrix& matrix, FixedMatrix* stored);
void MatrixFromRecord(const FixedMatrix& stored, HostMatrix* matrix);
void SegmentToRecord(const HostPathSegment& segment, AidbSegment* stored);
void SegmentFromRecord(const AidbSegment& stored, HostPathSegment* segment);

/// Stores a paint.
///
/// A custom colour is stored as its process equivalent, with a reference to the first row of
/// globals->customColors that has its kind, flags and name, if that row also has its values.  One whose
/// definition has no process equivalent, or can't be read, keeps kind 3 without values.  The number of a
/// pattern or gradient is the low 32 bits of the host's handle: the caller puts the record's own number
/// there first.  Bytes of `stored` that the kind doesn't use are left alone.
/// @param translation  null, or where the host had the gradient; a coordinate of the largest double means
///                     absent.  Only fills pass one
void ColorToRecord(const HostColor& color, AidbColor* stored, const HostPoint* translation = nullptr);

/// Reads a paint back.
///
/// A reference to a row of the custom colour table whose host colour is known becomes kind 3 with that
/// colour and tint; else the process values count.  Kind 3 without a resolved reference comes out with a
/// null colour, which the caller has to replace.  A pattern's or gradient's number comes out in place of
/// the handle, likewise.  Unknown kinds have no values; all bytes of `color` are written.
/// @param translation  null, or receives the gradient's stored translation; the largest double in both
///                     coordinates if it is absent.  Untouched for other paints
void ColorFromRecord(const AidbColor& stored, HostColor* color, HostPoint* translation = nullptr);

/// `translation` belongs to the fill; see ColorToRecord.
void PathStyleToRecord(const HostPathStyle& style, AidbStyle* stored, const HostPoint* translation = nullptr);

/// Flags and small numbers come back sign-extended from 16 bits.  The dash count is held within 0 to 6, so
/// that a damaged record can't lead a host beyond its array.
void PathStyleFromRecord(const AidbStyle& stored, HostPathStyle* style, HostPoint* translation = nullptr);

/// The opacity of a stop isn't stored; it comes back as 1.
void GradientStopToRecord(const HostGradientStop& stop, AidbGradientStop* stored);
void GradientStopFromRecord(const AidbGradientStop& stored, HostGradientStop* stop);

/// Bounds are cut to 16 bits, and come back sign-extended; the other numbers come back unsigned.
void RasterInfoToRecord(const HostRasterRecord& raster, AidbRasterInfo* stored);
void RasterInfoFromRecord(const AidbRasterInfo& stored, HostRasterRecord* raster);

/// Reads a custom colour's definition and name (platform encoding, cut at 254 bytes).  On a host error,
/// which is returned, the entry is zero but for a kind of -1, which equals no row and has no process
/// equivalent.
HostError FetchCustomColor(CustomColorHandle color, customColorEntry* entry);
