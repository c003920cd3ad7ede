// DrawingXpmInfo: what a drawing keeps of the XPM file it came from.
// Colour records hold six strings in libXpm's XpmColor order; only the
// monochrome and colour strings are ever set. Beside them the record keeps
// what a save writes back unchanged: each colour's symbolic name, by the
// cell the colour lives in (so that an edit in place keeps it), and the
// file's extensions. Strings, records and lists are taken with the
// toolkit's allocator.
#include <X11/Intrinsic.h>
#include <X11/xpm.h>

#include <cstring>

#include "files/image_io.h"
#include "files/mono_names.h"

namespace {

char* copy_string(const char* s) { return s ? XtNewString(s) : nullptr; }

void free_record(XpmColor* record)
{
    if (!record)
        return;
    XtFree(record->string);
    XtFree(record->symbolic);
    XtFree(record->m_color);
    XtFree(record->g4_color);
    XtFree(record->g_color);
    XtFree(record->c_color);
    XtFree(reinterpret_cast<char*>(record));
}

char** copy_names(char* const* from, unsigned count)
{
    if (!from || count == 0)
        return nullptr;
    auto** to = reinterpret_cast<char**>(XtCalloc(count, sizeof(char*)));
    for (unsigned i = 0; i < count; i++)
        to[i] = copy_string(from[i]);
    return to;
}

}  // namespace

XpmExtension* copy_xpm_extensions(const XpmExtension* from, unsigned count)
{
    if (!from || count == 0)
        return nullptr;
    auto* to = reinterpret_cast<XpmExtension*>(XtCalloc(count, sizeof(XpmExtension)));
    for (unsigned i = 0; i < count; i++) {
        to[i].name = copy_string(from[i].name);
        to[i].nlines = from[i].lines ? from[i].nlines : 0;
        to[i].lines = copy_names(from[i].lines, to[i].nlines);
    }
    return to;
}

void free_xpm_extensions(XpmExtension* extensions, unsigned count)
{
    if (!extensions)
        return;
    for (unsigned i = 0; i < count; i++) {
        XtFree(extensions[i].name);
        for (unsigned l = 0; extensions[i].lines && l < extensions[i].nlines; l++)
            XtFree(extensions[i].lines[l]);
        XtFree(reinterpret_cast<char*>(extensions[i].lines));
    }
    XtFree(reinterpret_cast<char*>(extensions));
}

void keep_file_extras(DrawingXpmInfo* info, const XpmImage& image, const XpmExtension* extensions,
                      unsigned extensionCount)
{
    // libXpm's pixel list, which `pixels` follows, holds the colours that
    // are not transparent in table order; their names go in the same order.
    if (info->tableCount > 0) {
        info->symbolicNames = reinterpret_cast<char**>(XtCalloc(info->tableCount, sizeof(char*)));
        unsigned kept = 0;
        for (unsigned i = 0; i < image.ncolors; i++) {
            const XpmColor& c = image.colorTable[i];
            if (transparent_colour(c.c_color)) {
                if (!info->transparentName)
                    info->transparentName = copy_string(c.symbolic);
            } else if (kept < info->tableCount) {
                info->symbolicNames[kept++] = copy_string(c.symbolic);
            }
        }
    }
    info->extensions = copy_xpm_extensions(extensions, extensionCount);
    info->extensionCount = info->extensions ? extensionCount : 0;
}

const char* symbolic_name_of(const DrawingXpmInfo* info, Pixel pixel, Pixel transparent)
{
    if (!info)
        return nullptr;
    if (pixel == transparent)
        return info->transparentName;
    for (unsigned i = 0; info->pixels && info->symbolicNames && i < info->tableCount; i++)
        if (info->pixels[i] == pixel)
            return info->symbolicNames[i];
    return nullptr;
}

