// Splitting and joining host-and-file-names lists, packing the drop message
// and naming transfer properties: pure functions over plain values.
#include "dropin/drop_data.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Running out of memory in the protocol ends the program with a line saying
// where; there is no half-built drop worth keeping.
[[noreturn]] void malloc_failed(const char* where, size_t size)
{
    printf("dropin malloc error (%s, %d)\n", where, static_cast<int>(size));
    fflush(stdout);
    exit(1);
}

void* checked_malloc(size_t size, const char* where)
{
    void* p = malloc(size ? size : 1);
    if (!p)
        malloc_failed(where, size);
    return p;
}

unsigned long low32(long v) { return static_cast<unsigned long>(v) & 0xffffffffUL; }

}  // namespace

HostFiles split_host_files(const char* data, size_t n, size_t limit)
{
    HostFiles list{nullptr, 0};
    if (!data)
        return list;
    size_t strings = std::count(data, data + n, '\0');
    strings = std::min(strings, limit);
    list.names = static_cast<char**>(checked_malloc(strings * sizeof(char*), "host_files"));
    const char* p = data;
    const char* end = data + n;
    while (static_cast<size_t>(list.count) < strings) {
        const char* nul = static_cast<const char*>(memchr(p, '\0', end - p));
        size_t len = nul - p;
        char* s = static_cast<char*>(checked_malloc(len + 1, "*host_files"));
        memcpy(s, p, len + 1);
        list.names[list.count++] = s;
        p = nul + 1;
    }
    return list;
}

void free_host_files(HostFiles* list)
{
    if (!list)
        return;
    for (int i = 0; i < list->count; i++)
        free(list->names[i]);
    free(list->names);
    list->names = nullptr;
    list->count = 0;
}

char* join_host_files(const char* host, const char* const* files, int count, size_t* length)
{
    if (!host)
        host = "";
    size_t total = strlen(host) + 1;
    for (int i = 0; i < count; i++)
        total += strlen(files[i] ? files[i] : "") + 1;
    // One byte more than reported, for the NUL that ends the whole list.
    char* buffer = static_cast<char*>(checked_malloc(total + 1, "host_files"));
    char* p = buffer;
    size_t hl = strlen(host) + 1;
    memcpy(p, host, hl);
    p += hl;
    for (int i = 0; i < count; i++) {
        const char* f = files[i] ? files[i] : "";
        size_t fl = strlen(f) + 1;
        memcpy(p, f, fl);
        p += fl;
    }
    *p = '\0';
    if (length)
        *length = total;
    return buffer;
}

std::string local_host_name()
{
    constexpr size_t hostMax = 50;
    char* name = static_cast<char*>(checked_malloc(hostMax + 1, "hostname"));
    if (gethostname(name, hostMax) != 0)
        name[0] = '\0';
    name[hostMax] = '\0';   // gethostname need not terminate a truncated name
    std::string host(name);
    free(name);
    return host;
}

void pack_drop_words(const DropWords& w, long out[5])
{
    unsigned long x = static_cast<unsigned long>(std::clamp(w.x, 0, 0xffff));
    unsigned long y = static_cast<unsigned long>(std::clamp(w.y, 0, 0xffff));
    out[0] = static_cast<long>(w.time & 0xffffffffUL);
    out[1] = static_cast<long>((x << 16) + y);
    out[2] = static_cast<long>((w.state & DROP_STATE_MASK) | (w.flag ? 0x80000000UL : 0));
    out[3] = static_cast<long>(w.type & 0xffffffffUL);
    out[4] = static_cast<long>(w.property & 0xffffffffUL);
}

DropWords unpack_drop_words(const long in[5])
{
    DropWords w{};
    w.time = low32(in[0]);
    w.x = static_cast<int>(low32(in[1]) >> 16);
    w.y = static_cast<int>(low32(in[1]) & 0xffff);
    w.state = static_cast<unsigned>(low32(in[2]) & DROP_STATE_MASK);
    w.flag = (low32(in[2]) & 0x80000000UL) != 0;
    w.type = low32(in[3]);
    w.property = low32(in[4]);
    return w;
}

std::string transfer_property_name(const char* protocolName, unsigned long window, const void* record)
{
    char numbers[64];
    snprintf(numbers, sizeof numbers, "_%d_%lx", static_cast<int>(window),
             static_cast<unsigned long>(reinterpret_cast<uintptr_t>(record)));
    return std::string(protocolName ? protocolName : "") + numbers;
}

bool is_transfer_property_name(const char* protocolName, const char* name)
{
    if (!protocolName || !name)
        return false;
    size_t pl = strlen(protocolName);
    if (strncmp(name, protocolName, pl) != 0 || name[pl] != '_')
        return false;
    // "-?[0-9]+" then "_" then "[0-9a-f]+", and nothing else.
    const char* p = name + pl + 1;
    if (*p == '-')
        p++;
    const char* digits = p;
    while (*p >= '0' && *p <= '9')
        p++;
    if (p == digits || *p != '_')
        return false;
    const char* hex = ++p;
    while ((*p >= '0' && *p <= '9') || (*p >= 'a' && *p <= 'f'))
        p++;
    return p != hex && *p == '\0';
}

std::string dropped_file_name(DropKind kind, const char* data, size_t n)
{
    if (!data || n == 0)
        return {};
    std::string name;
    if (kind == DropKind::HostAndFiles) {
        HostFiles list = split_host_files(data, n, 2);
        if (list.count > 1)
            name = list.names[1];
        free_host_files(&list);
    } else if (kind == DropKind::Text) {
        const char* nul = static_cast<const char*>(memchr(data, '\0', n));
        size_t len = nul ? static_cast<size_t>(nul - data) : n;
        if (len > DROP_NAME_MAX)
            return {};
        name.assign(data, len);
        // Text from a terminal or an editor often ends its line.
        while (!name.empty() && (name.back() == '\n' || name.back() == '\r'))
            name.pop_back();
    }
    if (name.size() > DROP_NAME_MAX)
        return {};
    return name;
}
