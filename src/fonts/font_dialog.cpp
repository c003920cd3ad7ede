// The font chooser: three lists (foundry, family, size) that fill one
// another down the line, two radio boxes of weights and slants enabled only
// where such a font exists, and a sample of the chosen font. Each choice
// is loaded at once and becomes the text tool's font; Cancel puts back the
// choice the dialog was opened with.
#include "fonts/font_dialog.h"

#include <X11/Xatom.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/ToggleB.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "core/app_state.h"
#include "core/drawing.h"
#include "core/message.h"
#include "core/template_dialog.h"
#include "fonts/font_names.h"
#include "tools/text.h"

namespace {

constexpr int MAX_FONTS = 1024;
constexpr const char* FALLBACK_FONT = "fixed";
const char* const styleNames[STYLE_COUNT] = {"Medium", "Bold", "Roman", "Italic", "Oblique"};

enum ListLevel { LIST_FOUNDRY, LIST_FAMILY, LIST_SIZE, LIST_COUNT };
const char* const listNames[LIST_COUNT] = {"FontFoundry", "FontFamily", "FontSize"};
const char* const labelNames[LIST_COUNT] = {"FoundryLabel", "FamilyLabel", "SizeLabel"};
const Dimension listWidths[LIST_COUNT] = {140, 220, 70};

// What Cancel goes back to.
struct SavedChoice {
    int positions[LIST_COUNT];
    StyleToggles toggles;
    XFontStruct* font;
    int lineHeight;
    std::string name;
};

// Made once with the dialog and kept for the program's life.
struct FontDialogState {
    Widget dialog;
    Widget lists[LIST_COUNT];
    Widget toggles[STYLE_COUNT];
    Widget sample;
    std::vector<FontRecord> fonts;
    std::vector<std::string> items[LIST_COUNT];   // what each list shows
    std::string chosen[LIST_COUNT];               // foundry, family, size
    // Loaded fonts are kept: the sample's font list may still refer to
    // one after it has been replaced.
    std::vector<std::pair<std::string, XFontStruct*>> loaded;
    std::string currentName;
    bool restoring;
    SavedChoice saved;
};

FontDialogState* state = nullptr;
FontChoice choice{};
// The drawing whose menu asked last: the dialog pops up over it.
Drawing* asking = nullptr;

void place_cb(Widget shell, XtPointer, XtPointer) noexcept
{
    centre_shell_over(shell, asking && drawing_is_open(asking) ? asking->shell : nullptr);
}

int selected_position(Widget list)
{
    int* positions = nullptr;
    int count = 0;
    int pos = 0;
    if (XmListGetSelectedPos(list, &positions, &count) && count > 0)
        pos = positions[0];
    XtFree(reinterpret_cast<char*>(positions));
    return pos;
}

void set_list_items(Widget list, const std::vector<std::string>& items)
{
    std::vector<XmString> strings;
    strings.reserve(items.size());
    for (const std::string& s : items)
        strings.push_back(XmStringCreateLocalized(const_cast<char*>(s.c_str())));
    XtVaSetValues(list, XmNitems, strings.empty() ? nullptr : strings.data(), XmNitemCount,
                  static_cast<int>(strings.size()), nullptr);
    for (XmString s : strings)
        XmStringFree(s);
}

const char* cant_load_text()
{
    return res().cantLoadFontString ? res().cantLoadFontString : "Sorry, unable to load font.";
}

XFontStruct* load_font(const std::string& name)
{
    for (auto& [n, f] : state->loaded)
        if (n == name)
            return f;
    XFontStruct* f = XLoadQueryFont(app().display, name.c_str());
    if (f)
        state->loaded.emplace_back(name, f);
    return f;
}

void show_on_sample(XFontStruct* font)
{
    if (!font || !state->sample)
        return;
    XmFontListEntry entry = XmFontListEntryCreate(const_cast<char*>(XmFONTLIST_DEFAULT_TAG), XmFONT_IS_FONT, font);
    XmFontList list = XmFontListAppendEntry(nullptr, entry);
    XmFontListEntryFree(&entry);
    XtVaSetValues(state->sample, XmNfontList, list, nullptr);
    XmFontListFree(list);
}

// Makes the font the chooser's; `toText` gives it to the text tool of
// every open drawing too, which a font that came from the tool skips.
void make_current(XFontStruct* font, const std::string& name, bool toText = true)
{
    choice.font = font;
    choice.lineHeight = font_line_height(font->ascent, font->descent);
    state->currentName = name;
    choice.name = state->currentName.c_str();
    set_chosen_text_font(choice.name);
    if (!choice.gc && state->sample && XtWindow(state->sample)) {
        XGCValues v;
        v.function = GXcopy;
        v.foreground = app().blackPixel;
        v.background = app().whitePixel;
        choice.gc = XCreateGC(app().display, XtWindow(state->sample), GCFunction | GCForeground | GCBackground, &v);
    }
    if (choice.gc)
        XSetFont(app().display, choice.gc, font->fid);
    show_on_sample(font);
    if (!toText)
        return;
    for (Drawing* d : registry().slots)
        if (d && drawing_is_open(d))
            text_set_font(d, name.c_str());
}

StyleToggles read_toggles()
{
    StyleToggles t{};
    for (int i = 0; i < STYLE_COUNT; i++) {
        t.set[i] = XmToggleButtonGetState(state->toggles[i]);
        t.sensitive[i] = XtIsSensitive(state->toggles[i]);
    }
    return t;
}

void write_toggles(const StyleToggles& t)
{
    for (int i = 0; i < STYLE_COUNT; i++) {
        XtSetSensitive(state->toggles[i], t.sensitive[i]);
        XmToggleButtonSetState(state->toggles[i], t.set[i], False);
    }
}

// Loads the current choice (with `reload`) or shows the current font again.
void apply_font(bool reload)
{
    if (state->restoring)
        return;
    if (!reload) {
        show_on_sample(choice.font);
        return;
    }
    std::string pattern = font_pattern(state->chosen[LIST_FOUNDRY], state->chosen[LIST_FAMILY],
                                       state->chosen[LIST_SIZE], read_toggles());
    if (res().debug) {
        int count = 0;
        char** names = XListFonts(app().display, pattern.c_str(), MAX_FONTS, &count);
        std::printf("Pattern %s\n", pattern.c_str());
        for (int i = 0; names && i < count; i++)
            std::printf("Fonts %s\n", names[i]);
        if (names)
            XFreeFontNames(names);
    }
    XFontStruct* font = pattern.empty() ? nullptr : load_font(pattern);
    if (!font) {
        show_message(XtParent(state->dialog), cant_load_text(), 0, nullptr, nullptr);
        pattern = FALLBACK_FONT;
        font = load_font(pattern);
    }
    // Without even "fixed" the text keeps the font it has.
    if (font)
        make_current(font, pattern);
}

void choose_size()
{
    const std::string& foundry = state->chosen[LIST_FOUNDRY];
    StyleToggles t = read_toggles();
    if (foundry == MISC_FOUNDRY) {
        for (bool& s : t.sensitive)
            s = false;
    } else {
        bool offered[STYLE_COUNT];
        if (!styles_offered(state->fonts, foundry, state->chosen[LIST_FAMILY], state->chosen[LIST_SIZE], offered))
            return;
        for (int i = 0; i < STYLE_COUNT; i++)
            t.sensitive[i] = offered[i];
    }
    repair_style_toggles(&t);
    write_toggles(t);
    apply_font(true);
}

void choose_family()
{
    const std::string& foundry = state->chosen[LIST_FOUNDRY];
    Widget sizes = state->lists[LIST_SIZE];
    if (foundry == MISC_FOUNDRY) {
        state->items[LIST_SIZE].clear();
        state->chosen[LIST_SIZE].clear();
        XmListDeleteAllItems(sizes);
        choose_size();
        return;
    }
    // A chosen size survives a change of family when the family has it.
    std::string before = state->chosen[LIST_SIZE];
    state->items[LIST_SIZE] = distinct_sizes(state->fonts, foundry, state->chosen[LIST_FAMILY]);
    set_list_items(sizes, state->items[LIST_SIZE]);
    int pos = 1;
    for (size_t i = 0; i < state->items[LIST_SIZE].size(); i++)
        if (state->items[LIST_SIZE][i] == before)
            pos = static_cast<int>(i) + 1;
    if (!state->items[LIST_SIZE].empty())
        XmListSelectPos(sizes, pos, True);
}

void choose_foundry()
{
    state->items[LIST_FAMILY] = distinct_families(state->fonts, state->chosen[LIST_FOUNDRY]);
    set_list_items(state->lists[LIST_FAMILY], state->items[LIST_FAMILY]);
    if (!state->items[LIST_FAMILY].empty())
        XmListSelectPos(state->lists[LIST_FAMILY], 1, True);
}

void list_cb(Widget, XtPointer client, XtPointer call) noexcept
{
    auto level = static_cast<int>(reinterpret_cast<intptr_t>(client));
    auto* cbs = static_cast<XmListCallbackStruct*>(call);
    if (!state || !cbs || level < 0 || level >= LIST_COUNT)
        return;
    int pos = cbs->item_position;
    const std::vector<std::string>& items = state->items[level];
    if (pos < 1 || pos > static_cast<int>(items.size()))
        return;
    state->chosen[level] = items[static_cast<size_t>(pos) - 1];
    switch (level) {
    case LIST_FOUNDRY: choose_foundry(); break;
    case LIST_FAMILY: choose_family(); break;
    default: choose_size(); break;
    }
}

void toggle_cb(Widget, XtPointer, XtPointer call) noexcept
{
    auto* cbs = static_cast<XmToggleButtonCallbackStruct*>(call);
    // A radio box reports the button switched off too; only the one
    // switched on is a choice.
    if (state && cbs && cbs->set)
        apply_font(true);
}

void save_choice()
{
    SavedChoice& s = state->saved;
    for (int i = 0; i < LIST_COUNT; i++)
        s.positions[i] = selected_position(state->lists[i]);
    s.toggles = read_toggles();
    s.font = choice.font;
    s.lineHeight = choice.lineHeight;
    s.name = state->currentName;
}

void restore_choice()
{
    const SavedChoice& s = state->saved;
    // The lists refill one another as they are chosen again; nothing is
    // loaded until the end, when the saved font itself is put back.
    state->restoring = true;
    for (int i = 0; i < LIST_COUNT; i++)
        if (s.positions[i] > 0 && s.positions[i] <= static_cast<int>(state->items[i].size()))
            XmListSelectPos(state->lists[i], s.positions[i], True);
    write_toggles(s.toggles);
    state->restoring = false;
    if (s.font)
        make_current(s.font, s.name);
}

void ok_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (state)
        XtUnmanageChild(state->dialog);
}

