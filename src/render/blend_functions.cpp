#include "render/blend_functions.h"

namespace {

using AlphaBlendFunction = BOOL(WINAPI*)(HDC, int, int, int, int, HDC, int, int, int, int, BLENDFUNCTION);
using TransparentBltFunction = BOOL(WINAPI*)(HDC, int, int, int, int, HDC, int, int, int, int, UINT);

void* ImageLibraryFunction(HMODULE& imageLibrary, const char* name) {
    if (!imageLibrary) imageLibrary = LoadLibraryA("MSIMG32.DLL");
    return imageLibrary ? reinterpret_cast<void*>(GetProcAddress(imageLibrary, name)) : nullptr;
}

}  // namespace

BOOL CallAlphaBlend(HMODULE& imageLibrary, HDC destination, int x, int y, int width, int height, HDC source,
                    int sourceX, int sourceY, int sourceWidth, int sourceHeight, BLENDFUNCTION blend) {
    auto function = reinterpret_cast<AlphaBlendFunction>(ImageLibraryFunction(imageLibrary, "AlphaBlend"));
    if (!function) return FALSE;
    return function(destination, x, y, width, height, source, sourceX, sourceY, sourceWidth, sourceHeight, blend);
}

BOOL CallTransparentBlt(HMODULE& imageLibrary, HDC destination, int x, int y, int width, int height, HDC source,
                        int sourceX, int sourceY, int sourceWidth, int sourceHeight, UINT transparentColour) {
    auto function = reinterpret_cast<TransparentBltFunction>(ImageLibraryFunction(imageLibrary, "TransparentBlt"));
    if (!function) return FALSE;
    return function(destination, x, y, width, height, source, sourceX, sourceY, sourceWidth, sourceHeight,
                    transparentColour);
}

bool BlendingIsSupported() {
    // The size of OSVERSIONINFOA (148 bytes): every system accepts it.
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!GetVersionExA(&version)) return false;
    if (version.dwPlatformId == VER_PLATFORM_WIN32_NT) return version.dwMajorVersion > 4;
    if (version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS)
        return version.dwMajorVersion > 4 || (version.dwMajorVersion == 4 && version.dwMinorVersion != 0);
    return false;
}
