/// Where the suites' tables of functions lie while they are held: one slot for each suite.
///
/// Private to plugin/host; everyone else calls the accessors of plugin/host/suites.h.
#pragma once

/// Every suite that the plug-in uses, in the order of acquiring: ROW(slot, name, version).
// clang-format off
#define FOR_EACH_HOST_SUITE(ROW) \
    ROW(SPBlocks, "SP Blocks Suite", 2)                                             \
    ROW(SPAccess, "SP Access Suite", 3)                                             \
    ROW(AIPlugin, "AI Plugin Suite", 5)                                             \
    ROW(AIMdMemory, "AI MdMemory Suite", 3)                                         \
    ROW(AIRealMath, "AI Real Math Suite", 3)                                        \
    ROW(AIFixedMath, "AI Fixed Math Suite", 4)                                      \
    ROW(AIArt, "AI Art Suite", 17)                                                  \
    ROW(AIUserInterfaceTheme, "AI User Interface Theme Suite", 2)                   \
    ROW(AIPanel, "AI Panel Suite", 2)                                               \
    ROW(AIPanelFlyoutMenu, "AI Panel Flyout Menu Suite", 2)                         \
    ROW(AIUser, "AI User Suite", 12)                                                \
    ROW(AIRuntime, "AI Runtime Suite", 12)                                          \
    ROW(AIDocument, "AI Document Suite", 14)                                        \
    ROW(AIDataFilter, "AI Data Filter Suite", 8)                                    \
    ROW(AIPath, "AI Path Suite", 11)                                                \
    ROW(AIMatchingArt, "AI Matching Art Suite", 7)                                  \
    ROW(AIDocumentList, "AI Document List Suite", 8)                                \
    ROW(AIDocumentView, "AI Document View Suite", 12)                               \
    ROW(AIUndo, "AI Undo Suite", 7)                                                 \
    ROW(AIContext, "AI Context Suite", 7)                                           \
    ROW(AIPreference, "AI Preference Suite", 6)                                     \
    ROW(AIDrawArt, "AI Draw Art Suite", 11)                                         \
    ROW(AIGradient, "AI Gradient Suite", 9)                                         \
    ROW(AIGroup, "AI Group Suite", 5)                                               \
    ROW(AIRaster, "AI Raster Suite", 10)                                            \
    ROW(AILayer, "AI Layer Suite", 13)                                              \
    ROW(AIPattern, "AI Pattern Suite", 10)                                          \
    ROW(AIPlaced, "AI Placed Suite", 8)                                             \
    ROW(AICustomColor, "AI Custom Color Suite", 8)                                  \
    ROW(AIPathStyle, "AI Path Style Suite", 13)                                     \
    ROW(AISwatchList, "AI Swatch List Suite", 7)                                    \
    ROW(AITransformArt, "AI Transform Art Suite", 3)                                \
    ROW(AIHardSoft, "AI Hard Soft Suite", 5)                                        \
    ROW(AIMesh, "AI Mesh Suite", 6)                                                 \
    ROW(AIMeshPatch, "AI Mesh Patch Suite", 3)                                      \
    ROW(AIMeshVertex, "AI Mesh Vertex Suite", 4)                                    \
    ROW(AIMeshSegment, "AI Mesh Segment Suite", 3)                                  \
    ROW(AIPluginGroup, "AI Plugin Group Suite", 6)                                  \
    ROW(AITabletData, "AI TabletData Suite", 3)                                     \
    ROW(AIATETextUtil, "AI ATE Text Util Suite", 4)                                 \
    ROW(AITextFrame, "AI Text Frame Suite", 4)                                      \
    ROW(AIFont, "AI Font Suite", 6)                                                 \
    ROW(AIForeignObject, "AI Foreign Object Suite", 4)                              \
    ROW(AIATEPaint, "AIATE Paint Suite", 3)                                         \
    ROW(ATEApplicationPaint, "ATE ApplicationPaint Suite", 1)                       \
    ROW(ATECompFont, "ATE CompFont Suite", 1)                                       \
    ROW(ATECompFontClass, "ATE CompFontClass Suite", 1)                             \
    ROW(ATECompFontClassSet, "ATE CompFontClassSet Suite", 1)                       \
    ROW(ATECompFontComponent, "ATE CompFontComponent Suite", 1)                     \
    ROW(ATECompFontSet, "ATE CompFontSet Suite", 1)                                 \
    ROW(ATEGlyphRun, "ATE GlyphRun Suite", 1)                                       \
    ROW(ATEGlyphRunsIterator, "ATE GlyphRunsIterator Suite", 1)                     \
    ROW(ATEMojiKumi, "ATE MojiKumi Suite", 1)                                       \
    ROW(ATEMojiKumiSet, "ATE MojiKumiSet Suite", 1)                                 \
    ROW(ATETextFrame, "ATE TextFrame Suite", 101)                                   \
    ROW(ATETextFramesIterator, "ATE TextFramesIterator Suite", 1)                   \
    ROW(ATETextLine, "ATE TextLine Suite", 1)                                       \
    ROW(ATETextLinesIterator, "ATE TextLinesIterator Suite", 1)                     \
    ROW(ATETextResources, "ATE TextResources Suite", 1)                             \
    ROW(ATEApplicationTextResources, "ATE ApplicationTextResources Suite", 1)       \
    ROW(ATEDocumentTextResources, "ATE DocumentTextResources Suite", 101)           \
    ROW(ATEArrayApplicationPaintRef, "ATE ArrayApplicationPaintRef Suite", 1)       \
    ROW(ATEArrayReal, "ATE ArrayReal Suite", 1)                                     \
    ROW(ATEArrayBool, "ATE ArrayBool Suite", 1)                                     \
    ROW(ATEArrayInteger, "ATE ArrayInteger Suite", 1)                               \
    ROW(ATEArrayLineCapType, "ATE ArrayLineCapType Suite", 1)                       \
    ROW(ATEArrayFigureStyle, "ATE ArrayFigureStyle Suite", 1)                       \
    ROW(ATEArrayLineJoinType, "ATE ArrayLineJoinType Suite", 1)                     \
    ROW(ATEArrayWariChuJustification, "ATE ArrayWariChuJustification Suite", 1)     \
    ROW(ATEArrayStyleRunAlignment, "ATE ArrayStyleRunAlignment Suite", 1)           \
    ROW(ATEArrayAutoKernType, "ATE ArrayAutoKernType Suite", 1)                     \
    ROW(ATEArrayBaselineDirection, "ATE ArrayBaselineDirection Suite", 1)           \
    ROW(ATEArrayLanguage, "ATE ArrayLanguage Suite", 1)                             \
    ROW(ATEArrayFontCapsOption, "ATE ArrayFontCapsOption Suite", 1)                 \
    ROW(ATEArrayFontBaselineOption, "ATE ArrayFontBaselineOption Suite", 1)         \
    ROW(ATEArrayParagraphJustification, "ATE ArrayParagraphJustification Suite", 1) \
    ROW(ATEArrayArrayReal, "ATE ArrayArrayReal Suite", 1)                           \
    ROW(ATEArrayBurasagariType, "ATE ArrayBurasagariType Suite", 1)                 \
    ROW(ATEArrayPreferredKinsokuOrder, "ATE ArrayPreferredKinsokuOrder Suite", 1)   \
    ROW(ATEArrayKinsokuRef, "ATE ArrayKinsokuRef Suite", 1)                         \
    ROW(ATEArrayMojiKumiRef, "ATE ArrayMojiKumiRef Suite", 1)                       \
    ROW(ATEArrayMojiKumiSetRef, "ATE ArrayMojiKumiSetRef Suite", 1)                 \
    ROW(ATEArrayTabStopsRef, "ATE ArrayTabStopsRef Suite", 1)                       \
    ROW(ATEArrayLeadingType, "ATE ArrayLeadingType Suite", 1)                       \
    ROW(ATEArrayFontRef, "ATE ArrayFontRef Suite", 1)                               \
    ROW(ATEArrayGlyphID, "ATE ArrayGlyphID Suite", 1)                               \
    ROW(ATEArrayRealPoint, "ATE ArrayRealPoint Suite", 1)                           \
    ROW(ATEArrayRealMatrix, "ATE ArrayRealMatrix Suite", 1)                         \
    ROW(ATECharFeatures, "ATE CharFeatures Suite", 101)                             \
    ROW(ATECharInspector, "ATE CharInspector Suite", 101)                           \
    ROW(ATECharStyle, "ATE CharStyle Suite", 1)                                     \
    ROW(ATECharStyles, "ATE CharStyles Suite", 1)                                   \
    ROW(ATECharStylesIterator, "ATE CharStylesIterator Suite", 1)                   \
    ROW(ATEFind, "ATE Find Suite", 101)                                             \
    ROW(ATEFont, "ATE Font Suite", 1)                                               \
    ROW(ATEGlyph, "ATE Glyph Suite", 1)                                             \
    ROW(ATEGlyphs, "ATE Glyphs Suite", 1)                                           \
    ROW(ATEGlyphsIterator, "ATE GlyphsIterator Suite", 1)                           \
    ROW(ATEKinsoku, "ATE Kinsoku Suite", 1)                                         \
    ROW(ATEKinsokuSet, "ATE KinsokuSet Suite", 1)                                   \
    ROW(ATEParaFeatures, "ATE ParaFeatures Suite", 101)                             \
    ROW(ATEParagraph, "ATE Paragraph Suite", 1)                                     \
    ROW(ATEParagraphsIterator, "ATE ParagraphsIterator Suite", 1)                   \
    ROW(ATEParaInspector, "ATE ParaInspector Suite", 101)                           \
    ROW(ATEParaStyle, "ATE ParaStyle Suite", 1)                                     \
    ROW(ATEParaStyles, "ATE ParaStyles Suite", 1)                                   \
    ROW(ATEParaStylesIterator, "ATE ParaStylesIterator Suite", 1)                   \
    ROW(ATESpell, "ATE Spell Suite", 101)                                           \
    ROW(ATEStories, "ATE Stories Suite", 1)                                         \
    ROW(ATEStory, "ATE Story Suite", 1)                                             \
    ROW(ATETabStop, "ATE TabStop Suite", 1)                                         \
    ROW(ATETabStops, "ATE TabStops Suite", 1)                                       \
    ROW(ATETabStopsIterator, "ATE TabStopsIterator Suite", 1)                       \
    ROW(ATETextRange, "ATE TextRange Suite", 1)                                     \
    ROW(ATETextRanges, "ATE TextRanges Suite", 1)                                   \
    ROW(ATETextRangesIterator, "ATE TextRangesIterator Suite", 1)                   \
    ROW(ATETextRunsIterator, "ATE TextRunsIterator Suite", 1)                       \
    ROW(ATEWordsIterator, "ATE WordsIterator Suite", 1)                             \
    ROW(AIMask, "AI Mask Suite", 5)                                                 \
    ROW(AIBlendStyle, "AI Blend Style Suite", 5)                                    \
    ROW(AIDictionary, "AI Dictionary Suite", 8)                                     \
    ROW(AIDictionaryIterator, "AI Dictionary Iterator Suite", 3)                    \
    ROW(AIArtStyle, "AI Art Style Suite", 7)                                        \
    ROW(AIArtStyleParser, "AI Art Style Parser Suite", 8)                           \
    ROW(AIApplication, "AI Application Suite", 3)                                   \
    ROW(AIRasterize, "AI Rasterize Suite", 10)                                      \
    ROW(AIArtSet, "AI Art Set Suite", 8)                                            \
    ROW(AITag, "AI Tag Suite", 4)                                                   \
    ROW(AIMenu, "AI Menu Suite", 11)                                                \
    ROW(AITimer, "AI Timer Suite", 5)                                               \
    ROW(AINotifier, "AI Notifier Suite", 4)                                         \
    ROW(AIActionManager, "AI Action Manager Suite", 5)                              \
    ROW(AIFilePath, "AI File Path Suite", 5)                                        \
    ROW(AIUnicodeString, "AI Unicode String Suite", 8)
// clang-format on

/// AIArtSlot and its like; null while the suite isn't held.
#define DECLARE_SUITE_SLOT(suite, name, version) extern const void* suite##Slot;
FOR_EACH_HOST_SUITE(DECLARE_SUITE_SLOT)
#undef DECLARE_SUITE_SLOT
