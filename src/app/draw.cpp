// The registry of drawings and the window built around each one.
//
// Eight slots; a closed drawing keeps its record, shell and widgets in its
// slot and they are reused by the next drawing that takes the slot.
#include "app/draw.h"

#include <Xm/Form.h>
#include <Xm/MainW.h>
#include <Xm/Separator.h>
#include <Xm/Xm.h>
#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "app/commands.h"
#include "app/cursors.h"
#include "app/drop_open.h"
#include "app/menus.h"
#include "app/new_close.h"
#include "app/pointer_readout.h"
#include "app/reduce_question.h"
#include "app/session.h"
#include "app/slot_choice.h"
#include "app/status.h"
#include "app/window_icon.h"
#include "canvas/image_size.h"
#include "canvas/image_store.h"
#include "canvas/views.h"
#include "colour/color_list.h"
#include "core/app_state.h"
#include "core/dialog_titles.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "core/titles.h"
#include "core/window_place.h"
#include "files/colour_fit.h"
#include "files/image_io.h"
#include "help/help_client.h"
#include "tools/palettes.h"
#include "tools/selection.h"
#include "tools/tool_table.h"

namespace {

// The separator stands right of the widest palette. The palettes' own
// preferred widths are asked for: their current widths are not settled
// before the window is first laid out.
void place_separator(Drawing* d, Widget sep)
{
    if (!sep)
        return;
    Widget widest = nullptr;
    Dimension widestW = 0;
    for (Widget w : {d->toolsBox, d->lineWidthBox, d->patternsBox}) {
        if (!w)
            continue;
        XtWidgetGeometry preferred{};
        XtQueryGeometry(w, nullptr, &preferred);
        if (!widest || preferred.width > widestW) {
            widest = w;
            widestW = preferred.width;
        }
    }
    XtVaSetValues(sep, XmNleftAttachment, widest ? XmATTACH_WIDGET : XmATTACH_FORM, XmNleftWidget, widest,
                  nullptr);
}

// Keeps the window tall enough for the palettes and the canvas frame.
void shell_popup_cb(Widget, XtPointer clientData, XtPointer)
{
    Drawing* d = static_cast<Drawing*>(clientData);
    if (!d->lineWidthBox || !d->frame)
        return;
    Position y = 0;
    Dimension h = 0, frameH = 0;
    XtVaGetValues(d->lineWidthBox, XmNy, &y, XmNheight, &h, nullptr);
    XtVaGetValues(d->frame, XmNheight, &frameH, nullptr);
    int minHeight = y + h + 50;
    if (minHeight < 200)
        minHeight = 200;
    XtVaSetValues(d->shell, XmNminHeight, minHeight, nullptr);
    (void)frameH;
}

void colours_changed(XtPointer data)
{
    Drawing* d = static_cast<Drawing*>(data);
    d->modified = 1;
    if (d->bwDialog && XtIsManaged(d->bwDialog))
        bw_view_update(d, 0, 0, d->width, d->height);
}

// Lays the form's children out: palettes in a column on the left, the
// separator, the canvas frame filling the rest above the status area.
void attach_children(Drawing* d, Widget form, Widget statusTop, Widget sep)
{
    Widget column[] = {d->toolsBox, d->lineWidthBox, d->patternsBox};
    Widget above = nullptr;
    for (Widget w : column) {
        if (!w)
            continue;
        if (above)
            XtVaSetValues(w, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, above, XmNtopOffset, 6,
                          XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, 4, nullptr);
        else
            XtVaSetValues(w, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, 4,
                          XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, 4, nullptr);
        above = w;
    }
    // The column's foot is tied to the status area, so the form always
    // makes room for the whole column, however small the canvas.
    if (above && statusTop)
        XtVaSetValues(above, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, statusTop,
                      XmNbottomOffset, 4, nullptr);
    XtVaSetValues(sep, XmNorientation, XmVERTICAL, XmNtopAttachment, XmATTACH_FORM, XmNleftOffset, 4,
                  nullptr);
    place_separator(d, sep);

    if (statusTop)
        XtVaSetValues(sep, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, statusTop, nullptr);
    else
        XtVaSetValues(sep, XmNbottomAttachment, XmATTACH_FORM, nullptr);
    if (d->frame) {
        XtVaSetValues(d->frame, XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, 4,
                      XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, sep, XmNleftOffset, 4,
                      XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, 4, nullptr);
        if (statusTop)
            XtVaSetValues(d->frame, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, statusTop,
                          XmNbottomOffset, 4, nullptr);
        else
            XtVaSetValues(d->frame, XmNbottomAttachment, XmATTACH_FORM, XmNbottomOffset, 4, nullptr);
    }
    (void)form;
}

void build_window(Drawing* d)
{
    App& a = app();
    std::string progName = title_name(a.res.programName ? a.res.programName : "pictrel");
    d->shell = XtVaAppCreateShell(progName.c_str(), "Pictrel", applicationShellWidgetClass, a.display,
                                  XmNdeleteResponse, XmDO_NOTHING, XmNallowShellResize, True,
                                  nullptr);
    XtAddCallback(d->shell, XmNpopupCallback, shell_popup_cb, d);

    d->mainWindow = XtVaCreateManagedWidget("Window", xmMainWindowWidgetClass, d->shell,
                                            XmNuserData, d, nullptr);
    set_window_icon(d->shell, d->mainWindow);
    d->menuBar = build_menu_bar(d->mainWindow, d);
    Widget form = XtVaCreateWidget("drawForm", xmFormWidgetClass, d->mainWindow, nullptr);

    d->toolsBox = create_tools_box(form, d);
    d->lineWidthBox = create_line_width_box(form, d);
    d->patternsBox = create_patterns_box(form, d);
    d->frame = create_canvas(form, d);
    Widget statusTop = create_status_area(form, d);
    Widget sep = XtVaCreateManagedWidget("lineSep", xmSeparatorWidgetClass, form, nullptr);
    attach_children(d, form, statusTop, sep);
    XtManageChild(form);
    XtVaSetValues(d->mainWindow, XmNworkWindow, form, nullptr);

    attach_pointer_readout(d);
    install_protocols(d);
}

// Colour drawings have a colour list dialog; a slot first used by a bitmap
// gets it when a colour drawing first takes the slot.
void ensure_colour_list(Drawing* d)
{
    if (d->depth == 1) {
        // The list a colour drawing left in this window still holds that
        // drawing's GCs, freed and remade for the bitmap: let it hold none.
        set_list_gcs(d->colourList, nullptr, nullptr);
        return;
    }
    if (!d->colourList) {
        ColorEntry* anchor = nullptr;
        d->colourList = create_color_list_dialog(d->shell, d->foregroundGC, d->backgroundGC, &anchor,
                                                 colours_changed, d);
        d->colourDialogs[0] = d->colourList;
        if (d->colourList) {
            remember_dialog_role(d->colourList, "Colors");
            XtAddCallback(XtParent(d->colourList), XmNpopupCallback, beside_drawing_cb, d);
        }
    } else {
        set_list_gcs(d->colourList, d->foregroundGC, d->backgroundGC);
    }
}

// A new window steps down and right from the window of the drawing opened
// last, on the screen and never exactly over another drawing's window.
// The first window stays where it was asked to be (-geometry), kept on the
// screen. Called before the shell maps, when its size is known.
void place_drawing_window(Drawing* d)
{
    std::vector<Drawing*> others;
    for (Drawing* o : registry().slots)
        if (o && o != d && drawing_is_open(o))
            others.push_back(o);
    std::sort(others.begin(), others.end(),
              [](const Drawing* a, const Drawing* b) { return a->openSerial < b->openSerial; });
    std::vector<WindowBox> open;
    for (Drawing* o : others) {
        WindowBox b;
        if (shown_box(o->shell, &b))
            open.push_back(b);
    }
    if (open.empty()) {
        keep_shell_on_screen(d->shell);
        return;
    }
    int w = 0, h = 0, sw = 0, sh = 0;
    outer_size(d->shell, &w, &h);
    screen_size(d->shell, &sw, &sh);
    move_shell(d->shell, cascade_origin(open, w, h, sw, sh));
}

void show_bitmap_items(Drawing* d)
{
    Widget items[] = {menu_item(d, 7 /* SaveAsBW */), menu_item(d, 21 /* ShowBWView */)};
    for (Widget w : items) {
        if (!w)
            continue;
        if (d->depth == 1)
            XtUnmanageChild(w);
        else
            XtManageChild(w);
    }
    // A bitmap paints set and clear bits: it has no colours to list.
    if (Widget colours = menu_item(d, CMD_SHOW_COLORS))
        XtSetSensitive(colours, d->depth != 1);
}

// Undoes a create that failed half way: the slot looks as if the drawing
// had never opened.
void abandon_drawing(Drawing* d, int slot)
{
    if (ColorList* list = color_list_of_dialog(d->colourList)) {
        free_all_colors(list);
        release_transparent_cell(list);
    }
    XtUnmanageChild(d->menuBar);
    XtPopdown(d->shell);
    registry().openCount--;
    registry().nextSlot = slot;
}

}  // namespace

