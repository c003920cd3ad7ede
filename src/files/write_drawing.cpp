// Writing a drawing to its file: the picture goes to a private staging
// folder first, is read back and synced there, and only then copied over
// the target, so that a failure anywhere leaves the old file whole.
#include "files/write_drawing.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "canvas/views.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "core/window_hooks.h"
#include "files/copy_file.h"
#include "files/gzip.h"
#include "files/image_io.h"
#include "files/staging.h"
#include "files/written_check.h"
#include "tools/hotspot.h"
#include "tools/selection.h"
#include "tools/text.h"

namespace {

// A drawing opened from a compressed XPM is saved compressed again: libXpm
// reads "name.gz" and "name.Z" only through gzip, so plain text under such
// a name would never open again. The staged file is compressed beside
// itself; returns the compressed file, or empty on failure.
bool compressed_name(const std::string& name)
{
    auto ends = [&](const char* s) {
        size_t n = std::strlen(s);
        return name.size() > n && name.compare(name.size() - n, n, s) == 0;
    };
    return ends(".gz") || ends(".Z");
}

std::string compress_staged(const Staging& staging)
{
    std::string out = staging.file + ".gz";
    int fd = open(out.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return {};
    pid_t pid = spawn_gzip("-cn", staging.file.c_str(), fd);
    close(fd);
    int status = pid > 0 ? wait_for_process(pid) : -1;
    if (pid > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return out;
    unlink(out.c_str());
    return {};
}

// Writes the staged file and checks it: the writer's status, the file read
// back as exactly the picture written, and the file synced. 0 when all hold.
int write_staged(Drawing* d, const std::string& staged, bool bw)
{
    Display* dpy = app().display;
    int status;
    if (bw || d->depth == 1) {
        Pixmap bits = bw && d->depth != 1 ? render_bw_pixmap(d) : d->image;
        if (!bits)
            return BitmapOpenFailed;
        status = XWriteBitmapFile(dpy, staged.c_str(), bits, d->width, d->height, d->hotspotX,
                                  d->hotspotY);
        if (status == BitmapSuccess)
            status = check_written_xbm(dpy, staged.c_str(), bits, d->width, d->height,
                                       d->hotspotX, d->hotspotY);
    } else {
        status = write_xpm_file(d, staged.c_str());
    }
    return status != 0 ? status : sync_file(staged.c_str());
}

}  // namespace

int write_drawing(Drawing* d, const char* target, bool bw)
{
    if (!d || !target || !*target || !d->image)
        return 1;
    settle_selection(d);
    hotspot_hide_marker(d);
    text_hide_caret(d);
    std::string destination = target;   // target may be d->name itself
    Staging staging;
    if (!make_staging(destination, &staging))
        return 1;

    // Nothing reaches the target unless every step before it succeeded; the
    // staging directory goes whatever happens, so failures never fill /tmp.
    int status = write_staged(d, staging.file, bw);
    std::string written = staging.file;
    if (status == 0 && !bw && d->depth != 1 && compressed_name(destination)) {
        written = compress_staged(staging);
        status = written.empty() ? 1
                                 : check_compressed_copy(staging.file.c_str(), written.c_str(),
                                                         d->hotspotX, d->hotspotY);
    }
    if (status == 0 && copy_file(written.c_str(), destination.c_str()) != 0)
        status = 1;
    if (!written.empty() && written != staging.file)
        unlink(written.c_str());
    remove_staging(staging);
    if (status != 0)
        return status;
    if (!bw) {
        d->name = destination;
        tell_name_changed(d);
    }
    return 0;
}
