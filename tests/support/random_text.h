/// Random text for round trips.
#pragma once

#include <functional>
#include <random>

#include "workbench/document/document.h"

struct RandomTextSource {
    std::mt19937& random;
    bool recordable; ///< what no record can hold only where ApplyFormatLosses takes it away
    bool steady;     ///< text in areas alone: its extent doesn't depend on what a record keeps of the letters
    std::function<HostPoint()> point;
    std::function<HostMatrix()> matrix;
    std::function<HostPathStyle()> paint; ///< of letters
};

/// Gives a new text frame, free-standing or not, a kind, a place, a path and a story of a few runs in all
/// attributes, Latin and Japanese, with returns, kerning and signs that few encodings have.
void MakeRandomText(workbench::Document& document, workbench::Art& frame, const RandomTextSource& source);
