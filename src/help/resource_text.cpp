// The value formatting of the widget-tree browser: type names to kinds, and
// raw bytes to text.
#include "help/resource_text.h"

#include <X11/Intrinsic.h>
#include <Xm/Xm.h>

#include <cstdint>
#include <cstdio>
#include <climits>
#include <cstring>
#include <cwchar>

namespace {

struct KindOfType {
    const char* type;
    ValueKind kind;
};

/* type name                 kind */
const KindOfType kinds[] = {
    {XtRString,                ValueKind::String},
    {XmRValueWcs,              ValueKind::WideString},
    {XtRInt,                   ValueKind::Signed},
    {XtRShort,                 ValueKind::Signed},
    {XtRPosition,              ValueKind::Signed},
    {XmRHorizontalPosition,    ValueKind::Signed},
    {XmRVerticalPosition,      ValueKind::Signed},
    {XmRHorizontalInt,         ValueKind::Signed},
    {XmRVerticalInt,           ValueKind::Signed},
    {XtRDimension,             ValueKind::Unsigned},
    {XmRHorizontalDimension,   ValueKind::Unsigned},
    {XmRVerticalDimension,     ValueKind::Unsigned},
    {XmRBooleanDimension,      ValueKind::Unsigned},
    {XmRShellHorizDim,         ValueKind::Unsigned},
    {XmRShellVertDim,          ValueKind::Unsigned},
    {XmRShellHorizPos,         ValueKind::Signed},
    {XmRShellVertPos,          ValueKind::Signed},
    {XtRCardinal,              ValueKind::Unsigned},
    {XtRUnsignedChar,          ValueKind::Unsigned},
    {XtRBoolean,               ValueKind::Boolean},
    {XtRBool,                  ValueKind::Boolean},
    {XtRFloat,                 ValueKind::Float},
    {XtRPixel,                 ValueKind::Pixel},
    {XtRWidget,                ValueKind::Widget},
    {XmRMenuWidget,            ValueKind::Widget},
    {XtRWindow,                ValueKind::Window},
    {XtRCallback,              ValueKind::Callback},
    {XmRXmString,              ValueKind::XmString},
};

// The bytes as an unsigned number of their size; 0 for a size no number has.
uint64_t unsigned_of(const void* raw, size_t size)
{
    switch (size) {
    case 1: { uint8_t v; std::memcpy(&v, raw, 1); return v; }
    case 2: { uint16_t v; std::memcpy(&v, raw, 2); return v; }
    case 4: { uint32_t v; std::memcpy(&v, raw, 4); return v; }
    case 8: { uint64_t v; std::memcpy(&v, raw, 8); return v; }
    default: return 0;
    }
}

int64_t signed_of(const void* raw, size_t size)
{
    switch (size) {
    case 1: { int8_t v; std::memcpy(&v, raw, 1); return v; }
    case 2: { int16_t v; std::memcpy(&v, raw, 2); return v; }
    case 4: { int32_t v; std::memcpy(&v, raw, 4); return v; }
    case 8: { int64_t v; std::memcpy(&v, raw, 8); return v; }
    default: return 0;
    }
}

bool number_size(size_t size) { return size == 1 || size == 2 || size == 4 || size == 8; }

template <typename T>
T pointer_of(const void* raw, size_t size)
{
    T p = nullptr;
    if (size == sizeof p)
        std::memcpy(&p, raw, sizeof p);
    return p;
}

std::string hex(uint64_t v)
{
    char text[24];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(v));
    return text;
}

}  // namespace

ValueKind value_kind(const char* type)
{
    if (!type)
        return ValueKind::Other;
    for (const KindOfType& k : kinds)
        if (std::strcmp(k.type, type) == 0)
            return k.kind;
    return ValueKind::Other;
}

std::string rgb_text(unsigned short red, unsigned short green, unsigned short blue)
{
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", red >> 8, green >> 8, blue >> 8);
    return text;
}

std::string quoted_text(const char* text, size_t limit)
{
    if (!text)
        return "(null)";
    std::string out = "\"";
    size_t i = 0;
    for (; text[i] && i < limit; i++) {
        auto c = static_cast<unsigned char>(text[i]);
        switch (c) {
        case '\n': out += "\\n"; break;
        case '\t': out += "\\t"; break;
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        default:
            if (c < 0x20 || c == 0x7f) {
                char esc[8];
                std::snprintf(esc, sizeof esc, "\\%03o", c);
                out += esc;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    out += '"';
    if (text[i])
        out += "...";
    return out;
}

std::string quoted_wide_text(const wchar_t* text, size_t limit)
{
    if (!text)
        return "(null)";
    std::string narrow;
    std::mbstate_t state{};
    size_t i = 0;
    for (; text[i] && i < limit; i++) {
        char bytes[MB_LEN_MAX];
        size_t n = std::wcrtomb(bytes, text[i], &state);
        if (n == static_cast<size_t>(-1)) {
            narrow += '?';
            state = {};
        } else {
            narrow.append(bytes, n);
        }
    }
    std::string out = quoted_text(narrow.c_str(), narrow.size());
    if (text[i])
        out += "...";
    return out;
}

std::string value_text(const char* type, const void* raw, size_t size)
{
    if (!raw || size == 0)
        return "(no value)";
    switch (value_kind(type)) {
    case ValueKind::String:
        if (size != sizeof(char*))
            break;
        return quoted_text(pointer_of<const char*>(raw, size));
    case ValueKind::WideString:
        if (size != sizeof(wchar_t*))
            break;
        return quoted_wide_text(pointer_of<const wchar_t*>(raw, size));
    case ValueKind::Signed:
        if (number_size(size))
            return std::to_string(signed_of(raw, size));
        break;
    case ValueKind::Unsigned:
        if (number_size(size))
            return std::to_string(unsigned_of(raw, size));
        break;
    case ValueKind::Boolean:
        if (number_size(size))
            return unsigned_of(raw, size) ? "True" : "False";
        break;
    case ValueKind::Float:
        if (size == sizeof(float)) {
            float f;
            std::memcpy(&f, raw, sizeof f);
            char text[32];
            std::snprintf(text, sizeof text, "%g", static_cast<double>(f));
            return text;
        }
        break;
    case ValueKind::Callback: {
        if (size != sizeof(XtCallbackList))
            break;
        auto list = pointer_of<XtCallbackList>(raw, size);
        size_t count = 0;
        for (; list && list[count].callback; count++) {
        }
        return std::to_string(count) + (count == 1 ? " callback" : " callbacks");
    }
    case ValueKind::Widget:
    case ValueKind::XmString:
        if (size == sizeof(void*) && !pointer_of<const void*>(raw, size))
            return "(null)";
        break;
    case ValueKind::Window:
        if (number_size(size) && unsigned_of(raw, size) == 0)
            return "None";
        break;
    case ValueKind::Pixel:
    case ValueKind::Other:
        // Enumerations of one byte read best as numbers; the rest are ids
        // and pointers.
        if (size == 1)
            return std::to_string(unsigned_of(raw, size));
        if (size <= 4 && number_size(size))
            return std::to_string(signed_of(raw, size));
        break;
    }
    if (number_size(size))
        return hex(unsigned_of(raw, size));
    return "(" + std::to_string(size) + " bytes)";
}
