#pragma once
// GDI+ for the whole process: one shared instance, started on first use and
// shut down when the module unloads. "GDIPLUS.DLL" is never import-linked:
// the instance loads it on first start and binds the flat-API functions that
// the pictures use with GetProcAddress, so the plug-in loads and draws (with
// fewer formats) on systems without GDI+.
//
// Start and shutdown are guarded by a critical section. Everything else
// runs on the host's user-interface thread.
#include <windows.h>

#include <cstdint>

namespace gdiplus {

// The flat API's own types, as far as they are used here.
using Status = int;  // 0 is Ok
constexpr Status kOk = 0;
using PixelFormat = std::int32_t;
using ARGB = std::uint32_t;
struct GpImage;
struct GpBitmap;
struct GpGraphics;

constexpr PixelFormat kPixelFormatIndexed = 0x10000;
constexpr PixelFormat kPixelFormatGDI = 0x20000;
constexpr PixelFormat kPixelFormatAlpha = 0x40000;
constexpr PixelFormat kPixelFormat16bppRGB565 = 0x21006;
constexpr PixelFormat kPixelFormat32bppRGB = 0x22009;
constexpr PixelFormat kPixelFormat32bppARGB = 0x26200A;
constexpr unsigned kImageLockModeRead = 1;

struct Rect {
    int x, y, width, height;
};
struct BitmapData {
    unsigned width;
    unsigned height;
    int stride;
    PixelFormat pixelFormat;
    void* scan0;
    UINT_PTR reserved;
};
struct ColorPalette {
    unsigned flags;
    unsigned count;
    ARGB entries[1];
};

// The functions bound from the library; null until the first start.
struct FlatApi {
    Status(WINAPI* DisposeImage)(GpImage*);
    Status(WINAPI* CreateBitmapFromFile)(const WCHAR*, GpBitmap**);
    Status(WINAPI* CreateBitmapFromScan0)(int, int, int, PixelFormat, BYTE*, GpBitmap**);
    Status(WINAPI* GetImagePixelFormat)(GpImage*, PixelFormat*);
    Status(WINAPI* GetImageWidth)(GpImage*, UINT*);
    Status(WINAPI* GetImageHeight)(GpImage*, UINT*);
    Status(WINAPI* GetImagePaletteSize)(GpImage*, INT*);
    Status(WINAPI* GetImagePalette)(GpImage*, ColorPalette*, INT);
    Status(WINAPI* BitmapLockBits)(GpBitmap*, const Rect*, UINT, PixelFormat, BitmapData*);
    Status(WINAPI* BitmapUnlockBits)(GpBitmap*, BitmapData*);
    Status(WINAPI* GetImageGraphicsContext)(GpImage*, GpGraphics**);
    Status(WINAPI* DrawImageRectI)(GpGraphics*, GpImage*, INT, INT, INT, INT);
    Status(WINAPI* DeleteGraphics)(GpGraphics*);
};

// Starts the shared instance unless it runs already: loads the library,
// binds the functions and calls GdiplusStartup (version 1, no debug
// callback, with its background thread). Null when the library is missing,
// lacks a function or does not start; otherwise the bound functions.
const FlatApi* Start();

// Calls GdiplusShutdown when the instance runs. The library stays loaded,
// and a later Start starts it again.
void Shutdown();

// Whether the instance holds a startup token (for tests).
bool IsStarted();

}  // namespace gdiplus
