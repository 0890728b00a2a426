#pragma once
// The module that holds this code: the plug-in DLL when it runs in the host,
// the program itself in the demo and the tests. Resources (the definition,
// bitmaps, dialogs) and window classes belong to it, never to the program
// that loaded the DLL. Windows only.
#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

inline HMODULE OwnModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }
