/// Files in and out: SVG to documents, documents to SVG, PDF, PNG and JSON.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/document/document.h"
#include "workbench/svg/svg_reader.h"

/// A document from an SVG file; null, and a sentence in *error, if there is none in it.
/// @param picturesBelow  as ReadSvgFile takes it
std::unique_ptr<workbench::Document> OpenDocument(const std::string& path, workbench::ReadReport* report,
                                                  std::string* error, const std::string& picturesBelow = {});

/// Takes out linked pictures whose files aren't there: a record with such a link could never be placed whole.
/// @return how many
int LeaveOutMissingPictures(workbench::Document& document);

/// Whether `path` ends in an extension that SaveDocument knows; if not, a sentence in *error.
bool KnownExtension(const std::string& path, std::string* error);

/// Writes .svg, .pdf, .png or .json by the extension.  The file is replaced as a whole or not at all.
bool SaveDocument(const workbench::Document& document, const std::string& path, std::string* error);

/// Replaces a file by `bytes`, as a whole or not at all.
bool SaveBytes(const std::string& path, const void* bytes, size_t count, std::string* error);

/// "filter 1, mask 2, font 'Arial' missing (LiberationSans-Regular stands in)" for a line of a report; empty
/// if nothing was lost.
std::string LossesLine(const workbench::ReadReport& report);
