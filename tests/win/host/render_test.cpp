// The bitmap reader and the placeholder, tested in-process under Wine.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "render/bitmap_stream_reader.h"
#include "render/placeholder_drawing.h"
#include "test_pictures.h"

namespace {

using test_pictures::Bmp;

// The bitmap's pixels as 0xRRGGBB, top row first.
std::vector<std::uint32_t> Pixels(HBITMAP bitmap, int width, int height) {
    BITMAPINFO info = test_pictures::TopDown32(width, height);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height));
    HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, height, pixels.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    for (auto& p : pixels) p &= 0xffffff;
    return pixels;
}

struct Loaded {
    bool ok;
    std::vector<std::uint32_t> pixels;
};

Loaded Load(const std::string& file, int width, int height) {
    HBITMAP bitmap = nullptr;
    bool ok = LoadBitmapFromStream(file, &bitmap);
    Loaded result{ok, {}};
    if (ok) {
        result.pixels = Pixels(bitmap, width, height);
        DeleteObject(bitmap);
    }
    return result;
}

TEST(LoadBitmapFromStream, PaletteSizeFromBitCountOrColoursUsed) {
    // 8 bits with biClrUsed 0: 256 entries precede the pixels.
    std::vector<std::uint32_t> palette(256, 0);
    palette[7] = 0x123456;
    std::string row("\x07\x00\x00\x00", 4);
    // The bits-offset field (9999 here) is never read.
    Loaded full = Load(Bmp(1, 1, 8, BI_RGB, 0, palette, row, 9999), 1, 1);
    ASSERT_TRUE(full.ok);
    EXPECT_EQ(full.pixels[0], 0x123456u);

    // biClrUsed 2: only two entries.
    Loaded two = Load(Bmp(1, 1, 8, BI_RGB, 2, {0x000000, 0xabcdef}, std::string("\x01\0\0\0", 4)), 1, 1);
    ASSERT_TRUE(two.ok);
    EXPECT_EQ(two.pixels[0], 0xabcdefu);
}

TEST(LoadBitmapFromStream, BitfieldsMasksPrecedeThePixels) {
    // 16 bits, 5-6-5: pure green is 0x07E0.
    Loaded got =
        Load(Bmp(1, 1, 16, BI_BITFIELDS, 0, {0xF800, 0x07E0, 0x001F}, std::string("\xe0\x07\0\0", 4)), 1, 1);
    ASSERT_TRUE(got.ok);
    EXPECT_EQ(got.pixels[0], 0x00ff00u);
}

TEST(LoadBitmapFromStream, RefusesWhatIsNotABitmapOrTooShort) {
    std::string good = Bmp(2, 2, 24, BI_RGB, 0, {}, std::string(16, '\x40'));
    HBITMAP bitmap = nullptr;
    EXPECT_FALSE(LoadBitmapFromStream(good.substr(0, 13), &bitmap));                                  // under 14 bytes
    EXPECT_FALSE(LoadBitmapFromStream("XM" + good.substr(2), &bitmap));                               // not "BM"
    EXPECT_FALSE(LoadBitmapFromStream(good.substr(0, 14 + 39), &bitmap));                             // header cut
    EXPECT_FALSE(LoadBitmapFromStream(good.substr(0, good.size() - 1), &bitmap));                     // pixels cut
    EXPECT_FALSE(LoadBitmapFromStream(Bmp(1, 1, 8, BI_RGB, 0, {1, 2, 3}, "\0\0\0\0"), &bitmap));  // palette cut
    EXPECT_FALSE(LoadBitmapFromStream(Bmp(0x7fffffff, 0x7fffffff, 32, BI_RGB, 0, {}, "1234"), &bitmap));
    EXPECT_FALSE(LoadBitmapFromStream(good, nullptr));
    EXPECT_EQ(bitmap, nullptr);
}

TEST(DrawPlaceholder, GivesTheDeviceContextBackAsItWas) {
    test_pictures::Surface surface(40, 20);
    HDC dc = surface.Dc();
    SetBkColor(dc, RGB(1, 2, 3));
    SetTextColor(dc, RGB(4, 5, 6));
    SetBkMode(dc, OPAQUE);
    HGDIOBJ font = GetCurrentObject(dc, OBJ_FONT);

    DrawPlaceholder(dc, RECT{30, 15, 5, 2}, "text");  // reversed both ways
    EXPECT_EQ(GetBkColor(dc), RGB(1, 2, 3));
    EXPECT_EQ(GetTextColor(dc), RGB(4, 5, 6));
    EXPECT_EQ(GetBkMode(dc), OPAQUE);
    EXPECT_EQ(GetCurrentObject(dc, OBJ_FONT), font);
    // The frame sits on the normalised rectangle's outermost pixels.
    EXPECT_EQ(surface.At(5, 2), 0x808080u);
    EXPECT_EQ(surface.At(29, 14), 0x808080u);
    EXPECT_TRUE(surface.WhiteOutside(5, 2, 30, 15));
}

}  // namespace

TEST(DrawPlaceholder, TextIsGreyCentredAndCutOnOneLine) {
    for (const char* text : {"Slidewave", "A title far too long for the box it is drawn in, cut rather than wrapped"}) {
        test_pictures::Surface surface(220, 60);
        DrawPlaceholder(surface.Dc(), RECT{10, 5, 210, 55}, text);
        int left = 220, right = -1, top = 60, bottom = -1;
        for (int y = 6; y < 54; ++y)
            for (int x = 11; x < 209; ++x) {
                std::uint32_t c = surface.At(x, y), blue = c & 255;
                if (c == 0xffffffu) continue;
                EXPECT_TRUE(c >> 16 == blue && (c >> 8 & 255) == blue && blue >= 128) << std::hex << c;
                left = std::min(left, x), right = std::max(right, x);
                top = std::min(top, y), bottom = std::max(bottom, y);
            }
        ASSERT_GE(right, left) << "no text drawn: " << text;
        EXPECT_LE(std::abs((top + bottom) / 2 - 30), 3) << text;
        EXPECT_LT(bottom - top, 16) << text;
        if (text[0] == 'S') {
            EXPECT_LE(std::abs((left + right) / 2 - 110), 3);
        }
    }
}
