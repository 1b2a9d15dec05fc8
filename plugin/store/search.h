/// Searching the records of the whole database by name, kind or comment.
///
/// The settings are in `globals`: `flCnvFnMode` says which field, `flCnvFnStr` what for; `flCnvCase` set
/// tells capitals from small letters, `flCnvKanji` full-width from half-width forms, and `flCnvWord` takes
/// whole words alone.  Texts are cp932 with a NUL and are taken character by character, so that no match
/// begins at the second byte of a character.
#pragma once

#include <cstdint>

constexpr int kNameSearchBytes = 62;     ///< of `flCnvFnStr` that are looked for in a name or a kind
constexpr int kCommentSearchBytes = 254; ///< the same in a comment

/// Whether `text` begins with the first `*length` bytes of `key`: 0 if so, else the difference, which is
/// positive where the text goes on and the key ends, and negative where the key goes on.  `*length` becomes
/// how many bytes of `text` were gone over: they may be more or fewer than those of the key, since a
/// double-byte form may match a single-byte one.  Case is told apart in single-byte letters alone, after
/// widths.
int32_t MatchHere(const char* text, const char* key, int32_t* length, int16_t caseFlag, int16_t widthFlag);

/// The byte position of the first match of `key` in `text`, or -1, also if either is null.  With `wordFlag` a
/// match begins at the start, behind a byte that is no letter or digit, or behind a double-byte character,
/// and no letter or digit follows it.
int32_t FindInText(const char* text, const char* key, int16_t caseFlag, int16_t widthFlag, int16_t wordFlag);

/// Makes "Search Result" the current entry and `rihList` the records of all groups whose field holds the
/// text; an empty text gives every record.  `curRecord` is the last header read.
/// @return how many groups could not be gone over to their end: what lies behind was not searched;
///         one more if memory ran out
int32_t RunSearch();

/// Keeps those records of the search result that match; in a folder's list, those of the folder, which become
/// the search result.  What the list says of a record is read anew.
/// Without memory the list stays as it was.
/// @return how many records could not be read: they are kept out
int32_t RunLimit();
