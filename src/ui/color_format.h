#pragma once
// Colours as the Properties dialog reads and writes them: a colour property's
// value holds "#" and six hexadecimal digits, red first. Reading is lenient
// (anything before the "#" is ignored, and no "#" at all means no colour);
// writing always gives seven characters with upper-case digits.
#include <windows.h>

#include <string>
#include <string_view>

// The colour (red in the lowest byte) after the first "#" of text, or -1
// when text has no "#".
COLORREF ParseColor(std::string_view text);
// "#RRGGBB" for a colour with red in its lowest byte.
std::string FormatColor(COLORREF color);
