#pragma once
// Message boxes of the plug-in under test never reach the screen: the entry
// for MessageBoxA in the plug-in's import table is pointed at a function that
// reports the call on standard error ("pwhost: message box 0x00000010 "text"
// "caption"") and answers IDOK, so tests can run unattended and check what
// would have been shown.
#include "msvc_freestanding.h"

// Returns false when the module does not import MessageBoxA from user32.dll.
bool TrapMessageBoxes(HMODULE module);
// How many message boxes were trapped so far.
int TrappedMessageBoxes();
