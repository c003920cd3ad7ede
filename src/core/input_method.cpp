// Putting off the input method: Motif keeps its per-display input method
// record in the XmDisplay object and opens the input method when it finds
// no record. Until a text widget needs it, the record is a stand-in in the
// state Motif itself leaves when no input method can be opened (all zero:
// no XIM), which every Motif path handles; the first text widget's
// initialisation removes the stand-in, and Motif then opens the input
// method for it exactly as it would have at start-up.
#include "core/input_method.h"

#include <X11/IntrinsicP.h>
#include <Xm/DisplayP.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>

namespace {

// Larger than Motif's own record, all zero.
constexpr Cardinal STAND_IN_BYTES = 256;

XmDisplay xmDisplay;
XtPointer standIn;

struct Wrapped {
    WidgetClass* cls;
    XtInitProc initialize;
};
Wrapped wrapped[] = {{&xmTextWidgetClass, nullptr}, {&xmTextFieldWidgetClass, nullptr}};

void open_now()
{
    if (!standIn)
        return;
    if (xmDisplay && xmDisplay->display.xmim_info == standIn)
        xmDisplay->display.xmim_info = nullptr;
    XtFree(static_cast<char*>(standIn));
    standIn = nullptr;
}

// Runs first in the text classes' own initialisation, which registers the
// widget with the input method.
template <int I>
void initialize_text(Widget request, Widget created, ArgList args, Cardinal* count) noexcept
{
    open_now();
    if (wrapped[I].initialize)
        wrapped[I].initialize(request, created, args, count);
}

}  // namespace

void defer_input_method(Widget topLevel)
{
    if (standIn || !topLevel)
        return;
    Widget display = XmGetXmDisplay(XtDisplay(topLevel));
    if (!display || !XtIsSubclass(display, xmDisplayClass))
        return;
    xmDisplay = reinterpret_cast<XmDisplay>(display);
    if (xmDisplay->display.xmim_info)
        return;   // already open (or already failed to open)

    XtInitProc hooks[] = {initialize_text<0>, initialize_text<1>};
    for (size_t i = 0; i < XtNumber(wrapped); i++) {
        // The class itself is initialised when its first widget is made, as
        // before: its own initialisation does not touch this procedure.
        WidgetClass cls = *wrapped[i].cls;
        if (cls->core_class.initialize != hooks[i]) {
            wrapped[i].initialize = cls->core_class.initialize;
            cls->core_class.initialize = hooks[i];
        }
    }
    standIn = XtCalloc(1, STAND_IN_BYTES);
    xmDisplay->display.xmim_info = standIn;
}

bool input_method_deferred()
{
    return standIn != nullptr;
}
