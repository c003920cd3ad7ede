// The dispatch table from command numbers to the functions that do the work.
#include "app/commands.h"

#include <cstdio>

#include "app/draw.h"
#include "app/menus.h"
#include "canvas/image_store.h"
#include "canvas/magnified_paint.h"
#include "canvas/undo.h"
#include "canvas/views.h"
#include "colour/color_list.h"
#include "core/app_state.h"
#include "app/new_close.h"
#include "app/open_save.h"
#include "app/size_dialogs.h"
#include "fonts/font_dialog.h"
#include "imageops/clipboard.h"
#include "imageops/root_background.h"
#include "imageops/selection_transforms.h"
#include "tools/selection.h"
#include "tools/shapes.h"

namespace {

int cmd_zoom_in(Drawing* d, XEvent* event, Boolean)
{
    zoom_in(d, event);
    return 0;
}

int cmd_zoom_out(Drawing* d, XEvent* event, Boolean)
{
    zoom_out(d, event);
    return 0;
}

int cmd_show_grid(Drawing* d, XEvent*, Boolean set)
{
    show_grid(d, set);
    return 0;
}

int cmd_update_sensitivity(Drawing* d, XEvent*, Boolean)
{
    update_selection_sensitivity(d);
    return 0;
}

struct CommandRow {
    int number;
    CommandFn run;
};

/* number                   function */
const CommandRow commandTable[] = {
    {CMD_NEW,                cmd_new},
    {CMD_OPEN,               cmd_open},
    {CMD_SAVE,               cmd_save},
    {CMD_SAVE_AS,            cmd_save_as},
    {CMD_SAVE_AS_BW,         cmd_save_as_bw},
    {CMD_QUIT,               cmd_quit},
    {CMD_UNDO,               cmd_undo},
    {CMD_CUT,                cmd_cut},
    {CMD_COPY,               cmd_copy},
    {CMD_PASTE,              cmd_paste},
    {CMD_CLEAR,              cmd_clear},
    {CMD_SELECT_ALL,         cmd_select_all},
    {CMD_ZOOM_IN,            cmd_zoom_in},
    {CMD_ZOOM_OUT,           cmd_zoom_out},
    {CMD_SHOW_SMALL_VIEW,    cmd_show_small_view},
    {CMD_SHOW_BW_VIEW,       cmd_show_bw_view},
    {CMD_SET_ROOT_WINDOW,    cmd_set_root_window},
    {CMD_DRAW_FILLED,        cmd_draw_filled},
    {CMD_FONTS,              cmd_fonts},
    {CMD_INVERT,             cmd_invert},
    {CMD_ROTATE,             cmd_rotate},
    {CMD_FLIP_HORIZONTAL,    cmd_flip_horizontal},
    {CMD_FLIP_VERTICAL,      cmd_flip_vertical},
    {CMD_NUDGE_UP,           cmd_nudge_up},
    {CMD_NUDGE_RIGHT,        cmd_nudge_right},
    {CMD_NUDGE_DOWN,         cmd_nudge_down},
    {CMD_NUDGE_LEFT,         cmd_nudge_left},
    {CMD_UPDATE_SENSITIVITY, cmd_update_sensitivity},
    {CMD_PICK_WINDOW,        cmd_pick_window},
    {CMD_SHOW_COLORS,        cmd_show_colors},
    {CMD_CLOSE,              cmd_close},
    {CMD_SHOW_GRID,          cmd_show_grid},
    {CMD_RESIZE_IMAGE,       cmd_resize_image},
    {CMD_SCALE_IMAGE,        cmd_scale_image},
};

}  // namespace

int cmd_not_built_yet(Drawing*, XEvent*, Boolean)
{
    return 0;
}

int run_command(Drawing* d, int number, XEvent* event, Boolean set)
{
    if (res().debug)
        fprintf(stderr, "command %d\n", number);
    for (const CommandRow& row : commandTable)
        if (row.number == number)
            return row.run(d, event, set);
    return -1;
}
