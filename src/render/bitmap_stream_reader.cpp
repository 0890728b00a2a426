#include "render/bitmap_stream_reader.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kInfoHeaderSize = 40;

// Bytes of pixel data the header asks CreateDIBitmap to read.
std::uint64_t PixelBytes(const BITMAPINFOHEADER& header) {
    if (header.biCompression != BI_RGB && header.biCompression != BI_BITFIELDS) return header.biSizeImage;
    std::uint64_t width =
        static_cast<std::uint64_t>(header.biWidth < 0 ? -std::int64_t(header.biWidth) : header.biWidth);
    std::uint64_t height =
        static_cast<std::uint64_t>(header.biHeight < 0 ? -std::int64_t(header.biHeight) : header.biHeight);
    std::uint64_t rowBytes = (width * header.biBitCount + 31) / 32 * 4;
    return rowBytes * height;
}

}  // namespace

bool LoadBitmapFromStream(std::string_view file, HBITMAP* out) {
    if (!out || file.size() < kFileHeaderSize) return false;
    if (static_cast<unsigned char>(file[0]) != 'B' || static_cast<unsigned char>(file[1]) != 'M') return false;

    std::string_view rest = file.substr(kFileHeaderSize);
    if (rest.size() < kInfoHeaderSize) return false;
    // A fixed block, as the info structure must be aligned for GDI.
    void* block = GlobalAlloc(GMEM_FIXED, rest.size());
    if (!block) return false;
    std::memcpy(block, rest.data(), rest.size());
    const auto* header = static_cast<const BITMAPINFOHEADER*>(block);

    std::uint64_t colours = header->biClrUsed;
    if (header->biBitCount <= 8) {
        if (colours == 0) colours = std::uint64_t(1) << header->biBitCount;
    } else if (header->biCompression == BI_BITFIELDS) {
        colours += 3;
    }
    std::uint64_t pixelsAt = kInfoHeaderSize + colours * 4;
    bool fits = header->biWidth != 0 && header->biHeight != 0 && pixelsAt <= rest.size() &&
                PixelBytes(*header) <= rest.size() - pixelsAt;

    HBITMAP bitmap = nullptr;
    if (fits) {
        HDC screen = GetDC(nullptr);
        bitmap = CreateDIBitmap(screen, header, CBM_INIT, static_cast<const BYTE*>(block) + pixelsAt,
                                static_cast<const BITMAPINFO*>(block), DIB_RGB_COLORS);
        ReleaseDC(nullptr, screen);
    }
    GlobalFree(block);
    if (!bitmap) return false;
    *out = bitmap;
    return true;
}
