/// Text frames of two documents side by side.
#pragma once

#include <functional>
#include <string>

#include "app/difference_list.h"
#include "workbench/document/document.h"

/// How the frames lie in the two documents.
struct TextPlace {
    HostPoint origin{}; ///< the art point that is (0, 0) in the record
    HostPoint offset{}; ///< what a load adds; within a pattern too, whose own origin isn't on the page
};

/// Compares frames, their paths, texts, kerning and all attributes of every character; colours by
/// `compareColors`, with their place, once for each stretch of equal attributes.
void CompareTexts(
    const workbench::Document& stored, const workbench::Art& expected, const workbench::Document& rebuilt,
    const workbench::Art& actual, const TextPlace& where, const std::string& place,
    DifferenceList* differences,
    const std::function<void(const HostColor&, const HostColor&, const std::string&)>& compareColors);
