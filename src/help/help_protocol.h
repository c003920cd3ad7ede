// The texts the help client and a help server exchange: a request the
// client writes, a reply the server writes. Pure: no X here, so every way a
// reply can be wrong is tested without a server.
//
// Both are STRING properties of format 8 holding lines "key value", the
// first line being the protocol's name and version:
//
//   _ORV_HELP 1            _ORV_HELP 1
//   request show           serial 12
//   serial 12              status shown
//   book pictrel
//   topic window
//   program Pictrel
//   host myhost
//   window 0x1a00004
//
// Keys are lower-case letters; a value runs to the end of its line and
// holds no control characters. A reader ignores keys it does not know, so
// either side may add some without breaking the other.
#pragma once

#include <cstddef>
#include <string>

// The first line of every request and reply.
inline constexpr const char* helpProtocolLine = "_ORV_HELP 1";
// The most a reply may hold; anything longer is not one.
inline constexpr std::size_t helpReplyLimit = 4096;

struct HelpRequest {
    const char* kind = "show";   // "show" a topic, or "goodbye" when the client ends
    unsigned long serial = 0;    // names the reply that belongs to this request
    const char* book = "";       // the helpBook resource
    const char* topic = "";      // the book's topic id; empty for a goodbye
    const char* program = "";    // the client's name, "Pictrel"
    const char* host = "";       // where the client runs
    unsigned long window = 0;    // the client's window, on which the reply is written
};

// The request's text in `*out`. Returns 0, or -1 when a field cannot be
// carried (a line break or another control character, an empty book, or a
// show without a topic): such a request is not sent at all.
int encode_help_request(const HelpRequest& request, std::string* out);

// What a reply says about the request of `serial`.
enum class HelpVerdict {
    Shown,         // the server shows the topic
    Refused,       // a well-formed "no" (e.g. the topic is not in its book): show it ourselves
    OtherSerial,   // a well-formed reply to another request: keep waiting
    Garbage,       // not a reply of this protocol at all
};

// Judges the bytes of a reply property. `isString` tells whether the
// property was of type STRING and format 8; anything else is garbage.
HelpVerdict judge_help_reply(const char* bytes, std::size_t length, bool isString, unsigned long serial);

const char* help_verdict_name(HelpVerdict verdict);
