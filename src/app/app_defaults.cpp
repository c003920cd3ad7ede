// Application defaults that do not depend on the environment: an installation
// under any prefix finds its own file, and a program with none at all still has
// its labels, mnemonics, accelerators and dialog texts.
#include "app/app_defaults.h"

#include <X11/Intrinsic.h>
#include <X11/Xresource.h>

#include <string>

#include "core/install_paths.h"

void add_application_defaults(Display* dpy)
{
    // The same question the toolkit asked when it built the database.
    if (String found = XtResolvePathname(dpy, "app-defaults", nullptr, nullptr, nullptr, nullptr, 0, nullptr)) {
        XtFree(found);
        return;
    }
    XrmDatabase db = XtDatabase(dpy);
    std::string own = own_app_defaults_file();
    if (!own.empty() && XrmCombineFileDatabase(own.c_str(), &db, False))
        return;
    XrmDatabase fallback = nullptr;
    for (const char* const* line = fallbackResources; *line; line++)
        XrmPutLineResource(&fallback, *line);
    XrmCombineDatabase(fallback, &db, False);
}
