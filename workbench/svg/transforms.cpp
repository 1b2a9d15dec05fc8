#include "workbench/svg/transforms.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "workbench/svg/svg_values.h"

namespace workbench {
namespace {

/// Exact at the quarter turns, where files most often are.
HostMatrix Rotation(double degrees) {
    const double turn = std::remainder(degrees, 360);
    if (turn == 0) return kIdentity;
    if (turn == 90) return {0, 1, -1, 0, 0, 0};
    if (turn == -90) return {0, -1, 1, 0, 0, 0};
    if (turn == 180 || turn == -180) return {-1, 0, 0, -1, 0, 0};
    const double angle = turn * std::numbers::pi / 180;
    return {std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0};
}

enum class Operation { kMatrix, kTranslate, kScale, kRotate, kSkewX, kSkewY };

bool TakeOperation(TextCursor& cursor, Operation* operation) {
    static constexpr struct {
        std::string_view name;
        Operation operation;
    } kOperations[] = {{"matrix", Operation::kMatrix}, {"translate", Operation::kTranslate},
                       {"scale", Operation::kScale},   {"rotate", Operation::kRotate},
                       {"skewX", Operation::kSkewX},   {"skewY", Operation::kSkewY}};
    for (const auto& [name, found] : kOperations) {
        if (!cursor.TakeWord(name)) continue;
        *operation = found;
        return true;
    }
    return false;
}

int TakeArguments(TextCursor& cursor, double (&values)[6]) {
    cursor.SkipBlanks();
    if (!cursor.Take('(')) return -1;
    int count = 0;
    for (;;) {
        cursor.SkipSeparators();
        if (cursor.Take(')')) return count;
        if (count == 6 || !cursor.Number(&values[count])) return -1;
        if (!cursor.TakeWord("deg")) cursor.TakeWord("px");
        ++count;
    }
}

bool OperationMatrix(Operation operation, const double (&v)[6], int count, HostMatrix* matrix) {
    constexpr double kDegree = std::numbers::pi / 180;
    switch (operation) {
        case Operation::kMatrix:
            *matrix = {v[0], v[1], v[2], v[3], v[4], v[5]};
            return count == 6;
        case Operation::kTranslate:
            *matrix = {1, 0, 0, 1, v[0], count == 2 ? v[1] : 0};
            return count == 1 || count == 2;
        case Operation::kScale:
            *matrix = {v[0], 0, 0, count == 2 ? v[1] : v[0], 0, 0};
            return count == 1 || count == 2;
        case Operation::kRotate:
            *matrix = Rotation(v[0]);
            if (count == 3)
                *matrix = Concat({1, 0, 0, 1, v[1], v[2]}, Concat(*matrix, {1, 0, 0, 1, -v[1], -v[2]}));
            return count == 1 || count == 3;
        case Operation::kSkewX:
            *matrix = {1, 0, std::tan(v[0] * kDegree), 1, 0, 0};
            return count == 1;
        case Operation::kSkewY:
            *matrix = {1, std::tan(v[0] * kDegree), 0, 1, 0, 0};
            return count == 1;
    }
    return false;
}

} // namespace

double Determinant(const HostMatrix& m) {
    return m.a * m.d - m.b * m.c;
}

bool IsFinite(const HostMatrix& m) {
    return std::isfinite(m.a) && std::isfinite(m.b) && std::isfinite(m.c) && std::isfinite(m.d) &&
           std::isfinite(m.tx) && std::isfinite(m.ty);
}

bool Invert(const HostMatrix& m, HostMatrix* inverse) {
    const double det = Determinant(m);
    if (det == 0 || !std::isfinite(det)) return false;
    *inverse = {m.d / det,
                -m.b / det,
                -m.c / det,
                m.a / det,
                (m.c * m.ty - m.d * m.tx) / det,
                (m.b * m.tx - m.a * m.ty) / det};
    return IsFinite(*inverse);
}

double MeanScale(const HostMatrix& matrix) {
    return std::sqrt(std::abs(Determinant(matrix)));
}

bool IsUneven(const HostMatrix& m) {
    // The singular values are mean +- half; they are equal for rotations, reflections and even scales.
    const double mean = std::hypot(m.a + m.d, m.b - m.c), half = std::hypot(m.a - m.d, m.b + m.c);
    return std::min(mean, half) > 0.005 * std::max(mean, half);
}

bool ParseTransform(std::string_view text, HostMatrix* matrix) {
    HostMatrix result = kIdentity;
    *matrix = kIdentity;
    TextCursor cursor(text);
    cursor.SkipSeparators();
    while (!cursor.AtEnd()) {
        Operation operation{};
        double values[6]{};
        HostMatrix step = kIdentity;
        if (cursor.TakeWord("none")) break;
        if (!TakeOperation(cursor, &operation)) return false;
        const int count = TakeArguments(cursor, values);
        if (!OperationMatrix(operation, values, count, &step)) return false;
        result = Concat(result, step);
        cursor.SkipSeparators();
    }
    if (!IsFinite(result)) return false;
    *matrix = result;
    return true;
}

bool ParseViewBox(std::string_view text, ViewBox* box) {
    const auto numbers = ParseNumbers(text, 4);
    if (numbers.size() != 4 || !(numbers[2] > 0) || !(numbers[3] > 0)) return false;
    *box = {numbers[0], numbers[1], numbers[2], numbers[3]};
    return true;
}

HostMatrix FitViewBox(const ViewBox& box, const ViewBox& viewport, std::string_view aspectRatio) {
    double scaleX = viewport.width / box.width, scaleY = viewport.height / box.height;
    double alignX = 0.5, alignY = 0.5;
    TextCursor cursor(aspectRatio);
    cursor.SkipBlanks();
    if (cursor.TakeWord("defer")) cursor.SkipBlanks();
    const bool stretched = cursor.TakeWord("none");
    if (cursor.TakeWord("xMin")) alignX = 0;
    if (cursor.TakeWord("xMid")) alignX = 0.5;
    if (cursor.TakeWord("xMax")) alignX = 1;
    if (cursor.TakeWord("YMin")) alignY = 0;
    if (cursor.TakeWord("YMid")) alignY = 0.5;
    if (cursor.TakeWord("YMax")) alignY = 1;
    cursor.SkipBlanks();
    if (!stretched)
        scaleX = scaleY = cursor.TakeWord("slice") ? std::max(scaleX, scaleY) : std::min(scaleX, scaleY);
    const double spareX = stretched ? 0 : viewport.width - box.width * scaleX;
    const double spareY = stretched ? 0 : viewport.height - box.height * scaleY;
    return {scaleX,
            0,
            0,
            scaleY,
            viewport.x - box.x * scaleX + alignX * spareX,
            viewport.y - box.y * scaleY + alignY * spareY};
}

} // namespace workbench
