#pragma once
// Common ground for the test programs built with clang in MSVC mode (pwhost
// and the stand-in mfc42.dll): the Windows headers of the cross toolchain and
// the C library of the system's msvcrt.dll, nothing else. There is no C++
// library and no start-up code: see pwhost_entry.cpp.
#define __USE_MINGW_ANSI_STDIO 0
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <ole2.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <io.h>
#include <fcntl.h>
