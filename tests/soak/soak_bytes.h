/// A small group file, damaged in every place.
#pragma once

/// Sets every `step`-th byte to every `stride`-th other value, and cuts the file there.  1 if a record in
/// front of the damage is not what it was, else 0.
int RunBytes(unsigned stride, unsigned step);
