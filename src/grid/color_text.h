#pragma once
// The text form of a colour: "#" and six upper-case hexadecimal digits, red
// first ("#FF8000" is orange). In the grid a colour of -1 (none) has the
// empty text; a property value always has the seven characters.
#include <windows.h>

#include <string>
#include <string_view>

constexpr COLORREF kNoColor = static_cast<COLORREF>(-1);

std::string FormatColorText(COLORREF color);
// Accepts "#RRGGBB" (digits in either case, blanks around it ignored) and the
// empty text (no colour). False for anything else; *color is then untouched.
bool ParseColorText(const std::string& text, COLORREF* color);

// A colour property's value as the Properties dialog reads it: leniently,
// the hexadecimal digits after the first "#" (anything before it ignored;
// longer runs wrap like an unsigned conversion); -1 when there is no "#".
COLORREF ParseColorAfterHash(std::string_view text);
// "#RRGGBB" for any colour, -1 included (as white).
std::string FormatColorHex(COLORREF color);
