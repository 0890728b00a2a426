#include "render/dib_section.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "render/blend_functions.h"
#include "render/gdiplus_runtime.h"

namespace {

int RowBytes(int width, int bitsPerPixel) { return (width * bitsPerPixel + 31) / 32 * 4; }

// AlphaBlend adds the source colour to what it leaves of the destination,
// so colours must already be multiplied by their alpha.
void PremultiplyAlpha(std::uint8_t* topRow, int rowStep, int width, int height) {
    for (int y = 0; y < height; ++y) {
        std::uint8_t* pixel = topRow + static_cast<std::ptrdiff_t>(y) * rowStep;
        for (int x = 0; x < width; ++x, pixel += 4) {
            unsigned alpha = pixel[3];
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>((pixel[channel] * alpha + 127) / 255);
        }
    }
}

// Frees a GDI+ image when it goes out of scope.
struct ImageGuard {
    const gdiplus::FlatApi* api;
    gdiplus::GpImage* image;
    ~ImageGuard() {
        if (image) api->DisposeImage(image);
    }
};

}  // namespace

CDibSection::CDibSection() : blendingSupported_(BlendingIsSupported()) {}

CDibSection::~CDibSection() {
    DeleteBitmap();
    if (alphaBlendLibrary_) FreeLibrary(alphaBlendLibrary_);
    if (transparentBltLibrary_) FreeLibrary(transparentBltLibrary_);
}

void CDibSection::DeleteBitmap() {
    if (bitmap_) DeleteObject(bitmap_);
    bitmap_ = nullptr;
    topRow_ = nullptr;
    width_ = height_ = rowStep_ = bitsPerPixel_ = 0;
    isDibSection_ = hasAlpha_ = false;
    transparentColour_ = CLR_INVALID;
}

bool CDibSection::Create(int width, int height, int bitsPerPixel, DWORD compression, const DWORD* masks,
                         unsigned flags) {
    // Room for the largest colour table; the masks take its first three entries.
    std::vector<std::uint8_t> block(sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD), 0);
    auto* info = reinterpret_cast<BITMAPINFO*>(block.data());
    info->bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info->bmiHeader.biWidth = width;
    info->bmiHeader.biHeight = height;
    info->bmiHeader.biPlanes = 1;
    info->bmiHeader.biBitCount = static_cast<WORD>(bitsPerPixel);
    info->bmiHeader.biCompression = compression;
    if (bitsPerPixel > 8 && compression == BI_BITFIELDS && masks)
        std::memcpy(info->bmiColors, masks, 3 * sizeof(DWORD));

    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap) return false;
    Attach(bitmap, height >= 0 ? kBottomUp : kTopDown);
    hasAlpha_ = (flags & 1) != 0;
    return true;
}

void CDibSection::Attach(HBITMAP bitmap, Orientation orientation) {
    DeleteBitmap();
    bitmap_ = bitmap;
    DIBSECTION dib = {};
    int size = bitmap ? GetObjectA(bitmap, sizeof dib, &dib) : 0;
    if (size == static_cast<int>(sizeof dib) && dib.dsBm.bmBits) {
        isDibSection_ = true;
        width_ = dib.dsBm.bmWidth;
        height_ = std::abs(dib.dsBmih.biHeight);
        bitsPerPixel_ = dib.dsBm.bmBitsPixel;
        int rowBytes = RowBytes(width_, bitsPerPixel_);
        bool bottomUp = orientation == kFromHeight ? dib.dsBmih.biHeight > 0 : orientation == kBottomUp;
        auto* bits = static_cast<std::uint8_t*>(dib.dsBm.bmBits);
        topRow_ = bottomUp ? bits + static_cast<std::ptrdiff_t>(height_ - 1) * rowBytes : bits;
        rowStep_ = bottomUp ? -rowBytes : rowBytes;
    } else if (size >= static_cast<int>(sizeof(BITMAP))) {
        width_ = dib.dsBm.bmWidth;
        height_ = dib.dsBm.bmHeight;
        bitsPerPixel_ = dib.dsBm.bmBitsPixel;
    }
    transparentColour_ = CLR_INVALID;
    hasAlpha_ = false;
}

bool CDibSection::Draw(HDC destination, int x, int y, int width, int height, int sourceX, int sourceY, int sourceWidth,
                       int sourceHeight) {
    if (!bitmap_) return false;
    HDC memory = CreateCompatibleDC(destination);
    if (!memory) return false;
    HGDIOBJ before = SelectObject(memory, bitmap_);
    BOOL drawn;
    if (transparentColour_ != CLR_INVALID && blendingSupported_) {
        drawn = CallTransparentBlt(transparentBltLibrary_, destination, x, y, width, height, memory, sourceX, sourceY,
                                   sourceWidth, sourceHeight, transparentColour_);
    } else if (hasAlpha_ && blendingSupported_) {
        BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
        drawn = CallAlphaBlend(alphaBlendLibrary_, destination, x, y, width, height, memory, sourceX, sourceY,
                               sourceWidth, sourceHeight, blend);
    } else {
        drawn =
            StretchBlt(destination, x, y, width, height, memory, sourceX, sourceY, sourceWidth, sourceHeight, SRCCOPY);
    }
    SelectObject(memory, before);
    DeleteDC(memory);
    return drawn != FALSE;
}

