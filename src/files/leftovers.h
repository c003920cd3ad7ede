// Files a killed save leaves behind: its staging directory under /tmp and
// the new file it had not yet renamed over its target. Both carry the
// process id of their maker, so a later save can tell a leftover of a dead
// process from the work of a live one and sweep it away.
#pragma once

#include <string>
#include <string_view>

// The process id in `entry` when it is `prefix` followed by "<pid>-" and a
// six-character unique tail (what mkdtemp and mkstemp fill in); -1 when it
// is anything else.
long leftover_owner(std::string_view entry, std::string_view prefix);

// The name part that precedes the process id: "pictrel-" for staging
// directories, ".<file name>.pictrel-" for the new file beside a target.
std::string staging_prefix();
std::string beside_prefix(const std::string& targetFileName);

// Removes from `directory` every entry of ours named by `prefix` whose
// process is gone: regular files, and directories holding only regular
// files. Errors are ignored: a sweep is housekeeping, never part of a save.
void sweep_leftovers(const std::string& directory, const std::string& prefix);
