/// Lengths as a user reads and writes them: a number and a unit, "5 mm".
///
/// The unit is the one of the host's rulers, or another one that the text names.
#pragma once

#include <cstddef>

constexpr size_t kMeasureBytes = 80; ///< of a text, its NUL among them

/// A ruler unit and what it is called.
struct MeasureUnit {
    const char* rulerEnd; ///< how the host's texts of lengths end
    const char* name;     ///< how ours do
    double points;
};

/// The unit of a ruler whose texts of lengths look like `rulerText`; points for an unknown one.
const MeasureUnit& UnitOfRulerText(const char* rulerText);

/// The unit of the host's rulers.  Needs the host's suites.
const MeasureUnit& CurrentRulerUnit();

/// A length in points in a unit, as precise as "%g" is.
void FormatMeasureIn(const MeasureUnit& unit, double points, char* text /*kMeasureBytes*/);

/// A text's length in points; of a text that ends with no unit, a length in `unit`.  0 if it is no number.
double ParseMeasureIn(const MeasureUnit& unit, const char* text);

/// The same in the unit of the host's rulers.  Need the host's suites.
void FormatMeasure(double points, char* text /*kMeasureBytes*/);
void ParseMeasure(const char* text, double* points);
