/// Notes of what is captured: better no record than one that lost some of its art without a word.
#pragma once

#include <new>

#include "plugin/objects/object_stream.h"

/// As AddNote and AddNoteBytes.  What can't be added ends the capture: throws std::bad_alloc.
inline void PutNote(const char* text) {
    if (AddNote(text) != 0) throw std::bad_alloc();
}
inline void PutNoteBytes(const void* content, uint32_t length) {
    if (AddNoteBytes(content, length) != 0) throw std::bad_alloc();
}
