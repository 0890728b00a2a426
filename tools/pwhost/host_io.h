#pragma once
// Small pieces of plumbing for pwhost, which has no C++ library: a growable
// byte buffer, whole-file reading and atomic writing, JSON string output with
// every byte kept (as pwext writes it: byte n becomes code point n), and
// 24-bit BMP files from device-independent pixels.
#include "msvc_freestanding.h"

struct Bytes {
    BYTE* data = nullptr;
    UINT size = 0;
    UINT capacity = 0;

    Bytes() = default;
    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;
    ~Bytes() { free(data); }

    void Append(const void* bytes, UINT count);
    void AppendByte(BYTE b) { Append(&b, 1); }
    void AppendWord(WORD w) { Append(&w, 2); }
    void AppendDword(DWORD d) { Append(&d, 4); }
};

// Reads a whole file; false when it cannot be read.
bool ReadWholeFile(const char* path, Bytes& out);
// Writes a file through a temporary name beside it; false on failure.
bool WriteWholeFile(const char* path, const void* bytes, UINT size);

// Prints a JSON string literal of the bytes to stdout.
void PrintJsonString(const char* bytes, int length);
inline void PrintJsonString(const char* text) { PrintJsonString(text, text ? static_cast<int>(strlen(text)) : 0); }

// Saves any bitmap as a bottom-up 24-bit BMP file (through GetDIBits).
bool SaveBitmapAsBmp(HBITMAP bitmap, const char* path);
