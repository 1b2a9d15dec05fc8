/// Suites over paint: path styles, gradients, patterns, custom colours, swatches.
///
/// The rules of suites/art.h on handles, out values and texts hold here too.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* AI Path Style Suite, version 13: the paint of a path. */
typedef struct AIPathStyleSuite {
    /* Reads the paint of `path`.  The handles in `style` stay the document's; they are valid until the
       document changes.  kHostBadArt if `path` is no path. */
    HostError (*GetPathStyle)(ArtHandle path, HostPathStyle* style);

    /* Replaces the paint of `path`.  kHostBadHandle if the style names a gradient, pattern or custom
       colour that the document doesn't have. */
    HostError (*SetPathStyle)(ArtHandle path, const HostPathStyle* style);
} AIPathStyleSuite;

/* AI Gradient Suite, version 9. */
typedef struct AIGradientSuite {
    /* An unnamed linear gradient with two stops, white at 0 and black at 100. */
    HostError (*NewGradient)(GradientHandle* gradient);
    HostError (*GetGradientType)(GradientHandle gradient, int32_t* type);
    HostError (*SetGradientType)(GradientHandle gradient, int32_t type);
    HostError (*GetStopCount)(GradientHandle gradient, int32_t* count);
    HostError (*GetNthStop)(GradientHandle gradient, int32_t index, HostGradientStop* stop);
    HostError (*SetNthStop)(GradientHandle gradient, int32_t index, const HostGradientStop* stop);

    /* `index` may be at most the count. */
    HostError (*InsertStop)(GradientHandle gradient, int32_t index, const HostGradientStop* stop);
} AIGradientSuite;

/* AI Pattern Suite, version 10. */
typedef struct AIPatternSuite {
    HostError (*NewPattern)(PatternHandle* pattern);

    /* A group that the document owns; none if the pattern has no art yet.  The bounds of the group are
       the tile. */
    HostError (*GetPatternArt)(PatternHandle pattern, ArtHandle* art);

    /* The pattern takes a copy of `art`. */
    HostError (*SetPatternArt)(PatternHandle pattern, ArtHandle art);
} AIPatternSuite;

/* AI Custom Color Suite, version 8: named inks. */
typedef struct AICustomColorSuite {
    HostError (*GetCustomColor)(CustomColorHandle color, HostCustomColor* definition);
    HostError (*GetCustomColorName)(CustomColorHandle color, UnicodeStringHandle name);

    /* kHostNotFound for an unknown name. */
    HostError (*GetCustomColorByName)(UnicodeStringHandle name, CustomColorHandle* color);

    /* kHostRefused if the name is taken or empty. */
    HostError (*NewCustomColor)(const HostCustomColor* definition, UnicodeStringHandle name,
                                CustomColorHandle* color);
} AICustomColorSuite;

/* AI Swatch List Suite, version 7: the document's palette. */
typedef struct AISwatchListSuite {
    HostError (*GetSwatchList)(DocumentHandle document, SwatchListHandle* list); /* none: the current one */

    /* The first swatch of that name whose colour is of that kind; kHostNotFound. */
    HostError (*GetSwatchByName)(SwatchListHandle list, UnicodeStringHandle name, int32_t colorKind,
                                 SwatchHandle* swatch);
    HostError (*CountSwatches)(SwatchListHandle list, int32_t* count);
    HostError (*InsertNthSwatch)(SwatchListHandle list, int32_t index, SwatchHandle* swatch);
    HostError (*SetSwatchName)(SwatchHandle swatch, UnicodeStringHandle name);
    HostError (*SetSwatchColor)(SwatchHandle swatch, const HostColor* color);
} AISwatchListSuite;

} /* extern "C" */
