// The typed message dialog through which every error and notice is shown
// (one dialog per button set, made at first use and reused), and the
// stand-alone "Warning Dialog" / "Error Dialog" windows.
#include "core/message.h"

#include <Xm/MessageB.h>
#include <Xm/MwmUtil.h>
#include <Xm/Xm.h>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/app_state.h"
#include "core/placement.h"
#include "core/template_dialog.h"
#include "core/window_place.h"
#include "core/x_owned.h"

namespace {

constexpr int SET_COUNT = 6;

struct ButtonSpec {
    const char* name;
    int code;
};

struct ButtonSet {
    ButtonSpec buttons[4];
    int count;
};

/* buttons of the row, in order (name, code)                                   count */
const ButtonSet buttonSets[SET_COUNT] = {
    {{{"OK", MSG_OK}}, 1},
    {{{"OK", MSG_OK}, {"Help", MSG_HELP}}, 2},
    {{{"Yes", MSG_YES}, {"No", MSG_NO}}, 2},
    {{{"Yes", MSG_YES}, {"No", MSG_NO}, {"Help", MSG_HELP}}, 3},
    {{{"Yes", MSG_YES}, {"No", MSG_NO}, {"Cancel", MSG_CANCEL}}, 3},
    {{{"Yes", MSG_YES}, {"No", MSG_NO}, {"Cancel", MSG_CANCEL}, {"Help", MSG_HELP}}, 4},
};

// Window-manager hints of the typed dialogs: decorations and functions.
constexpr int DIALOG_MWM_HINTS = 45;

Widget dialogs[SET_COUNT];
// Where a set's pending one-shot centring callback will centre it, so that
// a second show before the pop-up replaces it instead of stacking another.
Widget centreTargets[SET_COUNT];
bool centrePending[SET_COUNT];

// The pending response: replaced by every show.
XtCallbackProc pendingResponse = nullptr;
XtPointer pendingData = nullptr;

void button_cb(Widget w, XtPointer clientData, XtPointer callData) noexcept
{
    XmAnyCallbackStruct local{};
    auto* record = callData ? static_cast<XmAnyCallbackStruct*>(callData) : &local;
    record->reason = static_cast<int>(reinterpret_cast<intptr_t>(clientData));
    if (pendingResponse)
        pendingResponse(w, pendingData, record);
}

void empty_work_area(Widget) {}

}  // namespace

void centre_shell_over(Widget shell, Widget parent)
{
    if (!shell)
        return;
    Display* dpy = XtDisplay(shell);
    int px = 0, py = 0;
    int pw = WidthOfScreen(XtScreen(shell)), ph = HeightOfScreen(XtScreen(shell));
    if (parent && XtIsRealized(parent)) {
        XWindowAttributes attr;
        Window child;
        if (XGetWindowAttributes(dpy, XtWindow(parent), &attr) && attr.map_state == IsViewable) {
            XTranslateCoordinates(dpy, XtWindow(parent), RootWindowOfScreen(XtScreen(shell)), 0, 0, &px, &py,
                                  &child);
            pw = attr.width;
            ph = attr.height;
        }
    }
    int dw = 0, dh = 0;
    outer_size(shell, &dw, &dh);
    int x = centred_on_screen(px, pw, dw, WidthOfScreen(XtScreen(shell)));
    int y = centred_on_screen(py, ph, dh, HeightOfScreen(XtScreen(shell)));
    move_shell(shell, {x, y});
}

void raise_messages()
{
    for (Widget dialog : dialogs) {
        Widget shell = dialog ? XtParent(dialog) : nullptr;
        if (shell && XtIsManaged(dialog) && XtIsRealized(shell))
            XRaiseWindow(XtDisplay(shell), XtWindow(shell));
    }
}

