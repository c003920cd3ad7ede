// The reduction question is a Yes/No message that the open waits for in a
// nested event loop, so that every way a file is opened (command line, File
// > Open, a drop) goes on exactly where it asked, with the same statuses and
// messages as before. The dialog is application modal; the one thing that
// could reach an open meanwhile is a drop, whose own question is answered
// No at once rather than nesting a second wait inside the first.
#include "app/reduce_question.h"

#include <Xm/Xm.h>

#include <string>

#include "core/app_state.h"
#include "core/message.h"
#include "core/safe_format.h"
#include "files/colour_fit.h"

namespace {

constexpr int QUESTION_SET = 2;   // "Yes", "No"
constexpr const char* BUILT_IN_QUESTION =
    "%s has %d colours but only %d colour cells are free. Open it with its colours reduced to %d?";

bool asking = false;
int answer = -1;

void answer_cb(Widget, XtPointer, XtPointer call) noexcept
{
    auto* record = static_cast<XmAnyCallbackStruct*>(call);
    answer = record ? record->reason : MSG_NO;
}

}  // namespace

unsigned ask_colour_reduction(Widget parent, const char* fileName, const ColourFit& fit)
{
    unsigned target = reduction_target(fit.freeCells);
    if (asking || target == 0)
        return 0;
    std::string text = format_str_int3(res().reduceColoursString, fileName, static_cast<int>(fit.colours),
                                       static_cast<int>(fit.freeCells), static_cast<int>(target),
                                       BUILT_IN_QUESTION);
    Widget dialog = message_dialog(QUESTION_SET);
    if (!dialog)
        return 0;
    // Return takes the default, Yes; Escape answers No.
    XtVaSetValues(dialog, XmNcancelButton, XtNameToWidget(dialog, "No"), nullptr);
    answer = -1;
    asking = true;
    show_message(parent, text.c_str(), QUESTION_SET, answer_cb, nullptr);
    // Until a button answers, or the dialog goes away unanswered (another
    // message took its response over): that counts as No.
    XtAppContext context = app().context;
    while (answer < 0 && XtIsManaged(dialog))
        XtAppProcessEvent(context, XtIMAll);
    asking = false;
    return answer == MSG_YES ? target : 0;
}
