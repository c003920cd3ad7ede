// Starting the help server program and keeping track of it: one child at a
// time, reaped as soon as it ends so that no zombie is left behind.
#pragma once

#include <sys/types.h>

enum HelpSpawnStatus {
    HELP_SPAWNED = 0,   // the program runs (its exec succeeded)
    HELP_NO_FORK,       // fork failed; *error holds its errno
    HELP_NO_EXEC,       // the program could not be executed; *error holds exec's errno (ENOENT: there is none)
};

// Runs `program` (searched in PATH when it has no slash) with the
// arguments "-cshelpservermode" "-display" `display`. The child starts with
// default signal dispositions and an empty signal mask, and none of our
// descriptors but standard input, output and error. Waits only until the
// exec has either happened or failed.
int help_spawn(const char* program, const char* display, pid_t* pid, int* error);

// Whether the child started last is still running. When it has ended,
// returns false once with `*exitValue` set (its exit status, or 128 plus
// the signal that killed it), then false with -1 ever after.
bool help_child_running(int* exitValue);

// The child we started, or 0 when none runs.
pid_t help_child_pid();
