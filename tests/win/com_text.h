#pragma once
// Text that COM hands over, as plain strings for test assertions.
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

