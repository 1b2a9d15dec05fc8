/// Suites that draw and compute: off-screen drawing, plane mathematics.
#pragma once

#include "suites/host_types.h"

extern "C" {

enum : int32_t { kDrawOutputPort = 2 };

/* What one DrawArt call draws.  Fields that a caller doesn't set are 0. */
typedef struct HostDrawData {
    uint32_t version;   /* 11 */
    uint32_t options;   /* bits of the host; 15 draws fills, strokes, images and text */
    int32_t outputKind; /* kDrawOutputPort */
    HostPoint origin;   /* the art point that falls on the port's upper left corner */
    HostMatrix matrix;  /* art units to pixels, applied behind the move of `origin` to (0, 0) */
    ArtHandle art;      /* drawn with all its members */
    double threshold;   /* the host's matter */
    uint16_t colors[4]; /* the host's matter: colours of its highlights */
    PortHandle port;
} HostDrawData;

/* AI Draw Art Suite, version 11.  Pixels have their rows from the top, y growing downward. */
typedef struct AIDrawArtSuite {
    /* An off-screen port, the caller's until ReleasePort. */
    HostError (*NewOffscreenPort)(int32_t width, int32_t height, PortHandle* port);
    HostError (*FillPort)(PortHandle port, const HostColor* color);
    HostError (*DrawArt)(const HostDrawData* data);

    /* 4 bytes a pixel: one unused, red, green, blue.  `rowPixels` is the length of a row in pixels and may
       exceed the width.  The memory is the port's. */
    HostError (*GetPortPixels)(PortHandle port, const uint8_t** pixels, int32_t* rowPixels);
    HostError (*ReleasePort)(PortHandle port);
} AIDrawArtSuite;

/* AI Real Math Suite, version 3. */
typedef struct AIRealMathSuite {
    void (*SetScaleMatrix)(HostMatrix* matrix, double x, double y);
    void (*SetTranslationMatrix)(HostMatrix* matrix, double x, double y);
    void (*TransformPoint)(const HostMatrix* matrix, const HostPoint* from, HostPoint* to);

    /* In place; kHostBadParameter, and the matrix untouched, if it has no inverse. */
    HostError (*InvertMatrix)(HostMatrix* matrix);

    int32_t (*PointsEqual)(const HostPoint* a, const HostPoint* b); /* exactly */

    /* Moves each edge inward, outward for values below 0. */
    void (*InsetRect)(HostRect* rect, float x, float y);
    int32_t (*PointInRect)(const HostPoint* point, const HostRect* rect); /* edges included */
    void (*OffsetRect)(HostRect* rect, double x, double y);

    /* Each applies one more map behind those that the matrix holds already. */
    void (*ConcatTranslation)(HostMatrix* matrix, double x, double y);
    void (*ConcatScale)(HostMatrix* matrix, double x, double y);
    void (*ConcatRotation)(HostMatrix* matrix, double radians); /* counterclockwise */
    void (*ConcatMatrix)(HostMatrix* matrix, const HostMatrix* last);
} AIRealMathSuite;

} /* extern "C" */
