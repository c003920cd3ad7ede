// A tooltip is a few lines of text converted to a compound string a
// character at a time; the twenty-odd of a drawing window's palettes cost a
// tenth of the start-up when the buttons converted them as they were made.
// They are only wanted once the pointer has rested on a button for most of
// a second, so the conversion waits for the pointer to enter the palette.
// The text is looked up for each button as the toolkit would have looked it
// up, and converted by the toolkit's own converter, which frees it with the
// button as before.
#include "tools/palette_tips.h"

#include <Xm/Xm.h>

#include <cstring>

namespace {

void give_tips_eh(Widget box, XtPointer, XEvent*, Boolean*)
{
    XtRemoveEventHandler(box, EnterWindowMask, False, give_tips_eh, nullptr);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(box, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal i = 0; i < count; i++) {
        Widget button = children[i];
        String text = nullptr;
        XtResource tip = {const_cast<char*>(XmNtoolTipString), const_cast<char*>(XmCToolTipString), XtRString,
                          sizeof(String), 0, XtRString, nullptr};
        XtGetApplicationResources(button, &text, &tip, 1, nullptr, 0);
        if (!text)
            continue;
        XmString converted = nullptr;
        XrmValue from{static_cast<unsigned>(std::strlen(text) + 1), text};
        XrmValue to{sizeof converted, reinterpret_cast<XPointer>(&converted)};
        if (XtConvertAndStore(button, XtRString, &from, XmRXmString, &to) && converted)
            XtVaSetValues(button, XmNtoolTipString, converted, nullptr);
    }
}

}  // namespace

void no_tip_yet(Arg* arg)
{
    XtSetArg(*arg, const_cast<char*>(XmNtoolTipString), nullptr);
}

void tips_on_first_entry(Widget box)
{
    XtAddEventHandler(box, EnterWindowMask, False, give_tips_eh, nullptr);
}
