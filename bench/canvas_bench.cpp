// Figures for the canvas: X requests and time of a 100-segment pencil stroke
// at zoom 3 on a 511 x 719 drawing, a full expose of the visible magnified
// canvas, zooming from actual size to 4 and back, and a fill of the whole
// image. Prints medians.
#include <X11/Intrinsic.h>
#include <Xm/DrawingA.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "app/draw.h"
#include "bench_support.h"
#include "canvas/image_store.h"
#include "canvas/input.h"
#include "core/app_state.h"
#include "tools/tool_table.h"

namespace {

constexpr int RUNS = 7;

void button(Drawing* d, int type, int x, int y, unsigned which = Button1)
{
    XEvent ev{};
    ev.xbutton.type = type;
    ev.xbutton.display = app().display;
    ev.xbutton.window = XtWindow(d->activeArea);
    ev.xbutton.x = x;
    ev.xbutton.y = y;
    ev.xbutton.button = which;
    ev.xbutton.state = type == ButtonRelease ? (Button1Mask << (which - 1)) : 0;
    XmDrawingAreaCallbackStruct cbs{};
    cbs.reason = XmCR_INPUT;
    cbs.event = &ev;
    canvas_input_cb(d->activeArea, d, &cbs);
}

void motion(Drawing* d, int x, int y)
{
    XEvent ev{};
    ev.xmotion.type = MotionNotify;
    ev.xmotion.display = app().display;
    ev.xmotion.window = XtWindow(d->activeArea);
    ev.xmotion.x = x;
    ev.xmotion.y = y;
    ev.xmotion.state = Button1Mask;
    Boolean cont = True;
    canvas_motion_eh(d->activeArea, d, &ev, &cont);
}

double ms_since(std::chrono::steady_clock::time_point t0)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
}

}  // namespace

int main()
{
    if (!bench_start("canvas_bench"))
        return 1;
    Drawing* d = new_untitled_drawing(nullptr, 511, 719);
    if (!d)
        return 1;
    bench_pump();
    d->zoom = 2;
    zoom_in(d, nullptr);   // to 3
    bench_pump();
    Display* dpy = app().display;

    std::vector<double> requests, pressRequests, strokeMs, exposeMs, zoomMs;
    for (int run = 0; run < RUNS; run++) {
        // What a press and release alone cost (the commit, the first
        // pixel), so that a segment's own share can be told apart.
        unsigned long p0 = NextRequest(dpy);
        button(d, ButtonPress, (300 + run * 8) << 3 | 3, 600 << 3 | 3);
        button(d, ButtonRelease, (300 + run * 8) << 3 | 3, 600 << 3 | 3);
        pressRequests.push_back(static_cast<double>(NextRequest(dpy) - p0));
        XSync(dpy, False);

        // 100 segments of a zig-zag, each a few pixels long, cell centres.
        unsigned long r0 = NextRequest(dpy);
        auto t0 = std::chrono::steady_clock::now();
        int x = 40 + run * 8, y = 40;
        button(d, ButtonPress, x << 3 | 3, y << 3 | 3);
        for (int s = 0; s < 100; s++) {
            x += (s % 2) ? 3 : 2;
            y += (s % 4 < 2) ? 4 : -3;
            motion(d, x << 3 | 3, y << 3 | 3);
        }
        button(d, ButtonRelease, x << 3 | 3, y << 3 | 3);
        requests.push_back(static_cast<double>(NextRequest(dpy) - r0));
        XSync(dpy, False);
        strokeMs.push_back(ms_since(t0));

        Window win = XtWindow(d->zoomedArea);
        t0 = std::chrono::steady_clock::now();
        XClearArea(dpy, win, 0, 0, 0, 0, True);
        bench_pump();
        exposeMs.push_back(ms_since(t0));

        XEvent shift{};
        shift.xbutton.type = ButtonRelease;
        shift.xbutton.state = ShiftMask;
        d->zoom = 0;
        layout_canvas(d);
        bench_pump();
        t0 = std::chrono::steady_clock::now();
        zoom_in(d, &shift);
        bench_pump();
        zoom_out(d, &shift);
        bench_pump();
        zoomMs.push_back(ms_since(t0));
        d->zoom = 2;
        zoom_in(d, nullptr);
        bench_pump();
    }
    // A fill of almost the whole 511 x 719 image, alternately in the
    // foreground and the background so every run repaints it all.
    std::vector<double> fillMs;
    d->currentTool = TOOL_FILL;
    for (int run = 0; run < RUNS; run++) {
        unsigned which = run % 2 ? Button3 : Button1;
        auto t0 = std::chrono::steady_clock::now();
        button(d, ButtonPress, 3, 3, which);
        button(d, ButtonRelease, 3, 3, which);
        XSync(dpy, False);
        fillMs.push_back(ms_since(t0));
    }
    std::printf("pencil stroke, 100 segments, zoom 3, 511x719: %.0f X requests (%.2f per segment; "
                "%.2f each beyond the press and release's %.0f), %.2f ms\n",
                median(requests), median(requests) / 100.0, (median(requests) - median(pressRequests)) / 100.0,
                median(pressRequests), median(strokeMs));
    std::printf("full expose of the visible magnified canvas: %.2f ms\n", median(exposeMs));
    std::printf("zoom 0 -> 4 -> 0 (with repaints): %.2f ms\n", median(zoomMs));
    std::printf("fill of a 511x719 image at zoom 3 (with repaint): %.2f ms\n", median(fillMs));
    std::printf("(medians of %d runs)\n", RUNS);
    std::exit(0);
}
