// Placeholders for shell pieces still being built; each is replaced by the
// real unit.
#include "app/cursors.h"
#include "app/message.h"
#include "app/status.h"
#include "colour/converters.h"
#include "help/help_menu.h"

const char* const PICTREL_VERSION_STRING = "5.1.1";
int show_message(Widget, const char*, int, XtCallbackProc, XtPointer) { return 0; }
Widget message_dialog(int) { return nullptr; }
void show_warning(const char*, ...) {}
void show_error(const char*, ...) {}
void show_warning_named(const char*, const char*, ...) {}
void show_error_named(const char*, const char*, ...) {}
void create_cursors() {}
Cursor tool_cursor(int) { return None; }
void set_cursor(Drawing*, int) {}
void help_cursor_cb(Widget, Boolean, Cursor) {}
Widget create_status_area(Widget, Drawing*) { return nullptr; }
void update_status(Drawing*) {}
void show_version() {}
Widget version_dialog() { return nullptr; }
void install_converters(const char*) {}
void cut_at_blank(char*) {}
Pixmap builtin_icon_pixmap(Widget) { return None; }
Icon* make_icon_from_file(Widget, const char*, Pixel, Pixel) { return nullptr; }
void free_icon(Icon*) {}
Widget template_dialog(Widget, const char*, void (*)(Widget), ArgList, Cardinal, const DialogButton*) { return nullptr; }
Widget message_box(Widget, const char*, void (*)(Widget), ArgList, Cardinal, const DialogButton*) { return nullptr; }
void set_dialog_message(Widget, const char*) {}
void set_default_button(Widget, const char*) {}
Widget build_help_menu(Widget, Drawing*) { return nullptr; }
