#pragma once
// The visual-styles functions, bound at run time: systems without them (and
// Wine without a theme) get null pointers and the grid draws classically.
#include <windows.h>

struct ThemeApi {
    typedef void* HTHEME_;
    HTHEME_(WINAPI* OpenThemeData)(HWND, LPCWSTR) = nullptr;
    HRESULT(WINAPI* CloseThemeData)(HTHEME_) = nullptr;
    HRESULT(WINAPI* DrawThemeBackground)(HTHEME_, HDC, int, int, const RECT*, const RECT*) = nullptr;
    BOOL(WINAPI* IsThemeActive)() = nullptr;

    // Null when uxtheme is missing or no theme is active.
    static const ThemeApi* Get();
    bool Active() const { return IsThemeActive && IsThemeActive(); }
};
