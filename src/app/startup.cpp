// Start-up: toolkit, visual check, application resources and their range
// checks, shared GCs, converters, pictures, cursors, then the drawings.
#include "app/startup.h"

#include <Xm/Xm.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_defaults.h"
#include "app/chrome_hooks.h"
#include "app/cursors.h"
#include "app/draw.h"
#include "app/drop_open.h"
#include "app/open_save.h"
#include "app/status.h"
#include "app/usage.h"
#include "colour/converters.h"
#include "core/app_state.h"
#include "core/input_method.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "files/read_status.h"
#include "help/help_client.h"
#include "help/help_context.h"

namespace {

XrmOptionDescRec options[] = {
    {(char*)"-width", (char*)"*drawAreaWidth", XrmoptionSepArg, nullptr},
    {(char*)"-height", (char*)"*drawAreaHeight", XrmoptionSepArg, nullptr},
    {(char*)"-zoomLevel", (char*)"*zoomLevel", XrmoptionSepArg, nullptr},
    {(char*)"-debug", (char*)"*debug", XrmoptionSepArg, nullptr},
    {(char*)"-xpmType", (char*)"*xpmType", XrmoptionSepArg, nullptr},
};

#define RES_OFFSET(field) XtOffsetOf(AppResources, field)
#define STR_RES(name, cls, field, def) \
    {(char*)name, (char*)cls, XtRString, sizeof(String), RES_OFFSET(field), XtRString, (XtPointer)def}
#define INT_RES(name, cls, field, def) \
    {(char*)name, (char*)cls, XtRInt, sizeof(int), RES_OFFSET(field), XtRImmediate, (XtPointer)def}

const char* const defaultPixmapPath =
    "/usr/lib/X11/%L/orv/Pictrel/%T/%N%S:/usr/lib/X11/%l/orv/Pictrel/%T/%N%S:"
    "/usr/lib/X11/orv/Pictrel/%T/%N%S:/usr/lib/X11/%L/orv/%T/%N%S:/usr/lib/X11/%l/orv/%T/%N%S:"
    "/usr/lib/X11/orv/%T/%N%S:/usr/lib/X11/%L/%T/%N%S:/usr/lib/X11/%l/%T/%N%S:"
    "/usr/lib/X11/%T/%N%S:/usr/include/X11/%T/%N%S:/usr/include/X11/bitmaps/%N%S:"
    "%N%S/usr/lib/X11/orv/%L/%T/%N:/usr/lib/X11/orv/%l/%T/%N:/usr/lib/X11/orv/%T/%N";

// The plain resources; the four pictures come later, once the
// converters that read them are installed.
XtResource resources[] = {
    {(char*)"foreground", (char*)"Foreground", XtRPixel, sizeof(Pixel), RES_OFFSET(foreground),
     XtRString, (XtPointer) "XtDefaultForeground"},
    {(char*)"background", (char*)"Background", XtRPixel, sizeof(Pixel), RES_OFFSET(background),
     XtRString, (XtPointer) "XtDefaultBackground"},
    INT_RES("drawAreaWidth", "DrawAreaWidth", drawAreaWidth, 64),
    INT_RES("drawAreaHeight", "DrawAreaHeight", drawAreaHeight, 64),
    INT_RES("smallViewWidth", "SmallViewWidth", smallViewWidth, 64),
    INT_RES("smallViewHeight", "SmallViewHeight", smallViewHeight, 64),
    STR_RES("untitledFormatString", "UntitledFormatString", untitledFormatString, "Untitled"),
    INT_RES("zoomLevel", "ZoomLevel", zoomLevel, 3),
    {(char*)"movingSelection", (char*)"MovingSelection", XtRBoolean, sizeof(Boolean),
     RES_OFFSET(movingSelection), XtRImmediate, (XtPointer)False},
    {(char*)"showGrid", (char*)"ShowGrid", XtRBoolean, sizeof(Boolean), RES_OFFSET(showGrid), XtRImmediate,
     (XtPointer)True},
    INT_RES("debug", "Debug", debug, 0),
    STR_RES("xpmType", "XpmType", xpmType, ""),
    STR_RES("helpBook", "HelpBook", helpBook, "pictrel"),
    STR_RES("widthHeightString", "WidthHeightString", widthHeightString, "Width - %d, Height - %d"),
    STR_RES("tooManyDrawingsString", "TooManyDrawingsString", tooManyDrawingsString, "Too many drawings"),
    STR_RES("tooLargeWidthString", "TooLargeWidthString", tooLargeWidthString, "Width too big, Max = %d"),
    STR_RES("tooLargeHeightString", "TooLargeHeightString", tooLargeHeightString, "Height too big, Max = %d"),
    STR_RES("tooLargeBothString", "TooLargeBothString", tooLargeBothString,
            "Height and Width too big. \n Max Width = %d\n Max Height = %d "),
    STR_RES("openErrorString", "OpenErrorString", openErrorString, "Counldn't open file %s"),
    STR_RES("wrongVisualString", "WrongVisualString", wrongVisualString, "Pictrel only works under Psuedo Color"),
    STR_RES("overwriteString", "OverwriteWtring", overwriteString, "Overwrite %s?"),
    STR_RES("cantForkString", "CantForkString", cantForkString, "Can't fork help!!!"),
    STR_RES("cantExecString", "CantExecString", cantExecString, "Couldn't exec %d\n"),
    STR_RES("openFileErrorString", "OpenFileErrorString", openFileErrorString, "Can't open the file %s."),
    STR_RES("invalidFileString", "InvalidFileString", invalidFileString, "Invalid file %s."),
    STR_RES("outOfMemoryString", "OutOfMemoryString", outOfMemoryString, "Out of memory."),
    STR_RES("parseColorErr", "ParseColorErr", parseColorErr, "Invalid color name in file %s"),
    STR_RES("allocColorErr", "AllocColorErr", allocColorErr, "Unable to allocate color."),
    STR_RES("unknownErr", "UnknownErr", unknownErr, "Unknown Error."),
    STR_RES("cantLoadFontString", "CantLoadFontString", cantLoadFontString, "Sorry, unable to load font."),
    STR_RES("reduceColoursString", "ReduceColoursString", reduceColoursString,
            "%s has %d colours but only %d colour cells are free. Open it with its colours reduced to %d?"),
    STR_RES("coloursReducedString", "ColoursReducedString", coloursReducedString,
            "Colours reduced from %d to %d."),
    STR_RES("pixmapPath", "PixmapPath", pixmapPath, defaultPixmapPath),
};

// A value outside lowest <= value < limit is replaced by the limit itself,
// after a line on stderr; the replacement is one step above the accepted range.
void range_check(int* value, int lowest, int limit, const char* name)
{
    if (*value < lowest || *value >= limit) {
        fprintf(stderr, "%s out of range\n", name);
        *value = limit;
    }
}

void create_shared_gcs()
{
    App& a = app();
    XGCValues v{};
    v.function = GXcopy;
    a.gcs[GC_COPY] = XCreateGC(a.display, a.root, GCFunction, &v);
    v.plane_mask = AllPlanes;
    v.foreground = a.blackPixel;
    v.background = a.whitePixel;
    a.gcs[GC_PLANE] = XCreateGC(a.display, a.root, GCFunction | GCPlaneMask | GCForeground | GCBackground, &v);
    v.foreground = v.background = a.whitePixel;
    a.gcs[GC_WHITE] = XCreateGC(a.display, a.root, GCFunction | GCForeground | GCBackground, &v);
    v.foreground = a.blackPixel;
    v.background = a.whitePixel;
    a.gcs[GC_BLACK] = XCreateGC(a.display, a.root, GCFunction | GCForeground | GCBackground, &v);
    v.foreground = a.whitePixel;
    v.background = a.blackPixel;
    a.gcs[GC_INVERSE] = XCreateGC(a.display, a.root, GCFunction | GCForeground | GCBackground, &v);

    Pixmap bits = XCreatePixmap(a.display, a.root, 3, 3, 1);
    a.gcs[GC_BIT_COPY] = XCreateGC(a.display, bits, GCFunction, &v);
    v.plane_mask = AllPlanes;
    v.foreground = 1;
    v.background = 0;
    a.gcs[GC_BIT_PLANE] = XCreateGC(a.display, bits, GCFunction | GCPlaneMask | GCForeground | GCBackground, &v);
    v.foreground = 0;
    v.background = 0;
    a.gcs[GC_BIT_CLEAR] = XCreateGC(a.display, bits, GCFunction | GCForeground | GCBackground, &v);
    v.foreground = 1;
    v.background = 0;
    a.gcs[GC_BIT_SET] = XCreateGC(a.display, bits, GCFunction | GCForeground | GCBackground, &v);
    v.foreground = 0;
    v.background = 1;
    a.gcs[GC_BIT_INVERSE] = XCreateGC(a.display, bits, GCFunction | GCForeground | GCBackground, &v);
    XFreePixmap(a.display, bits);
}

// The atoms the toolkit interns one at a time while it builds its display
// and screen objects and the first window (drag and drop, the clipboard,
// the window manager's protocols), and our own that the first drawing
// window asks for (the session protocols and the drop protocol). Asked for
// here in one request before any of that: Xlib keeps the answers, so the
// later requests each find theirs without a round trip to the server. A name
// the toolkit no longer uses costs one unused atom; one it adds costs only
// the round trip it always did.
const char* const startAtoms[] = {
    "ATOM_PAIR", "AVERAGE_WIDTH", "PIXEL_SIZE", "RESOLUTION_Y", "WM_DELETE_WINDOW",
    "_MOTIF_DRAG_ATOMS", "_MOTIF_DRAG_INITIATOR_INFO", "_MOTIF_DRAG_PROXY_WINDOW", "_MOTIF_DRAG_RECEIVER_INFO",
    "_MOTIF_DRAG_TARGETS", "_MOTIF_DRAG_WINDOW", "CLIPBOARD", "CLIP_TEMPORARY", "COMPOUND_TEXT", "DELETE",
    "INCR", "INSERT_SELECTION", "LENGTH", "LINK_SELECTION", "MULTIPLE", "NULL", "TARGETS", "TEXT", "TIMESTAMP",
    "XmTRANSFER_FAILURE", "XmTRANSFER_SUCCESS", "WM_STATE", "_MOTIF_ATOM_0", "_MOTIF_CLIP_DATA_DELETE",
    "_MOTIF_CLIP_DATA_REQUEST", "_MOTIF_CLIP_HEADER", "_MOTIF_CLIP_LOCK_ACCESS_VALID", "_MOTIF_CLIP_MESSAGE",
    "_MOTIF_CLIP_NEXT_ID", "_MOTIF_CLIP_TIME", "_MOTIF_CLIPBOARD_TARGETS", "_MOTIF_DESTINATION",
    "_MOTIF_DRAG_OFFSET", "_MOTIF_DEFERRED_CLIPBOARD_TARGETS", "_MOTIF_DROP", "_MOTIF_EXPORT_TARGETS",
    "_MOTIF_LOSE_SELECTION", "_MOTIF_BINDINGS", "_MOTIF_WM_HINTS", "_MOTIF_WM_INFO", "_MOTIF_WM_MENU",
    "_MOTIF_WM_MESSAGES", "_MOTIF_WM_OFFSET", "WM_PROTOCOLS", "_MOTIF_DEFAULT_BINDINGS", "WM_LOCALE_NAME",
    "WM_CLIENT_LEADER", "Pixel Sets", "_XT_SELECTION_0",
    "WM_SAVE_YOURSELF", "WM_PREPARE_TO_DIE", "WM_CLOSEDOWN", "OXA_DROP_PROTOCOL", "HOST_AND_FILE_NAME",
};

void intern_start_atoms(Display* dpy)
{
    std::vector<char*> names;
    for (const char* name : startAtoms)
        names.push_back(const_cast<char*>(name));
    // The toolkit's customisation data is kept per screen.
    std::string custom = "Customize Data:" + std::to_string(DefaultScreen(dpy));
    names.push_back(custom.data());
    std::vector<Atom> atoms(names.size());
    XInternAtoms(dpy, names.data(), static_cast<int>(names.size()), False, atoms.data());
}

// XtAppInitialize taken apart, so that the atoms can be asked for between
// opening the display and creating the top-level shell, where the toolkit
// starts asking. The shell gets what XtAppInitialize would give it: the
// screen and the command line as it was before the toolkit took its options.
Widget open_toolkit(XtAppContext* context, int* argc, char** argv)
{
    const int savedArgc = *argc;
    std::vector<char*> saved(argv, argv + savedArgc);
    saved.push_back(nullptr);
    XtToolkitInitialize();
    *context = XtCreateApplicationContext();
    Display* dpy =
        XtOpenDisplay(*context, nullptr, nullptr, "Pictrel", options, XtNumber(options), argc, argv);
    if (!dpy) {
        // XtAppInitialize fails in its own words ("Can't open display: ..."),
        // naming the display it tried: let it, with the untouched command line.
        int n = savedArgc;
        return XtAppInitialize(context, "Pictrel", options, XtNumber(options), &n, saved.data(), nullptr,
                               nullptr, 0);
    }
    intern_start_atoms(dpy);
    Arg args[3];
    Cardinal n = 0;
    XtSetArg(args[n], XtNscreen, DefaultScreenOfDisplay(dpy)), n++;
    XtSetArg(args[n], XtNargc, savedArgc), n++;
    // The shell keeps a copy of its own.
    XtSetArg(args[n], XtNargv, saved.data()), n++;
    return XtAppCreateShell(nullptr, "Pictrel", applicationShellWidgetClass, dpy, args, n);
}

void wrong_visual_ok_cb(Widget, XtPointer, XtPointer)
{
    exit(0);
}

}  // namespace