HRESULT CDibSection::LoadFromFile(const wchar_t* path) {
    const gdiplus::FlatApi* api = gdiplus::Start();
    if (!api || !path) return E_FAIL;
    DeleteBitmap();

    gdiplus::GpBitmap* source = nullptr;
    if (api->CreateBitmapFromFile(path, &source) != gdiplus::kOk || !source) {
        if (source) api->DisposeImage(reinterpret_cast<gdiplus::GpImage*>(source));
        return E_FAIL;
    }
    auto* image = reinterpret_cast<gdiplus::GpImage*>(source);
    ImageGuard sourceGuard{api, image};

    gdiplus::PixelFormat format = 0;
    UINT width = 0, height = 0;
    if (api->GetImagePixelFormat(image, &format) != gdiplus::kOk || api->GetImageWidth(image, &width) != gdiplus::kOk ||
        api->GetImageHeight(image, &height) != gdiplus::kOk || width == 0 || height == 0 || width > 0x7fff ||
        height > 0x7fff)
        return E_FAIL;

    // Formats GDI draws take themselves; everything else becomes 32-bit RGB,
    // or ARGB when it carries alpha.
    gdiplus::PixelFormat target = gdiplus::kPixelFormat32bppRGB;
    int bits = 32;
    if (format & gdiplus::kPixelFormatGDI) {
        target = format;
        bits = (format >> 8) & 0xFF;
    }
    bool alpha = (format & gdiplus::kPixelFormatAlpha) != 0;
    if (alpha) {
        target = gdiplus::kPixelFormat32bppARGB;
        bits = 32;
    }
    static const DWORD kMasks565[3] = {0xF800, 0x07E0, 0x001F};
    bool is565 = target == gdiplus::kPixelFormat16bppRGB565;
    if (!Create(static_cast<int>(width), static_cast<int>(height), bits, is565 ? BI_BITFIELDS : BI_RGB,
                is565 ? kMasks565 : nullptr, alpha ? 1 : 0))
        return E_FAIL;

    if (format & gdiplus::kPixelFormatIndexed) {
        INT paletteSize = 0;
        api->GetImagePaletteSize(image, &paletteSize);
        if (paletteSize < static_cast<INT>(sizeof(gdiplus::ColorPalette))) paletteSize = sizeof(gdiplus::ColorPalette);
        auto* palette = static_cast<gdiplus::ColorPalette*>(std::calloc(1, static_cast<std::size_t>(paletteSize)));
        if (!palette) {
            DeleteBitmap();
            return E_OUTOFMEMORY;
        }
        if (api->GetImagePalette(image, palette, paletteSize) == gdiplus::kOk) {
            unsigned count = palette->count;
            unsigned room =
                static_cast<unsigned>((paletteSize - offsetof(gdiplus::ColorPalette, entries)) / sizeof(gdiplus::ARGB));
            if (count > room) count = room;
            if (count > 256) count = 256;
            RGBQUAD colours[256] = {};
            for (unsigned i = 0; i < count; ++i) {
                gdiplus::ARGB entry = palette->entries[i];
                colours[i] =
                    RGBQUAD{static_cast<BYTE>(entry), static_cast<BYTE>(entry >> 8), static_cast<BYTE>(entry >> 16), 0};
            }
            HDC memory = CreateCompatibleDC(nullptr);
            HGDIOBJ before = SelectObject(memory, bitmap_);
            SetDIBColorTable(memory, 0, count, colours);
            SelectObject(memory, before);
            DeleteDC(memory);
        }
        std::free(palette);
    }

    if (target == format) {
        gdiplus::Rect whole = {0, 0, static_cast<int>(width), static_cast<int>(height)};
        gdiplus::BitmapData locked = {};
        if (api->BitmapLockBits(source, &whole, gdiplus::kImageLockModeRead, format, &locked) == gdiplus::kOk) {
            std::size_t rowBytes = (static_cast<std::size_t>(width) * bits + 7) / 8;
            for (UINT y = 0; y < height; ++y)
                std::memcpy(
                    topRow_ + static_cast<std::ptrdiff_t>(y) * rowStep_,
                    static_cast<const std::uint8_t*>(locked.scan0) + static_cast<std::ptrdiff_t>(y) * locked.stride,
                    rowBytes);
            api->BitmapUnlockBits(source, &locked);
        }
    } else {
        // GDI+ converts while it draws the picture into our rows.
        gdiplus::GpBitmap* wrapper = nullptr;
        if (api->CreateBitmapFromScan0(static_cast<int>(width), static_cast<int>(height), rowStep_, target, topRow_,
                                       &wrapper) == gdiplus::kOk &&
            wrapper) {
            ImageGuard wrapperGuard{api, reinterpret_cast<gdiplus::GpImage*>(wrapper)};
            gdiplus::GpGraphics* graphics = nullptr;
            if (api->GetImageGraphicsContext(wrapperGuard.image, &graphics) == gdiplus::kOk && graphics) {
                // At the picture's size in pixels, whatever resolution the file states.
                api->DrawImageRectI(graphics, image, 0, 0, static_cast<INT>(width), static_cast<INT>(height));
                api->DeleteGraphics(graphics);
            }
        }
    }
    GdiFlush();
    if (alpha) PremultiplyAlpha(topRow_, rowStep_, width_, height_);
    return S_OK;
}
