#include "plugin/dialogs/measure.h"

#include <gtest/gtest.h>

#include "tests/support/plugin_fixture.h"

namespace {

class MeasureTest : public PluginFixture {
protected:
    double Parsed(const char* text) {
        double points = -1;
        ParseMeasure(text, &points);
        return points;
    }
    std::string Formatted(double points) {
        char text[kMeasureBytes];
        FormatMeasure(points, text);
        return text;
    }
};

} // namespace

TEST_F(MeasureTest, NumbersAndUnits) {
    host().SetRulerUnit(workbench::RulerUnit::kInch);
    const std::pair<const char*, double> texts[] = {
        {"10 mm", 28.346456692913385},
        {"10mm", 28.346456692913385},
        {"10", 720},
        {"1.5e1 pt", 15},
        {"4H", 2.8346456692913384},
        {"2 pc", 24},
        {"2 p0", 144}, // no unit of ours
        {"3 px", 3},
        {"1cm", 28.346456692913385},
        {"-5 mm", -14.173228346456693},
        {"5 MM", 360}, // case counts, so it is a number in the ruler's unit
        {"abc", 0},
        {"", 0},
        {"mm", 0},
        {"1e999 mm", 0},
        {"nan", 0},
        {"inf", 0},
        {"1e307 in", 0},
    };
    for (const auto& [text, points] : texts) EXPECT_DOUBLE_EQ(Parsed(text), points) << text;
}

// What a ruler says of nothing, by its unit; the same length reads back.
TEST_F(MeasureTest, EveryRulerUnit) {
    const std::pair<workbench::RulerUnit, const char*> units[] = {
        {workbench::RulerUnit::kInch, "0.19685 in"},        {workbench::RulerUnit::kCentimetre, "0.5 cm"},
        {workbench::RulerUnit::kPoint, "14.1732 pt"},       {workbench::RulerUnit::kPica, "1.1811 pc"},
        {workbench::RulerUnit::kMillimetre, "5 mm"},        {workbench::RulerUnit::kPixel, "14.1732 px"},
        {workbench::RulerUnit::kQuarterMillimetre, "20 H"},
    };
    for (const auto& [unit, text] : units) {
        host().SetRulerUnit(unit);
        EXPECT_EQ(Formatted(14.173228346456693), text);
        EXPECT_NEAR(Parsed(text), 14.173228346456693, 1e-4);
    }
    EXPECT_EQ(Formatted(14.17323), "20 H");
    host().RefuseCall(1);
    EXPECT_EQ(Formatted(12), "12 pt"); // where the host doesn't say
}
