// The DrawFilled toggle: filled rectangles and ovals, and the toolbar
// pictures of the two tools switched between outline and filled.
#include "tools/shapes.h"

#include <Xm/Xm.h>

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/shape_state.h"
#include "tools/stroke.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

ShapePictures pictures[2];

#define PIX_RES(name, cls, field) \
    {(char*)name, (char*)cls, XmRPrimForegroundPixmap, sizeof(Pixmap), XtOffsetOf(AppResources, field), \
     XtRImmediate, (XtPointer)XmUNSPECIFIED_PIXMAP}

XtResource filledResources[] = {
    PIX_RES("rectfilled_labelPixmap", "Rectfilled_labelPixmap", rectfilled_labelPixmap),
    PIX_RES("rectfilled_selectPixmap", "Rectfilled_selectPixmap", rectfilled_selectPixmap),
    PIX_RES("ovalfilled_labelPixmap", "Ovalfilled_labelPixmap", ovalfilled_labelPixmap),
    PIX_RES("ovalfilled_selectPixmap", "Ovalfilled_selectPixmap", ovalfilled_selectPixmap),
};

#undef PIX_RES

bool usable(Pixmap p)
{
    return p != None && p != XmUNSPECIFIED_PIXMAP;
}

// The filled pictures of one shape: from the resources when they name
// usable pictures, else drawn from the built-in filled icon.
void find_filled_pictures(Widget toggle, int shape, ShapePictures& p)
{
    read_filled_picture_resources();
    Pixmap label = shape == 1 ? res().ovalfilled_labelPixmap : res().rectfilled_labelPixmap;
    Pixmap select = shape == 1 ? res().ovalfilled_selectPixmap : res().rectfilled_selectPixmap;
    if (usable(label) && usable(select)) {
        p.filledLabel = label;
        p.filledSelect = select;
    } else {
        icon_pixmaps(toggle, shape == 1 ? &ovalFilledIcon : &rectFilledIcon, &p.filledLabel,
                     &p.filledSelect);
    }
}

void show_pictures(Drawing* d, const char* path, int shape, bool filled)
{
    if (!d || !d->shell)
        return;
    Widget toggle = XtNameToWidget(d->shell, path);
    if (!toggle)
        return;
    ShapePictures& p = pictures[shape];
    if (filled && (!usable(p.filledLabel) || !usable(p.filledSelect)))
        find_filled_pictures(toggle, shape, p);
    Pixmap label = filled ? p.filledLabel : p.outlineLabel;
    Pixmap select = filled ? p.filledSelect : p.outlineSelect;
    if (!usable(label) || !usable(select))
        return;
    XtVaSetValues(toggle, XmNselectPixmap, select, nullptr);
    XtVaSetValues(toggle, XmNlabelPixmap, label, nullptr);
}

}  // namespace

ShapePictures& shape_pictures(int shape)
{
    return pictures[shape == 1 ? 1 : 0];
}

void record_shape_pictures(Widget toggle, int shape)
{
    if (!toggle)
        return;
    ShapePictures& p = shape_pictures(shape);
    XtVaGetValues(toggle, XmNlabelPixmap, &p.outlineLabel, XmNselectPixmap, &p.outlineSelect,
                  nullptr);
    // The filled ones are worked out when DrawFilled first shows them.
    p.filledLabel = p.filledSelect = None;
}

// Most sessions never switch DrawFilled on, and converting the four
// pictures (a file search, a read and the colour symbols each) was a fair
// part of opening the first window; so they are converted on first use,
// from the same resources and by the same converter.
void read_filled_picture_resources()
{
    static bool done = false;
    if (done || !app().topLevel)
        return;
    done = true;
    XtGetApplicationResources(app().topLevel, &app().res, filledResources, XtNumber(filledResources), nullptr,
                              0);
}

void shape_input(Widget w, Drawing* d, XEvent* event, int tool, int shape, int* filled)
{
    if (event->type == TOOL_CREATED) {
        *filled = 0;
        palette_event(w, d, event, tool);
        record_shape_pictures(w, shape);
        return;
    }
    if (palette_event(w, d, event, tool))
        return;
    switch (event->type) {
    case ButtonPress: {
        ToolStroke& s = stroke_of(d);
        s.start = s.last = event_point(event);
        s.width = static_cast<int>(d->lineWidth);
        break;
    }
    case TOOL_UNDO: {
        // Only the last shape's area goes back, not the whole image.
        const ToolStroke& s = stroke_of(d);
        Box b = grow_box(box_of(s.start, s.last), s.width);
        restore_rect(d, b.x, b.y, b.width, b.height);
        refresh_rect(d, b.x, b.y, b.width, b.height);
        set_undo_available(d, false);
        break;
    }
    default:
        break;
    }
}

void set_rectangle_filled(Drawing* d, bool on)
{
    if (!d)
        return;
    d->rectFilled = on ? 1 : 0;
    show_pictures(d, "*rect", 0, on);
}

void toggle_oval_filled(Drawing* d)
{
    if (!d)
        return;
    d->ovalFilled = d->ovalFilled ? 0 : 1;
    show_pictures(d, "*oval", 1, d->ovalFilled == 1);
}

int cmd_draw_filled(Drawing* d, XEvent* event, Boolean set)
{
    if (!d)
        return 1;
    // The rectangle follows the menu while the oval flips: both start
    // unfilled and change only here, so they agree.
    set_rectangle_filled(d, set);
    toggle_oval_filled(d);
    return 0;
}

Point shape_drag_point(Drawing* d, XEvent* event)
{
    Point p = event_point(event);
    if (event_state(event) & ShiftMask)
        p = constrain_square(stroke_of(d).start, p);
    return p;
}
