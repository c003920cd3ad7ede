// The text tool ("alpha"): a click places a caret, typed characters are
// drawn into the image at once in the drawing's text font and the pressed
// button's GC. The text stays editable (BackSpace, Return, a new font)
// until the next click or until another tool is chosen; after that it is
// plain pixels.
#include "tools/text.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <string>

#include "canvas/image_store.h"
#include "canvas/undo.h"
#include "core/app_state.h"
#include "core/drawing.h"
#include "fonts/font_names.h"
#include "tools/geometry.h"
#include "tools/tool_handlers.h"
#include "tools/tool_table.h"

namespace {

constexpr int LINE_BYTES = 256;   // a line's buffer; it is never grown
constexpr int FIRST_CAPACITY = 4;
constexpr const char* INITIAL_FONT = "fixed";

struct TextLine {
    char* text;   // LINE_BYTES, allocated at the line's first character
    int length;
    int spare;
    Font font;
};

struct TextRecord {
    short startX, startY;    // left end of the first line's baseline
    XRectangle area;         // what undo restores
    XFontStruct* font;
    Font fontId;
    int lineHeight;
    short caretX, caretY;    // caretX -1: no caret yet
    bool caretShown;
    int caretAscent, caretDescent;
    int capacity;
    int lineIndex;
    bool active;
    int widestLine;
    TextLine* lines;
};

// One record per drawing slot, made at the tool's init and kept, like the
// drawing records themselves, for the program's life.
struct TextSlot {
    Drawing* owner;
    TextRecord* record;
};
TextSlot slots[MAX_DRAWINGS];

// The font chooser's font, which a drawing's text takes when it (re)opens;
// empty before the chooser first loads one.
std::string chosenFont;

TextRecord* record_of(Drawing* d)
{
    for (TextSlot& s : slots)
        if (s.owner == d)
            return s.record;
    return nullptr;
}

short clamp16(long v) { return static_cast<short>(std::clamp<long>(v, SHRT_MIN, SHRT_MAX)); }
unsigned short clampU16(long v) { return static_cast<unsigned short>(std::clamp<long>(v, 0, USHRT_MAX)); }

int ascent(const TextRecord* t) { return t->font ? t->font->ascent : 0; }
int descent(const TextRecord* t) { return t->font ? t->font->descent : 0; }

int line_width(const TextRecord* t, int i, int length)
{
    const TextLine& l = t->lines[i];
    if (!t->font || !l.text || length <= 0)
        return 0;
    return XTextWidth(t->font, l.text, length);
}

int baseline(const TextRecord* t, int i) { return clamp16(t->startY + static_cast<long>(t->lineHeight) * i); }

void clear_lines(TextRecord* t, int from)
{
    for (int i = from; i < t->capacity; i++) {
        t->lines[i].length = 0;
        t->lines[i].font = t->fontId;
    }
}

void show_caret(Drawing* d, TextRecord* t)
{
    if (t->caretShown || t->caretX == -1 || !t->font)
        return;
    Display* dpy = app().display;
    GC gc = d->foregroundGC;
    XGCValues v;
    v.line_width = 1;
    v.function = GXcopy;
    XChangeGC(dpy, gc, GCLineWidth | GCFunction, &v);
    int cx = t->caretX + 2, y = t->caretY;
    int a = ascent(t), ds = descent(t);
    // Past the 16-bit coordinate range the caret could only wrap round
    // onto the picture; no image reaches that far, so there is none.
    if (cx + 2 > SHRT_MAX || y + ds > SHRT_MAX || y - a < SHRT_MIN)
        return;
    XDrawLine(dpy, d->image, gc, cx, y - a, cx, y + ds);
    XDrawPoint(dpy, d->image, gc, cx - 1, y);
    XDrawPoint(dpy, d->image, gc, cx + 1, y);
    // From the left dot on: the canvas must show all that went into the image.
    refresh_corners(d, cx - 1, y - a, cx + 2, y + ds);
    t->caretAscent = a;
    t->caretDescent = ds;
    t->caretShown = true;
}

void hide_caret(Drawing* d, TextRecord* t)
{
    if (!t->caretShown)
        return;
    int cx = t->caretX + 2, y = t->caretY;
    restore_corners(d, cx - 1, y - t->caretAscent, cx + 1, y + t->caretDescent);
    refresh_corners(d, cx - 1, y - t->caretAscent, cx + 1, y + t->caretDescent);
    t->caretShown = false;
}

void start_text(Drawing* d, TextRecord* t, int x, int y)
{
    t->caretX = clamp16(x);
    t->caretY = clamp16(y);
    t->startX = t->caretX;
    t->startY = t->caretY;
    clear_lines(t, 0);
    t->lineIndex = 0;
    t->widestLine = 0;
    t->area.x = t->startX;
    t->area.y = clamp16(t->startY - ascent(t));
    t->area.width = 0;
    // An absolute coordinate used as a height: undo restores more than
    // the text needs, which is harmless and keeps the rule simple.
    t->area.height = clampU16(t->startY + descent(t));
    show_caret(d, t);
}

void draw_line(Drawing* d, TextRecord* t, int i)
{
    TextLine& l = t->lines[i];
    if (!l.text || l.length <= 0)
        return;
    GC gc = d->chosenGC ? d->chosenGC : d->foregroundGC;
    XTextItem item{l.text, l.length, 0, l.font};
    int y = baseline(t, i);
    XDrawText(app().display, d->image, gc, t->startX, y, &item, 1);
    refresh_rect(d, t->startX, y - ascent(t), line_width(t, i, l.length), t->lineHeight);
}

void note_widest(TextRecord* t)
{
    int w = line_width(t, t->lineIndex, t->lines[t->lineIndex].length);
    if (w > line_width(t, t->widestLine, t->lines[t->widestLine].length) || t->widestLine == t->lineIndex) {
        t->widestLine = t->lineIndex;
        t->area.width = std::max<unsigned short>(t->area.width, clampU16(w));
    }
}

// Returns false when no line could be added (no memory, or the next
// baseline would leave the 16-bit coordinate range).
bool add_line(TextRecord* t)
{
    if (t->capacity == 0) {
        t->lines = reinterpret_cast<TextLine*>(XtCalloc(FIRST_CAPACITY, sizeof(TextLine)));
        t->capacity = FIRST_CAPACITY;
        clear_lines(t, 0);
        return true;
    }
    if (t->startY + static_cast<long>(t->lineHeight) * (t->lineIndex + 1) > SHRT_MAX)
        return false;
    if (t->lineIndex + 1 >= t->capacity) {
        int grown = t->capacity * 2;
        auto* lines = reinterpret_cast<TextLine*>(
            XtRealloc(reinterpret_cast<char*>(t->lines), static_cast<Cardinal>(grown * sizeof(TextLine))));
        for (int i = t->capacity; i < grown; i++)
            lines[i] = TextLine{};
        t->lines = lines;
        t->capacity = grown;
    }
    t->lineIndex++;
    clear_lines(t, t->lineIndex);
    return true;
}

void put_caret_at_line_end(TextRecord* t)
{
    TextLine& l = t->lines[t->lineIndex];
    t->caretX = clamp16(t->startX + static_cast<long>(line_width(t, t->lineIndex, l.length)));
    t->caretY = baseline(t, t->lineIndex);
}

void erase_char(Drawing* d, TextRecord* t)
{
    hide_caret(d, t);
    TextLine& l = t->lines[t->lineIndex];
    if (l.length > 0) {
        int w1 = line_width(t, t->lineIndex, l.length);
        int w0 = line_width(t, t->lineIndex, l.length - 1);
        int y = baseline(t, t->lineIndex) - ascent(t);
        restore_rect(d, t->startX + w0, y, w1 - w0, t->lineHeight);
        refresh_rect(d, t->startX + w0, y, w1 - w0, t->lineHeight);
        t->caretX = clamp16(t->startX + static_cast<long>(w0));
        l.length--;
        t->widestLine = 0;
        for (int i = 1; i < t->lineIndex; i++)
            if (line_width(t, i, t->lines[i].length) > line_width(t, t->widestLine, t->lines[t->widestLine].length))
                t->widestLine = i;
    } else if (t->lineIndex > 0) {
        // Back to the end of the line above; the empty line stays.
        t->lineIndex--;
        put_caret_at_line_end(t);
    }
    show_caret(d, t);
}

void type_key(Drawing* d, TextRecord* t, XKeyEvent* key)
{
    char buffer[80];
    KeySym keysym = NoSymbol;
    int n = XLookupString(key, buffer, sizeof buffer, &keysym, nullptr);
    if (keysym == XK_BackSpace || keysym == XK_Left) {
        erase_char(d, t);
        return;
    }
    hide_caret(d, t);
    for (int i = 0; i < n; i++) {
        auto c = static_cast<unsigned char>(buffer[i]);
        if (c == '\n' || c == '\r') {
            if (add_line(t))
                t->area.height = clampU16(t->area.height + static_cast<long>(t->lineHeight));
            continue;
        }
        if (!std::isprint(c))
            continue;
        TextLine& l = t->lines[t->lineIndex];
        if (!l.text)
            l.text = XtMalloc(LINE_BYTES);
        if (l.length >= LINE_BYTES)
            continue;
        l.text[l.length++] = static_cast<char>(c);
        draw_line(d, t, t->lineIndex);
        note_widest(t);
    }
    put_caret_at_line_end(t);
    show_caret(d, t);
}

// Puts back what the text typed since the press covered.
void restore_area(Drawing* d, TextRecord* t)
{
    hide_caret(d, t);
    restore_rect(d, t->area.x, t->area.y, t->area.width, t->area.height);
    refresh_rect(d, t->area.x, t->area.y, t->area.width, t->area.height);
}

void redraw_all(Drawing* d, TextRecord* t)
{
    t->widestLine = 0;
    for (int i = 0; i <= t->lineIndex; i++) {
        if (i > 0)
            t->area.height = clampU16(t->area.height + static_cast<long>(t->lineHeight));
        draw_line(d, t, i);
        int w = line_width(t, i, t->lines[i].length);
        if (w > line_width(t, t->widestLine, t->lines[t->widestLine].length))
            t->widestLine = i;
    }
    t->area.width = clampU16(line_width(t, t->widestLine, t->lines[t->widestLine].length));
    put_caret_at_line_end(t);
}

void use_font(TextRecord* t, XFontStruct* font)
{
    t->font = font;
    t->fontId = font->fid;
    t->lineHeight = font_line_height(font->ascent, font->descent);
}

void init_record(Drawing* d)
{
    if (record_of(d))
        return;
    TextSlot* free = nullptr;
    for (TextSlot& s : slots)
        if (!s.owner) {
            free = &s;
            break;
        }
    if (!free)
        return;
    auto* t = reinterpret_cast<TextRecord*>(XtCalloc(1, sizeof(TextRecord)));
    t->caretX = -1;
    if (XFontStruct* font = XLoadQueryFont(app().display, INITIAL_FONT))
        use_font(t, font);
    add_line(t);
    free->owner = d;
    free->record = t;
}

}  // namespace

