/// The two picture files that the sample document links to.
#pragma once

#include "app/sample_document.h"

/// Writes a PNG and a JPEG of kSamplePictureWidth by kSamplePictureHeight pixels, each in one step, in place
/// of what may be there.  False, with a sentence in *error, if that failed.
bool WriteSamplePictures(const SamplePictures& pictures, std::string* error);