void cancel_cb(Widget, XtPointer, XtPointer) noexcept
{
    if (!state)
        return;
    restore_choice();
    XtUnmanageChild(state->dialog);
}

Widget add_radio_box(Widget form, const char* name, int first, int last, Widget left)
{
    Arg args[6];
    Cardinal n = 0;
    XtSetArg(args[n], XmNtopAttachment, XmATTACH_WIDGET); n++;
    XtSetArg(args[n], XmNtopWidget, XtParent(state->lists[LIST_FOUNDRY])); n++;
    XtSetArg(args[n], XmNtopOffset, 8); n++;
    XtSetArg(args[n], XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM); n++;
    XtSetArg(args[n], XmNleftWidget, left); n++;
    XtSetArg(args[n], XmNorientation, XmHORIZONTAL); n++;
    Widget box = XmCreateRadioBox(form, const_cast<char*>(name), args, n);
    for (int i = first; i <= last; i++) {
        Widget tb = XmCreateToggleButton(box, const_cast<char*>(styleNames[i]), nullptr, 0);
        XtAddCallback(tb, XmNvalueChangedCallback, toggle_cb, nullptr);
        XtManageChild(tb);
        state->toggles[i] = tb;
    }
    XtManageChild(box);
    return box;
}

void fill_font_form(Widget form)
{
    Widget left = nullptr;
    for (int i = 0; i < LIST_COUNT; i++) {
        Arg args[6];
        Cardinal n = 0;
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_FORM); n++;
        XtSetArg(args[n], XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM); n++;
        XtSetArg(args[n], XmNleftWidget, left); n++;
        XtSetArg(args[n], XmNleftOffset, left ? 8 : 0); n++;
        Widget label = XmCreateLabel(form, const_cast<char*>(labelNames[i]), args, n);
        XtManageChild(label);

        n = 0;
        XtSetArg(args[n], XmNselectionPolicy, XmBROWSE_SELECT); n++;
        XtSetArg(args[n], XmNscrollBarDisplayPolicy, XmSTATIC); n++;
        // Columns keep their widths whatever the names they list.
        XtSetArg(args[n], XmNlistSizePolicy, XmCONSTANT); n++;
        Widget list = XmCreateScrolledList(form, const_cast<char*>(listNames[i]), args, n);
        XtAddCallback(list, XmNbrowseSelectionCallback, list_cb, reinterpret_cast<XtPointer>(static_cast<intptr_t>(i)));
        XtVaSetValues(XtParent(list), XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, label,
                      XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM, XmNleftWidget, left,
                      XmNleftOffset, left ? 8 : 0, XmNwidth, listWidths[i], nullptr);
        if (i == LIST_COUNT - 1)
            XtVaSetValues(XtParent(list), XmNrightAttachment, XmATTACH_FORM, nullptr);
        XtManageChild(list);
        state->lists[i] = list;
        left = XtParent(list);
    }
    Widget weights = add_radio_box(form, "Weight", STYLE_MEDIUM, STYLE_BOLD, nullptr);
    Widget separator = XmCreateSeparator(form, const_cast<char*>("separator"), nullptr, 0);
    XtVaSetValues(separator, XmNorientation, XmVERTICAL, XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET,
                  XmNtopWidget, weights, XmNbottomAttachment, XmATTACH_OPPOSITE_WIDGET, XmNbottomWidget, weights,
                  XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, weights, XmNleftOffset, 8, nullptr);
    XtManageChild(separator);
    add_radio_box(form, "Slants", STYLE_ROMAN, STYLE_OBLIQUE, separator);

    state->sample = XmCreateLabel(form, const_cast<char*>("Sample"), nullptr, 0);
    XtVaSetValues(state->sample, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, weights, XmNtopOffset, 8,
                  XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment,
                  XmATTACH_FORM, nullptr);
    XtManageChild(state->sample);
}

