#pragma once
// The design view's placeholder (render method 0): the extension's text in
// grey, centred on one line with an ellipsis when it does not fit, over
// whatever the host's page shows (no background), framed by a flat grey
// one-pixel rectangle. The DC's font, text colour, background mode and
// background colour are given back as they were.
#include <windows.h>

#include <string_view>

void DrawPlaceholder(HDC dc, const RECT& rect, std::string_view text);
