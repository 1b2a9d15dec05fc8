/// Suites over the art tree: art objects, groups, paths, blending, tags and the kinds of art that hold
/// other art.
///
/// Every operation may be called only between an acquire and a release.  A handle that is none or no
/// longer names a living object gives kHostBadHandle, art of a kind that the operation doesn't take
/// kHostBadArt, a missing out pointer kHostBadParameter; on any error the out values stay untouched.
/// Texts with a NUL that come out belong to the host and stand until the next call of the same suite.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* AI Art Suite, version 17: the tree. */
typedef struct AIArtSuite {
    /* The layer's root group, which is always there; its members are the layer's art, topmost first. */
    HostError (*GetFirstArtOfLayer)(LayerHandle layer, ArtHandle* art);
    HostError (*GetArtKind)(ArtHandle art, int32_t* kind);

    /* Bits of the attributes in `mask`, others 0.  A container reports kArtSelected if it and all its
       members are selected. */
    HostError (*GetArtAttributes)(ArtHandle art, int32_t mask, int32_t* attributes);

    /* None at the end, which is no error. */
    HostError (*GetFirstChild)(ArtHandle art, ArtHandle* child);
    HostError (*GetNextSibling)(ArtHandle art, ArtHandle* sibling);
    HostError (*GetParent)(ArtHandle art, ArtHandle* parent);

    /* The box of the art's geometry by its control points, without line widths.  All zero for art that
       has no extent. */
    HostError (*GetArtBounds)(ArtHandle art, HostRect* bounds);
    HostError (*GetLayerOfArt)(ArtHandle art, LayerHandle* layer);

    /* Makes art; the document owns it.  kHostBadPlace if the prep art is no container that takes it. */
    HostError (*NewArt)(int32_t kind, int32_t paintOrder, ArtHandle prep, ArtHandle* art);

    /* Removes art with all its members; their handles go stale. */
    HostError (*DisposeArt)(ArtHandle art);

    /* Moves art with all its members; handles stay good. */
    HostError (*ReorderArt)(ArtHandle art, int32_t paintOrder, ArtHandle prep);
} AIArtSuite;

/* AI Group Suite, version 5. */
typedef struct AIGroupSuite {
    HostError (*GetGroupClipped)(ArtHandle group, int32_t* clipped);
    HostError (*SetGroupClipped)(ArtHandle group, int32_t clipped);
} AIGroupSuite;

/* AI Path Suite, version 11. */
typedef struct AIPathSuite {
    HostError (*GetPathSegmentCount)(ArtHandle path, int32_t* count);

    /* kHostBadParameter if the range leaves the path. */
    HostError (*GetPathSegments)(ArtHandle path, int32_t first, int32_t count, HostPathSegment* segments);

    /* Replaces or, from the end on, adds; `first` may be at most the count. */
    HostError (*SetPathSegments)(ArtHandle path, int32_t first, int32_t count,
                                 const HostPathSegment* segments);

    /* Those behind move up; kHostBadParameter if the range leaves the path. */
    HostError (*DeletePathSegments)(ArtHandle path, int32_t first, int32_t count);
    HostError (*GetPathClosed)(ArtHandle path, int32_t* closed);
    HostError (*SetPathClosed)(ArtHandle path, int32_t closed);
    HostError (*GetPathGuide)(ArtHandle path, int32_t* guide);
} AIPathSuite;

/* AI Blend Style Suite, version 5: how any art lies on what is below it. */
typedef struct AIBlendStyleSuite {
    HostError (*GetBlendingMode)(ArtHandle art, int32_t* mode);
    HostError (*SetBlendingMode)(ArtHandle art, int32_t mode);
    HostError (*GetOpacity)(ArtHandle art, double* opacity); /* 0 to 1 */
    HostError (*SetOpacity)(ArtHandle art, double opacity);
    HostError (*GetIsolated)(ArtHandle art, int32_t* isolated);
    HostError (*SetIsolated)(ArtHandle art, int32_t isolated);
    HostError (*GetKnockout)(ArtHandle art, int32_t* knockout); /* 0 off, 1 on, 2 as its parent */
    HostError (*SetKnockout)(ArtHandle art, int32_t knockout);
    HostError (*GetAlphaIsShape)(ArtHandle art, int32_t* alphaIsShape);
    HostError (*SetAlphaIsShape)(ArtHandle art, int32_t alphaIsShape);
} AIBlendStyleSuite;

