// Asks libXt where it would find the application defaults of the class "Pictrel" along its own built-in search
// path, answering its questions about files from an installation staged under DESTDIR (argv[1]). Prints the path
// found and exits 0, or exits 1 when none is found.
#include <X11/Intrinsic.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string destDir;

Boolean exists_when_installed(String path) noexcept
{
    struct stat st {};
    return stat((destDir + path).c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: %s DESTDIR\n", argv[0]);
        return 2;
    }
    destDir = argv[1];
    // Otherwise the toolkit would search the path that the variable gives
    // (the source tree, in the tests) instead of its own.
    unsetenv("XFILESEARCHPATH");
    XtToolkitInitialize();
    XtAppContext context = XtCreateApplicationContext();
    int dummyArgc = 1;
    Display* dpy = XtOpenDisplay(context, nullptr, "find_installed_defaults", "PictrelInstallCheck", nullptr, 0,
                                 &dummyArgc, argv);
    if (!dpy) {
        fprintf(stderr, "cannot open the display\n");
        return 2;
    }
    String found = XtResolvePathname(dpy, "app-defaults", "Pictrel", nullptr, nullptr, nullptr, 0,
                                     exists_when_installed);
    if (!found)
        return 1;
    printf("%s\n", found);
    return 0;
}
