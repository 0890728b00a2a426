#include "screen_capture.h"

#include <cstdio>
#include <string>
#include <vector>

bool CaptureScreenRect(const RECT& wanted, const char* path) {
    // Only what is on the screen can be read back.
    RECT screenRect{GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN), 0, 0};
    screenRect.right = screenRect.left + GetSystemMetrics(SM_CXVIRTUALSCREEN);
    screenRect.bottom = screenRect.top + GetSystemMetrics(SM_CYVIRTUALSCREEN);
    RECT rect;
    if (!IntersectRect(&rect, &wanted, &screenRect)) return false;
    int width = rect.right - rect.left, height = rect.bottom - rect.top;
    if (width <= 0 || height <= 0) return false;
    HDC screen = GetDC(nullptr);
    HDC mem = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;  // bottom-up, as BMP files store rows
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bool ok = false;
    if (bitmap) {
        HGDIOBJ old = SelectObject(mem, bitmap);
        BitBlt(mem, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY | CAPTUREBLT);
        GdiFlush();
        SelectObject(mem, old);
        int stride = (width * 3 + 3) & ~3;
        BITMAPFILEHEADER file{};
        file.bfType = 0x4D42;
        file.bfOffBits = sizeof(file) + sizeof(info.bmiHeader);
        file.bfSize = file.bfOffBits + stride * height;
        // Written to a temporary name first, so no half-written picture is left.
        std::string temp = std::string(path) + ".part";
        if (FILE* out = std::fopen(temp.c_str(), "wb")) {
            ok = std::fwrite(&file, sizeof(file), 1, out) == 1 &&
                 std::fwrite(&info.bmiHeader, sizeof(info.bmiHeader), 1, out) == 1 &&
                 std::fwrite(bits, stride, height, out) == static_cast<size_t>(height);
            ok = std::fclose(out) == 0 && ok;
            ok = ok && MoveFileExA(temp.c_str(), path, MOVEFILE_REPLACE_EXISTING);
            if (!ok) DeleteFileA(temp.c_str());
        }
        DeleteObject(bitmap);
    }
    DeleteDC(mem);
    ReleaseDC(nullptr, screen);
    return ok;
}
