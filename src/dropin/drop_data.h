// What travels in a drop, as plain values: the host-and-file-names list,
// the five words of the drop message and the names of transfer properties.
// No X headers here; the protocol unit converts to and from X types.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Running out of memory for a drop ends the program, saying where
// ("dropin malloc error (where, size)" on standard output): there is no
// half-built drop worth keeping.
[[noreturn]] void dropin_malloc_error(const char* where, size_t size);

// The strings of a host-and-file-names list, the host name first.
using HostFiles = std::vector<std::string>;

// Splits the first `n` bytes of `data` at each NUL; bytes after the last NUL
// are not a string. At most `limit` strings are kept: a reader that wants
// only the first file need not copy the other million. A list too long for
// the memory left ends the program (dropin_malloc_error).
HostFiles split_host_files(const char* data, size_t n, size_t limit = static_cast<size_t>(-1));

// The host name, a NUL, each file name and a NUL; size() counts all of
// that, and the string's own terminator follows, so that its data reads as
// a C string.
std::string join_host_files(const std::string& host, const std::vector<std::string>& files);

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