Drawing* create_drawing(const char* name, int width, int height, int depth, Pixmap source,
                        int hotspotX, int hotspotY, const DrawingXpmInfo* xpm, ImagePtr sourceCopy)
{
    Registry& r = registry();
    if (r.openCount >= MAX_DRAWINGS || r.nextSlot < 0) {
        show_message(app().topLevel, res().tooManyDrawingsString, 0, nullptr, nullptr);
        return nullptr;
    }
    int slot = r.nextSlot;
    SlotState states[MAX_DRAWINGS];
    for (int i = 0; i < MAX_DRAWINGS; i++)
        states[i] = !r.slots[i] ? SlotState::Empty
                    : drawing_is_open(r.slots[i]) ? SlotState::Open : SlotState::Closed;
    r.openCount++;
    r.nextSlot = choose_next_slot(states, MAX_DRAWINGS, slot);

    Drawing* d = r.slots[slot];
    if (!d) {
        d = new Drawing{};
        d->colourTable = new Pixel[COLOUR_TABLE_SIZE]{};
        r.slots[slot] = d;
    }
    d->name = name ? name : "";
    d->width = static_cast<uint16_t>(width);
    d->height = static_cast<uint16_t>(height);
    d->depth = depth;
    d->hotspotX = hotspotX;
    d->hotspotY = hotspotY;
    d->hotspotUndoX = hotspotX;
    d->hotspotUndoY = hotspotY;
    d->hasFile = source != None;
    d->modified = 0;
    d->closing = 0;
    d->sessionClosed = 0;
    d->zoom = res().zoomLevel;
    d->gridShown = res().showGrid;

    if (!d->xpmAttributes)
        d->xpmAttributes = new_xpm_info();
    if (xpm)
        copy_xpm_info(d->xpmAttributes, xpm);

    create_drawing_gcs(d);
    if (!d->shell)
        build_window(d);
    ensure_colour_list(d);

    static unsigned long openings = 0;
    d->openSerial = ++openings;

    reset_tool_state(d);
    // Realised and sized before it maps, so that it can be placed whole:
    // a window that maps first and moves after is seen jumping.
    XtRealizeWidget(d->shell);
    // The top-level widget never maps: files are dropped on drawing windows.
    register_drop_site(d->shell);
    size_canvas(d);
    show_bitmap_items(d);
    place_drawing_window(d);
    XtPopup(d->shell, XtGrabNone);
    // A message shown before this window (a file of the command line that
    // would not open) must not disappear under it.
    raise_messages();

    if (d->depth != 1 && load_color_list(d->colourList, xpm) != 0) {
        show_message(d->shell, res().allocColorErr, 0, nullptr, nullptr);
        // Give the slot back as if the drawing had never opened.
        abandon_drawing(d, slot);
        return nullptr;
    }
    set_name(d, d->name.c_str());
    if (create_image(d, source, std::move(sourceCopy)) != 0) {
        show_message(d->shell, res().outOfMemoryString, 0, nullptr, nullptr);
        abandon_drawing(d, slot);
        return nullptr;
    }
    XtManageChild(d->menuBar);
    update_status(d);
    update_zoom_sensitivity(d);
    show_toggle_state(d, CMD_SHOW_GRID, d->gridShown);
    if (d->currentTool >= 0 && d->currentTool < toolCount)
        set_cursor(d, toolTable[d->currentTool].cursor);
    update_restart_command(d);
    return d;
}

