// Fuzzes what a drop site makes of the bytes another client sends it: the
// host-and-file-names list, the text of a text drop, the five words of the
// drop message and the name of the transfer property. The first byte of an
// input chooses the kind of data, the rest is the data.
//
// - A list splits into one string per NUL, each the bytes before its NUL;
//   a limit keeps the first strings; joining the strings gives the bytes
//   back up to the last NUL.
// - The file a drop names is the list's second string, or the text up to
//   its first NUL less its line ends, never longer than a path may be.
// - Unpacking the message words and packing them again loses only what the
//   protocol does not carry.
// - A transfer property's name, as the source makes it, is always one that
//   a site accepts.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "dropin/drop_data.h"

namespace {

[[noreturn]] void fail(const char* what, long a = 0, long b = 0)
{
    std::fprintf(stderr, "drop data fuzzer: %s (%ld, %ld)\n", what, a, b);
    std::abort();
}

// The strings a list of `n` bytes holds, the reference way.
std::vector<std::string> strings_of(const char* data, size_t n)
{
    std::vector<std::string> out;
    size_t start = 0;
    for (size_t i = 0; i < n; i++)
        if (data[i] == '\0') {
            out.emplace_back(data + start, i - start);
            start = i + 1;
        }
    return out;
}

void check_list(const char* data, size_t n, size_t limit)
{
    std::vector<std::string> want = strings_of(data, n);
    HostFiles all = split_host_files(data, n);
    if (all.size() != want.size())
        fail("strings in a list", static_cast<long>(all.size()), static_cast<long>(want.size()));
    for (size_t i = 0; i < all.size(); i++)
        if (want[i] != all[i])
            fail("a string of a list", static_cast<long>(i));
    HostFiles some = split_host_files(data, n, limit);
    if (some.size() != std::min(limit, want.size()))
        fail("strings kept under a limit", static_cast<long>(some.size()), static_cast<long>(limit));
    for (size_t i = 0; i < some.size(); i++)
        if (some[i] != all[i])
            fail("a string kept under a limit", static_cast<long>(i));
    if (!all.empty()) {
        std::string joined = join_host_files(all[0], HostFiles(all.begin() + 1, all.end()));
        size_t length = joined.size();
        size_t end = 0;
        for (const std::string& s : want)
            end += s.size() + 1;
        if (length != end || std::memcmp(joined.data(), data, end) != 0 || joined.c_str()[length] != '\0')
            fail("a list joined again", static_cast<long>(length), static_cast<long>(end));
    }
}

void check_name(DropKind kind, const char* data, size_t n)
{
    std::string name = dropped_file_name(kind, data, n);
    if (name.size() > DROP_NAME_MAX || name.find('\0') != std::string::npos)
        fail("a dropped name longer than a path or holding a NUL", static_cast<long>(name.size()));
    std::string want;
    if (kind == DropKind::HostAndFiles) {
        std::vector<std::string> list = strings_of(data, n);
        if (list.size() > 1)
            want = list[1];
    } else if (kind == DropKind::Text) {
        want.assign(data, strnlen(data, n));
        if (want.size() > DROP_NAME_MAX)
            want.clear();
        while (!want.empty() && (want.back() == '\n' || want.back() == '\r'))
            want.pop_back();
    }
    if (want.size() > DROP_NAME_MAX)
        want.clear();
    if (name != want)
        fail("the dropped name", static_cast<long>(name.size()), static_cast<long>(want.size()));
}

void check_words(const char* data, size_t n)
{
    long in[5] = {0, 0, 0, 0, 0};
    std::memcpy(in, data, std::min(n, sizeof in));
    DropWords w = unpack_drop_words(in);
    if (w.x < 0 || w.x > 0xffff || w.y < 0 || w.y > 0xffff || w.state > DROP_STATE_MASK)
        fail("unpacked words out of their fields", w.x, w.y);
    long out[5];
    pack_drop_words(w, out);
    for (int i = 0; i < 5; i++) {
        unsigned long want = static_cast<unsigned long>(in[i]) & 0xffffffffUL;
        if (i == 2)
            want &= DROP_STATE_MASK | 0x80000000UL;
        if ((static_cast<unsigned long>(out[i]) & 0xffffffffUL) != want)
            fail("a word packed again", i);
    }
    DropWords again = unpack_drop_words(out);
    if (again.time != w.time || again.x != w.x || again.y != w.y || again.state != w.state ||
        again.flag != w.flag || again.type != w.type || again.property != w.property)
        fail("words unpacked twice differ");
}

void check_property_names(const char* data, size_t n)
{
    std::string text(data, strnlen(data, n));
    // The name a site gets: any text, even one that is almost a transfer name.
    is_transfer_property_name("OXA_DROP_PROTOCOL", text.c_str());
    is_transfer_property_name(text.c_str(), text.c_str());
    unsigned long window = 0;
    uintptr_t record = 0;
    std::memcpy(&window, data, std::min(n, sizeof window));
    if (n > sizeof window)
        std::memcpy(&record, data + sizeof window, std::min(n - sizeof window, sizeof record));
    std::string made = transfer_property_name("OXA_DROP_PROTOCOL", window, reinterpret_cast<const void*>(record));
    if (!is_transfer_property_name("OXA_DROP_PROTOCOL", made.c_str()))
        fail("a transfer name the site refuses");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    if (size == 0)
        return 0;
    // A copy of exactly the data's length, so that any read past it shows.
    std::vector<char> copy(bytes + 1, bytes + size);
    static const char nothing = '\0';
    size_t n = copy.size();
    const char* data = n ? copy.data() : &nothing;
    switch (bytes[0] % 4) {
    case 0:
        check_list(data, n, bytes[0] / 4 % 5);
        break;
    case 1:
        check_name(bytes[0] & 4 ? DropKind::Text : DropKind::HostAndFiles, data, n);
        check_name(DropKind::Other, data, n);
        break;
    case 2:
        check_words(data, n);
        break;
    case 3:
        check_property_names(data, n);
        break;
    }
    return 0;
}
