#pragma once
// Writes a part of the screen as a 24-bit BMP file (for screenshots).
#include <windows.h>

bool CaptureScreenRect(const RECT& wanted, const char* path);