void text_input(Widget w, Drawing* d, XEvent* event)
{
    if (event->type == TOOL_CREATED)
        init_record(d);
    TextRecord* t = record_of(d);
    if (event->type == TOOL_DESELECTED && t) {
        t->active = false;
        hide_caret(d, t);
    }
    if (palette_event(w, d, event, TOOL_ALPHA) || !t || !t->lines)
        return;
    switch (event->type) {
    case ButtonPress: {
        // Key events reach the area only while it has the focus.
        if (Widget area = w ? w : d->activeArea)
            XmProcessTraversal(area, XmTRAVERSE_CURRENT);
        hide_caret(d, t);
        commit(d);
        set_undo_available(d, false);
        t->active = true;
        Point p = event_point(event);
        start_text(d, t, p.x, p.y);
        break;
    }
    case KeyPress:
        // Before a click there is no text, and savedImage belongs to some
        // earlier stroke: no undo is offered for it.
        if (!t->active || !t->font)
            break;
        type_key(d, t, &event->xkey);
        set_undo_available(d, true);
        break;
    case TOOL_UNDO:
        if (!t->active)
            break;
        restore_area(d, t);
        // Typing goes on where the caret was, as a new text.
        start_text(d, t, t->caretX, t->caretY);
        break;
    default:
        break;
    }
}

