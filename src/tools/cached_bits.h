// Palette pictures kept in Motif's image cache, so that a toggle given one
// knows its size without asking the server, and drawings share it.
#pragma once

// Installs `bits` (XBM layout: rows of whole bytes, least significant bit
// first) under `name`. The cache keeps pointing at the bits, which must
// live as long as the program. False when the image cannot be made or
// installed.
bool install_cached_bits(const char* name, unsigned char* bits, int width, int height);
