// Linked into the sanitizer tree only, around libXpm's two file readers
// (through the linker's --wrap): it tells LeakSanitizer which memory libXpm
// itself loses while it parses a file, and nothing more.
//
// The parser of libXpm 3.5 loses memory of its own: the overwritten string
// when a colour line names a key twice ("c red c blue"), and the per-
// character index tables of a two-characters-a-pixel image when the pixel
// rows end early. A suppression cannot single these out: the same parser
// functions, at the same depth, allocate the colour table and the pixels
// that they hand over to us, and those must stay watched (forgetting to
// free them is our leak). So every block allocated during a read is
// recorded; once the read returns, whatever is still allocated and not
// handed over to the caller is libXpm's own and is ignored. After a failed
// read nothing is handed over.
#include <X11/Xlib.h>
#include <X11/xpm.h>
#include <sanitizer/allocator_interface.h>
#include <sanitizer/lsan_interface.h>

#include <cstddef>
#include <initializer_list>

extern "C" {
int __real_XpmReadFileToXpmImage(char* filename, XpmImage* image, XpmInfo* info);
int __real_XpmReadFileToImage(Display* display, char* filename, XImage** image_return,
                              XImage** shapeimage_return, XpmAttributes* attributes);
int __wrap_XpmReadFileToXpmImage(char* filename, XpmImage* image, XpmInfo* info);
int __wrap_XpmReadFileToImage(Display* display, char* filename, XImage** image_return,
                              XImage** shapeimage_return, XpmAttributes* attributes);
}

namespace {

// The blocks allocated and not yet freed since the read began. The hooks run
// inside the allocator, so they must not allocate: a fixed table.
constexpr size_t MAX_RECORDED = 1 << 16;
const volatile void* recorded[MAX_RECORDED];
size_t recordedCount;
bool recording;
bool overflowed;

void malloc_hook(const volatile void* p, size_t)
{
    if (!recording)
        return;
    if (recordedCount < MAX_RECORDED)
        recorded[recordedCount++] = p;
    else
        overflowed = true;
}

void free_hook(const volatile void* p)
{
    if (!recording || !p)
        return;
    for (size_t i = recordedCount; i-- > 0;) {
        if (recorded[i] == p) {
            recorded[i] = recorded[--recordedCount];
            return;
        }
    }
}

__attribute__((constructor)) void install_hooks()
{
    __sanitizer_install_malloc_and_free_hooks(malloc_hook, free_hook);
}

// What the read hands over, so that it stays watched.
constexpr size_t MAX_KEPT = 4096;
struct Kept {
    const void* blocks[MAX_KEPT];
    size_t count;
    void add(const void* p)
    {
        if (p && count < MAX_KEPT)
            blocks[count++] = p;
    }
    bool has(const volatile void* p) const
    {
        for (size_t i = 0; i < count; i++)
            if (blocks[i] == p)
                return true;
        return false;
    }
};

Kept kept;

void begin_read()
{
    recordedCount = 0;
    overflowed = false;
    kept.count = 0;
    recording = true;
}

void keep_colours(const XpmColor* table, unsigned n)
{
    kept.add(table);
    for (unsigned i = 0; table && i < n; i++)
        for (const char* s : {table[i].string, table[i].symbolic, table[i].m_color, table[i].g4_color,
                              table[i].g_color, table[i].c_color})
            kept.add(s);
}

void keep_extensions(const XpmExtension* ext, unsigned n)
{
    kept.add(ext);
    for (unsigned i = 0; ext && i < n; i++) {
        kept.add(ext[i].name);
        kept.add(ext[i].lines);
        for (unsigned j = 0; ext[i].lines && j < ext[i].nlines; j++)
            kept.add(ext[i].lines[j]);
    }
}

void keep_image(const XImage* image)
{
    if (!image)
        return;
    kept.add(image);
    kept.add(image->data);
}

// What is still allocated and not kept is libXpm's. A table that
// overflowed ignores nothing, so that nothing of ours is lost from sight:
// the leaks then reported are libXpm's, and the table is too small.
void end_read()
{
    if (overflowed || kept.count == MAX_KEPT)
        return;
    for (size_t i = 0; i < recordedCount; i++)
        if (!kept.has(recorded[i]))
            __lsan_ignore_object(const_cast<const void*>(recorded[i]));
}

}  // namespace

int __wrap_XpmReadFileToXpmImage(char* filename, XpmImage* image, XpmInfo* info)
{
    // What was asked for decides what was returned.
    unsigned long asked = info ? info->valuemask : 0;
    begin_read();
    int status = __real_XpmReadFileToXpmImage(filename, image, info);
    recording = false;
    if (status >= XpmSuccess) {
        keep_colours(image->colorTable, image->ncolors);
        kept.add(image->data);
        if (asked & XpmReturnComments) {
            kept.add(info->hints_cmt);
            kept.add(info->colors_cmt);
            kept.add(info->pixels_cmt);
        }
        if (asked & XpmReturnExtensions)
            keep_extensions(info->extensions, info->nextensions);
    }
    end_read();
    return status;
}

int __wrap_XpmReadFileToImage(Display* display, char* filename, XImage** image_return,
                              XImage** shapeimage_return, XpmAttributes* attributes)
{
    unsigned long asked = attributes ? attributes->valuemask : 0;
    // Infos without the colour table return libXpm 3.4's table of pointers,
    // which is not followed here: such a read ignores nothing.
    if ((asked & XpmReturnInfos) && !(asked & XpmReturnColorTable))
        return __real_XpmReadFileToImage(display, filename, image_return, shapeimage_return, attributes);
    begin_read();
    int status = __real_XpmReadFileToImage(display, filename, image_return, shapeimage_return, attributes);
    recording = false;
    if (status >= XpmSuccess) {
        keep_image(image_return ? *image_return : nullptr);
        keep_image(shapeimage_return ? *shapeimage_return : nullptr);
        if (asked & XpmReturnPixels)
            kept.add(attributes->pixels);
        if (asked & XpmReturnAllocPixels)
            kept.add(attributes->alloc_pixels);
        if (asked & XpmReturnColorTable)
            keep_colours(attributes->colorTable, attributes->ncolors);
        if (asked & XpmReturnInfos) {
            kept.add(attributes->hints_cmt);
            kept.add(attributes->colors_cmt);
            kept.add(attributes->pixels_cmt);
        }
        if (asked & XpmReturnExtensions)
            keep_extensions(attributes->extensions, attributes->nextensions);
    }
    end_read();
    return status;
}
