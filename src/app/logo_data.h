// The program's logo as XPM data (85 x 31, four symbolic colours). Pure.
#pragma once

constexpr int LOGO_WIDTH = 85;
constexpr int LOGO_HEIGHT = 31;
constexpr int LOGO_COLOURS = 4;
constexpr int LOGO_XPM_LINES = 1 + LOGO_COLOURS + LOGO_HEIGHT;

extern const char* const pictrelLogo[LOGO_XPM_LINES];
