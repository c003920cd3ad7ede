// Writing help requests and judging help replies.
#include "help/help_protocol.h"

#include <cstdio>
#include <string_view>

namespace {

// No value longer than this is sent: a topic id is a word or two.
constexpr std::size_t valueLimit = 1024;

bool control(unsigned char c) { return c < 0x20 || c == 0x7f; }

bool carriable(const char* value)
{
    if (!value)
        return false;
    std::size_t n = 0;
    for (const char* p = value; *p; p++, n++)
        if (control(static_cast<unsigned char>(*p)))
            return false;
    return n <= valueLimit;
}

void add(std::string* out, const char* key, const char* value)
{
    out->append(key).append(" ").append(value).append("\n");
}

// A serial: 1 to 19 decimal digits, nothing else (no sign, no spaces), so
// that it never overflows.
bool parse_serial(std::string_view text, unsigned long* serial)
{
    if (text.empty() || text.size() > 19)
        return false;
    unsigned long value = 0;
    for (char c : text) {
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + static_cast<unsigned long>(c - '0');
    }
    *serial = value;
    return true;
}

}  // namespace

int encode_help_request(const HelpRequest& r, std::string* out)
{
    std::string kind = r.kind ? r.kind : "";
    const bool show = kind == "show";
    if (!show && kind != "goodbye")
        return -1;
    if (!carriable(r.book) || !*r.book || !carriable(r.topic) || (show && !*r.topic))
        return -1;
    if (!carriable(r.program) || !carriable(r.host))
        return -1;
    out->clear();
    out->append(helpProtocolLine).append("\n");
    add(out, "request", kind.c_str());
    add(out, "serial", std::to_string(r.serial).c_str());
    add(out, "book", r.book);
    if (*r.topic)
        add(out, "topic", r.topic);
    if (*r.program)
        add(out, "program", r.program);
    if (*r.host)
        add(out, "host", r.host);
    char window[32];
    std::snprintf(window, sizeof window, "0x%lx", r.window);
    add(out, "window", window);
    return 0;
}

HelpVerdict judge_help_reply(const char* bytes, std::size_t length, bool isString, unsigned long serial)
{
    if (!isString || !bytes || length == 0 || length > helpReplyLimit)
        return HelpVerdict::Garbage;
    std::string_view text(bytes, length);
    // One line break may end the text; every other control character
    // (a NUL from a C string written with its terminator, a CR) is foreign.
    if (text.back() == '\n')
        text.remove_suffix(1);
    for (unsigned char c : text)
        if (c != '\n' && control(c))
            return HelpVerdict::Garbage;

    bool first = true, haveSerial = false, haveStatus = false;
    unsigned long replySerial = 0;
    std::string_view status;
    while (true) {
        std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (first) {
            if (line != helpProtocolLine)
                return HelpVerdict::Garbage;
            first = false;
        } else {
            std::size_t space = line.find(' ');
            if (space == 0 || space == std::string_view::npos)
                return HelpVerdict::Garbage;
            std::string_view key = line.substr(0, space), value = line.substr(space + 1);
            for (char c : key)
                if (c < 'a' || c > 'z')
                    return HelpVerdict::Garbage;
            if (key == "serial") {
                if (haveSerial || !parse_serial(value, &replySerial))
                    return HelpVerdict::Garbage;
                haveSerial = true;
            } else if (key == "status") {
                if (haveStatus || value.empty())
                    return HelpVerdict::Garbage;
                status = value;
                haveStatus = true;
            }
        }
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    if (!haveSerial || !haveStatus)
        return HelpVerdict::Garbage;
    if (replySerial != serial)
        return HelpVerdict::OtherSerial;
    return status == "shown" ? HelpVerdict::Shown : HelpVerdict::Refused;
}

const char* help_verdict_name(HelpVerdict verdict)
{
    switch (verdict) {
    case HelpVerdict::Shown: return "shown";
    case HelpVerdict::Refused: return "refused";
    case HelpVerdict::OtherSerial: return "another request's";
    case HelpVerdict::Garbage: return "garbage";
    }
    return "?";
}
