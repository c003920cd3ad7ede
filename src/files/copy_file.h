// Copying a staged file onto its target without ever leaving the target
// half written.
#pragma once

// Returns 1 on success, 0 on failure (the old target is then intact).
int copy_file(const char* source, const char* destination);
