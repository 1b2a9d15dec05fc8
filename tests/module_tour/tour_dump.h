/// What a tour leaves behind to be compared with the same tour on another machine.
#pragma once

#include <filesystem>
#include <string>

#include "workbench/document/document.h"

/// Writes a document as it is now, a field a line and numbers exactly, to `file`.  Linked files below
/// `folder` are told by their way from there.
void DumpDocument(const workbench::Document& document, const std::filesystem::path& folder,
                  const std::filesystem::path& file);
