// Reads a widget's place in the tree and its resources for the widget-tree
// browser; the formatting of plain values is resource_text's.
#include "help/widget_summary.h"

#include <X11/IntrinsicP.h>
#include <X11/CoreP.h>
#include <X11/CompositeP.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cstring>

#include "core/error_trap.h"
#include "help/resource_text.h"

namespace {

// Room for any value the toolkit stores in place; larger ones are not
// read. Some get-values hooks store a whole pointer whatever the
// resource's size, so the buffer is never smaller than one.
constexpr size_t VALUE_ROOM = 64;

struct ValueBuffer {
    alignas(16) unsigned char bytes[VALUE_ROOM] = {};
};

void get_value(Widget w, const XtResource& r, ValueBuffer* buffer)
{
    Arg arg;
    XtSetArg(arg, r.resource_name, reinterpret_cast<XtArgVal>(buffer->bytes));
    XtGetValues(w, &arg, 1);
}

template <typename T>
T pointer_in(const ValueBuffer& b)
{
    T p;
    std::memcpy(&p, b.bytes, sizeof p);
    return p;
}

// The nearest widget at or above `w`: gadgets have no colormap of their own.
Widget windowed(Widget w)
{
    while (w && !XtIsWidget(w))
        w = XtParent(w);
    return w;
}

std::string pixel_text(Widget w, Pixel pixel)
{
    Widget holder = windowed(w);
    Display* dpy = XtDisplayOfObject(w);
    Colormap cmap = holder ? holder->core.colormap : DefaultColormapOfScreen(XtScreenOfObject(w));
    Visual* visual = DefaultVisualOfScreen(XtScreenOfObject(w));
    char number[32];
    std::snprintf(number, sizeof number, "pixel %lu", pixel);
    // Motif marks a colour nobody set with a pixel no colormap holds.
    if (pixel >= static_cast<Pixel>(visual->map_entries) && visual->c_class == PseudoColor)
        return std::string(number) + " (unset)";
    XColor c{};
    c.pixel = pixel;
    ErrorTrap trap(dpy);
    XQueryColor(dpy, cmap, &c);
    if (trap.error())
        return std::string(number) + " (no such cell)";
    return rgb_text(c.red, c.green, c.blue);
}

std::string xmstring_text(XmString s)
{
    if (!s)
        return "(null)";
    char* text = static_cast<char*>(
        XmStringUnparse(s, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL));
    std::string out = quoted_text(text ? text : "");
    XtFree(text);
    return out;
}

// Strings, wide strings and compound strings: some widgets hand out their own copy at
// each get, which the asker must free, and others their stored pointer,
// which it must not. Two gets tell them apart: two copies alive at once
// never share an address.
std::string pointer_value(Widget w, const XtResource& r, ValueKind kind)
{
    ValueBuffer first, second;
    get_value(w, r, &first);
    get_value(w, r, &second);
    void* a = pointer_in<void*>(first);
    void* b = pointer_in<void*>(second);
    std::string text = kind == ValueKind::String       ? quoted_text(static_cast<const char*>(a))
                       : kind == ValueKind::WideString ? quoted_wide_text(static_cast<const wchar_t*>(a))
                                                       : xmstring_text(static_cast<XmString>(a));
    if (a && b && a != b) {
        if (kind != ValueKind::XmString) {
            XtFree(static_cast<char*>(a));
            XtFree(static_cast<char*>(b));
        } else {
            XmStringFree(static_cast<XmString>(a));
            XmStringFree(static_cast<XmString>(b));
        }
    }
    return text;
}

void list_resources(Widget w, XtResourceList list, Cardinal count, std::vector<std::string>* out)
{
    for (Cardinal i = 0; list && i < count; i++) {
        const XtResource& r = list[i];
        if (!r.resource_name)
            continue;
        std::string line = r.resource_name;
        line += " (";
        line += r.resource_type ? r.resource_type : "?";
        line += ") = ";
        line += resource_value(w, r);
        out->push_back(line);
    }
    std::sort(out->begin(), out->end());
}

}  // namespace

std::string widget_label(Widget w)
{
    if (!w)
        return "";
    return std::string(XtName(w)) + " (" + XtClass(w)->core_class.class_name + ")";
}

std::string resource_value(Widget w, const XtResource& r)
{
    size_t size = r.resource_size;
    if (size == 0 || size > VALUE_ROOM)
        return "(" + std::to_string(size) + " bytes, not read)";
    ValueKind kind = value_kind(r.resource_type);
    if ((kind == ValueKind::String || kind == ValueKind::WideString || kind == ValueKind::XmString) &&
        size == sizeof(void*))
        return pointer_value(w, r, kind);
    ValueBuffer value;
    get_value(w, r, &value);
    if (kind == ValueKind::Pixel && size == sizeof(Pixel))
        return pixel_text(w, pointer_in<Pixel>(value));
    if (kind == ValueKind::Widget && size == sizeof(Widget)) {
        Widget named = pointer_in<Widget>(value);
        if (named)
            return XtName(named);
    }
    if (kind == ValueKind::Window && size == sizeof(Window)) {
        Window win = pointer_in<Window>(value);
        Widget owner = win ? XtWindowToWidget(XtDisplayOfObject(w), win) : nullptr;
        if (owner)
            return value_text(r.resource_type, value.bytes, size) + " (" + XtName(owner) + ")";
    }
    return value_text(r.resource_type, value.bytes, size);
}

WidgetSummary summarize_widget(Widget w)
{
    WidgetSummary s;
    if (!w)
        return s;
    s.name = XtName(w);
    s.className = XtClass(w)->core_class.class_name;
    s.parent = widget_label(XtParent(w));

    if (XtIsComposite(w)) {
        auto* c = reinterpret_cast<CompositeWidget>(w);
        for (Cardinal i = 0; i < c->composite.num_children; i++) {
            s.children.push_back(c->composite.children[i]);
            s.childLabels.push_back(widget_label(c->composite.children[i]));
        }
    }
    if (XtIsWidget(w))
        for (Cardinal i = 0; i < w->core.num_popups; i++) {
            s.children.push_back(w->core.popup_list[i]);
            s.childLabels.push_back(widget_label(w->core.popup_list[i]) + " [popup]");
        }

    XtResourceList list = nullptr;
    Cardinal count = 0;
    XtGetResourceList(XtClass(w), &list, &count);
    list_resources(w, list, count, &s.resources);
    XtFree(reinterpret_cast<char*>(list));

    Widget parent = XtParent(w);
    if (parent && XtIsConstraint(parent)) {
        list = nullptr;
        count = 0;
        XtGetConstraintResourceList(XtClass(parent), &list, &count);
        list_resources(w, list, count, &s.constraints);
        XtFree(reinterpret_cast<char*>(list));
    }
    return s;
}
