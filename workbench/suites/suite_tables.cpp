#include "workbench/suites/suite_tables.h"

#include <array>
#include <string>
#include <unordered_map>

#include "workbench/suites/host.h"

namespace workbench {

namespace {

struct Row {
    SuiteEntry entry;
    const void* (*table)(); ///< null: nobody calls it
};

// What the host of this version supplies, written down without a look at what a plug-in asks for.
constexpr std::array<Row, 134> kRows = {{
    {{"SP Blocks Suite", 2}, nullptr},
    {{"SP Access Suite", 3}, AccessSuiteTable},
    {{"AI Plugin Suite", 5}, PluginSuiteTable},
    {{"AI MdMemory Suite", 3}, nullptr},
    {{"AI Real Math Suite", 3}, RealMathSuiteTable},
    {{"AI Fixed Math Suite", 4}, nullptr},
    {{"AI Art Suite", 17}, ArtSuiteTable},
    {{"AI User Interface Theme Suite", 2}, UserInterfaceThemeSuiteTable},
    {{"AI Panel Suite", 2}, PanelSuiteTable},
    {{"AI Panel Flyout Menu Suite", 2}, PanelFlyoutMenuSuiteTable},
    {{"AI User Suite", 12}, UserSuiteTable},
    {{"AI Runtime Suite", 12}, nullptr},
    {{"AI Document Suite", 14}, nullptr},
    {{"AI Data Filter Suite", 8}, nullptr},
    {{"AI Path Suite", 11}, PathSuiteTable},
    {{"AI Matching Art Suite", 7}, nullptr},
    {{"AI Document List Suite", 8}, nullptr},
    {{"AI Document View Suite", 12}, DocumentViewSuiteTable},
    {{"AI Undo Suite", 7}, UndoSuiteTable},
    {{"AI Context Suite", 7}, ContextSuiteTable},
    {{"AI Preference Suite", 6}, nullptr},
    {{"AI Draw Art Suite", 11}, DrawArtSuiteTable},
    {{"AI Gradient Suite", 9}, GradientSuiteTable},
    {{"AI Group Suite", 5}, GroupSuiteTable},
    {{"AI Raster Suite", 10}, RasterSuiteTable},
    {{"AI Layer Suite", 13}, LayerSuiteTable},
    {{"AI Pattern Suite", 10}, PatternSuiteTable},
    {{"AI Placed Suite", 8}, PlacedSuiteTable},
    {{"AI Custom Color Suite", 8}, CustomColorSuiteTable},
    {{"AI Path Style Suite", 13}, PathStyleSuiteTable},
    {{"AI Swatch List Suite", 7}, SwatchListSuiteTable},
    {{"AI Transform Art Suite", 3}, TransformArtSuiteTable},
    {{"AI Hard Soft Suite", 5}, HardSoftSuiteTable},
    {{"AI Mesh Suite", 6}, MeshSuiteTable},
    {{"AI Mesh Patch Suite", 3}, nullptr},
    {{"AI Mesh Vertex Suite", 4}, MeshVertexSuiteTable},
    {{"AI Mesh Segment Suite", 3}, MeshSegmentSuiteTable},
    {{"AI Plugin Group Suite", 6}, PluginGroupSuiteTable},
    {{"AI TabletData Suite", 3}, nullptr},
    {{"AI ATE Text Util Suite", 4}, TextUtilSuiteTable},
    {{"AI Text Frame Suite", 4}, TextFrameSuiteTable},
    {{"AI Font Suite", 6}, FontSuiteTable},
    {{"AI Foreign Object Suite", 4}, nullptr},
    {{"AIATE Paint Suite", 3}, EnginePaintSuiteTable},
    {{"ATE ApplicationPaint Suite", 1}, EngineApplicationPaintSuiteTable},
    {{"ATE CompFont Suite", 1}, nullptr},
    {{"ATE CompFontClass Suite", 1}, nullptr},
    {{"ATE CompFontClassSet Suite", 1}, nullptr},
    {{"ATE CompFontComponent Suite", 1}, nullptr},
    {{"ATE CompFontSet Suite", 1}, nullptr},
    {{"ATE GlyphRun Suite", 1}, nullptr},
    {{"ATE GlyphRunsIterator Suite", 1}, nullptr},
    {{"ATE MojiKumi Suite", 1}, nullptr},
    {{"ATE MojiKumiSet Suite", 1}, nullptr},
    {{"ATE TextFrame Suite", 101}, EngineTextFrameSuiteTable},
    {{"ATE TextFramesIterator Suite", 1}, nullptr},
    {{"ATE TextLine Suite", 1}, nullptr},
    {{"ATE TextLinesIterator Suite", 1}, nullptr},
    {{"ATE TextResources Suite", 1}, nullptr},
    {{"ATE ApplicationTextResources Suite", 1}, EngineTextResourcesSuiteTable},
    {{"ATE DocumentTextResources Suite", 101}, nullptr},
    {{"ATE ArrayApplicationPaintRef Suite", 1}, nullptr},
    {{"ATE ArrayReal Suite", 1}, EngineArrayRealSuiteTable},
    {{"ATE ArrayBool Suite", 1}, nullptr},
    {{"ATE ArrayInteger Suite", 1}, nullptr},
    {{"ATE ArrayLineCapType Suite", 1}, nullptr},
    {{"ATE ArrayFigureStyle Suite", 1}, nullptr},
    {{"ATE ArrayLineJoinType Suite", 1}, nullptr},
    {{"ATE ArrayWariChuJustification Suite", 1}, nullptr},
    {{"ATE ArrayStyleRunAlignment Suite", 1}, nullptr},
    {{"ATE ArrayAutoKernType Suite", 1}, nullptr},
    {{"ATE ArrayBaselineDirection Suite", 1}, nullptr},
    {{"ATE ArrayLanguage Suite", 1}, nullptr},
    {{"ATE ArrayFontCapsOption Suite", 1}, nullptr},
    {{"ATE ArrayFontBaselineOption Suite", 1}, nullptr},
    {{"ATE ArrayParagraphJustification Suite", 1}, nullptr},
    {{"ATE ArrayArrayReal Suite", 1}, nullptr},
    {{"ATE ArrayBurasagariType Suite", 1}, nullptr},
    {{"ATE ArrayPreferredKinsokuOrder Suite", 1}, nullptr},
    {{"ATE ArrayKinsokuRef Suite", 1}, nullptr},
    {{"ATE ArrayMojiKumiRef Suite", 1}, nullptr},
    {{"ATE ArrayMojiKumiSetRef Suite", 1}, nullptr},
    {{"ATE ArrayTabStopsRef Suite", 1}, nullptr},
    {{"ATE ArrayLeadingType Suite", 1}, nullptr},
    {{"ATE ArrayFontRef Suite", 1}, nullptr},
    {{"ATE ArrayGlyphID Suite", 1}, nullptr},
    {{"ATE ArrayRealPoint Suite", 1}, nullptr},
    {{"ATE ArrayRealMatrix Suite", 1}, nullptr},
    {{"ATE CharFeatures Suite", 101}, EngineCharFeaturesSuiteTable},
    {{"ATE CharInspector Suite", 101}, nullptr},
    {{"ATE CharStyle Suite", 1}, nullptr},
    {{"ATE CharStyles Suite", 1}, nullptr},
    {{"ATE CharStylesIterator Suite", 1}, nullptr},
    {{"ATE Find Suite", 101}, nullptr},
    {{"ATE Font Suite", 1}, EngineFontSuiteTable},
    {{"ATE Glyph Suite", 1}, nullptr},
    {{"ATE Glyphs Suite", 1}, nullptr},
    {{"ATE GlyphsIterator Suite", 1}, nullptr},
    {{"ATE Kinsoku Suite", 1}, EngineKinsokuSuiteTable},
    {{"ATE KinsokuSet Suite", 1}, EngineKinsokuSetSuiteTable},
    {{"ATE ParaFeatures Suite", 101}, EngineParaFeaturesSuiteTable},
    {{"ATE Paragraph Suite", 1}, nullptr},
    {{"ATE ParagraphsIterator Suite", 1}, nullptr},
    {{"ATE ParaInspector Suite", 101}, nullptr},
    {{"ATE ParaStyle Suite", 1}, nullptr},
    {{"ATE ParaStyles Suite", 1}, nullptr},
    {{"ATE ParaStylesIterator Suite", 1}, nullptr},
    {{"ATE Spell Suite", 101}, nullptr},
    {{"ATE Stories Suite", 1}, nullptr},
    {{"ATE Story Suite", 1}, EngineStorySuiteTable},
    {{"ATE TabStop Suite", 1}, nullptr},
    {{"ATE TabStops Suite", 1}, nullptr},
    {{"ATE TabStopsIterator Suite", 1}, nullptr},
    {{"ATE TextRange Suite", 1}, EngineTextRangeSuiteTable},
    {{"ATE TextRanges Suite", 1}, nullptr},
    {{"ATE TextRangesIterator Suite", 1}, nullptr},
    {{"ATE TextRunsIterator Suite", 1}, nullptr},
    {{"ATE WordsIterator Suite", 1}, nullptr},
    {{"AI Mask Suite", 5}, nullptr},
    {{"AI Blend Style Suite", 5}, BlendStyleSuiteTable},
    {{"AI Dictionary Suite", 8}, nullptr},
    {{"AI Dictionary Iterator Suite", 3}, nullptr},
    {{"AI Art Style Suite", 7}, ArtStyleSuiteTable},
    {{"AI Art Style Parser Suite", 8}, nullptr},
    {{"AI Application Suite", 3}, nullptr},
    {{"AI Rasterize Suite", 10}, nullptr},
    {{"AI Art Set Suite", 8}, nullptr},
    {{"AI Tag Suite", 4}, TagSuiteTable},
    {{"AI Menu Suite", 11}, MenuSuiteTable},
    {{"AI Timer Suite", 5}, TimerSuiteTable},
    {{"AI Notifier Suite", 4}, NotifierSuiteTable},
    {{"AI Action Manager Suite", 5}, ActionManagerSuiteTable},
    {{"AI File Path Suite", 5}, FilePathSuiteTable},
    {{"AI Unicode String Suite", 8}, UnicodeStringSuiteTable},
}};

// Suites of this host have fewer operations than that.
constexpr std::array<void (*)(), 64> kEmptyTable{};

} // namespace

const std::vector<SuiteEntry>& SuppliedSuites() {
    static const std::vector<SuiteEntry> suites = [] {
        std::vector<SuiteEntry> all;
        for (const Row& row : kRows) all.push_back(row.entry);
        return all;
    }();
    return suites;
}

size_t SuiteNumber(std::string_view name) {
    static const std::unordered_map<std::string_view, size_t> numbers = [] {
        std::unordered_map<std::string_view, size_t> all;
        for (size_t i = 0; i < kRows.size(); ++i) all.emplace(kRows[i].entry.name, i);
        return all;
    }();
    const auto found = numbers.find(name);
    return found == numbers.end() ? kRows.size() : found->second;
}

const void* SuiteTable(size_t suite) {
    const Row& row = kRows[suite];
    return row.table ? row.table() : kEmptyTable.data();
}

} // namespace workbench
