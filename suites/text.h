/// Suites between art and the text engine: text frames, fonts, the paint of text.
///
/// The rules of suites/art.h on handles and out values hold here too, those of suites/text_engine.h on
/// references.
#pragma once

#include "suites/host_types.h"
#include "suites/text_engine.h"

extern "C" {

/* A font for as long as the host runs. */
typedef struct HostFontKeyTag* FontKey;

enum : int32_t { kTextFramePoint = 0, kTextFrameArea = 1, kTextFrameOnPath = 2 };

/* AI Text Frame Suite, version 4. */
typedef struct AITextFrameSuite {
    HostError (*GetKind)(ArtHandle frame, int32_t* kind);
    HostError (*GetOrientation)(ArtHandle frame, int32_t* orientation); /* 0 horizontal, 1 vertical */

    /* kHostBadArt for other kinds than point text. */
    HostError (*GetPointTextAnchor)(ArtHandle frame, HostPoint* anchor);

    /* What the frame shows of its story. */
    HostError (*GetTextRange)(ArtHandle frame, TextRangeRef* range);
    HostError (*GetTextFrame)(ArtHandle frame, TextFrameRef* textFrame);

    /* None for point text.  The path belongs to the frame and is no part of the tree. */
    HostError (*GetPath)(ArtHandle frame, ArtHandle* path);

    /* 1 if the frame shares its story with others. */
    HostError (*IsPartOfLinkedText)(ArtHandle frame, int32_t* linked);

    /* Frames without text, placed as by AIArtSuite's NewArt.  The frame takes `path` over, which has to be a
       path of the tree: it leaves the tree and is the frame's.  `base` is the frame to link to and `append`
       a flag: behind it; a frame of its own has none and 0.  `start` and `end` are in segments of the path.
       kHostBadParameter for another orientation. */
    HostError (*NewPointText)(int32_t paintOrder, ArtHandle prep, int32_t orientation,
                              const HostPoint* anchor, ArtHandle* frame);
    HostError (*NewAreaText)(int32_t paintOrder, ArtHandle prep, int32_t orientation, ArtHandle path,
                             ArtHandle base, int32_t append, ArtHandle* frame);
    HostError (*NewTextOnPath)(int32_t paintOrder, ArtHandle prep, int32_t orientation, ArtHandle path,
                               double start, double end, ArtHandle base, int32_t append, ArtHandle* frame);
} AITextFrameSuite;

/* Word n of the host's own description is words[n - 1].  Words 3 to 14 are class numbers; fonts that may
   stand in for each other have the words 3 to 5 alike. */
typedef struct HostFontRecord {
    int32_t words[16];
} HostFontRecord;

/* AI Font Suite, version 6.  The order of the fonts stays while the machine's fonts do. */
typedef struct AIFontSuite {
    HostError (*CountFonts)(int32_t* count);
    HostError (*GetNthFont)(int32_t index, FontKey* font);

    /* The stable name in the platform's encoding, at most `capacity` - 1 bytes and a NUL. */
    HostError (*GetFontName)(FontKey font, char* name, int32_t capacity);
    HostError (*GetFontRecord)(FontKey font, HostFontRecord* record);
    HostError (*GetEngineFont)(FontKey font, FontRef* engineFont);

    /* Also for a font that this machine doesn't have: a text in it must not be lost when it is stored. */
    HostError (*GetFontKey)(FontRef engineFont, FontKey* font);
} AIFontSuite;

/* The dashes of a stroke in 32 bytes. */
typedef struct HostTextDash {
    int16_t count; /* at most 6 */
    int16_t reserved;
    float offset;
    float lengths[6];
} HostTextDash;

/* AIATE Paint Suite, version 3: between the engine's paint and that of all other art. */
typedef struct AIATEPaintSuite {
    HostError (*GetColor)(ApplicationPaintRef paint, HostColor* color);

    /* kHostBadHandle as for AIPathStyleSuite's SetPathStyle. */
    HostError (*NewPaint)(const HostColor* color, ApplicationPaintRef* paint);

    /* The engine numbers caps and joins in its own way; the other numbers are those of HostPathStyle.
       kHostBadParameter for a number without a meaning. */
    HostError (*LineCapFromEngine)(int32_t engineCap, int32_t* cap);
    HostError (*LineCapToEngine)(int32_t cap, int32_t* engineCap);
    HostError (*LineJoinFromEngine)(int32_t engineJoin, int32_t* join);
    HostError (*LineJoinToEngine)(int32_t join, int32_t* engineJoin);

    /* Count and lengths, as far as there is room for them; the offset stays as it is. */
    HostError (*DashFromEngine)(ArrayRealRef lengths, HostTextDash* dash);
    HostError (*DashToEngine)(const HostTextDash* dash, ArrayRealRef* lengths);
} AIATEPaintSuite;

/* AI ATE Text Util Suite, version 4. */
typedef struct AIATETextUtilSuite {
    HostError (*GetApplicationTextResources)(ApplicationTextResourcesRef* resources);
} AIATETextUtilSuite;

} /* extern "C" */
