#include "grid/color_text.h"

#include <cstdio>

#include "xml/ascii.h"

std::string FormatColorHex(COLORREF color) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", static_cast<unsigned>(GetRValue(color)),
                  static_cast<unsigned>(GetGValue(color)), static_cast<unsigned>(GetBValue(color)));
    return text;
}

std::string FormatColorText(COLORREF color) { return color == kNoColor ? std::string() : FormatColorHex(color); }

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

COLORREF ParseColorAfterHash(std::string_view text) {
    std::size_t hash = text.find('#');
    if (hash == std::string_view::npos) return kNoColor;
    unsigned long rgb = 0;
    for (std::size_t i = hash + 1; i < text.size(); ++i) {
        int digit = HexDigit(text[i]);
        if (digit < 0) break;
        rgb = (rgb << 4) | static_cast<unsigned long>(digit);
    }
    return RGB((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}
