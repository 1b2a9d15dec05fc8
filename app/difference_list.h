/// The differences between two documents, as lines for a reader.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

inline constexpr double kFixedStep = 1.0 / 65536;

/// Narrowing to a 32-bit float and truncating to a Fixed; twice, because places are added up.
inline double ToleranceOf(double value) {
    return 2 * kFixedStep + std::abs(value) * 1.2e-7;
}

class DifferenceList {
public:
    /// A number of the stored document, one of the rebuilt one, where they stand and what they are.
    void Same(int32_t expected, int32_t actual, const std::string& place, const char* what) {
        if (expected != actual) Report(place, what, expected, actual);
    }

    void Near(double expected, double actual, const std::string& place, const char* what) {
        Near(expected, actual, ToleranceOf(expected), place, what);
    }

    void Near(double expected, double actual, double room, const std::string& place, const char* what) {
        if (!(std::abs(expected - actual) <= room)) Report(place, what, expected, actual);
    }

    void Report(const std::string& place, const std::string& what, double expected, double actual) {
        std::array<char, 96> text;
        std::snprintf(text.data(), text.size(), " %.9g became %.9g", expected, actual);
        Add(place + ": " + what + text.data());
    }

    void Add(std::string line) {
        if (++count_ <= kMostLines) lines_.push_back(std::move(line));
    }

    /// The first lines, and how many more there are.
    std::vector<std::string> Take() {
        if (count_ > kMostLines) lines_.push_back("and " + std::to_string(count_ - kMostLines) + " more");
        return std::move(lines_);
    }

private:
    static constexpr size_t kMostLines = 50;
    std::vector<std::string> lines_;
    size_t count_ = 0;
};
