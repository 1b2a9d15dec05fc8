/// From a stored run's attributes to the text engine's features.
#pragma once

#include <map>
#include <string>

#include "plugin/host/text_classes.h"
#include "plugin/objects/object_layout.h"
#include "plugin/rebuild/load_state.h"

/// The fonts that one text's runs have asked for: a search through all fonts of the machine is worth
/// keeping.  The key is the bytes of the stored font, the value its index or -1.
using FoundFonts = std::map<std::string, int32_t>;

/// Gives all features values from what is stored.  A value that the host refuses, a font that isn't found
/// and a kinsoku that the application hasn't leave the feature as it was.  Throws nothing.
void SetParagraphFeatures(ATE::IParaFeatures& features, const AidbTextPara& stored);

/// Likewise.  Gradients become gray 0; a pattern whose number can't be linked takes its fill or stroke with
/// it.
void SetCharacterFeatures(LoadState& load, ATE::ICharFeatures& features, const AidbTextRun& run,
                          FoundFonts& fonts);
