#include "grid/color_text.h"

#include <cstdio>

#include "xml/ascii.h"

std::string FormatColorText(COLORREF color) {
    if (color == kNoColor) return std::string();
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", GetRValue(color), GetGValue(color), GetBValue(color));
    return text;
}

namespace {
int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    c = ascii::ToLower(c);
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}
}  // namespace

bool ParseColorText(const std::string& text, COLORREF* color) {
    std::string_view t = ascii::Trim(text);
    if (t.empty()) {
        *color = kNoColor;
        return true;
    }
    if (t.size() != 7 || t[0] != '#') return false;
    unsigned value = 0;
    for (std::size_t i = 1; i < 7; ++i) {
        int d = HexDigit(t[i]);
        if (d < 0) return false;
        value = value << 4 | static_cast<unsigned>(d);
    }
    *color = RGB((value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF);
    return true;
}
