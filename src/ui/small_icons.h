#pragma once
// The pickers' tree icons: small icons from this module, 16 x 16 at 96 DPI
// and scaled with the DPI like the rest of the dialogs.
#include <windows.h>

#include <commctrl.h>

#include <initializer_list>

// The screen's DPI (96 when it cannot be read).
int ScreenDpi();
// An image list of the icons with the given resource ids, in that order, at
// the size for dpi; the caller destroys it.
HIMAGELIST LoadSmallIcons(std::initializer_list<int> ids, int dpi = ScreenDpi());