// Fills the foundry list, and with `chooseFirst` chooses its first entry,
// which fills the lists below and loads the first font.
void fill_lists(const std::vector<const char*>& names, bool chooseFirst = true)
{
    state->fonts = sorted_font_records(names);
    for (int i = 0; i < LIST_COUNT; i++) {
        state->items[i].clear();
        state->chosen[i].clear();
        XmListDeleteAllItems(state->lists[i]);
    }
    state->items[LIST_FOUNDRY] = distinct_foundries(state->fonts);
    set_list_items(state->lists[LIST_FOUNDRY], state->items[LIST_FOUNDRY]);
    if (state->items[LIST_FOUNDRY].empty()) {
        show_message(XtParent(state->dialog), cant_load_text(), 0, nullptr, nullptr);
        return;
    }
    if (chooseFirst)
        XmListSelectPos(state->lists[LIST_FOUNDRY], 1, True);
}

void fill_lists_from_server()
{
    int count = 0;
    char** names = XListFonts(app().display, "*", MAX_FONTS, &count);
    std::vector<const char*> list;
    for (int i = 0; names && i < count; i++)
        list.push_back(names[i]);
    // Nothing is chosen yet: the dialog opens on the text tool's font.
    fill_lists(list, false);
    if (names)
        XFreeFontNames(names);
}

