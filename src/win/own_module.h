#pragma once
// The plug-in's own module handle: its resources (the definition, bitmap
// 31550, dialogs) are looked up here, never in the host's executable.
#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

inline HMODULE OwnModule() { return reinterpret_cast<HMODULE>(&__ImageBase); }
