/// Names for the linked files that are stored beside a record.
#pragma once

#include "plugin/store/linked_files.h"

/// Enters a linked file in the link list, unless it is there, and replaces its full path in `text` by the
/// name under which the file is stored.
///
/// The name is the file's own, cut at whole characters so that it fits `nameLimit` bytes; a number goes
/// behind its base name where that is needed to keep it apart from the names given before.  Two names
/// are kept apart also if they differ only in the case of ASCII letters, and if their notes would have one
/// name: those go by the part up to the first point alone, cut to have room for their own ending.  In a base
/// name that holds points itself the number therefore goes before the first of them.  What can't stand in a
/// stored name, and only other systems have in theirs, becomes '_'.
/// @param text  cp932 with a NUL, at least kLinkPathBytes bytes; separators are backslashes
/// @throws std::bad_alloc
void RegisterLinkedFile(char* text);
