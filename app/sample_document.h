/// A document that holds every kind of art and attribute that a record can keep, drawn on one page.
///
/// It is the same every time, so pictures and records of it can be compared from run to run.
#pragma once

#include <memory>
#include <string>

#include "workbench/document/document.h"

/// The pictures that the document links to, by full path (UTF-8); they need not be there yet.
struct SamplePictures {
    std::string png; ///< kSamplePictureWidth by kSamplePictureHeight pixels, as the other
    std::string jpeg;
};

inline constexpr int kSamplePictureWidth = 96, kSamplePictureHeight = 64;

/// A page of A4 with art in cells, on two layers.  Art to be found by name: "style" (a path with a style),
/// "target" (a group whose tags a transfer replaces).
std::unique_ptr<workbench::Document> MakeSampleDocument(const SamplePictures& pictures);
