#include "host_io.h"

void Bytes::Append(const void* bytes, UINT count) {
    if (size + count > capacity) {
        UINT grown = (size + count) * 2 + 64;
        BYTE* moved = static_cast<BYTE*>(realloc(data, grown));
        if (!moved) {
            fputs("pwhost: out of memory\n", stderr);
            exit(1);
        }
        data = moved;
        capacity = grown;
    }
    if (count) memcpy(data + size, bytes, count);
    size += count;
}

bool ReadWholeFile(const char* path, Bytes& out) {
    FILE* file = fopen(path, "rb");
    if (!file) return false;
    BYTE chunk[1024];  // small: msvcrt.dll has no stack probe (_chkstk) under Wine
    size_t got;
    while ((got = fread(chunk, 1, sizeof chunk, file)) > 0) out.Append(chunk, static_cast<UINT>(got));
    fclose(file);
    return true;
}

bool WriteWholeFile(const char* path, const void* bytes, UINT size) {
    char temporary[MAX_PATH + 16];
    _snprintf(temporary, sizeof temporary, "%s.tmp~", path);
    temporary[sizeof temporary - 1] = 0;
    FILE* file = fopen(temporary, "wb");
    if (!file) return false;
    bool ok = fwrite(bytes, 1, size, file) == size;
    ok = (fclose(file) == 0) && ok;
    if (ok) ok = MoveFileExA(temporary, path, MOVEFILE_REPLACE_EXISTING) != 0;
    if (!ok) DeleteFileA(temporary);
    return ok;
}

void PrintJsonString(const char* bytes, int length) {
    putchar('"');
    for (int i = 0; i < length; ++i) {
        BYTE c = static_cast<BYTE>(bytes[i]);
        if (c == '"' || c == '\\') {
            putchar('\\');
            putchar(c);
        } else if (c < 0x20 || c >= 0x7f) {
            printf("\\u%04x", c);
        } else {
            putchar(c);
        }
    }
    putchar('"');
}

bool SaveBitmapAsBmp(HBITMAP bitmap, const char* path) {
    BITMAP info;
    if (!GetObjectA(bitmap, sizeof info, &info)) return false;
    int width = info.bmWidth, height = info.bmHeight;
    int rowBytes = (width * 3 + 3) & ~3;
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;  // bottom-up, as BMP files usually are
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biCompression = BI_RGB;
    header.biSizeImage = rowBytes * height;

    Bytes file;
    BITMAPFILEHEADER fileHeader = {};
    fileHeader.bfType = 0x4d42;
    fileHeader.bfOffBits = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    fileHeader.bfSize = fileHeader.bfOffBits + header.biSizeImage;
    file.Append(&fileHeader, sizeof fileHeader);
    file.Append(&header, sizeof header);
    UINT pixelsAt = file.size;
    for (UINT i = 0; i < header.biSizeImage; ++i) file.AppendByte(0);

    HDC screen = GetDC(nullptr);
    int lines = GetDIBits(screen, bitmap, 0, height, file.data + pixelsAt, reinterpret_cast<BITMAPINFO*>(&header),
                          DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    if (lines != height) return false;
    return WriteWholeFile(path, file.data, file.size);
}