Drawing* new_untitled_drawing(const char* name, int width, int height)
{
    if (registry().openCount >= MAX_DRAWINGS) {
        show_message(app().topLevel, res().tooManyDrawingsString, 0, nullptr, nullptr);
        return nullptr;
    }
    std::string made;
    if (!name || !*name) {
        made = format_int(res().untitledFormatString, registry().nextSlot, "Untitled");
        name = made.c_str();
    }
    if (width <= 0)
        width = res().drawAreaWidth;
    if (height <= 0)
        height = res().drawAreaHeight;
    return create_drawing(name, width, height, res().depth, None, -1, -1, nullptr);
}

int open_file(const char* path, const char* name)
{
    if (registry().openCount >= MAX_DRAWINGS) {
        show_message(app().topLevel, res().tooManyDrawingsString, 0, nullptr, nullptr);
        return OPEN_TOO_MANY;
    }
    int width = 0, height = 0, depth = 1, hx = -1, hy = -1;
    Pixmap pixmap = None;
    DrawingXpmInfo info;
    init_xpm_info(&info);
    ColourFit fit;
    XImage* picture = nullptr;
    int status = read_image_file(path, &width, &height, &depth, &pixmap, &hx, &hy, &info, &fit, &picture);
    if (status == READ_TOO_MANY_COLOURS) {
        // More colours than free cells: with the user's leave, read it
        // again with its colours reduced; without, the read's usual refusal.
        fit.reduceTo = ask_colour_reduction(nullptr, path, fit);
        status = fit.reduceTo == 0 ? 1
                                   : read_image_file(path, &width, &height, &depth, &pixmap, &hx, &hy,
                                                     &info, &fit, &picture);
        if (status == READ_TOO_MANY_COLOURS)
            status = 1;
    }
    if (status == 0) {
        Drawing* d = create_drawing(name ? name : path, width, height, depth, pixmap, hx, hy, &info,
                                    ImagePtr(picture));
        if (!d)
            status = 1;
        XFreePixmap(app().display, pixmap);
        if (d && fit.reduced) {
            // The drawing is not what the file holds: saving must not be skipped.
            d->modified = 1;
            std::string note = format_int2(res().coloursReducedString, static_cast<int>(fit.colours),
                                           static_cast<int>(fit.reduceTo), "Colours reduced from %d to %d.");
            show_status_note(d, note.c_str());
        }
    }
    release_xpm_info(&info);
    return status;
}

