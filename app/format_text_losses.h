/// What a record can't keep of text.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "workbench/document/document.h"

/// Gives a frame a story of its own, as a record has one, and takes from it what no record can hold, counting
/// it by name: chains, signs outside cp932, fonts that the machine hasn't, numbers and texts that the format
/// has no words for.
/// @param applyToPattern  called for each pattern that letters are painted with
void ApplyTextLosses(workbench::Art& frame, std::map<std::string, int>* counts,
                     const std::function<void(const HostPatternUse&)>& applyToPattern);
