// Splitting and joining host-and-file-names lists, packing the drop message
// and naming transfer properties: pure functions over plain values.
#include "dropin/drop_data.h"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

unsigned long low32(long v) { return static_cast<unsigned long>(v) & 0xffffffffUL; }

}  // namespace

void dropin_malloc_error(const char* where, size_t size)
{
    printf("dropin malloc error (%s, %d)\n", where, static_cast<int>(size));
    fflush(stdout);
    exit(1);
}

HostFiles split_host_files(const char* data, size_t n, size_t limit)
{
    HostFiles list;
    if (!data)
        return list;
    size_t strings = std::count(data, data + n, '\0');
    strings = std::min(strings, limit);
    // The list's length comes from another client: it may not fit.
    try {
        list.reserve(strings);
    } catch (const std::bad_alloc&) {
        dropin_malloc_error("host_files", strings * sizeof(std::string));
    }
    const char* p = data;
    const char* end = data + n;
    while (list.size() < strings) {
        const char* nul = static_cast<const char*>(memchr(p, '\0', end - p));
        size_t len = nul - p;
        try {
            list.emplace_back(p, len);
        } catch (const std::bad_alloc&) {
            dropin_malloc_error("*host_files", len + 1);
        }
        p = nul + 1;
    }
    return list;
}

std::string join_host_files(const std::string& host, const std::vector<std::string>& files)
{
    size_t total = host.size() + 1;
    for (const std::string& f : files)
        total += f.size() + 1;
    std::string list;
    try {
        list.reserve(total);
    } catch (const std::bad_alloc&) {
        dropin_malloc_error("host_files", total + 1);
    }
    // Names end at their first NUL, as C strings would.
    list.append(host.c_str()).push_back('\0');
    for (const std::string& f : files)
        list.append(f.c_str()).push_back('\0');
    return list;
}

std::string local_host_name()
{
    constexpr size_t hostMax = 50;
    char name[hostMax + 1] = {};
    if (gethostname(name, hostMax) != 0)
        name[0] = '\0';
    name[hostMax] = '\0';   // gethostname need not terminate a truncated name
    return name;
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
        if (list.size() > 1)
            name = list[1];
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
