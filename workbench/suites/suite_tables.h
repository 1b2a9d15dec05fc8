/// The tables of the suites, as far as there is something behind them; for this room alone.
#pragma once

#include <cstddef>
#include <string_view>

namespace workbench {

const void* ArtSuiteTable();
const void* GroupSuiteTable();
const void* PathSuiteTable();
const void* BlendStyleSuiteTable();
const void* ArtStyleSuiteTable();
const void* MeshSuiteTable();
const void* MeshVertexSuiteTable();
const void* MeshSegmentSuiteTable();
const void* PluginGroupSuiteTable();
const void* PlacedSuiteTable();
const void* RasterSuiteTable();
const void* TransformArtSuiteTable();
const void* TagSuiteTable();
const void* PathStyleSuiteTable();
const void* TextFrameSuiteTable();
const void* FontSuiteTable();
const void* EnginePaintSuiteTable(); // AIATE Paint Suite
const void* TextUtilSuiteTable();
const void* EngineTextFrameSuiteTable();
const void* EngineTextRangeSuiteTable();
const void* EngineStorySuiteTable();
const void* EngineCharFeaturesSuiteTable();
const void* EngineParaFeaturesSuiteTable();
const void* EngineKinsokuSuiteTable();
const void* EngineKinsokuSetSuiteTable();
const void* EngineTextResourcesSuiteTable();
const void* EngineApplicationPaintSuiteTable();
const void* EngineFontSuiteTable();
const void* EngineArrayRealSuiteTable();
const void* GradientSuiteTable();
const void* PatternSuiteTable();
const void* CustomColorSuiteTable();
const void* SwatchListSuiteTable();
const void* LayerSuiteTable();
const void* DocumentViewSuiteTable();
const void* UndoSuiteTable();
const void* HardSoftSuiteTable();
const void* DrawArtSuiteTable();
const void* RealMathSuiteTable();
const void* UserSuiteTable();
const void* UnicodeStringSuiteTable();
const void* FilePathSuiteTable();
const void* PluginSuiteTable();
const void* AccessSuiteTable();
const void* MenuSuiteTable();
const void* TimerSuiteTable();
const void* NotifierSuiteTable();
const void* PanelSuiteTable();
const void* PanelFlyoutMenuSuiteTable();
const void* UserInterfaceThemeSuiteTable();
const void* ContextSuiteTable();
const void* ActionManagerSuiteTable();

/// Position in SuppliedSuites, or its size if there is no suite of that name.
size_t SuiteNumber(std::string_view name);

/// The suite's functions; a table of null pointers for a suite that nobody calls.
const void* SuiteTable(size_t suite);

} // namespace workbench
