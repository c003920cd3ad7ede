// DrawingXpmInfo: what a drawing keeps of the XPM file it came from.
// Colour records hold six strings in libXpm's XpmColor order; only the
// monochrome and colour strings are ever set. Strings, records and the
// pixel list are taken with the toolkit's allocator.
#include <X11/Intrinsic.h>
#include <X11/xpm.h>

#include <cstring>

#include "files/image_io.h"

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

}  // namespace

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
