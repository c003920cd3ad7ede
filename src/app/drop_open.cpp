// The program's side of the drop-in protocol: a dropped file takes the road
// of File, Open from the read onward; a drag out has no drawing to carry.
#include "app/drop_open.h"

#include <X11/Xatom.h>
#include <sys/stat.h>

#include <cstring>
#include <string>

#include "app/draw.h"
#include "app/open_save.h"
#include "dropin/drop_data.h"
#include "files/read_status.h"

namespace {

constexpr int readOpenFailed = -1;   // libXpm's XpmOpenFailed: "Can't open the file %s."

}  // namespace

void drop_open_cb(Widget site, XtPointer, DropRecord* drop)
{
    if (!drop || !drop->valid || !drop->data || drop->format != 8)
        return;
    Display* dpy = XtDisplay(site);
    DropKind kind = drop->type == dropin_host_and_file_atom(dpy) ? DropKind::HostAndFiles
                    : drop->type == XA_STRING                    ? DropKind::Text
                                                                 : DropKind::Other;
    if (kind == DropKind::Other)
        return;
    std::string name = dropped_file_name(kind, static_cast<const char*>(drop->data), drop->nitems);
    if (name.empty())
        return;
    // Only regular files are read: a FIFO or a device would block or never end.
    struct stat st;
    if (stat(name.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) {
        // A file manager named a file that is not there (or not a file):
        // say so. Dropped text that names no file is simply not a file drop.
        if (kind == DropKind::HostAndFiles)
            report_read_status(site, readOpenFailed, name.c_str());
        return;
    }
    int status = open_file(name.c_str());
    if (status != 0 && status != OPEN_TOO_MANY)
        report_read_status(site, status, name.c_str());
}

void drop_reply(const long*, int, String*, Cardinal, DragOutRequest* request)
{
    static char text[] = "unimplemented";
    request->type = XA_STRING;
    request->format = 8;
    request->data = text;
    request->nitems = strlen(text);
    request->freeData = False;
}

void register_drop_site(Widget w)
{
    dropin_register(w, drop_reply, drop_open_cb, nullptr);
}
