// Generated fixtures and small probes for the files tests.
#include "x_env.h"   // first: gtest before Xlib's macros
#include "files_support.h"

#include "core/window_place.h"

#include <Xm/Xm.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <Xm/FileSB.h>
#include <Xm/Text.h>

#include "app/commands.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "app/file_dialog.h"
#include "app/open_save.h"

namespace filetest {

namespace {

// Characters that may stand for a pixel ('"' and '\\' would need escapes).
const std::string pixelChars =
    " .XoO+@#$%&*=-;:>,<1234567890qwertyuipasdfghjklzxcvbnmMNBVCZASDFGHJKLPIUYTREWQ!~^/()_`'][{}|";

std::string code_of(int index, int cpp)
{
    std::string code;
    for (size_t i = 0, n = static_cast<size_t>(index); i < static_cast<size_t>(cpp); i++, n /= pixelChars.size())
        code += pixelChars[n % pixelChars.size()];
    return code;
}

}  // namespace

TestXpm pattern_xpm(int width, int height, int count, int cpp)
{
    TestXpm x{.width = width, .height = height, .cpp = cpp};
    for (int i = 0; i < count; i++) {
        char spec[16];
        // Distinct at 8 bits a channel, and never the program's own transparent grey by accident.
        std::snprintf(spec, sizeof spec, "#%02X%02X%02X", (i * 37 + 11) & 0xFF, (i * 89 + 3) & 0xFF,
                      (i * 7 + 200 + i / 36) & 0xFF);
        x.colours.push_back({spec, ""});
    }
    for (int y = 0; y < height; y++)
        for (int px = 0; px < width; px++)
            x.pixels.push_back((px * 3 + y * 7 + px * y) % count);
    for (int i = 0; i < count && i < width * height; i++)
        x.pixels[static_cast<size_t>(i)] = i;
    return x;
}

std::string xpm_text(const TestXpm& x)
{
    std::ostringstream s;
    s << "/* XPM */\nstatic char *pic[] = {\n\"" << x.width << ' ' << x.height << ' ' << x.colours.size()
      << ' ' << x.cpp;
    if (x.hotspotX >= 0)
        s << ' ' << x.hotspotX << ' ' << x.hotspotY;
    s << "\",\n";
    for (size_t i = 0; i < x.colours.size(); i++) {
        s << '"' << code_of(static_cast<int>(i), x.cpp) << " c " << x.colours[i].c;
        s << (x.colours[i].m.empty() ? "" : " m " + x.colours[i].m) << "\",\n";
    }
    for (int y = 0; y < x.height; y++) {
        s << '"';
        for (int px = 0; px < x.width; px++)
            s << code_of(x.pixels[static_cast<size_t>(y * x.width + px)], x.cpp);
        s << '"' << (y + 1 < x.height ? ",\n" : "};\n");
    }
    return s.str();
}

TestXbm pattern_xbm(int width, int height)
{
    TestXbm b{.width = width, .height = height};
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++)
            b.bits.push_back(((x * x + y * 3) % 5) < 2 ? 1 : 0);
    return b;
}

std::string xbm_text(const TestXbm& b, const char* name)
{
    std::ostringstream s;
    s << "#define " << name << "_width " << b.width << "\n#define " << name << "_height " << b.height << "\n";
    if (b.hotspotX >= 0)
        s << "#define " << name << "_x_hot " << b.hotspotX << "\n#define " << name << "_y_hot " << b.hotspotY << "\n";
    s << "static unsigned char " << name << "_bits[] = {\n";
    for (int y = 0; y < b.height; y++)
        for (int x0 = 0; x0 < b.width; x0 += 8) {
            int v = 0;
            for (int x = x0; x < x0 + 8 && x < b.width; x++)
                v |= b.bits[static_cast<size_t>(y * b.width + x)] << (x - x0);
            char hex[16];
            std::snprintf(hex, sizeof hex, y + x0 == 0 ? "0x%02x" : ", 0x%02x", v);
            s << hex;
        }
    s << "};\n";
    return s.str();
}

XbmBack read_xbm(const std::string& path)
{
    XbmBack b;
    Pixmap bits = None;
    b.status = XReadBitmapFile(app().display, app().root, path.c_str(), &b.width, &b.height, &bits, &b.hx, &b.hy);
    if (b.status != BitmapSuccess)
        return b;
    XImage* im = XGetImage(app().display, bits, 0, 0, b.width, b.height, 1, XYPixmap);
    for (unsigned y = 0; im && y < b.height; y++)
        for (unsigned x = 0; x < b.width; x++)
            b.bits.push_back(static_cast<int>(XGetPixel(im, static_cast<int>(x), static_cast<int>(y))));
    if (im)
        XDestroyImage(im);
    XFreePixmap(app().display, bits);
    return b;
}

