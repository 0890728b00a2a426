#pragma once
// Text that COM objects and windows hand over, as plain strings for test
// assertions.
#include <windows.h>

#include <oleauto.h>

#include <string>

// ASCII as it is; anything else as '?'.
inline std::string NarrowText(const wchar_t* wide) {
    std::string text;
    for (; wide && *wide; ++wide) text += static_cast<char>(*wide < 128 ? *wide : '?');
    return text;
}

// The text of a string the callee allocated; frees it.
inline std::string TakeBstr(BSTR text) {
    std::string narrow = NarrowText(text);
    SysFreeString(text);
    return narrow;
}

// A window's text (up to 1,023 characters).
inline std::string WindowText(HWND window) {
    char text[1024] = {};
    GetWindowTextA(window, text, sizeof text);
    return text;
}
