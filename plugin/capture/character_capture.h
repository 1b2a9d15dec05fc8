/// The attributes of one character in their stored form.
#pragma once

#include "plugin/host/text_classes.h"
#include "plugin/objects/object_layout.h"

/// Overwrites in `attributes` what the host tells of the one character of `range`: paint, paragraph, font and
/// character.  What the character hasn't, such as the colour of a fill that isn't painted, keeps what stood
/// there, and so do kerning and text.
///
/// Gradients become gray 0, custom colours go into the custom colour table, the art of patterns into
/// `sideObjects`.
/// @throws ATE::Exception  with `attributes` written in part
void CaptureCharacter(const ATE::ITextRange& range, AidbTextRun* attributes);
