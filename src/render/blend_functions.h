#pragma once
// AlphaBlend and TransparentBlt from the system's image library
// ("MSIMG32.DLL"), bound at run time so that the plug-in also loads where
// the library is missing. Each call loads the library into the caller's
// handle when that is still null (the handle is the caller's to keep or
// free), looks the function up again, and calls it. Without the library or
// the function the call draws nothing and returns FALSE.
//
// Windows 95 and NT 4 lack both functions: BlendingIsSupported tells whether
// this system has them at all, from the version it reports.
#include <windows.h>

BOOL CallAlphaBlend(HMODULE& imageLibrary, HDC destination, int x, int y, int width, int height, HDC source,
                    int sourceX, int sourceY, int sourceWidth, int sourceHeight, BLENDFUNCTION blend);

BOOL CallTransparentBlt(HMODULE& imageLibrary, HDC destination, int x, int y, int width, int height, HDC source,
                        int sourceX, int sourceY, int sourceWidth, int sourceHeight, UINT transparentColour);

// True on NT 5 and later, and on Windows 98 and later (4.x with a non-zero
// minor version, or above); false on NT 4, Windows 95 and when the version
// cannot be read.
bool BlendingIsSupported();
