#pragma once
// The pickers' tree icons: small icons from this module, 16 x 16 at 96 DPI
// and scaled with the screen's DPI like the rest of the dialogs.
#include <windows.h>

#include <commctrl.h>

#include <initializer_list>

// The side of a small icon at the screen's DPI.
int SmallIconSize();
// An image list of the icons with the given resource ids, in that order;
// the caller destroys it.
HIMAGELIST LoadSmallIcons(std::initializer_list<int> ids);
