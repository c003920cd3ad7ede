// The registry of drawing slots and the ways every layer finds a drawing:
// by slot, by a widget of its window, or the first one open.
#include "core/drawing.h"

#include <X11/Shell.h>

Registry& registry()
{
    static Registry r{};
    return r;
}

bool drawing_is_open(const Drawing* d)
{
    return d && d->menuBar && XtIsManaged(d->menuBar);
}

Drawing* first_open_drawing()
{
    // One closed by the session manager keeps its window but is done with.
    for (Drawing* d : registry().slots)
        if (drawing_is_open(d) && !d->sessionClosed)
            return d;
    return nullptr;
}

Drawing* find_drawing_of_widget(Widget w)
{
    while (w && !XtIsApplicationShell(w))
        w = XtParent(w);
    if (!w)
        return nullptr;
    for (Drawing* d : registry().slots)
        if (d && d->shell == w)
            return d;
    return nullptr;
}
