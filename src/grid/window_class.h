#pragma once
// Window classes of the grid, registered for the module that holds this code
// (the plug-in DLL, not the program that loaded it). A class left behind by an
// earlier copy of the module with another window procedure is replaced.
#include <windows.h>

#include "platform/own_module.h"

// Registers the class if needed; false when that failed.
bool EnsureGridWindowClass(const char* name, WNDPROC procedure, UINT style);
