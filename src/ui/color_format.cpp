#include "ui/color_format.h"

#include <cstdio>

namespace {
int HexDigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
}  // namespace

COLORREF ParseColor(std::string_view text) {
    std::size_t hash = text.find('#');
    if (hash == std::string_view::npos) return static_cast<COLORREF>(-1);
    // As many hexadecimal digits as follow, read as 0xRRGGBB; longer runs
    // wrap like an unsigned conversion would.
    unsigned long rgb = 0;
    for (std::size_t i = hash + 1; i < text.size(); ++i) {
        int digit = HexDigitValue(text[i]);
        if (digit < 0) break;
        rgb = (rgb << 4) | static_cast<unsigned long>(digit);
    }
    return RGB((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

std::string FormatColor(COLORREF color) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", static_cast<unsigned>(GetRValue(color)),
                  static_cast<unsigned>(GetGValue(color)), static_cast<unsigned>(GetBValue(color)));
    return text;
}
