// Resource converters for pictures named in resources, and the builders of
// template dialogs and message boxes.
#pragma once

#include <X11/Intrinsic.h>

void install_converters(const char* pixmapPath);

// Cuts a resource value at its first blank or tab. Pure.
void cut_at_blank(char* name);

// The frowning face shown for a picture that cannot be found.
Pixmap builtin_icon_pixmap(Widget w);

struct Icon {
    Display* display;
    Colormap colormap;
    Pixmap pixmap;
    Pixmap mask;
    Pixel* pixels;
    int npixels;
    unsigned width, height;
};
Icon* make_icon_from_file(Widget w, const char* file, Pixel foreground, Pixel background);
void free_icon(Icon* icon);

struct DialogButton {
    const char* name;
    XtCallbackProc callback;
    XtPointer clientData;
};

// A template dialog whose work area is a form "main" filled by `fill`;
// `buttons` ends with a null name (at most 32). Returned unmanaged.
Widget template_dialog(Widget parent, const char* name, void (*fill)(Widget form),
                       ArgList args, Cardinal argCount, const DialogButton* buttons);
Widget message_box(Widget parent, const char* name, void (*fill)(Widget form),
                   ArgList args, Cardinal argCount, const DialogButton* buttons);
void set_dialog_message(Widget dialog, const char* text);

// Puts a dialog's built-in resource lines under the resource database, so
// that it still looks right without the application defaults file while
// that file (and the user's settings) win wherever they say something.
// Done once per `merged` flag.
void merge_fallback_resources(Display* dpy, const char* const* lines, size_t count, bool* merged);
void set_default_button(Widget dialog, const char* childName);
