#pragma once
// A bitmap held for drawing, usually a DIB section with direct access to its
// rows: the GDI+ back end of the preview picture loads files into it.
//
// Draw honours a transparent colour (TransparentBlt) or per-pixel alpha
// (AlphaBlend) where the system has the blending functions; otherwise, and
// for plain pictures, it copies with StretchBlt. Alpha pictures are kept
// with premultiplied colours, as AlphaBlend expects.
#include <windows.h>

#include <cstdint>

class CDibSection {
public:
    CDibSection();
    ~CDibSection();
    CDibSection(const CDibSection&) = delete;
    CDibSection& operator=(const CDibSection&) = delete;

    // A new DIB section of width × height (a negative height makes it
    // top-down). masks (three entries: red, green, blue) is read only with
    // BI_BITFIELDS above 8 bits; bit 0 of flags marks per-pixel alpha.
    bool Create(int width, int height, int bitsPerPixel, DWORD compression = BI_RGB, const DWORD* masks = nullptr,
                unsigned flags = 0);

    enum Orientation { kFromHeight = 0, kBottomUp = 1, kTopDown = 2 };
    // Takes ownership of bitmap (a DIB section or a device-dependent
    // bitmap), replacing the one held. A DIB section's orientation follows
    // the sign of its height unless given.
    void Attach(HBITMAP bitmap, Orientation orientation = kFromHeight);
    // Deletes the bitmap held, if any.
    void DeleteBitmap();

    // Draws source rectangle (sourceX, sourceY, sourceWidth, sourceHeight)
    // into (x, y, width, height) of destination. False when nothing is held
    // or the blit fails.
    bool Draw(HDC destination, int x, int y, int width, int height, int sourceX, int sourceY, int sourceWidth,
              int sourceHeight);

    // Replaces the bitmap with the picture in a file through GDI+: S_OK,
    // E_FAIL (no GDI+, unreadable file or no memory for the bitmap) or
    // E_OUTOFMEMORY (no memory for the palette).
    HRESULT LoadFromFile(const wchar_t* path);

    HBITMAP Bitmap() const { return bitmap_; }
    int Width() const { return width_; }
    int Height() const { return height_; }
    int BitsPerPixel() const { return bitsPerPixel_; }
    // Address of the top row, and the step in bytes from one row to the
    // next one down (negative for bottom-up DIBs). Null and 0 for a
    // device-dependent bitmap.
    std::uint8_t* TopRow() const { return topRow_; }
    int RowStep() const { return rowStep_; }
    bool IsDibSection() const { return isDibSection_; }
    bool HasAlpha() const { return hasAlpha_; }
    // A colour as 0x00BBGGRR that is not drawn, or CLR_INVALID for none.
    void SetTransparentColour(COLORREF colour) { transparentColour_ = colour; }
    COLORREF TransparentColour() const { return transparentColour_; }

private:
    HMODULE transparentBltLibrary_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    std::uint8_t* topRow_ = nullptr;
    int width_ = 0;
    int height_ = 0;
    int rowStep_ = 0;
    int bitsPerPixel_ = 0;
    bool isDibSection_ = false;
    bool hasAlpha_ = false;
    COLORREF transparentColour_ = CLR_INVALID;
    HMODULE alphaBlendLibrary_ = nullptr;
    bool blendingSupported_;
};
