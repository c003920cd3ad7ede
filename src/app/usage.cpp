// "-help": the toolkit would take it for a file name, so it is looked for
// before the toolkit starts, skipping the values of options that take one.
#include "app/usage.h"

#include <cstring>

namespace {

// Options whose value is the next argument: the program's five and the
// toolkit's standard ones (-xrm takes a resource line).
const char* const valueOptions[] = {
    "-width", "-height", "-zoomLevel", "-debug", "-xpmType",
    "-background", "-bd", "-bg", "-bordercolor", "-borderwidth", "-bw", "-display", "-fg", "-fn", "-font",
    "-foreground", "-geometry", "-name", "-selectionTimeout", "-title", "-xnllanguage", "-xrm", "-xtsessionID",
};

// The toolkit's options without a value: they count when an abbreviation is
// judged ambiguous.
const char* const flagOptions[] = {"-iconic", "-reverse", "-rv", "-synchronous"};

// The toolkit takes an option written in full, or cut short when only one
// option begins that way.
bool takes_value(const char* arg)
{
    size_t len = strlen(arg);
    if (len < 2 || arg[0] != '-')
        return false;
    int valueMatches = 0, otherMatches = 0;
    for (const char* opt : valueOptions) {
        if (strcmp(opt, arg) == 0)
            return true;
        valueMatches += strncmp(opt, arg, len) == 0;
    }
    for (const char* opt : flagOptions) {
        if (strcmp(opt, arg) == 0)
            return false;
        otherMatches += strncmp(opt, arg, len) == 0;
    }
    return valueMatches == 1 && otherMatches == 0;
}

}  // namespace

bool help_requested(int argc, const char* const* argv)
{
    for (int i = 1; i < argc && argv[i]; i++) {
        if (strcmp(argv[i], "-help") == 0)
            return true;
        if (takes_value(argv[i]))
            i++;
    }
    return false;
}

std::string usage_text(const char* programName)
{
    std::string name = programName && *programName ? programName : "pictrel";
    size_t slash = name.rfind('/');
    if (slash != std::string::npos && slash + 1 < name.size())
        name = name.substr(slash + 1);
    return "usage: " + name + " [options] [file ...]\n"
           "Paints XPM pixmaps and XBM bitmaps on an 8-bit PseudoColor display.\n"
           "\n"
           "  -width W        width of new drawings in pixels, 1 to 511 (default 64)\n"
           "  -height H       height of new drawings in pixels, 1 to 719 (default 64)\n"
           "  -zoomLevel Z    initial magnification: an image pixel is 2^Z screen pixels,\n"
           "                  0 (actual size) to 3 (default 3)\n"
           "  -debug N        diagnostic output on standard output when N is not 0\n"
           "  -xpmType T      the XPM flavour to write (resource xpmType)\n"
           "  -help           print this summary and exit\n"
           "  file ...        XPM or XBM files to open, each in a window of its own\n"
           "                  (at most eight drawings are open at once)\n"
           "\n"
           "The standard X Toolkit options (-display, -geometry, -xrm, ...) are accepted too.\n"
           "On a display that is not PseudoColor, pictrel-launch runs Pictrel in a nested\n"
           "8-bit server. See pictrel(1).\n";
}