namespace {

void centre_popup_cb(Widget shell, XtPointer clientData, XtPointer) noexcept
{
    int set = static_cast<int>(reinterpret_cast<intptr_t>(clientData));
    XtRemoveCallback(shell, XmNpopupCallback, centre_popup_cb, clientData);
    if (set < 0 || set >= SET_COUNT)
        return;
    centrePending[set] = false;
    centre_shell_over(shell, centreTargets[set]);
}

// Stand-alone windows -------------------------------------------------------

struct StandAlone {
    Widget shell;
    Widget box;
};

enum StandAloneKind { KIND_WARNING, KIND_ERROR };

StandAlone plainWindows[2];
StandAlone namedWindows[2];

constexpr size_t TEXT_SIZE = 600;

void hide_cb(Widget box, XtPointer clientData, XtPointer) noexcept
{
    auto* s = static_cast<StandAlone*>(clientData);
    XtUnmanageChild(box);
    if (s->shell && XtIsRealized(s->shell))
        XUnmapWindow(XtDisplay(s->shell), XtWindow(s->shell));
}

void show_stand_alone(StandAlone& s, StandAloneKind kind, const char* appName, const char* text)
{
    App& a = app();
    if (!a.display)
        return;
    const char* name = kind == KIND_WARNING ? "Warning Dialog" : "Error Dialog";
    if (!s.shell) {
        s.shell = XtVaAppCreateShell(appName ? appName : name, "Pictrel", applicationShellWidgetClass, a.display,
                                     XmNtitle, name, XmNmwmDecorations, MWM_DECOR_BORDER | MWM_DECOR_TITLE,
                                     XmNmwmFunctions, MWM_FUNC_ALL | MWM_FUNC_RESIZE, nullptr);
        Arg args[1];
        XtSetArg(args[0], XmNdialogType, kind == KIND_WARNING ? XmDIALOG_WARNING : XmDIALOG_ERROR);
        s.box = XmCreateMessageBox(s.shell, const_cast<char*>(name), args, 1);
        XtUnmanageChild(XmMessageBoxGetChild(s.box, XmDIALOG_CANCEL_BUTTON));
        XtUnmanageChild(XmMessageBoxGetChild(s.box, XmDIALOG_HELP_BUTTON));
        XtAddCallback(s.box, XmNokCallback, hide_cb, &s);
        add_dialog_help(s.box);
        XtManageChild(s.box);
        XtRealizeWidget(s.shell);
    }
    XmStringPtr str = localized(text);
    XtVaSetValues(s.box, XmNmessageString, str.get(), nullptr);
    XtManageChild(s.box);
    XMapWindow(a.display, XtWindow(s.shell));
}

void vshow(StandAlone* pair, StandAloneKind kind, const char* appName, const char* format, va_list ap)
{
    char text[TEXT_SIZE];
    if (!format)
        format = "";
    vsnprintf(text, sizeof text, format, ap);
    show_stand_alone(pair[kind], kind, appName, text);
}

const char* last_component(const char* path)
{
    if (!path || !*path)
        return "pictrel";
    const char* slash = strrchr(path, '/');
    return (slash && slash[1]) ? slash + 1 : path;
}

}  // namespace

Widget message_dialog(int set)
{
    if (set < 0 || set >= SET_COUNT)
        return nullptr;
    if (dialogs[set])
        return dialogs[set];
    if (!app().topLevel)
        return nullptr;
    const ButtonSet& bs = buttonSets[set];
    DialogButton buttons[5]{};
    for (int i = 0; i < bs.count; i++)
        buttons[i] = {bs.buttons[i].name, button_cb, reinterpret_cast<XtPointer>(intptr_t{bs.buttons[i].code})};
    Arg args[2];
    XtSetArg(args[0], XmNautoUnmanage, True);
    XtSetArg(args[1], XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL);
    Widget dialog = template_dialog(app().topLevel, "Error", empty_work_area, args, 2, buttons);
    if (!dialog)
        return nullptr;
    XtVaSetValues(XtParent(dialog), XmNmwmDecorations, DIALOG_MWM_HINTS, XmNmwmFunctions, DIALOG_MWM_HINTS,
                  nullptr);
    // Return answers with the first button of the row.
    set_default_button(dialog, bs.buttons[0].name);
    dialogs[set] = dialog;
    return dialog;
}

int show_message(Widget parent, const char* text, int set, XtCallbackProc response, XtPointer clientData)
{
    Widget dialog = message_dialog(set);
    if (!dialog)
        return -1;
    pendingResponse = response;
    pendingData = clientData;

    Widget shell = XtParent(dialog);
    XtPointer key = reinterpret_cast<XtPointer>(intptr_t{set});
    if (centrePending[set])
        XtRemoveCallback(shell, XmNpopupCallback, centre_popup_cb, key);
    centreTargets[set] = parent ? parent : app().topLevel;
    centrePending[set] = true;
    XtAddCallback(shell, XmNpopupCallback, centre_popup_cb, key);

    set_dialog_message(dialog, text);
    XtManageChild(dialog);
    if (XtIsRealized(shell))
        XRaiseWindow(XtDisplay(shell), XtWindow(shell));
    return 0;
}

void show_warning(const char* format, ...)
{
    va_list ap;
    va_start(ap, format);
    vshow(plainWindows, KIND_WARNING, nullptr, format, ap);
    va_end(ap);
}

void show_error(const char* format, ...)
{
    va_list ap;
    va_start(ap, format);
    vshow(plainWindows, KIND_ERROR, nullptr, format, ap);
    va_end(ap);
}

void show_warning_named(const char* programName, const char* format, ...)
{
    va_list ap;
    va_start(ap, format);
    vshow(namedWindows, KIND_WARNING, last_component(programName), format, ap);
    va_end(ap);
}

void show_error_named(const char* programName, const char* format, ...)
{
    va_list ap;
    va_start(ap, format);
    vshow(namedWindows, KIND_ERROR, last_component(programName), format, ap);
    va_end(ap);
}