/* AI Art Style Suite, version 7. */
typedef struct AIArtStyleSuite {
    /* The art that the art's style draws in its place; the art itself if the style adds nothing, none if
       it has no style.  The art belongs to the document and is no part of the tree. */
    HostError (*GetStyledArt)(ArtHandle art, ArtHandle* styled);

    /* None if the art has no style. */
    HostError (*GetArtStyle)(ArtHandle art, ArtStyleHandle* style);
    HostError (*GetPaintAttributes)(ArtStyleHandle style, struct HostPathStyle* paint);

    /* A style that paints as a path would be painted.  The two numbers are the host's; 0 and 0 take the paint
       alone.  kHostBadHandle as for AIPathStyleSuite's SetPathStyle. */
    HostError (*NewStyleFromPathStyle)(const struct HostPathStyle* paint, int32_t options, int32_t reserved,
                                       ArtStyleHandle* style);
    HostError (*SetArtStyle)(ArtHandle art, ArtStyleHandle style);
} AIArtStyleSuite;

/* AI Plugin Group Suite, version 6: art that a plug-in computes from other art. */
typedef struct AIPluginGroupSuite {
    /* The group that holds what the plug-in drew; none if there is none. */
    HostError (*GetResultArt)(ArtHandle pluginArt, ArtHandle* result);
    HostError (*CountPluginGroups)(int32_t* count);
    HostError (*GetNthPluginGroup)(int32_t index, PluginGroupHandle* group);
    HostError (*GetPluginGroupName)(PluginGroupHandle group, const char** name);
    HostError (*UsePluginGroup)(ArtHandle pluginArt, PluginGroupHandle group);

    /* Moves `edit` into the plug-in art as what the plug-in computes from. */
    HostError (*SetEditArt)(ArtHandle pluginArt, ArtHandle edit);
    HostError (*SetVersion)(ArtHandle pluginArt, int32_t major, int32_t minor);
    HostError (*SetDataSize)(ArtHandle pluginArt, int32_t bytes);
    HostError (*SetDataRange)(ArtHandle pluginArt, const void* data, int32_t start, int32_t bytes);
} AIPluginGroupSuite;

enum : int32_t { kPlaceNewArt = 5 };

/* What a place request asks for.  Words without a meaning here are the host's own. */
typedef struct HostPlaceRequest {
    int32_t mode; /* kPlaceNewArt */
    ArtHandle oldArt, newArt;
    FilePathHandle file;
    int32_t type;  /* 3 */
    int32_t flag;  /* 1 */
    int32_t extra; /* 0 */
} HostPlaceRequest;

/* AI Placed Suite, version 8: linked files. */
typedef struct AIPlacedSuite {
    /* The file's full path into `path`, in the platform's own separators; kHostNotFound if unknown. */
    HostError (*GetPlacedFile)(ArtHandle placed, UnicodeStringHandle path);
    HostError (*GetPlacedMatrix)(ArtHandle placed, HostMatrix* matrix);
    HostError (*GetPlaceOptions)(ArtHandle placed, int32_t* method, int32_t* alignment, int32_t* clip);

    /* Makes art of a file on the current layer, above all other art, of the picture's own size and somewhere
       on the page, and puts it into `newArt`.  The art is of kind kArtPlaced, or kArtRaster if the host takes
       the picture in.  kHostNotFound if the file can't be read, kHostRefused if it is no picture,
       kHostBadPlace if the layer is hidden or locked. */
    HostError (*ExecutePlaceRequest)(HostPlaceRequest* request);
    HostError (*SetPlacedMatrix)(ArtHandle placed, const HostMatrix* matrix);
    HostError (*SetPlaceOptions)(ArtHandle placed, int32_t method, int32_t alignment, int32_t clip);
} AIPlacedSuite;

/* AI Transform Art Suite, version 3. */
typedef struct AITransformArtSuite {
    /* Moves, turns or scales art with all its members.  `lineScale` is the factor for line widths, `flags`
       are bits of the host: what of the art goes with it; 0x6F and 0x7F are all of it, 1 the art without its
       paint. */
    HostError (*TransformArt)(ArtHandle art, const HostMatrix* matrix, double lineScale, uint32_t flags);
} AITransformArtSuite;

/* AI Tag Suite, version 4: named values on art.  Names, types and values are bytes, passed unchanged. */
typedef struct AITagSuite {
    HostError (*CountTags)(ArtHandle art, int32_t* count);
    HostError (*GetNthTagName)(ArtHandle art, int32_t index, const char** name);
    HostError (*GetTagType)(ArtHandle art, const char* name, const char** type);

    /* Only for tags of the type "string". */
    HostError (*GetTagString)(ArtHandle art, const char* name, const char** value);

    /* Adds the tag or replaces the one of that name. */
    HostError (*SetTag)(ArtHandle art, const char* name, const char* type, const char* value);
    HostError (*RemoveTag)(ArtHandle art, const char* name);
} AITagSuite;

} /* extern "C" */