int startup(int* argc, char** argv)
{
    XtSetLanguageProc(nullptr, nullptr, nullptr);
    App& a = app();
    a.topLevel = open_toolkit(&a.context, argc, argv);
    a.display = XtDisplay(a.topLevel);
    add_application_defaults(a.display);
    a.screen = DefaultScreen(a.display);
    a.root = RootWindow(a.display, a.screen);
    a.visual = DefaultVisual(a.display, a.screen);
    a.colormap = DefaultColormap(a.display, a.screen);
    a.screenDepth = DefaultDepth(a.display, a.screen);
    a.blackPixel = BlackPixel(a.display, a.screen);
    a.whitePixel = WhitePixel(a.display, a.screen);

    // The top-level widget only parents dialogs that have no drawing; it is
    // realised unmapped so that they have a window to be transient for.
    XtSetMappedWhenManaged(a.topLevel, False);
    XtVaSetValues(a.topLevel, XmNwidth, 1, XmNheight, 1, nullptr);
    defer_input_method(a.topLevel);
    XtRealizeWidget(a.topLevel);

    if (a.visual->c_class != PseudoColor) {
        // The message resources have not been fetched yet: use the built-in text.
        const char* text = a.res.wrongVisualString ? a.res.wrongVisualString
                                                   : "Pictrel only works under Psuedo Color";
        fprintf(stderr, "%s\n\n", text);
        show_message(a.topLevel, text, 0, wrong_visual_ok_cb, nullptr);
        return 1;
    }

    // Files dropped from the desktop open as drawings.
    register_drop_site(a.topLevel);

    XtGetApplicationResources(a.topLevel, &a.res, resources, XtNumber(resources), nullptr, 0);
    range_check(&a.res.drawAreaWidth, 1, 512, "drawAreaWidth");
    range_check(&a.res.drawAreaHeight, 1, 720, "drawAreaHeight");
    range_check(&a.res.smallViewWidth, 1, 512, "smallViewWidth");
    range_check(&a.res.smallViewHeight, 1, 720, "smallViewHeight");
    // Actual size, 0, is accepted as well: the restart command of a drawing
    // zoomed out to actual size carries "-zoomLevel 0", and the restarted
    // program must bring that zoom back rather than jump to 4.
    range_check(&a.res.zoomLevel, 0, MAX_ZOOM, "zoomLevel");

    int depth = 0;
    XtVaGetValues(a.topLevel, XtNdepth, &depth, nullptr);
    if (a.visual->map_entries < 256)
        depth = 1;
    if (depth < 8)
        depth = 1;
    a.res.depth = depth;

    create_shared_gcs();
    install_converters(a.res.pixmapPath);
    create_cursors();
    install_window_hooks();
    help_client_start(a.topLevel, a.res.helpBook, "Pictrel", show_version_over, help_cursor_cb);
    install_context_help();

    signal(SIGINT, SIG_IGN);
    signal(SIGHUP, SIG_IGN);

    a.res.programName = XtNewString(argv[0] ? argv[0] : "pictrel");
    return 0;
}

