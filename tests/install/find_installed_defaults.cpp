// Asks libXt where it would find the application defaults of the class "Pictrel" along its own built-in search
// path, answering its questions about files from an installation staged under DESTDIR (argv[1]). Prints the path
// found and exits 0, or exits 1 when none is found.
#include <X11/Intrinsic.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string>

static std::string destDir;

static Boolean exists_when_installed(String path) noexcept
{
    struct stat st {};
    return stat((destDir + path).c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: %s DESTDIR\n", argv[0]);
        return 2;
    }
    destDir = argv[1];
    unsetenv("XFILESEARCHPATH");   // the tests point it at the source tree; the toolkit's own path is asked here
    XtToolkitInitialize();
    int dummyArgc = 1;
    Display* dpy = XtOpenDisplay(XtCreateApplicationContext(), nullptr, "find_installed_defaults",
                                 "PictrelInstallCheck", nullptr, 0, &dummyArgc, argv);
    if (!dpy) {
        fprintf(stderr, "cannot open the display\n");
        return 2;
    }
    String found = XtResolvePathname(dpy, "app-defaults", "Pictrel", nullptr, nullptr, nullptr, 0,
                                     exists_when_installed);
    if (found)
        printf("%s\n", found);
    return found ? 0 : 1;
}
