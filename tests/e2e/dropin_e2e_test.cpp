// Dropping from the desktop onto the real program: a file list put on a drawing window the protocol's way opens its
// first file in a new window, and a list naming a missing file is reported with the program left running.
#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <cstdlib>
#include <fstream>
#include <string>

#include "dropin/drop_data.h"
#include "e2e_support.h"

namespace {

// Plays the file manager: writes the list on the site and announces it.
// Drops in flight at once need properties of their own.
void drop_files(Display* dpy, Window site, const char* file, const char* propertyName)
{
    size_t length = 0;
    char* list = join_host_files("desktop", &file, 1, &length);
    Atom property = XInternAtom(dpy, propertyName, False);
    XChangeProperty(dpy, site, property, XInternAtom(dpy, "HOST_AND_FILE_NAME", False), 8, PropModeReplace,
                    reinterpret_cast<unsigned char*>(list), static_cast<int>(length));
    free(list);
    XEvent m{};
    m.xclient = {ClientMessage, 0, False, dpy, site, XInternAtom(dpy, "OXA_DROP_PROTOCOL", False), 32, {}};
    pack_drop_words({CurrentTime, 20, 20, 0, false, XA_STRING, property}, m.xclient.data.l);
    XSendEvent(dpy, site, False, 0, &m);
    XSync(dpy, False);
}

}  // namespace

TEST(DropInE2e, DroppedFileOpensInANewWindow)
{
    E2eScratch scratch;
    std::string file = scratch.dir + "/dropped.xbm", missing = scratch.dir + "/gone.xpm";
    std::ofstream(file) << "#define d_width 6\n#define d_height 5\nstatic char d_bits[] = {\n"
                           "0x01, 0x02, 0x04, 0x08, 0x10};\n";
    E2eApp app;
    ASSERT_TRUE(app.connected());
    ASSERT_TRUE(app.start({}));
    Window untitled = app.wait_window("Untitled");
    ASSERT_NE(untitled, 0u);
    drop_files(app.display(), untitled, missing.c_str(), "OXA_DROP_PROTOCOL_9_1f");
    drop_files(app.display(), untitled, file.c_str(), "OXA_DROP_PROTOCOL_9_2f");
    EXPECT_NE(app.wait_window("dropped.xbm"), 0u) << "the dropped file opens as a drawing";
    EXPECT_NE(app.wait_window("Error"), 0u) << "a list naming a missing file is reported";
    EXPECT_TRUE(app.running());
}