// Chooses `item` in a list, with the list's own consequences (the lists
// below refill); false when the list does not hold it.
bool select_item(int level, const std::string& item)
{
    const std::vector<std::string>& items = state->items[level];
    auto found = std::find(items.begin(), items.end(), item);
    if (found == items.end())
        return false;
    Widget list = state->lists[level];
    int pos = static_cast<int>(found - items.begin()) + 1;
    XmListSelectPos(list, pos, True);
    // Scrolled into view: a choice far down a long list is seen too.
    int top = 1, visible = 1;
    XtVaGetValues(list, XmNtopItemPosition, &top, XmNvisibleItemCount, &visible, nullptr);
    if (pos < top || pos >= top + visible)
        XmListSetPos(list, pos);
    return true;
}

// The full name of a loaded font, from its FONT property; `fallback` when
// it has none.
std::string full_name(XFontStruct* font, const char* fallback)
{
    unsigned long atom = 0;
    if (!font || !XGetFontProperty(font, XA_FONT, &atom))
        return fallback;
    char* name = XGetAtomName(app().display, atom);
    std::string out = name ? name : fallback;
    XFree(name);
    return out;
}

// Shows in the lists, the toggles and the sample the font the text tool
// types in, without loading anything in its place: opening the chooser
// changes no font. False when the lists do not hold it.
bool open_on_font(XFontStruct* font)
{
    std::string name = full_name(font, FALLBACK_FONT);
    int index = listed_font_index(state->fonts, name);
    if (index < 0)
        return false;
    const FontRecord& r = state->fonts[static_cast<size_t>(index)];
    state->restoring = true;
    bool shown = select_item(LIST_FOUNDRY, r.foundry) && select_item(LIST_FAMILY, r.family) &&
                 (!r.xlfd || select_item(LIST_SIZE, r.size));
    if (shown) {
        StyleToggles t = read_toggles();
        choose_styles_of(r, &t);
        write_toggles(t);
    }
    state->restoring = false;
    if (!shown)
        return false;
    // The dialog's own copy: the text tool frees its fonts as it changes them.
    std::string loadName = r.name;
    XFontStruct* own = load_font(loadName);
    if (!own) {
        loadName = name;
        own = load_font(loadName);
    }
    if (!own)
        return false;
    make_current(own, loadName, false);
    return true;
}

