/// Placed art from the notes that name its files.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "plugin/rebuild/load_state.h"
#include "suites/host_types.h"

/// What a note says of placed art; a line that is missing gives the values here.
struct PlacedNote {
    std::string storedName; ///< cp932; empty: the note names no file
    HostMatrix matrix{1, 0, 0,
                      1, 0, 0}; ///< tx and ty: the centre of the art's bounds from the record's origin
    int32_t method = 0, alignment = 0, clip = 0;
};

/// Takes a note's text apart: lines "PlacedFile", "PlacedMatrix" and "PlaceOptions", each ended by a carriage
/// return.  Numbers that are missing in a line are 0.
PlacedNote ParsePlacedNote(std::string_view text);

/// Where the file of a placed note is: kPool gives what ResolveLinkedFile gives, kLook finds it beside the
/// record or in the image folder and moves nothing.
/// @param outPath  out, kFullPathBytes (store_names.h), cp932
/// @return 0, -1 or a Windows error code
int32_t FindPlacedFile(const RecordSource& source, std::string_view storedName, char* outPath);

/// Whether the file can be opened, in passing.
bool PlacedFileExists(const char* path);

/// Asks the host to place the file of a note, gives the art its matrix, options and paint, and brings the
/// centre of its bounds to the stored one plus (x, y), wherever the host put it.  A file that can't be opened
/// places nothing and is no failure.
/// @param noteObject         a note from an object walk
/// @param paintOrder, prep   where the art goes in the end
/// @return 0; -1 if there is no database root or the file's place can't be told; else the host's code for a
///         request that was refused twice
HostError LoadArtPlacedProcess(const RecordSource& source, std::span<uint8_t> noteObject, int32_t paintOrder,
                               ArtHandle prep, float x, float y);
