// What travels in a drop, as plain values: the host-and-file-names list,
// the five words of the drop message and the names of transfer properties.
// No X headers here; the protocol unit converts to and from X types.
#pragma once

#include <cstddef>
#include <string>

// One string per NUL of a host-and-file-names buffer, the host name first.
// Every string and the array are malloc'd; free with free_host_files().
struct HostFiles {
    char** names;
    int count;
};

// Splits the first `n` bytes of `data` at each NUL; bytes after the last NUL
// are not a string. At most `limit` strings are kept: a reader that wants
// only the first file need not copy the other million.
HostFiles split_host_files(const char* data, size_t n, size_t limit = static_cast<size_t>(-1));
void free_host_files(HostFiles* list);

// The host name, a NUL, each file name and a NUL. `*length` counts all of
// that; one more NUL is stored after it, so the buffer reads as a C string.
// The result is malloc'd.
char* join_host_files(const char* host, const char* const* files, int count, size_t* length);

// The host name for a host-and-file-names list: at most 50 characters.
std::string local_host_name();

// The five 32-bit words of the drop message, unpacked.
struct DropWords {
    unsigned long time;
    int x, y;            // in the site window, 0..65535 each
    unsigned state;      // modifiers and buttons, 13 bits
    bool flag;           // bit 31 of the state word
    unsigned long type;  // the transfer property's type
    unsigned long property;
};

constexpr unsigned DROP_STATE_MASK = 0x1fff;

// Coordinates outside 0..65535 are clamped: each has 16 bits of the word.
void pack_drop_words(const DropWords& w, long out[5]);
// Only the low 32 bits of each word are looked at, whatever sign the
// transport gave the long they arrived in.
DropWords unpack_drop_words(const long in[5]);

// "%s_%d_%lx": the protocol's atom name, the source window in decimal and
// the address of the source's transfer record in hexadecimal.
std::string transfer_property_name(const char* protocolName, unsigned long window, const void* record);
// True when `name` has that shape, so that a drop message can never make a
// site read and delete one of its window's other properties.
bool is_transfer_property_name(const char* protocolName, const char* name);

// What a drop names to open.
enum class DropKind { HostAndFiles, Text, Other };
constexpr size_t DROP_NAME_MAX = 4096;

// The file a drop of `n` bytes names: for a host-and-file-names list its
// first file, for text the text up to its first NUL without trailing line
// ends. Empty when there is none, or when the name is longer than any path.
std::string dropped_file_name(DropKind kind, const char* data, size_t n);