void init_xpm_info(DrawingXpmInfo* info)
{
    if (!info)
        return;
    info->reserved = nullptr;
    info->colourCount = 0;
    info->colours = nullptr;
    info->pixels = nullptr;
    info->hintsCmt = XtNewString("hints");
    info->colorsCmt = XtNewString("color");
    info->pixelsCmt = XtNewString("pixels");
    info->rgbFileName = "rgb_fname";
    info->tableCount = 0;
    info->symbolicNames = nullptr;
    info->transparentName = nullptr;
    info->extensions = nullptr;
    info->extensionCount = 0;
}

DrawingXpmInfo* new_xpm_info()
{
    auto* info = reinterpret_cast<DrawingXpmInfo*>(XtMalloc(sizeof(DrawingXpmInfo)));
    init_xpm_info(info);
    return info;
}

void release_xpm_info(DrawingXpmInfo* info)
{
    if (!info)
        return;
    XtFree(static_cast<char*>(info->reserved));
    info->reserved = nullptr;
    if (info->colours) {
        for (unsigned i = 0; i < info->tableCount; i++)
            free_record(info->colours[i]);
        XtFree(reinterpret_cast<char*>(info->colours));
    }
    info->colours = nullptr;
    // The pixel list is ours (a copy of libXpm's), unlike the original
    // design where libXpm owned it; it goes with the records.
    XtFree(reinterpret_cast<char*>(info->pixels));
    info->pixels = nullptr;
    for (unsigned i = 0; info->symbolicNames && i < info->tableCount; i++)
        XtFree(info->symbolicNames[i]);
    XtFree(reinterpret_cast<char*>(info->symbolicNames));
    info->symbolicNames = nullptr;
    XtFree(info->transparentName);
    info->transparentName = nullptr;
    free_xpm_extensions(info->extensions, info->extensionCount);
    info->extensions = nullptr;
    info->extensionCount = 0;
    info->colourCount = 0;
    info->tableCount = 0;
    XtFree(info->hintsCmt);
    XtFree(info->colorsCmt);
    XtFree(info->pixelsCmt);
    info->hintsCmt = info->colorsCmt = info->pixelsCmt = nullptr;
    // rgbFileName points at a literal and is never freed.
}

void copy_xpm_info(DrawingXpmInfo* to, const DrawingXpmInfo* from)
{
    if (!to || to == from)
        return;
    release_xpm_info(to);
    init_xpm_info(to);
    if (!from)
        return;
    to->colourCount = from->colourCount;
    to->tableCount = from->tableCount;
    if (from->colours && from->tableCount) {
        to->colours = reinterpret_cast<XpmColor**>(
            XtCalloc(from->tableCount, sizeof(XpmColor*)));
        for (unsigned i = 0; i < from->tableCount; i++) {
            const XpmColor* src = from->colours[i];
            if (!src)
                continue;
            auto* rec = reinterpret_cast<XpmColor*>(XtCalloc(1, sizeof(XpmColor)));
            rec->string = copy_string(src->string);
            rec->symbolic = copy_string(src->symbolic);
            rec->m_color = copy_string(src->m_color);
            rec->g4_color = copy_string(src->g4_color);
            rec->g_color = copy_string(src->g_color);
            rec->c_color = copy_string(src->c_color);
            to->colours[i] = rec;
        }
    }
    if (from->pixels && from->tableCount) {
        to->pixels = reinterpret_cast<Pixel*>(XtMalloc(from->tableCount * sizeof(Pixel)));
        std::memcpy(to->pixels, from->pixels, from->tableCount * sizeof(Pixel));
    }
    to->symbolicNames = copy_names(from->symbolicNames, from->tableCount);
    to->transparentName = copy_string(from->transparentName);
    to->extensions = copy_xpm_extensions(from->extensions, from->extensionCount);
    to->extensionCount = to->extensions ? from->extensionCount : 0;
    if (from->hintsCmt) {
        XtFree(to->hintsCmt);
        to->hintsCmt = XtNewString(from->hintsCmt);
    }
    if (from->colorsCmt) {
        XtFree(to->colorsCmt);
        to->colorsCmt = XtNewString(from->colorsCmt);
    }
    if (from->pixelsCmt) {
        XtFree(to->pixelsCmt);
        to->pixelsCmt = XtNewString(from->pixelsCmt);
    }
}
