// The texts that tell a drawing's windows apart: the name a drawing shows
// in titles, the titles of the windows that belong to it, and the
// confirm-close question that names it. Pure.
#pragma once

#include <string>

// What a drawing is called in titles: the last component of its path
// ("pic.xpm" for "/a/b/pic.xpm"), or the whole name when it ends in '/'.
std::string title_name(const std::string& drawingName);

// The title of a window that belongs to a drawing: its title name, then
// what the window is ("pic.xpm - Actual Size"). An empty `what` leaves the
// name alone.
std::string drawing_window_title(const std::string& drawingName, const std::string& what);

// The confirm-close question about the drawing named `drawingName`: a
// question with one "%s" gets the title name there; any other question
// gets it on a line of its own above, so the name is always shown.
std::string question_about(const std::string& question, const std::string& drawingName);
