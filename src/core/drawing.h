// The drawing record, the menu state it carries, and the registry of the
// eight drawing slots with the accessors every layer finds drawings by.
// Making, opening and closing drawings is the window's business (app/draw).
#pragma once

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cstdint>
#include <string>

#include "core/drag_constraint.h"

struct DrawingXpmInfo;
struct Selection;
struct SizeUndo;
struct ToolStroke;

constexpr int MAX_DRAWINGS = 8;
constexpr int MENU_ITEM_COUNT = 48;   // command numbers 0..47
constexpr int COLOUR_TABLE_SIZE = 256;
// The largest zoom exponent: an image pixel is then 16 x 16 screen pixels.
constexpr int MAX_ZOOM = 4;

// Widgets of the menu bar, indexed by command number, and the toggles' state.
struct MenuState {
    Widget items[MENU_ITEM_COUNT];
    Boolean toggles[MENU_ITEM_COUNT];
};

struct Drawing {
    Widget shell;
    Widget mainWindow;        // XmMainWindow "Window", user data = this record
    Widget menuBar;           // managed while open: how a closed record is recognised
    Widget toolsBox;
    Widget lineWidthBox;
    Widget patternsBox;
    Widget scrolledWindow;    // "scrollWin"
    Widget frame;             // "drawFrame"
    Widget actualArea;        // "drawArea" for zoom 0
    Widget zoomedArea;        // "drawArea" for zoom >= 1
    Widget activeArea;
    Widget colourDialogs[3];  // colour list, colour editor and its shell: unmanaged on close
    Widget smallArea;         // the small view's drawing area
    Widget bwArea;            // the black-and-white view's area (colour drawings)
    Widget colourList;        // colour list dialog; its ColorList is its XmNuserData
    MenuState menuState;
    int depth;                // 1 for a bitmap, else the screen depth
    uint16_t width, height;
    int zoom;
    // Whether the magnified canvas leaves the grid between its cells; each
    // window's own, starting from the showGrid resource.
    bool gridShown;

    // Per-drawing GCs: four from the shared set of the drawing's depth...
    GC copyGC;                // function only
    GC planeGC;               // fg black/1, bg white/0
    GC whiteGC;               // fg and bg white/0
    GC blackGC;               // fg black/1, bg white/0
    // ...and three of the drawing's own.
    GC foregroundGC;          // button 1
    GC backgroundGC;          // button 3
    GC scratchGC;             // clipped copies and other temporary work

    Pixmap image;
    Pixmap savedImage;
    Pixmap colourWork;        // colour drawings only
    XImage* imageCopy;        // what the magnified area shows, pixel for pixel
    Window activeWindow;
    int hotspotX, hotspotY;   // -1, -1 when none
    XtIntervalId hotspotBlink;   // the hotspot tool's marker timer, 0 when none
    int hotspotPhase;         // which marker colour the next blink draws
    // The hotspot before the hotspot tool's last click, for its undo. Kept
    // per drawing: an undo must not bring in another drawing's hotspot.
    int hotspotUndoX, hotspotUndoY;
    unsigned char modified;
    // One level of undo: whether the last stroke can be taken back. The
    // Edit menu's Undo item follows it.
    bool undoAvailable;
    SizeUndo* sizeUndo;       // the picture before a change of size, while Undo would bring it back
    unsigned char hasFile;
    int closing;              // set while the session manager ends the program
    unsigned char sessionClosed;   // closed by the session manager, window left up
    DrawingXpmInfo* xpmAttributes;
    Pixel* colourTable;       // COLOUR_TABLE_SIZE entries
    std::string name;

    // Input and tool state.
    int currentTool;
    int currentPattern;
    unsigned lineWidth;
    GC chosenGC;              // the GC chosen at the last press
    bool pressOffersUndo;     // the last press changed the drawing: its release offers undo
    int lastMotionX, lastMotionY;
    DragConstraint constraint;   // of the stroke under way
    int rectFilled, ovalFilled;
    Selection* selection;
    ToolStroke* stroke;       // what the current tool keeps of the stroke under way

    // Auxiliary views and status line.
    Widget smallViewDialog;
    Widget bwDialog;
    Pixmap bwPixmap;
    Widget statusLabel;
    Widget pointerLabel;      // beside it: what lies under the pointer...
    std::string pointerText;  // ...as it shows now
    // When the drawing was opened, counted up: a new window cascades from
    // the window of the drawing opened last.
    unsigned long openSerial;
};

struct Registry {
    Drawing* slots[MAX_DRAWINGS];
    int openCount;
    int nextSlot;
};
Registry& registry();

// True while the record is an open drawing (its menu bar is managed).
bool drawing_is_open(const Drawing* d);

// The drawing whose window `w` is in (through its application shell), or null.
Drawing* find_drawing_of_widget(Widget w);

// The drawing that a test or a command without a widget should act on:
// the first open one.
Drawing* first_open_drawing();
