// Process-wide X state and the application settings record.
// Start-up fills one App; every other unit reads it through app().
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

struct AppResources {
    char* programName;   // argv[0], copied
    Pixel foreground;
    Pixel background;    // the program's transparent pixel; replaced at each XPM read
    int drawAreaWidth;
    int drawAreaHeight;
    int depth;           // 1 (bitmap) or the screen depth
    int smallViewWidth;
    int smallViewHeight;
    int zoomLevel;
    String untitledFormatString;
    Boolean movingSelection;
    Boolean showGrid;    // new drawings start with the grid shown
    int debug;
    String helpBook;
    String xpmType;
    String widthHeightString;
    String tooManyDrawingsString;
    String tooLargeWidthString;
    String tooLargeHeightString;
    String tooLargeBothString;
    String openErrorString;
    String wrongVisualString;
    String overwriteString;
    String cantForkString;
    String cantExecString;
    String openFileErrorString;
    String invalidFileString;
    String outOfMemoryString;
    String parseColorErr;
    String allocColorErr;
    String unknownErr;
    String cantLoadFontString;
    String reduceColoursString;
    String coloursReducedString;
    String pixmapPath;
    Pixmap rectfilled_labelPixmap;
    Pixmap rectfilled_selectPixmap;
    Pixmap ovalfilled_labelPixmap;
    Pixmap ovalfilled_selectPixmap;
};

// The ten shared GCs made at start-up, all GXcopy. The first five are
// screen-depth (made on the root window), the last five depth-1.
enum SharedGC {
    GC_COPY,        // function only
    GC_PLANE,       // plane mask all ones, fg black, bg white
    GC_WHITE,       // fg and bg white
    GC_BLACK,       // fg black, bg white
    GC_INVERSE,     // fg white, bg black
    GC_BIT_COPY,    // function only
    GC_BIT_PLANE,   // plane mask all ones, fg 1, bg 0
    GC_BIT_CLEAR,   // fg 0, bg 0
    GC_BIT_SET,     // fg 1, bg 0
    GC_BIT_INVERSE, // fg 0, bg 1
    GC_SHARED_COUNT
};

struct App {
    XtAppContext context = nullptr;
    Widget topLevel = nullptr;
    Display* display = nullptr;
    int screen = 0;
    Window root = 0;
    Visual* visual = nullptr;
    Colormap colormap = 0;
    int screenDepth = 0;
    Pixel blackPixel = 0;
    Pixel whitePixel = 1;
    AppResources res{};
    GC gcs[GC_SHARED_COUNT]{};
};

App& app();
inline AppResources& res() { return app().res; }