void set_name(Drawing* d, const char* name)
{
    if (d->name != name)
        d->name = name;
    show_name(d);
}

void show_name(Drawing* d)
{
    std::string base = title_name(d->name);
    XtVaSetValues(d->shell, XmNtitle, base.c_str(), nullptr);
    if (XtIsRealized(d->shell))
        XtVaSetValues(d->shell, XmNiconName, base.c_str(), nullptr);
    // The windows that belong to the drawing say whose they are.
    for (Widget dialog : {d->colourList, d->smallViewDialog, d->bwDialog})
        title_dialog_for(dialog, d->name);
}

void close_drawing(Drawing* d)
{
    Registry& r = registry();
    for (int i = 0; i < MAX_DRAWINGS; i++)
        if (r.slots[i] == d)
            r.nextSlot = i;
    // The record may be reused: its selection and the picture kept for
    // undo go with the picture.
    drop_selection(d);
    drop_size_undo(d);
    if (!d->closing) {
        XtUnmanageChild(d->menuBar);
        XtPopdown(d->shell);
        for (Widget w : d->colourDialogs)
            if (w)
                XtUnmanageChild(w);
        hide_views(d);
        // The cells go back to the colormap for the drawings still to come.
        if (ColorList* list = color_list_of_dialog(d->colourList)) {
            free_all_colors(list);
            release_transparent_cell(list);
        }
    } else {
        // The window stays up while the session ends; this marks it done.
        d->sessionClosed = 1;
    }
    r.openCount--;
}

void after_close(Drawing* d)
{
    if (registry().openCount == 0 && !(d && d->closing)) {
        help_client_shutdown();
        exit(0);
    }
}
