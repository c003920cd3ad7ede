// The message a user sees for the status of a failed read.
#include "files/read_status.h"

#include "core/app_state.h"
#include "core/message.h"
#include "core/safe_format.h"

#include <string>

namespace {

struct StatusMessage {
    int status;              // libXpm's meaning in the comment
    String AppResources::*text;
    const char* fallback;
    bool formatted;          // filled with the file name
};

// status     resource                          default                              formatted
const StatusMessage messages[] = {
    {-4 /* XpmColorFailed */, &AppResources::parseColorErr, "Invalid color name in file %s", false},
    {-3 /* XpmNoMemory */, &AppResources::outOfMemoryString, "Out of memory.", false},
    {-2 /* XpmFileInvalid */, &AppResources::invalidFileString, "Invalid file %s.", true},
    {-1 /* XpmOpenFailed */, &AppResources::openFileErrorString, "Can't open the file %s.", true},
    {1 /* XpmColorError */, &AppResources::allocColorErr, "Unable to allocate color.", false},
};

}  // namespace

void report_read_status(Widget parent, int status, const char* fileName)
{
    const char* text = res().unknownErr ? res().unknownErr : "Unknown Error.";
    std::string formatted;
    for (const StatusMessage& m : messages) {
        if (m.status != status)
            continue;
        const char* resource = res().*m.text;
        // "Invalid color name in file %s" is shown as written, "%s" and all.
        text = resource ? resource : m.fallback;
        if (m.formatted) {
            formatted = format_str(resource, fileName ? fileName : "", m.fallback);
            text = formatted.c_str();
        }
        break;
    }
    show_message(parent, text, 0, nullptr, nullptr);
}
