// Running gzip over a file, as libXpm does for the compressed files it
// reads: the program reads through it before libXpm may, and writes a
// compressed drawing back through it.
#pragma once

#include <sys/types.h>

// Starts /bin/gzip with one option ("-dc", "-cn") reading `input` and
// writing to `output` (a descriptor the caller keeps and closes), its
// errors thrown away. Returns its process id, or -1 when it did not start.
pid_t spawn_gzip(const char* option, const char* input, int output);

// Waits for the process, retrying when interrupted; returns its wait status.
int wait_for_process(pid_t pid);
