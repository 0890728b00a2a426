#pragma once
// Pictures for the render tests, written by our own code: PNG files (stored,
// uncompressed deflate blocks) and 24-bit BMP files, a scratch folder for
// them, and a 32-bit surface to draw into and read back.
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace test_pictures {

// 0xAARRGGBB, rows top first.
struct Picture {
    int width;
    int height;
    std::vector<std::uint32_t> pixels;
    std::uint32_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

// Every pixel a different opaque colour, none white or black.
Picture Gradient(int width, int height);

// PNG colour types: 2 RGB, 6 RGBA (8 bits per channel).
std::string Png(const Picture& picture, int colourType);
// Any PNG file: rows are each row's bytes without the filter byte, palette
// the PLTE chunk's bytes (none when empty).
std::string Png(int width, int height, int bitDepth, int colourType, const std::vector<std::string>& rows,
                const std::string& palette = {});
std::string Bmp(const Picture& picture);
// Any ".bmp" file: headers, colour entries (0x00RRGGBB) and the pixel rows as
// given; offset, when not 0, replaces the bits-offset field.
std::string Bmp(int width, int height, int bits, std::uint32_t compression, std::uint32_t coloursUsed,
                const std::vector<std::uint32_t>& colours, const std::string& pixels, std::uint32_t offset = 0);

// A folder of its own under the temporary folder, removed with its files.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    // Writes bytes to name (sub-folders are made as needed) and returns the full path.
    std::string Write(const std::string& name, const std::string& bytes);
    std::string Path(const std::string& name) const { return folder_ + "\\" + name; }
    const std::string& Folder() const { return folder_; }

private:
    std::string folder_;
    std::vector<std::string> files_;
    std::vector<std::string> folders_;
};

// The header of a top-down 32-bit DIB, for making and reading surfaces.
BITMAPINFO TopDown32(int width, int height);

// A top-down 32-bit DIB selected into a memory DC, filled white.
class Surface {
public:
    Surface(int width, int height);
    ~Surface();
    HDC Dc() const { return dc_; }
    // 0xRRGGBB.
    std::uint32_t At(int x, int y) const;
    // Gives every pixel the colour (0xRRGGBB) of its place.
    void Fill(std::uint32_t (*colour)(int x, int y));
    // Every pixel outside [left, right) × [top, bottom) is white.
    bool WhiteOutside(int left, int top, int right, int bottom) const;

private:
    int width_, height_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ before_;
    std::uint32_t* bits_ = nullptr;
};

}  // namespace test_pictures
