#pragma once
// A window's text as a string, whatever its length. Windows only.
#include <windows.h>

#include <string>

inline std::string WindowText(HWND window) {
    int length = window ? GetWindowTextLengthA(window) : 0;
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    int got = GetWindowTextA(window, text.data(), length + 1);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return text;
}
