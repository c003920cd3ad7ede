// Putting a staged file in its target's place without ever leaving the
// target half written.
#pragma once

// Returns 0 on success, 1 on failure (the old target is then intact).
int copy_file(const char* source, const char* destination);

// Whether a new file can take the place of `destination`: its directory (of
// the file a symbolic link points at) lets us create and rename files.
bool can_replace(const char* destination);