ScratchDir::ScratchDir()
{
    char pattern[] = "/tmp/pictrel-files-test-XXXXXX";
    dir = mkdtemp(pattern) ? pattern : "/tmp";
}

ScratchDir::~ScratchDir()
{
    if (dir != "/tmp")
        std::system(("rm -rf '" + dir + "'").c_str());
}

std::string ScratchDir::file(const std::string& name, const std::string& contents) const
{
    std::ofstream(path(name), std::ios::binary) << contents;
    return path(name);
}

std::string read_file(const std::string& path)
{
    std::stringstream s;
    s << std::ifstream(path, std::ios::binary).rdbuf();
    return s.str();
}

std::string xm_resource_text(Widget w, const char* resource)
{
    XmString xs = nullptr;
    XtVaGetValues(w, resource, &xs, nullptr);
    if (!xs)
        return "";
    // Line breaks are separators inside the compound string: give them back as "\n".
    XmString separator = XmStringSeparatorCreate();
    Arg args[4];
    XtSetArg(args[0], XmNincludeStatus, XmINSERT);
    XtSetArg(args[1], XmNsubstitute, separator);
    XtSetArg(args[2], XmNpattern, const_cast<char*>("\n"));
    XtSetArg(args[3], XmNpatternType, XmCHARSET_TEXT);
    XmParseMapping newline = XmParseMappingCreate(args, 4);
    char* text = static_cast<char*>(
        XmStringUnparse(xs, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, &newline, 1, XmOUTPUT_ALL));
    XmParseMappingFree(newline);
    XmStringFree(separator);
    std::string out = text ? text : "";
    XtFree(text);
    XmStringFree(xs);
    return out;
}

void press(Widget dialog, const char* buttonName)
{
    Widget button = dialog ? XtNameToWidget(dialog, buttonName) : nullptr;
    if (!button) {
        ADD_FAILURE() << "no button " << buttonName;
        return;
    }
    XmPushButtonCallbackStruct cbs{};
    cbs.reason = XmCR_ACTIVATE;
    XtCallCallbacks(button, XmNactivateCallback, &cbs);
    pump();
}

bool centred_over(Widget dialogShell, Widget drawingShell)
{
    WindowBox d, s;
    if (!shown_box(dialogShell, &d) || !shown_box(drawingShell, &s))
        return false;
    return std::abs((d.x + d.width / 2) - (s.x + s.width / 2)) <= 1 &&
           std::abs((d.y + d.height / 2) - (s.y + s.height / 2)) <= 1;
}

Drawing* drawing_named(const std::string& name)
{
    for (Drawing* d : registry().slots)
        if (d && drawing_is_open(d) && d->name == name)
            return d;
    return nullptr;
}

int open_count() { return registry().openCount; }

int free_cells()
{
    std::vector<unsigned long> cells;
    unsigned long cell;
    while (XAllocColorCells(app().display, app().colormap, False, nullptr, 0, &cell, 1))
        cells.push_back(cell);
    if (!cells.empty())
        XFreeColors(app().display, app().colormap, cells.data(), static_cast<int>(cells.size()), 0);
    return static_cast<int>(cells.size());
}

unsigned rgb_of_pixel(unsigned long pixel)
{
    XColor c{};
    c.pixel = pixel;
    XQueryColor(app().display, app().colormap, &c);
    return ((c.red >> 8) << 16) | ((c.green >> 8) << 8) | (c.blue >> 8);
}

unsigned rgb_of_spec(const std::string& spec)
{
    XColor c{};
    if (spec[0] != '#' || !XParseColor(app().display, app().colormap, spec.c_str(), &c))
        return 0xFFFFFFFF;
    return ((c.red >> 8) << 16) | ((c.green >> 8) << 8) | (c.blue >> 8);
}

std::string text_of(Widget w)
{
    char* s = XmTextGetString(w);
    std::string v = s ? s : "";
    XtFree(s);
    return v;
}

void set_text(Widget w, const std::string& v) { XmTextSetString(w, const_cast<char*>(v.c_str())); }

std::string file_text() { return text_of(file_dialog_text()); }

void press_file_ok(const std::string& typed)
{
    if (!typed.empty())
        set_text(file_dialog_text(), typed);
    XmFileSelectionBoxCallbackStruct cbs{};
    cbs.reason = XmCR_OK;
    XtCallCallbacks(file_dialog(), XmNokCallback, &cbs);
    pump();
}

void command(Drawing* d, int cmd)
{
    run_command(d, cmd, nullptr, False);
    pump();
}

}  // namespace filetest
