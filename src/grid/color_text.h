#pragma once
// The text form of a colour: "#" and six upper-case hexadecimal digits, red
// first ("#FF8000" is orange). A colour of -1 (none) has the empty text.
#include <windows.h>

#include <string>

constexpr COLORREF kNoColor = static_cast<COLORREF>(-1);

std::string FormatColorText(COLORREF color);
// Accepts "#RRGGBB" (digits in either case, blanks around it ignored) and the
// empty text (no colour). False for anything else; *color is then untouched.
bool ParseColorText(const std::string& text, COLORREF* color);
