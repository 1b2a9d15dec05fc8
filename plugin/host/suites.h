/// The host's suites by their types.
///
/// Every accessor may be called only between `AcquireHostSuites` and `ReleaseHostSuites`; outside there is
/// no table behind it.  Nothing may keep the reference across calls of the plug-in: after a release the
/// host may move or unload the suite.
#pragma once

#include "suites/art.h"
#include "suites/document.h"
#include "suites/draw.h"
#include "suites/frame.h"
#include "suites/mesh.h"
#include "suites/paint.h"
#include "suites/panel.h"
#include "suites/raster.h"
#include "suites/text.h"

// Art
const AIArtSuite& ArtSuite();
const AIGroupSuite& GroupSuite();
const AIPathSuite& PathSuite();
const AIBlendStyleSuite& BlendStyleSuite();
const AIArtStyleSuite& ArtStyleSuite();
const AIPluginGroupSuite& PluginGroupSuite();
const AIPlacedSuite& PlacedSuite();
const AIRasterSuite& RasterSuite();
const AIMeshSuite& MeshSuite();
const AIMeshVertexSuite& MeshVertexSuite();
const AIMeshSegmentSuite& MeshSegmentSuite();
const AITransformArtSuite& TransformArtSuite();
const AITagSuite& TagSuite();

// Paint
const AIPathStyleSuite& PathStyleSuite();
const AIGradientSuite& GradientSuite();
const AIPatternSuite& PatternSuite();
const AICustomColorSuite& CustomColorSuite();
const AISwatchListSuite& SwatchListSuite();

// Text
const AITextFrameSuite& TextFrameSuite();
const AIFontSuite& FontSuite();
const AIATEPaintSuite& ATEPaintSuite();
const AIATETextUtilSuite& ATETextUtilSuite();
const ATETextFrameSuite& EngineTextFrameSuite();
const ATETextRangeSuite& EngineTextRangeSuite();
const ATEStorySuite& EngineStorySuite();
const ATECharFeaturesSuite& EngineCharFeaturesSuite();
const ATEParaFeaturesSuite& EngineParaFeaturesSuite();
const ATEKinsokuSuite& EngineKinsokuSuite();
const ATEKinsokuSetSuite& EngineKinsokuSetSuite();
const ATEApplicationTextResourcesSuite& EngineApplicationTextResourcesSuite();
const ATEApplicationPaintSuite& EngineApplicationPaintSuite();
const ATEFontSuite& EngineFontSuite();
const ATEArrayRealSuite& EngineArrayRealSuite();

// Document
const AILayerSuite& LayerSuite();
const AIDocumentViewSuite& DocumentViewSuite();
const AIUndoSuite& UndoSuite();
const AIHardSoftSuite& HardSoftSuite();

// Drawing and mathematics
const AIDrawArtSuite& DrawArtSuite();
const AIRealMathSuite& RealMathSuite();

// Frame
const AIUserSuite& UserSuite();
const AIUnicodeStringSuite& UnicodeStringSuite();
const AIFilePathSuite& FilePathSuite();
const AIPluginSuite& PluginSuite();
const SPAccessSuite& AccessSuite();
const AIMenuSuite& MenuSuite();
const AITimerSuite& TimerSuite();
const AINotifierSuite& NotifierSuite();
const AIPanelSuite& PanelSuite();
const AIPanelFlyoutMenuSuite& PanelFlyoutMenuSuite();
const AIUserInterfaceThemeSuite& UserInterfaceThemeSuite();
const AIContextSuite& ContextSuite();
const AIActionManagerSuite& ActionManagerSuite();
