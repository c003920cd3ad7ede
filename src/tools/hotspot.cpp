// The hotspot tool: a click sets the point an XBM (or XPM) file records as
// its hot spot. While the tool is chosen the hotspot blinks, drawn into
// the image in two contrasting colours in turn.
#include "tools/hotspot.h"

#include <X11/Xlib.h>

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "tools/geometry.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

constexpr unsigned long BLINK_MS = 100;

bool on_image(const Drawing* d, int x, int y)
{
    return x >= 0 && y >= 0 && x < d->width && y < d->height;
}

// Puts the image's own pixel back where the marker is drawn.
void unmark(Drawing* d)
{
    if (!on_image(d, d->hotspotX, d->hotspotY))
        return;
    restore_rect(d, d->hotspotX, d->hotspotY, 1, 1);
    refresh_rect(d, d->hotspotX, d->hotspotY, 1, 1);
}

void stop_blinking(Drawing* d)
{
    if (d->hotspotBlink)
        XtRemoveTimeOut(d->hotspotBlink);
    d->hotspotBlink = 0;
}

void blink(XtPointer clientData, XtIntervalId*)
{
    auto* d = static_cast<Drawing*>(clientData);
    d->hotspotBlink = 0;
    // A drawing closed while its hotspot blinked stops here.
    if (!drawing_is_open(d) || d->currentTool != TOOL_HOTSPOT || !d->image)
        return;
    GC marker = d->hotspotPhase ? d->blackGC : d->whiteGC;
    d->hotspotPhase = !d->hotspotPhase;
    if (on_image(d, d->hotspotX, d->hotspotY)) {
        XDrawPoint(app().display, d->image, marker, d->hotspotX, d->hotspotY);
        refresh_rect(d, d->hotspotX, d->hotspotY, 1, 1);
    }
    d->hotspotBlink = XtAppAddTimeOut(app().context, BLINK_MS, blink, d);
}

}  // namespace

void hotspot_hide_marker(Drawing* d)
{
    if (d && d->hotspotBlink)
        unmark(d);
}

void hotspot_input(Widget w, Drawing* d, XEvent* event)
{
    switch (event->type) {
    case TOOL_CREATED:
        d->hotspotBlink = 0;
        d->hotspotPhase = 1;
        break;
    case TOOL_SELECTED:
        // The marker's pixel is put back from savedImage: take it fresh,
        // so that a stroke painted since the last press is not undone
        // there. The drawing is not changed by this, so stays unmodified.
        if (d->image && d->savedImage)
            XCopyArea(app().display, d->image, d->savedImage, d->copyGC, 0, 0, d->width, d->height, 0, 0);
        if (!d->hotspotBlink)
            blink(d, nullptr);
        break;
    case TOOL_DESELECTED:
        stop_blinking(d);
        unmark(d);
        break;
    default:
        break;
    }
    if (palette_event(w, d, event, TOOL_HOTSPOT))
        return;
    switch (event->type) {
    case ButtonPress: {
        Point p = event_point(event);
        if (!on_image(d, p.x, p.y))
            break;
        unmark(d);
        d->hotspotUndoX = d->hotspotX;
        d->hotspotUndoY = d->hotspotY;
        d->hotspotX = p.x;
        d->hotspotY = p.y;
        // The hotspot is part of the file: closing must ask about it.
        d->modified = 1;
        break;
    }
    case TOOL_UNDO:
        unmark(d);
        d->hotspotX = d->hotspotUndoX;
        d->hotspotY = d->hotspotUndoY;
        set_undo_available(d, false);
        break;
    default:
        break;
    }
}
