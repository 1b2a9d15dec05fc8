/// Suites of the host's frame: alerts, texts, file paths.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* AI User Suite, version 12. */
typedef struct AIUserSuite {
    HostError (*MessageAlert)(UnicodeStringHandle text);
    HostError (*ErrorAlert)(UnicodeStringHandle text);
    HostError (*YesNoAlert)(UnicodeStringHandle text, int32_t* answer); /* 1 for yes */
    /* A length in points as a text in the current ruler unit; precision -1 is the host's own.  Whole picas
       end with "p0". */
    HostError (*FormatRulerLength)(double points, int32_t precision, UnicodeStringHandle text);
} AIUserSuite;

/* AI Unicode String Suite, version 8: texts as the host holds them. */
typedef struct AIUnicodeStringSuite {
    /* A string from `length` bytes in one of the encodings of host_types.h; the caller's until Dispose.
       Bytes that mean nothing in the encoding become a replacement character. */
    HostError (*New)(const char* bytes, uint64_t length, int32_t encoding, UnicodeStringHandle* string);
    HostError (*NewEmpty)(UnicodeStringHandle* string);
    HostError (*Dispose)(UnicodeStringHandle string);
    HostError (*Assign)(UnicodeStringHandle target, UnicodeStringHandle source);

    /* Writes at most `capacity` bytes, without a NUL, and sets *length to the length of the whole text.
       What the encoding can't hold becomes '?'.  `bytes` may be null if the capacity is 0. */
    HostError (*GetBytes)(UnicodeStringHandle string, int32_t encoding, char* bytes, uint64_t capacity,
                          uint64_t* length);
} AIUnicodeStringSuite;

/* AI File Path Suite, version 5. */
typedef struct AIFilePathSuite {
    HostError (*New)(UnicodeStringHandle text, FilePathHandle* path); /* the caller's until Dispose */
    HostError (*Dispose)(FilePathHandle path);
} AIFilePathSuite;

} /* extern "C" */