int text_set_font(Drawing* d, const char* fontName)
{
    TextRecord* t = record_of(d);
    if (!t || !fontName)
        return 1;
    XFontStruct* font = XLoadQueryFont(app().display, fontName);
    if (!font)
        return 1;
    if (t->active)
        restore_area(d, t);
    XFontStruct* old = t->font;
    use_font(t, font);
    t->area.y = clamp16(t->startY - ascent(t));
    t->area.height = clampU16(t->startY + descent(t));
    if (t->active) {
        for (int i = 0; i < t->capacity; i++)
            t->lines[i].font = t->fontId;
        redraw_all(d, t);
        show_caret(d, t);
    }
    // Every line now names the new font, so the old one is free to go.
    if (old)
        XFreeFont(app().display, old);
    return 0;
}

XFontStruct* text_font(Drawing* d)
{
    TextRecord* t = record_of(d);
    return t ? t->font : nullptr;
}

void text_hide_caret(Drawing* d)
{
    if (TextRecord* t = record_of(d))
        hide_caret(d, t);
}

void text_reset(Drawing* d)
{
    TextRecord* t = record_of(d);
    if (!t)
        return;
    // The caret was drawn into the old picture, which goes: nothing to
    // take out of the new one.
    t->active = false;
    t->caretShown = false;
    t->caretX = -1;
    if (!chosenFont.empty())
        text_set_font(d, chosenFont.c_str());
}

void set_chosen_text_font(const char* fontName)
{
    chosenFont = fontName ? fontName : "";
}
