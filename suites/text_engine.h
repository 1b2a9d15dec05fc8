/// Suites of the text engine: ranges, stories, the attributes of characters and paragraphs.
///
/// Text is UTF-16.  A position counts its units from the start of the story, and a paragraph ends with
/// U+000D.
///
/// References are opaque and counted.  One that comes out of an operation is the caller's own use of it,
/// which ends with `Release`; `AddRef` begins a further one.  A reference that goes in stays the caller's.
/// No reference outlives the call of the plug-in in which it was given.  Each kind of reference has its own
/// AddRef and Release, in its own suite.
///
/// The rules of suites/art.h on out values hold here too; a reference that is none or was released gives
/// kHostBadHandle.  Flags are 0 or 1, and any other number that goes in counts as 1.
#pragma once

#include "suites/host_types.h"

extern "C" {

typedef struct HostTextFrameTag* TextFrameRef;
typedef struct HostTextRangeTag* TextRangeRef;
typedef struct HostStoryTag* StoryRef;
typedef struct HostCharFeaturesTag* CharFeaturesRef;
typedef struct HostParaFeaturesTag* ParaFeaturesRef;
typedef struct HostFontTag* FontRef;
typedef struct HostKinsokuTag* KinsokuRef;
typedef struct HostKinsokuSetTag* KinsokuSetRef;
typedef struct HostTextPaintTag* ApplicationPaintRef;
typedef struct HostTextResourcesTag* ApplicationTextResourcesRef;
typedef struct HostRealArrayTag* ArrayRealRef;

/* ATE TextFrame Suite, version 101. */
typedef struct ATETextFrameSuite {
    HostError (*AddRef)(TextFrameRef frame);
    HostError (*Release)(TextFrameRef frame);

    /* What turns and stretches the letters.  The engine's y grows downward: b and c have the reverse sign of
       those in art coordinates, and the translation is the engine's own and means nothing there. */
    HostError (*GetMatrix)(TextFrameRef frame, HostMatrix* matrix);
} ATETextFrameSuite;

/* ATE TextRange Suite, version 1: a stretch of a story; start and end may be equal. */
typedef struct ATETextRangeSuite {
    HostError (*AddRef)(TextRangeRef range);
    HostError (*Release)(TextRangeRef range);

    /* Moves the range within its story.  kHostBadParameter if it would leave the story. */
    HostError (*SetRange)(TextRangeRef range, int32_t start, int32_t end);
    HostError (*GetStart)(TextRangeRef range, int32_t* start);
    HostError (*GetSize)(TextRangeRef range, int32_t* size);
    HostError (*GetStory)(TextRangeRef range, StoryRef* story);

    /* Writes the text in the platform's encoding, at most `capacity` - 1 bytes and a NUL, and sets *length to
       the length of the whole text.  What the encoding doesn't hold, and a NUL in the text, becomes '?'; of
       a surrogate pair the first unit gives the '?' and the second nothing. */
    HostError (*GetContents)(TextRangeRef range, char* text, int32_t capacity, int32_t* length);

    /* New features with what all characters of the range have alike; of an empty range, what a character
       put there would have. */
    HostError (*GetLocalCharFeatures)(TextRangeRef range, CharFeaturesRef* features);
    HostError (*GetLocalParaFeatures)(TextRangeRef range, ParaFeaturesRef* features);

    /* Lays the features that have a value over each character of the range; of an empty range, over what
       InsertAfter puts there next. */
    HostError (*SetLocalCharFeatures)(TextRangeRef range, CharFeaturesRef features);
    HostError (*SetLocalParaFeatures)(TextRangeRef range, ParaFeaturesRef features);

    /* The range is empty afterwards. */
    HostError (*Remove)(TextRangeRef range);

    /* Puts `count` units behind the range, which then ends behind them. */
    HostError (*InsertAfter)(TextRangeRef range, const char16_t* text, int32_t count);
} ATETextRangeSuite;

/* ATE Story Suite, version 1: the whole text of a frame, or of a chain of frames. */
typedef struct ATEStorySuite {
    HostError (*AddRef)(StoryRef story);
    HostError (*Release)(StoryRef story);
    HostError (*GetSize)(StoryRef story, int32_t* size);

    /* Kerning in front of a position, in thousandths of an em; 0 for none.  The end of the story counts too.
       Reading takes the start of a range of the story. */
    HostError (*GetKerning)(StoryRef story, TextRangeRef at, int32_t* kerning);
    HostError (*SetKerning)(StoryRef story, int32_t at, int32_t kerning);
} ATEStorySuite;

/* ATE CharFeatures Suite, version 101: attributes of characters, each with a value or without.  Reading one
   without gives kHostNotFound.  Lengths are points; scales are shares, 1.0 being as designed. */
typedef struct ATECharFeaturesSuite {
    HostError (*AddRef)(CharFeaturesRef features);
    HostError (*Release)(CharFeaturesRef features);

    HostError (*GetFill)(CharFeaturesRef features, int32_t* fill);
    HostError (*GetFillColor)(CharFeaturesRef features, ApplicationPaintRef* paint);
    HostError (*GetStroke)(CharFeaturesRef features, int32_t* stroke);
    HostError (*GetStrokeColor)(CharFeaturesRef features, ApplicationPaintRef* paint);
    HostError (*GetFillOverprint)(CharFeaturesRef features, int32_t* overprint);
    HostError (*GetStrokeOverprint)(CharFeaturesRef features, int32_t* overprint);
    HostError (*GetLineCap)(CharFeaturesRef features, int32_t* cap);   /* the engine's number */
    HostError (*GetLineJoin)(CharFeaturesRef features, int32_t* join); /* the engine's number */
    HostError (*GetLineWidth)(CharFeaturesRef features, double* width);
    HostError (*GetMiterLimit)(CharFeaturesRef features, double* limit);
    HostError (*GetLineDashOffset)(CharFeaturesRef features, double* offset);
    HostError (*GetLineDashArray)(CharFeaturesRef features, ArrayRealRef* lengths);
    HostError (*GetFont)(CharFeaturesRef features, FontRef* font);
    HostError (*GetFontSize)(CharFeaturesRef features, double* size);
    HostError (*GetLeading)(CharFeaturesRef features, double* leading); /* 0 while it is automatic */
    HostError (*GetBaselineShift)(CharFeaturesRef features, double* shift);
    HostError (*GetTracking)(CharFeaturesRef features, int32_t* tracking); /* thousandths of an em */
    HostError (*GetHorizontalScale)(CharFeaturesRef features, double* scale);
    HostError (*GetVerticalScale)(CharFeaturesRef features, double* scale);

    /* 0 none, 1 traditional, 2 expert, 3 JIS78, 4 JIS83. */
    HostError (*GetJapaneseAlternate)(CharFeaturesRef features, int32_t* form);

    /* Setting gives the attribute a value; kHostBadParameter for one that it can't have. */
    HostError (*SetFill)(CharFeaturesRef features, int32_t fill);
    HostError (*SetFillColor)(CharFeaturesRef features, ApplicationPaintRef paint);
    HostError (*SetStroke)(CharFeaturesRef features, int32_t stroke);
    HostError (*SetStrokeColor)(CharFeaturesRef features, ApplicationPaintRef paint);
    HostError (*SetFillOverprint)(CharFeaturesRef features, int32_t overprint);
    HostError (*SetStrokeOverprint)(CharFeaturesRef features, int32_t overprint);
    HostError (*SetLineCap)(CharFeaturesRef features, int32_t cap);
    HostError (*SetLineJoin)(CharFeaturesRef features, int32_t join);
    HostError (*SetLineWidth)(CharFeaturesRef features, double width);
    HostError (*SetMiterLimit)(CharFeaturesRef features, double limit);
    HostError (*SetLineDashOffset)(CharFeaturesRef features, double offset);
    HostError (*SetLineDashArray)(CharFeaturesRef features, ArrayRealRef lengths);
    HostError (*SetFont)(CharFeaturesRef features, FontRef font);
    HostError (*SetFontSize)(CharFeaturesRef features, double size);
    HostError (*SetLeading)(CharFeaturesRef features, double leading);
    HostError (*SetAutoLeading)(CharFeaturesRef features, int32_t automatic);
    HostError (*SetBaselineShift)(CharFeaturesRef features, double shift);
    HostError (*SetTracking)(CharFeaturesRef features, int32_t tracking);
    HostError (*SetHorizontalScale)(CharFeaturesRef features, double scale);
    HostError (*SetVerticalScale)(CharFeaturesRef features, double scale);
    HostError (*SetJapaneseAlternate)(CharFeaturesRef features, int32_t form);
} ATECharFeaturesSuite;

/* ATE ParaFeatures Suite, version 101: the same for attributes of paragraphs. */
typedef struct ATEParaFeaturesSuite {
    HostError (*AddRef)(ParaFeaturesRef features);
    HostError (*Release)(ParaFeaturesRef features);

    HostError (*GetFirstLineIndent)(ParaFeaturesRef features, double* indent);
    HostError (*GetStartIndent)(ParaFeaturesRef features, double* indent);
    HostError (*GetEndIndent)(ParaFeaturesRef features, double* indent);

    /* 0 left, 1 right, 2 centre; justified with the last line 3 left, 4 right, 5 centred, 6 justified too. */
    HostError (*GetJustification)(ParaFeaturesRef features, int32_t* justification);
    HostError (*GetAutoHyphenation)(ParaFeaturesRef features, int32_t* automatic);
    HostError (*GetHyphenationBefore)(ParaFeaturesRef features, int32_t* characters);
    HostError (*GetHyphenationAfter)(ParaFeaturesRef features, int32_t* characters);
    HostError (*GetHyphenLimit)(ParaFeaturesRef features, int32_t* lines);

    /* Shares of a blank's width and of an em. */
    HostError (*GetMinimumWordSpacing)(ParaFeaturesRef features, double* spacing);
    HostError (*GetDesiredWordSpacing)(ParaFeaturesRef features, double* spacing);
    HostError (*GetMaximumWordSpacing)(ParaFeaturesRef features, double* spacing);
    HostError (*GetMinimumLetterSpacing)(ParaFeaturesRef features, double* spacing);
    HostError (*GetDesiredLetterSpacing)(ParaFeaturesRef features, double* spacing);
    HostError (*GetMaximumLetterSpacing)(ParaFeaturesRef features, double* spacing);
    HostError (*GetRepeatedCharacters)(ParaFeaturesRef features, int32_t* handled);
    HostError (*GetBunriKinshi)(ParaFeaturesRef features, int32_t* bunriKinshi);
    HostError (*GetBurasagari)(ParaFeaturesRef features, int32_t* type); /* 0 none, 1 standard, 2 strong */

    /* A null kinsoku where the paragraph has none. */
    HostError (*GetKinsoku)(ParaFeaturesRef features, KinsokuRef* kinsoku);

    HostError (*SetFirstLineIndent)(ParaFeaturesRef features, double indent);
    HostError (*SetStartIndent)(ParaFeaturesRef features, double indent);
    HostError (*SetEndIndent)(ParaFeaturesRef features, double indent);
    HostError (*SetJustification)(ParaFeaturesRef features, int32_t justification);
    HostError (*SetAutoHyphenation)(ParaFeaturesRef features, int32_t automatic);
    HostError (*SetHyphenationBefore)(ParaFeaturesRef features, int32_t characters);
    HostError (*SetHyphenationAfter)(ParaFeaturesRef features, int32_t characters);
    HostError (*SetHyphenLimit)(ParaFeaturesRef features, int32_t lines);
    HostError (*SetMinimumWordSpacing)(ParaFeaturesRef features, double spacing);
    HostError (*SetDesiredWordSpacing)(ParaFeaturesRef features, double spacing);
    HostError (*SetMaximumWordSpacing)(ParaFeaturesRef features, double spacing);
    HostError (*SetMinimumLetterSpacing)(ParaFeaturesRef features, double spacing);
    HostError (*SetDesiredLetterSpacing)(ParaFeaturesRef features, double spacing);
    HostError (*SetMaximumLetterSpacing)(ParaFeaturesRef features, double spacing);
    HostError (*SetHangingRoman)(ParaFeaturesRef features, int32_t hanging);
    HostError (*SetAutoLeadingPercentage)(ParaFeaturesRef features, double share); /* of the font size */
    HostError (*SetRepeatedCharacters)(ParaFeaturesRef features, int32_t handled);
    HostError (*SetBunriKinshi)(ParaFeaturesRef features, int32_t bunriKinshi);
    HostError (*SetBurasagari)(ParaFeaturesRef features, int32_t type);
    HostError (*SetKinsoku)(ParaFeaturesRef features, KinsokuRef kinsoku); /* a null one: none */
} ATEParaFeaturesSuite;

/* ATE Kinsoku Suite, version 1: rules which characters may begin and end a line. */
typedef struct ATEKinsokuSuite {
    HostError (*AddRef)(KinsokuRef kinsoku);
    HostError (*Release)(KinsokuRef kinsoku);
    HostError (*NewNull)(KinsokuRef* kinsoku);
    HostError (*IsNull)(KinsokuRef kinsoku, int32_t* null);

    /* Writes at most `capacity` - 1 units of the name and a 0.  kHostNotFound for a null kinsoku. */
    HostError (*GetName)(KinsokuRef kinsoku, char16_t* name, int32_t capacity);
} ATEKinsokuSuite;

/* ATE KinsokuSet Suite, version 1. */
typedef struct ATEKinsokuSetSuite {
    HostError (*AddRef)(KinsokuSetRef set);
    HostError (*Release)(KinsokuSetRef set);
    HostError (*GetSize)(KinsokuSetRef set, int32_t* size);

    /* May be a null kinsoku. */
    HostError (*GetNth)(KinsokuSetRef set, int32_t index, KinsokuRef* kinsoku);
} ATEKinsokuSetSuite;

/* ATE ApplicationTextResources Suite, version 1: what all documents share. */
typedef struct ATEApplicationTextResourcesSuite {
    HostError (*AddRef)(ApplicationTextResourcesRef resources);
    HostError (*Release)(ApplicationTextResourcesRef resources);
    HostError (*GetKinsokuSet)(ApplicationTextResourcesRef resources, KinsokuSetRef* set);
} ATEApplicationTextResourcesSuite;

/* ATE ApplicationPaint Suite, ATE Font Suite and ATE ArrayReal Suite, version 1 each: what these are to the
   rest of the host, the suites of suites/text.h know. */
typedef struct ATEApplicationPaintSuite {
    HostError (*AddRef)(ApplicationPaintRef paint);
    HostError (*Release)(ApplicationPaintRef paint);
} ATEApplicationPaintSuite;

typedef struct ATEFontSuite {
    HostError (*AddRef)(FontRef font);
    HostError (*Release)(FontRef font);
} ATEFontSuite;

typedef struct ATEArrayRealSuite {
    HostError (*AddRef)(ArrayRealRef array);
    HostError (*Release)(ArrayRealRef array);
} ATEArrayRealSuite;

} /* extern "C" */
