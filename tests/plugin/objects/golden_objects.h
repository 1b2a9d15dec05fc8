/// One object of each kind, once in host order by its fields and once as it has to lie on disk.  Every
/// field holds a number that a wrong width or a wrong place would change, gaps hold bytes that must stay.
#pragma once

#include "tests/plugin/objects/object_bytes.h"

/// A gradient fill with a custom reference, and a pattern stroke.
void FillStyle(AidbStyle& style);
Bytes StoredStyle();

/// First and last stop of both halves, so that a loop which ends early or spares the unused half shows.
void FillBlock(AidbGradientBlock& block);
Bytes StoredBlock();

Bytes HostPath();
Bytes StoredPath();
Bytes HostText();
Bytes StoredText();
Bytes HostNote();
Bytes StoredNote();
/// One tile and the paint of an art style behind it.
Bytes HostRaster(uint16_t colorSpace);
Bytes StoredRaster(uint16_t colorSpace);
Bytes HostMesh();
Bytes StoredMesh();