void open_start_files(int argc, char** argv)
{
    for (int i = 1; i < argc && i <= MAX_DRAWINGS; i++) {
        // Drawings of the command line are named through the untitled
        // format with the file name; the built-in "Untitled" names them
        // all alike, and the application defaults' "%s" by their files.
        std::string name = format_str(res().untitledFormatString, argv[i], "Untitled");
        int status = open_file(argv[i], name.c_str());
        if (status != 0 && status != OPEN_TOO_MANY)
            report_read_status(app().topLevel, status, argv[i]);
    }
    if (argc <= 1)
        new_untitled_drawing(nullptr, 0, 0);
    // Seven or more file arguments earn the warning, even when all seven open.
    if (argc >= 8)
        show_message(app().topLevel, res().tooManyDrawingsString, 0, nullptr, nullptr);
    // Nothing could be opened: keep the user in the program with an empty drawing.
    if (argc > 1 && registry().openCount == 0)
        new_untitled_drawing(nullptr, 0, 0);
}

void run_pictrel(int argc, char** argv)
{
    // Before the toolkit, which would take "-help" for a file name and needs a display.
    if (help_requested(argc, argv)) {
        fputs(usage_text(argv[0]).c_str(), stdout);
        exit(0);
    }
    if (startup(&argc, argv) == 0)
        open_start_files(argc, argv);
    XtAppMainLoop(app().context);
    exit(0);
}