bool make_font_dialog()
{
    static const DialogButton buttons[] = {
        {"OK", ok_cb, nullptr},
        {"Cancel", cancel_cb, nullptr},
        {nullptr, nullptr, nullptr},
    };
    state = new FontDialogState{};
    Arg args[1];
    XtSetArg(args[0], XmNautoUnmanage, False);
    state->dialog = template_dialog(app().topLevel, "Font Dialog", fill_font_form, args, 1, buttons);
    if (!state->dialog) {
        delete state;
        state = nullptr;
        return false;
    }
    set_default_and_cancel(state->dialog, "OK");
    // Placed over the asking drawing as it pops up.
    XtVaSetValues(state->dialog, XmNdefaultPosition, False, nullptr);
    XtAddCallback(XtParent(state->dialog), XmNpopupCallback, place_cb, nullptr);
    // The sample's GC needs its window: realise before the first load.
    XtRealizeWidget(XtParent(state->dialog));
    fill_lists_from_server();
    return true;
}

}  // namespace

const FontChoice& current_font_choice() { return choice; }

Widget font_dialog() { return state ? state->dialog : nullptr; }

void set_font_names(const std::vector<const char*>& names)
{
    if (state)
        fill_lists(names);
}

void show_font_dialog(Drawing* d)
{
    bool first = !state;
    if (first && !make_font_dialog())
        return;
    // The chooser opens on the font the text tool has. A font the lists do
    // not hold leaves the choice as it was; on the first showing that is
    // the lists' first font, and Cancel goes back to the tool's own.
    Drawing* tool = d && drawing_is_open(d) ? d : first_open_drawing();
    XFontStruct* textFont = tool ? text_font(tool) : nullptr;
    bool onTextFont = textFont && open_on_font(textFont);
    if (first && !onTextFont && !state->items[LIST_FOUNDRY].empty())
        XmListSelectPos(state->lists[LIST_FOUNDRY], 1, True);
    save_choice();
    if (first && !onTextFont) {
        state->saved.name = full_name(textFont, FALLBACK_FONT);
        state->saved.font = load_font(state->saved.name);
    }
    asking = d;
    XtManageChild(state->dialog);
}

int cmd_fonts(Drawing* d, XEvent*, Boolean)
{
    show_font_dialog(d);
    return 0;
}
