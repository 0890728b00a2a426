#pragma once
// Reads ".bmp" data (a "BM" file header, an info header, colours, pixels)
// into a device-dependent bitmap compatible with the screen.
//
// As the host's own reader does, the pixels are found after the 40-byte
// info header and the colour table (for 8 bits or less: biClrUsed entries, or
// 2^bits when that is 0; above: biClrUsed entries plus three masks for
// BI_BITFIELDS); the file header's offset field is not used. Data too short
// for its header or its pixels is refused rather than read past its end.
#include <windows.h>

#include <string_view>

// True with *out set to a new bitmap that the caller owns.
bool LoadBitmapFromStream(std::string_view file, HBITMAP* out);
