#pragma once
// Points an entry of a module's import table at another function, for tests
// that watch or steer what the code in that module calls.
#include <windows.h>

// Puts replacement in the slot that module's import table has for function
// (imported by name from dll, any case) and returns what the slot held, or
// null when the module does not import it.
void* ReplaceImport(HMODULE module, const char* dll, const char* function, void* replacement);
