/// A small group file, damaged in every place.
#pragma once

/// Sets each byte to every `stride`-th other value, and cuts the file at each length.  1 if a record in front
/// of the damage is not what it was, else 0.
int RunBytes(unsigned stride);
